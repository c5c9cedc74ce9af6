// SPDX-License-Identifier: Apache-2.0

// Both interpreters as a host sees them: made by the factories, asked, and drawn.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "interpreters/svg/interpreter/ORVPrintQVXMLInterpreter.h"
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"
#include "interpreters/svg/interpreter/factories.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintInputFileStream.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/system/files.h"
#include "tests/platform/xml/tree_text.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"
#include "tests/support/sample_images.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/sketch_case.h"

namespace {

using Interpreter = std::unique_ptr<ORVPrintInterpreter>;

static_assert(!std::is_copy_constructible_v<ORVPrintSVGInterpreter> &&
              !std::is_copy_assignable_v<ORVPrintSVGInterpreter>);
static_assert(!std::is_copy_constructible_v<ORVPrintQVXMLInterpreter> &&
              !std::is_copy_assignable_v<ORVPrintQVXMLInterpreter>);

/// An input of a kind that no interpreter knows.
class OtherInput final : public ORVPrintInput {
public:
    const ORVMetaClass& GetMetaClass() const override { return ORVPrintInput::MetaClass(); }

private:
    ~OtherInput() override = default;
};

/// Notes the titles of the pages that are drawn.
class PageNoting final : public ORVPrintGenerator {
public:
    int BeginDocument(const ORVPrintDocumentInfo&) override { return 1; }
    int BeginPage(const ORVPrintPageInfo& info) override {
        pages.append(info.title);
        return beginPageResult;
    }
    int BeginGroup(const ORVPrintGroup&) override { return 1; }
    int EndGroup() override { return 1; }
    int BeginClip(const ORVMathBox2D&) override { return 1; }
    int EndClip() override { return 1; }
    int DrawShape(const ORVPrintShape&) override { return 1; }
    int DrawText(const ORVPrintText&) override { return 1; }
    int DrawImage(const ORVPrintImage&) override { return 1; }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

    std::string pages;
    int beginPageResult = 1;
};

/// Keeps the sketch of what is about to be drawn.
class SketchingInspector final : public ORVPrintModelInspector {
public:
    void Inspect(const ORVPrtModel& model) override {
        ++count;
        sketch.clear();
        for (const ORVPrtImageElt* page : *model.GetImages()) sketch += SketchOf(*page);
    }
    std::string sketch;
    int count = 0;
};

constexpr const char* kThreePages =
    "<doc><svg id='a' width='10' height='20'><title>A</title></svg><svg id='b' width='30' "
    "height='40'><title>B</title></svg>"
    "<svg id='c' width='50' height='60'><title>C</title></svg></doc>";

Interpreter FromBytes(const std::string& document) {
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream(document));
    return Interpreter(fctCreateORVPrintSVGInterpreter(stream.get()));
}

// What an interpreter answers before and after it was asked: outputs keep -7 where nothing is written.
struct Answers {
    explicit Answers(ORVPrintInterpreter& interpreter) {
        countResult = interpreter.GetPageCount(count);
        sizeResult = interpreter.GetSize(width, height);
        titleResult = interpreter.GetTitle(title);
    }
    unsigned int count = 77;
    float width = -7.0F, height = -7.0F;
    ORVUnicodeString title = "old";
    int countResult, sizeResult, titleResult;
};

void ExpectNoDocument(ORVPrintInterpreter& interpreter) {
    const Answers answers(interpreter);
    EXPECT_EQ(answers.countResult, 0);
    EXPECT_EQ(answers.sizeResult, 0);
    EXPECT_EQ(answers.titleResult, 0);
    EXPECT_EQ(answers.count, 77U);
    EXPECT_EQ(answers.width, -7.0F);
    EXPECT_EQ(answers.height, -7.0F);
    EXPECT_EQ(answers.title.GetView(), "old");
    PageNoting generator;
    EXPECT_EQ(interpreter.Print(&generator, ORVPrintParameters()), 0);
    EXPECT_TRUE(generator.pages.empty());
}

