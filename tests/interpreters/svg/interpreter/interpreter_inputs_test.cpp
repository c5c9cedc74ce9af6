// SPDX-License-Identifier: Apache-2.0

// Inputs of interpreters, and the location of their documents.

#include <gtest/gtest.h>

#include <fstream>

#include "interpreters/svg/interpreter/ORVPrintQVXMLInterpreter.h"
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"
#include "interpreters/svg/interpreter/factories.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/system/files.h"
#include "tests/interpreters/svg/interpreter/asked_interpreters.h"
#include "tests/platform/xml/tree_text.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"
#include "tests/support/sample_images.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/sketch_case.h"

namespace {

TEST(ElementInputTest, LightElementWins) {
    const LightResult light = ParseLight("<svg id='light'/>");
    const DomResult dom = ParseDom("<svg id='dom'/>");
    const ORVRef<ORVPrintInputXMLElement> both(new ORVPrintInputXMLElement(&light.root, dom.root)),
        domOnly(new ORVPrintInputXMLElement(dom.root));
    EXPECT_EQ(SketchOf(*Interpreter(fctCreateORVPrintSVGInterpreter(both.get()))), "page#light{}");
    EXPECT_EQ(SketchOf(*Interpreter(fctCreateORVPrintQVXMLInterpreter(both.get()))), "page#light{}");
    EXPECT_EQ(SketchOf(*Interpreter(fctCreateORVPrintSVGInterpreter(domOnly.get()))), "page#dom{}");
    EXPECT_EQ(SketchOf(*Interpreter(fctCreateORVPrintQVXMLInterpreter(domOnly.get()))), "page#dom{}");
}

// The y of a line shows which page height was used for mirroring.
constexpr const char* kDrawing = "<svg id='p' width='200' height='100'><line x2='1' y2='2'/></svg>";

TEST(ElementInputTest, QvxmlReadsAFragment) {
    const LightResult light = ParseLight(kDrawing);
    const DomResult dom = ParseDom(kDrawing);
    const ORVRef<ORVPrintInputXMLElement> lightInput(new ORVPrintInputXMLElement(&light.root)),
        domInput(new ORVPrintInputXMLElement(dom.root));
    for (ORVPrintInputXMLElement* input : {lightInput.get(), domInput.get()}) {
        EXPECT_EQ(SketchOf(*Interpreter(fctCreateORVPrintSVGInterpreter(input))), "page#p{line(0,100 1,98)}");
        EXPECT_EQ(SketchOf(*Interpreter(fctCreateORVPrintQVXMLInterpreter(input))), "page#p{line(0,0 1,-2)}");
    }
}

/// A light element whose tree can be removed.
class ChangeableElement final : public ORVLightXmlElementItf {
public:
    explicit ChangeableElement(ORVLightXmlElement element) : element_(std::move(element)) {}
    const ORVXmlNode* GetNode() const override { return element_.GetNode(); }
    ORVRef<const ORVXmlTree> GetTree() const override { return element_.GetTree(); }
    void Change(ORVLightXmlElement element) { element_ = std::move(element); }

private:
    ORVLightXmlElement element_;
};

TEST(ElementInputTest, QvxmlCopiesALightElementAndSvgDoesNot) {
    ChangeableElement element(ParseLight("<svg id='old'/>").root);
    const ORVRef<ORVPrintInputXMLElement> input(new ORVPrintInputXMLElement(&element));
    const Interpreter svg(fctCreateORVPrintSVGInterpreter(input.get()));
    const Interpreter qvxml(fctCreateORVPrintQVXMLInterpreter(input.get()));
    element.Change(ParseLight("<svg id='new'/>").root);
    EXPECT_EQ(SketchOf(*svg), "page#new{}");
    EXPECT_EQ(SketchOf(*qvxml), "page#old{}");
}

TEST(ElementInputTest, DomElementIsKeptAlive) {
    Interpreter svg, qvxml;
    {
        const DomResult dom = ParseDom("<svg id='d'/>");
        const ORVRef<ORVPrintInputXMLElement> input(new ORVPrintInputXMLElement(dom.root));
        svg.reset(fctCreateORVPrintSVGInterpreter(input.get()));
        qvxml.reset(fctCreateORVPrintQVXMLInterpreter(input.get()));
    }
    EXPECT_EQ(SketchOf(*svg), "page#d{}");
    EXPECT_EQ(SketchOf(*qvxml), "page#d{}");
}

TEST(ElementInputTest, EnvironmentHasNoEffect) {
    for (const char* value : {static_cast<const char*>(nullptr), ""}) {
        const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", value);
        const DomResult dom = ParseDom("<svg id='d'/>");
        const ORVRef<ORVPrintInputXMLElement> input(new ORVPrintInputXMLElement(dom.root));
        EXPECT_EQ(SketchOf(*Interpreter(fctCreateORVPrintSVGInterpreter(input.get()))), "page#d{}");
    }
}

/// A folder with a drawing and an image that it refers to.
class CurrentPathTest : public testing::Test {
protected:
    CurrentPathTest() {
        std::ofstream(folder_.Path() / "picture.png", std::ios::binary) << SamplePng(3, 2);
        std::ofstream(folder_.Path() / "drawing.svg") << kDocument;
        policy_.AllowFolder(folder_.Path().string());
        ORVFileAccessPolicy::SetCurrent(&policy_);
    }
    ~CurrentPathTest() override { ORVFileAccessPolicy::SetCurrent(nullptr); }

