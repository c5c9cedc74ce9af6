// SPDX-License-Identifier: Apache-2.0

// Documents that are read only once release their long texts.

#include <gtest/gtest.h>

#include <string>

#include "interpreters/svg/interpreter/ORVPrintQVXMLInterpreter.h"
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"
#include "interpreters/svg/interpreter/factories.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintParameters.h"
#include "tests/interpreters/svg/interpreter/asked_interpreters.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"
#include "tests/support/scoped_environment.h"

namespace {

/// Parses a drawing with every kind of long text that is released, and tells which ones its tree still holds.
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

    /// Whether each of the long texts still exists, in order.
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
    std::string bytes_;  // referred to by the tree
    ORVLightXmlElement light_;
    ORVIDOMElement_var dom_;
};

TEST_P(ReadOnceTest, StreamsGiveTheSameModelEachTime) {
    Parse(document_, ORVXmlReading::kAny);
    EXPECT_EQ(SketchOfStream(document_), Build());
}

// This also applies to trees that hold copies because the document is not plain: it has an internal DTD.
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

// Siblings before and after an element's children must still exist when they are read.
TEST_P(ReadOnceTest, NodesAreGivenBackWhileTheModelIsBuilt) {
    const auto shapes = [](int count) {
        std::string text;
        for (int i = 0; i < count; ++i) {
            const std::string x = std::to_string(i % 97);
            text += "<desc>before</desc><rect x='" + x + "' width='3' height='4' fill='#0000" +
                    std::to_string(10 + i % 80) + "'><title>shape " + x + "</title></rect><text x='" + x +
                    "'>text</text><unknown><g><path d='M0 0h9'/></g></unknown><path d='M" + x +
                    " 1h9v8z'/>\n";
        }
        return text;
    };
    std::string passedOver = "<unknown>";
    for (int i = 0; i < 30'000; ++i) passedOver += "<b x='1'/>";
    passedOver += "</unknown>";
    const std::string page = passedOver + "<title>A page</title><defs><g id='a'>" + shapes(500) +
                             "</g><marker id='m' markerWidth='2' refX='1'>" + shapes(300) +
                             "</marker><pattern id='p' width='5' height='5'>" + shapes(300) +
                             "</pattern></defs><g id='outer' fill='red'>" + shapes(300) +
                             "<a xlink:href='#x'>" + shapes(600) + "<svg x='3' viewBox='0 0 9 9'>" +
                             shapes(300) + "</svg></a>" + shapes(300) +
                             "</g><use xlink:href='#a'/><line x1='1' marker-end='url(#m)'/><rect width='9' "
                             "height='9' fill='url(#p)'/>";
    for (const std::string& document :
         {Drawing(page), "<svg xmlns:xlink='http://www.w3.org/1999/xlink'><g/>" + Drawing(page) + "<rect/>" +
                             Drawing(shapes(500) + page) + "</svg>"}) {
        Parse(document, ORVXmlReading::kAny);
        const std::string sketch = Build();
        Parse(document, ORVXmlReading::kOnce);
        const auto memoryInUse = [this] {
            return (GetParam() == Backend::kDom ? dom_.GetTree() : light_.GetTree())->GetMemoryInUse();
        };
        const std::size_t before = memoryInUse();
        EXPECT_EQ(Build(), sketch);
        EXPECT_LT(memoryInUse(), before / 2);
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