TEST(FactoriesTest, MakeInterpretersOfTheirOwn) {
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream("<svg/>"));
    const Interpreter svg(fctCreateORVPrintSVGInterpreter(stream.get()));
    EXPECT_NE(dynamic_cast<ORVPrintSVGInterpreter*>(svg.get()), nullptr);
    EXPECT_EQ(svg->GetIdentifier(), ORVString("SVG"));
    const LightResult light = ParseLight("<svg/>");
    const ORVRef<ORVPrintInputXMLElement> element(new ORVPrintInputXMLElement(&light.root));
    const Interpreter qvxml(fctCreateORVPrintQVXMLInterpreter(element.get()));
    EXPECT_NE(dynamic_cast<ORVPrintQVXMLInterpreter*>(qvxml.get()), nullptr);
    EXPECT_EQ(qvxml->GetIdentifier(), ORVString("QVXML"));
    EXPECT_EQ(TALVEN_QUB2_INTERNAL_ORVPrtInterpreterSVG(), 1);
}

TEST(InterpretersTest, NullInputLeavesThemWithoutDocument) {
    ExpectNoDocument(*Interpreter(fctCreateORVPrintSVGInterpreter(nullptr)));
    ExpectNoDocument(*Interpreter(fctCreateORVPrintQVXMLInterpreter(nullptr)));
}

TEST(InterpretersTest, OtherInputLeavesThemWithoutDocument) {
    const ORVRef<OtherInput> input(new OtherInput);
    ExpectNoDocument(*Interpreter(fctCreateORVPrintSVGInterpreter(input.get())));
}

TEST(InterpretersTest, EmptyElementInputLeavesThemWithoutDocument) {
    const ORVRef<ORVPrintInputXMLElement> input(new ORVPrintInputXMLElement(ORVIDOMElement_var()));
    ExpectNoDocument(*Interpreter(fctCreateORVPrintSVGInterpreter(input.get())));
    ExpectNoDocument(*Interpreter(fctCreateORVPrintQVXMLInterpreter(input.get())));
}

TEST(InterpretersTest, CurrentPathNeedsADocument) {
    ORVPrintSVGInterpreter svg(nullptr);
    ORVPrintQVXMLInterpreter qvxml(nullptr);
    EXPECT_EQ(svg.SetCurrentPath("/a"), 0);
    EXPECT_EQ(qvxml.SetCurrentPath("/a"), 0);
    const ORVRef<ORVPrintInputMemoryStream> stream(new ORVPrintInputMemoryStream("<svg/>"));
    EXPECT_EQ(ORVPrintSVGInterpreter(stream.get()).SetCurrentPath("/a"), 1);
}

TEST(InterpretersTest, StreamIsReadByTheConstructor) {
    Interpreter interpreter;
    {
        const ORVRef<ORVPrintInputMemoryStream> stream(
            new ORVPrintInputMemoryStream("<svg width='5' height='6'/>"));
        interpreter.reset(fctCreateORVPrintSVGInterpreter(stream.get()));
    }
    const Answers answers(*interpreter);
    EXPECT_EQ(answers.countResult, 1);
    EXPECT_EQ(answers.count, 1U);
    EXPECT_EQ(answers.width, 5.0F);
    EXPECT_EQ(answers.height, 6.0F);
}

TEST(InterpretersTest, BackEndIsChosenByTheConstructor) {
    // Not well formed: only the light back-end gives a page.
    Interpreter light, dom;
    {
        const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", "");
        light = FromBytes("<svg>");
    }
    {
        const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
        dom = FromBytes("<svg>");
    }
    EXPECT_EQ(Answers(*light).count, 1U);
    EXPECT_EQ(Answers(*dom).count, 0U);
}

// --- Pages
// ----------------------------------------------------------------------------------------------------

struct SelectionCase {
    const char* name;
    unsigned int currentPage;
    unsigned char allPages;
    const char* title;  // of the selected page
    int result;         // of drawing
    const char* drawn;  // titles of the pages, in order
};