    static constexpr const char* kDocument =
        "<svg xmlns:xlink='http://www.w3.org/1999/xlink'><image xlink:href='picture.png'/></svg>";
    static constexpr const char* kLoaded = "page{image(0,0 0x0 px3x2)}";
    static constexpr const char* kNotLoaded = "page{image(0,0 0x0)}";
    ScratchFolder folder_;
    ORVFolderAccessPolicy policy_;
};

TEST_F(CurrentPathTest, OfAFileStreamIsItsPath) {
    const ORVRef<ORVPrintInputFileStream> stream(new ORVPrintInputFileStream(folder_.PathOf("drawing.svg")));
    EXPECT_EQ(SketchOf(*Interpreter(fctCreateORVPrintSVGInterpreter(stream.get()))), kLoaded);
}

TEST_F(CurrentPathTest, OfAnotherStreamIsEmpty) { EXPECT_EQ(SketchOf(*FromBytes(kDocument)), kNotLoaded); }

TEST_F(CurrentPathTest, MayBeSet) {
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream(kDocument));
    ORVPrintSVGInterpreter svg(stream.get());
    EXPECT_EQ(svg.SetCurrentPath(folder_.PathOf("any.svg")), 1);
    EXPECT_EQ(SketchOf(svg), kLoaded);

    const LightResult light = ParseLight(kDocument);
    const ORVRef<ORVPrintInputXMLElement> input(new ORVPrintInputXMLElement(&light.root));
    ORVPrintQVXMLInterpreter qvxml(input.get());
    EXPECT_EQ(qvxml.SetCurrentPath(folder_.PathOf("any.svg")), 1);
    EXPECT_EQ(SketchOf(qvxml), kLoaded);
}

TEST_F(CurrentPathTest, SetAfterTheBuildComesTooLate) {
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream(kDocument));
    ORVPrintSVGInterpreter svg(stream.get());
    Ask(svg, kCount);
    EXPECT_EQ(svg.SetCurrentPath(folder_.PathOf("any.svg")), 1);
    EXPECT_EQ(SketchOf(svg), kNotLoaded);
}

TEST_F(CurrentPathTest, FileThatCannotBeReadFails) {
    const ORVRef<ORVPrintInputFileStream> stream(new ORVPrintInputFileStream(folder_.PathOf("missing.svg")));
    const Interpreter interpreter(fctCreateORVPrintSVGInterpreter(stream.get()));
    EXPECT_EQ(Ask(*interpreter, kCount), -1);
}

}  // namespace