class PageSelectionTest : public testing::TestWithParam<SelectionCase> {};

TEST_P(PageSelectionTest, DecidesWhatIsAskedAndDrawn) {
    const Interpreter interpreter = FromBytes(kThreePages);
    interpreter->SetCurrentPage(GetParam().currentPage);
    interpreter->SetAllPages(GetParam().allPages);
    const Answers answers(*interpreter);
    EXPECT_EQ(answers.count, 3U);
    EXPECT_EQ(answers.title.GetView(), GetParam().title);
    EXPECT_EQ(answers.width, static_cast<float>(10 + 20 * (GetParam().title[0] - 'A')));
    EXPECT_EQ(answers.height, answers.width + 10.0F);
    EXPECT_EQ(answers.countResult + answers.sizeResult + answers.titleResult, 3);
    PageNoting generator;
    EXPECT_EQ(interpreter->Print(&generator, ORVPrintParameters()), GetParam().result);
    EXPECT_EQ(generator.pages, GetParam().drawn);
}

INSTANTIATE_TEST_SUITE_P(Selections, PageSelectionTest,
                         testing::Values(SelectionCase{"None", 0, 0, "A", 1, "ABC"},
                                         SelectionCase{"First", 1, 0, "A", 1, "A"},
                                         SelectionCase{"Last", 3, 0, "C", 1, "C"},
                                         SelectionCase{"BeyondTheLast", 4, 0, "A", 0, ""},
                                         SelectionCase{"FarBeyond", 0xFFFFFFFFU, 0, "A", 0, ""},
                                         SelectionCase{"All", 0, 1, "A", 1, "ABC"},
                                         SelectionCase{"AllAndOne", 2, 1, "A", 1, "ABC"},
                                         SelectionCase{"AllAndBeyond", 9, 1, "A", 1, "ABC"},
                                         SelectionCase{"OnlyOneMeansAll", 2, 2, "B", 1, "B"}),
                         kNameOfRow);

TEST(InterpretersTest, SelectionMayChangeAtAnyTime) {
    const Interpreter interpreter = FromBytes(kThreePages);
    ORVUnicodeString title;
    for (const char* expected : {"A", "B", "C"}) {
        interpreter->SetCurrentPage(static_cast<unsigned int>(expected[0] - 'A' + 1));
        EXPECT_EQ(interpreter->GetTitle(title), 1);
        EXPECT_EQ(title.GetView(), expected);
    }
}

TEST(InterpretersTest, ModelWithoutPages) {
    const Interpreter interpreter = FromBytes("<doc/>");
    const Answers answers(*interpreter);
    EXPECT_EQ(answers.countResult, 1);
    EXPECT_EQ(answers.sizeResult, 1);
    EXPECT_EQ(answers.titleResult, 1);
    EXPECT_EQ(answers.count, 0U);
    EXPECT_EQ(answers.width, -7.0F);
    EXPECT_EQ(answers.title.GetView(), "old");
    interpreter->SetCurrentPage(1);
    PageNoting generator;
    EXPECT_EQ(interpreter->Print(&generator, ORVPrintParameters()), 0);
}

TEST(InterpretersTest, DrawingGivesTheFailureOfTheGenerator) {
    const Interpreter interpreter = FromBytes(kThreePages);
    PageNoting generator;
    generator.beginPageResult = -9;
    EXPECT_EQ(interpreter->Print(&generator, ORVPrintParameters()), -9);
    EXPECT_EQ(generator.pages, "A");
}

// --- Building once
// ----------------------------------------------------------------------------------------------

enum Query { kCount, kSize, kTitle, kDecode };

int Ask(ORVPrintInterpreter& interpreter, Query query) {
    unsigned int count = 0;
    float width = 0.0F, height = 0.0F;
    ORVUnicodeString title;
    PageNoting generator;
    switch (query) {
        case kCount: return interpreter.GetPageCount(count);
        case kSize: return interpreter.GetSize(width, height);
        case kTitle: return interpreter.GetTitle(title);
        case kDecode: return interpreter.Print(&generator, ORVPrintParameters());
    }
    return -99;
}

class LazyBuildTest : public testing::TestWithParam<Query> {
protected:
    LazyBuildTest() {
        probes = 0;
        ORVPrintPropertiesManager::SetMemoryProbe([] {
            ++probes;
            return 0.0;
        });
    }
    ~LazyBuildTest() override { ORVPrintPropertiesManager::SetMemoryProbe(nullptr); }

    // A build looks at the memory once for the document below.
    static inline int probes = 0;
    static constexpr const char* kTwoChildren = "<svg width='5' height='6'><rect/><rect/></svg>";
};
INSTANTIATE_TEST_SUITE_P(Queries, LazyBuildTest, testing::Values(kCount, kSize, kTitle, kDecode));

TEST_P(LazyBuildTest, FirstQueryBuildsAndNoOtherDoes) {
    const Interpreter interpreter = FromBytes(kTwoChildren);
    EXPECT_EQ(probes, 0) << "the constructor builds nothing";
    EXPECT_EQ(Ask(*interpreter, GetParam()), 1);
    EXPECT_EQ(probes, 1);
    for (const Query query : {kCount, kSize, kTitle}) EXPECT_EQ(Ask(*interpreter, query), 1);
    EXPECT_EQ(probes, 1);
}

TEST_P(LazyBuildTest, FailedBuildIsReportedOnceAndNotTriedAgain) {
    const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
    const Interpreter interpreter = FromBytes("<svg");
    EXPECT_EQ(Ask(*interpreter, GetParam()), -1);
    for (const Query query : {kCount, kSize, kTitle}) EXPECT_EQ(Ask(*interpreter, query), 1) << query;
    EXPECT_EQ(Ask(*interpreter, kDecode), 0) << "there is no page to draw";
}

TEST_P(LazyBuildTest, FailureLeavesTheOutputsOfPages) {
    const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
    const Interpreter interpreter = FromBytes("");
    const Answers answers(*interpreter);
    EXPECT_EQ(answers.countResult, -1);
    EXPECT_EQ(answers.count, 0U);
    EXPECT_EQ(answers.width, -7.0F);
    EXPECT_EQ(answers.title.GetView(), "old");
}

TEST(LazyBuildOfNothingTest, EmptyStreamFailsWithBothBackEnds) {
    for (const char* value : {static_cast<const char*>(nullptr), ""}) {
        const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", value);
        EXPECT_EQ(Ask(*FromBytes(""), kCount), -1);
        EXPECT_EQ(Ask(*FromBytes(""), kDecode), -1);
    }
}

TEST(LazyBuildOfNothingTest, FailedBuildIsNotDrawn) {
    const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
    const Interpreter interpreter = FromBytes("<svg");
    SketchingInspector inspector;
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&inspector);
    PageNoting generator;
    EXPECT_EQ(interpreter->Print(&generator, parameters), -1);
    EXPECT_EQ(inspector.count, 0);
}

// --- The model
// --------------------------------------------------------------------------------------------------

std::string SketchOf(const ORVPrtModel& model) {
    std::string sketch;
    for (const ORVPrtImageElt* page : *model.GetImages()) sketch += SketchOf(*page);
    return sketch;
}

TEST(ModelOfInterpreterTest, IsTheWholeOneWhateverPageIsSelected) {
    const Interpreter interpreter = FromBytes(kThreePages);
    interpreter->SetCurrentPage(2);
    ORVRef<const ORVPrtModel> model, again;
    EXPECT_EQ(interpreter->GetModel(model), 1);
    ASSERT_TRUE(model);
    EXPECT_EQ(model->GetImages()->size(), 3U);
    EXPECT_EQ(interpreter->SetCurrentPage(99), 1);
    EXPECT_EQ(interpreter->GetModel(again), 1);
    EXPECT_EQ(again.get(), model.get()) << "it is built once";
}

TEST(ModelOfInterpreterTest, LeavesTheSelectionAlone) {
    const Interpreter interpreter = FromBytes(kThreePages);
    interpreter->SetCurrentPage(2);
    ORVRef<const ORVPrtModel> model;
    interpreter->GetModel(model);
    PageNoting generator;
    EXPECT_EQ(interpreter->Print(&generator, ORVPrintParameters()), 1);
    EXPECT_EQ(generator.pages, "B");
}

TEST(ModelOfInterpreterTest, OutlivesInterpreterAndInput) {
    ORVRef<const ORVPrtModel> model;
    std::string before;
    {
        const Interpreter interpreter = FromBytes(kThreePages);
        interpreter->GetModel(model);
        before = SketchOf(*model);
    }
    EXPECT_EQ(SketchOf(*model), before);
    EXPECT_NE(before, "");
}

TEST(ModelOfInterpreterTest, IsThereAsFarAsItWasBuilt) {
    const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER", nullptr);
    ORVRef<const ORVPrtModel> model;
    EXPECT_EQ(FromBytes("<svg")->GetModel(model), -1);
    ASSERT_TRUE(model);
    EXPECT_TRUE(model->GetImages()->empty());
    EXPECT_EQ(FromBytes("<doc/>")->GetModel(model), 1);
    ASSERT_TRUE(model);
    EXPECT_TRUE(model->GetImages()->empty());
}

TEST(ModelOfInterpreterTest, IsNoneWithoutADocument) {
    ORVRef<const ORVPrtModel> model;
    FromBytes(kThreePages)->GetModel(model);
    EXPECT_EQ(Interpreter(fctCreateORVPrintSVGInterpreter(nullptr))->GetModel(model), 0);
    EXPECT_FALSE(model);
    const Interpreter printed = FromBytes(kThreePages);
    ORVPrintParameters last;
    last.SetIsLast(true);
    PageNoting generator;
    EXPECT_EQ(printed->Print(&generator, last), 1);
    EXPECT_EQ(printed->GetModel(model), 0);
    EXPECT_FALSE(model);
}

TEST(ModelOfInterpreterTest, IsNoneForAnInterpreterThatDrawsWithoutOne) {
    class Direct final : public ORVPrintInterpreter {
    public:
        Direct() : ORVPrintInterpreter("Direct") {}
        int GetSize(float& /*width*/, float& /*height*/) override { return 1; }
        int GetPageCount(unsigned int& count) override { return count = 1, 1; }
        int GetTitle(ORVUnicodeString& /*title*/) override { return 1; }

    private:
        int Decode(ORVPrintGenerator* generator, const ORVPrintParameters& /*parameters*/) override {
            return generator ? 1 : 0;
        }
    } interpreter;
    ORVRef<const ORVPrtModel> model;
    EXPECT_EQ(interpreter.GetModel(model), 0);
    EXPECT_FALSE(model);
}

// --- Inputs
// -----------------------------------------------------------------------------------------------------

// The sketch of the model that an interpreter is about to draw.
std::string SketchOf(ORVPrintInterpreter& interpreter) {
    SketchingInspector inspector;
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&inspector);
    PageNoting generator;
    interpreter.Print(&generator, parameters);
    return inspector.sketch;
}

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

// A line's y shows which page height the drawing was mirrored against.
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

/// A light element whose tree can be taken away.
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

/// A folder with a picture beside a drawing that refers to it.
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

// --- Base
// -------------------------------------------------------------------------------------------------------

TEST(InterpretersTest, BoundsAreThoseOfTheSelectedPage) {
    const Interpreter interpreter = FromBytes(kThreePages);
    interpreter->SetCurrentPage(2);
    float xMin = -7.0F, yMin = -7.0F, xMax = -7.0F, yMax = -7.0F;
    interpreter->GetBounds(xMin, yMin, xMax, yMax);
    EXPECT_EQ(xMin, 0.0F);
    EXPECT_EQ(yMin, 0.0F);
    EXPECT_EQ(xMax, 30.0F);
    EXPECT_EQ(yMax, 40.0F);
}

TEST(InterpretersTest, ALastPrintTakesTheDocumentAway) {
    for (const bool isPrinted : {true, false}) {
        const Interpreter interpreter = FromBytes(kThreePages);
        if (isPrinted) Ask(*interpreter, kCount);
        PageNoting generator;
        ORVPrintParameters parameters;
        parameters.SetIsLast(true);
        interpreter->SetAllPages(1);
        EXPECT_EQ(interpreter->Print(&generator, parameters), 1);
        EXPECT_EQ(generator.pages, "ABC");
        ExpectNoDocument(*interpreter);
    }
}

/// A generator of a host's that throws from one of its calls.
template <class Thrown>
class ThrowingGenerator final : public ORVPrintGenerator {
public:
    explicit ThrowingGenerator(int failing) : failing_(failing) {}
    int BeginDocument(const ORVPrintDocumentInfo&) override { return Call("document"); }
    int BeginPage(const ORVPrintPageInfo&) override { return Call("page"); }
    int BeginGroup(const ORVPrintGroup&) override { return Call("group"); }
    int EndGroup() override { return Call("end group"); }
    int BeginClip(const ORVMathBox2D&) override { return Call("clip"); }
    int EndClip() override { return Call("end clip"); }
    int DrawShape(const ORVPrintShape&) override { return Call("shape"); }
    int DrawText(const ORVPrintText&) override { return Call("text"); }
    int DrawImage(const ORVPrintImage&) override { return Call("image"); }
    int EndPage() override { return Call("end page"); }
    int EndDocument() override { return Call("end document"); }

    std::vector<std::string> calls;

private:
    int Call(const char* name) {
        calls.emplace_back(name);
        if (static_cast<int>(calls.size()) == failing_) throw Thrown();
        return 1;
    }
    const int failing_;  // number of the call, from 1
};

struct NoStandardException {};
template <class Thrown>
class ThrowingHostTest : public testing::Test {};
struct LogicError : std::logic_error {
    LogicError() : std::logic_error("a host's") {}
};
using ThrownTypes = testing::Types<std::bad_alloc, LogicError, NoStandardException, int>;
TYPED_TEST_SUITE(ThrowingHostTest, ThrownTypes);

constexpr const char* kPageWithAGroup =
    "<svg width='9' height='9'><g id='g'><rect width='4' height='4'/></g></svg>";

TYPED_TEST(ThrowingHostTest, EndsEveryDocumentThatBegan) {
    ThrowingGenerator<TypeParam> quiet(0);
    ASSERT_EQ(FromBytes(kPageWithAGroup)->Print(&quiet, ORVPrintParameters()), 1);
    ASSERT_EQ(quiet.calls.size(), 7U);
    for (int failing = 1; failing <= 7; ++failing) {
        const Interpreter interpreter = FromBytes(kPageWithAGroup);
        ThrowingGenerator<TypeParam> generator(failing);
        const int expected = std::is_same_v<TypeParam, std::bad_alloc> ? ORVPrintModelRender::kLowMemory
                                                                       : ORVPrintModelRender::kThrown;
        EXPECT_EQ(interpreter->Print(&generator, ORVPrintParameters()), expected) << failing;
        EXPECT_EQ(generator.calls.back(), failing == 1 ? "document" : "end document") << failing;
        EXPECT_EQ(std::count(generator.calls.begin(), generator.calls.end(), "end document"),
                  failing == 1 ? 0 : 1);
        ThrowingGenerator<TypeParam> next(0);
        EXPECT_EQ(interpreter->Print(&next, ORVPrintParameters()), 1) << failing;
        EXPECT_EQ(next.calls, quiet.calls);
    }
}

TYPED_TEST(ThrowingHostTest, NothingLeavesTheModuleFromOtherObjectsOfTheHost) {
    class Inspector final : public ORVPrintModelInspector {
        void Inspect(const ORVPrtModel&) override { throw TypeParam(); }
    } inspector;
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&inspector);
    PageNoting generator;
    EXPECT_LT(FromBytes(kThreePages)->Print(&generator, parameters), 0);

    class Policy final : public ORVFileAccessPolicy {
        bool MayRead(const ORVUnicodeString&) const override { throw TypeParam(); }
    } policy;
    ORVFileAccessPolicy::SetCurrent(&policy);
    const Interpreter interpreter =
        FromBytes("<svg width='9' height='9'><image width='1' height='1' xlink:href='a.png'/></svg>");
    unsigned int count = 7;
    EXPECT_EQ(interpreter->GetPageCount(count), -1);
    EXPECT_EQ(count, 0U) << "half a page is none";
    ORVFileAccessPolicy::SetCurrent(nullptr);

    class Stream final : public ORVPrintInputStream {
    public:
        const ORVMetaClass& GetMetaClass() const override { return ORVPrintInputStream::MetaClass(); }
        int Open(const char*) override { return 1; }
        int IsOpen() const override { return 1; }
        int IsReadable() const override { return 1; }
        int HasMoreData() const override { return 1; }
        unsigned long Read(void*, unsigned long) override { throw TypeParam(); }
        void Reset() override {}
        int Seek(long) override { return 1; }
        void Close() override {}

    private:
        ~Stream() override = default;
    };
    const ORVRef<Stream> stream(new Stream);
    EXPECT_EQ(fctCreateORVPrintSVGInterpreter(stream.get()), nullptr);
}

TEST(InterpretersTest, InfosAreTheReportsOfTheBuild) {
    ORVPrintPropertiesManager::ClearInfos();
    ORVPrintPropertiesManager::SetMemoryProbe([] { return 1.0; });
    const Interpreter interpreter = FromBytes("<doc><svg/><svg/><svg/></doc>");
    Ask(*interpreter, kCount);
    ORVPrintPropertiesManager::SetMemoryProbe(nullptr);
    ORVListValORVUnicodeString infos;
    EXPECT_EQ(interpreter->GetInfos(infos), 1);
    ASSERT_EQ(infos.size(), 1U);
    EXPECT_EQ(infos[0].GetView(), "ORVPrintCGM2Interpreter: Low Memory Error");
    ORVPrintPropertiesManager::ClearInfos();
}

/// A drawing with long texts of every kind that is given back, and what its tree holds of them.
class ReadOnceTest : public testing::TestWithParam<Backend> {
protected:
    ReadOnceTest() {
        for (int i = 0; i < 20'000; ++i)
            points_ += std::to_string(i % 97) + ' ' + std::to_string(i % 89) + ' ';
        document_ = Drawing("<path id='a' d='M0 0L" + points_ + "'/><polyline points='" + points_ +
                            "'/><polygon points='" + points_ + "'/><image width='9' height='9' xlink:href='" +
                            points_ + "'/><text>" + points_ + "</text>");
    }

    void Parse(const std::string& document, ORVXmlReading reading) {
        bytes_ = document;
        if (GetParam() == Backend::kDom)
            BuildParser(bytes_, "SVG", dom_, nullptr, reading);
        else
            ORVLightXmlParser().Parse(
                {bytes_.data(), bytes_.size(), ORVLightXmlInputStreamBuffer::Lifetime::kElements, reading},
                light_);
    }

    /// Whether each of the long texts is still there, in their order.
    std::string Kept() const {
        const ORVXmlNode* const root = GetParam() == Backend::kDom ? dom_.GetNode() : light_.GetNode();
        std::string kept;
        for (const ORVXmlNode* node = root->firstChild; node; node = node->nextSibling)
            for (const AttributeName name :
                 {AttributeName::kD, AttributeName::kPoints, AttributeName::kXlinkHref})
                if (node->Has(name))
                    kept += node->Value(name).find('\0') == std::string_view::npos ? '+' : '-';
        for (const ORVXmlNode* node = root->firstChild; node; node = node->nextSibling)
            if (node->id == ElementName::kText)
                kept += node->GetText().find('\0') == std::string_view::npos ? '+' : '-';
        return kept;
    }

    static std::string SketchThrough(ORVPrintInput* input) {
        const Interpreter interpreter(fctCreateORVPrintSVGInterpreter(input));
        SketchingInspector inspector;
        ORVPrintParameters parameters;
        parameters.SetModelInspector(&inspector);
        EXPECT_EQ(interpreter->Print(nullptr, parameters), 1);
        return inspector.sketch;
    }

    std::string Build() const {
        const ORVRef<ORVPrintInputXMLElement> input(GetParam() == Backend::kDom
                                                        ? new ORVPrintInputXMLElement(dom_)
                                                        : new ORVPrintInputXMLElement(&light_));
        return SketchThrough(input.get());
    }

    std::string SketchOfStream(const std::string& document) const {
        const ScopedEnvironment variable("PRINT_WITHOUT_DOM_PARSER",
                                         GetParam() == Backend::kDom ? nullptr : "");
        const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(document));
        const std::string sketch = SketchThrough(input.get());
        EXPECT_EQ(SketchThrough(input.get()), sketch) << "the stream's own bytes stay";
        return sketch;
    }

    std::string points_, document_;
    std::string bytes_;  // that the tree refers to
    ORVLightXmlElement light_;
    ORVIDOMElement_var dom_;
};

TEST_P(ReadOnceTest, StreamsGiveTheSameModelEachTime) {
    Parse(document_, ORVXmlReading::kAny);
    EXPECT_EQ(SketchOfStream(document_), Build());
}

// Also where the tree holds copies, because the document is not a plain one.
TEST_P(ReadOnceTest, LongTextsAreGivenBackWhenTheyAreRead) {
    for (const std::string start : {"", "<!DOCTYPE svg [<!ENTITY e 'x'>]>"}) {
        Parse(start + document_, ORVXmlReading::kAny);
        const std::string sketch = Build();
        EXPECT_EQ(Kept(), "+++++") << start;
        Parse(start + document_, ORVXmlReading::kOnce);
        EXPECT_EQ(Kept(), "+++++") << start;
        EXPECT_EQ(Build(), sketch) << start;
        EXPECT_EQ(Kept(), "----+") << start;
    }
}

TEST_P(ReadOnceTest, WhatTheDocumentTypeSuppliesIsThereForEveryElement) {
    const std::string image = "data:image/png;base64," + std::string(40'000, 'A');
    const auto repeated = [](const std::string& path, const std::string& list, const std::string& picture) {
        std::string elements;
        for (int i = 0; i < 3; ++i)
            elements.append("<path ")
                .append(path)
                .append("/><polyline ")
                .append(list)
                .append("/><polygon ")
                .append(list)
                .append("/><image width='9' height='9' ")
                .append(picture)
                .append("/>");
        return Drawing(elements);
    };
    const std::string path = "'M0 0L" + points_ + "'", list = "'" + points_ + "'",
                      picture = "'" + image + "'";
    const std::string written = repeated("d=" + path, "points=" + list, "xlink:href=" + picture);
    const std::string supplied =
        "<!DOCTYPE svg [<!ATTLIST path d CDATA " + path + "><!ATTLIST polyline points CDATA " + list +
        "><!ATTLIST polygon points CDATA " + list + "><!ATTLIST image xlink:href CDATA " + picture + ">]>" +
        repeated("", "", "");
    const std::string sketch = SketchOfStream(written);
    EXPECT_EQ(SketchOfStream(supplied), sketch);
    Parse(supplied, ORVXmlReading::kOnce);
    EXPECT_EQ(Build(), sketch);
    EXPECT_EQ(Kept(), std::string(12, '+'));
}

INSTANTIATE_TEST_SUITE_P(Backends, ReadOnceTest, testing::ValuesIn(kBackends));

}  // namespace
