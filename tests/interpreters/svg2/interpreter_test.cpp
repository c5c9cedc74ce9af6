// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <limits>

#include "interpreters/svg2/interpreter/ORVPrintSVG2Interpreter.h"
#include "interpreters/svg2/interpreter/factories.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInputXMLElement.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVLightXml.h"
#include "tests/interpreters/svg2/call_sketch.h"

namespace {

constexpr const char* kTwoPages =
    "<svg xmlns='http://www.w3.org/2000/svg' xmlns:i='http://www.inkscape.org/namespaces/inkscape' "
    "xmlns:s='http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd' width='96' height='192'>"
    "<title>Both</title><s:namedview><i:page x='0' y='0' width='96' height='96'/>"
    "<i:page x='0' y='96' width='96' height='48' i:label='Second'/></s:namedview></svg>";

TEST(SVG2InterpreterTest, AnswersForPages) {
    const ORVRef<ORVPrintInput> input(new ORVPrintInputMemoryStream(kTwoPages));
    const std::unique_ptr<ORVPrintInterpreter> interpreter(fctCreateORVPrintSVG2Interpreter(input.get()));
    EXPECT_EQ(interpreter->GetIdentifier(), "SVG2");
    unsigned int count = 0;
    EXPECT_EQ(interpreter->GetPageCount(count), 1);
    EXPECT_EQ(count, 2U);
    float width = 0.0F, height = 0.0F;
    ORVUnicodeString title;
    EXPECT_EQ(interpreter->GetSize(width, height), 1);
    EXPECT_EQ(height, 90.0F);
    EXPECT_EQ(interpreter->GetTitle(title), 1);
    EXPECT_EQ(title.GetView(), "Both");
    interpreter->SetCurrentPage(2);
    EXPECT_EQ(interpreter->GetSize(width, height), 1);
    EXPECT_EQ(height, 45.0F);
    EXPECT_EQ(interpreter->GetTitle(title), 1);
    EXPECT_EQ(title.GetView(), "Second");
}

TEST(SVG2InterpreterTest, WithoutADocumentAnswersNothing) {
    const std::unique_ptr<ORVPrintInterpreter> interpreter(fctCreateORVPrintSVG2Interpreter(nullptr));
    unsigned int count = 7;
    float width = 7.0F, height = 7.0F;
    EXPECT_EQ(interpreter->GetPageCount(count), 0);
    EXPECT_EQ(interpreter->GetSize(width, height), 0);
    EXPECT_EQ(interpreter->Print(nullptr, ORVPrintParameters()), 0);
    EXPECT_EQ(count, 7U);
}

TEST(SVG2InterpreterTest, RefusesWhatIsNotWellFormed) {
    const ORVRef<ORVPrintInput> input(new ORVPrintInputMemoryStream("<svg"));
    const std::unique_ptr<ORVPrintInterpreter> interpreter(fctCreateORVPrintSVG2Interpreter(input.get()));
    unsigned int count = 0;
    EXPECT_EQ(interpreter->GetPageCount(count), -1);
    EXPECT_EQ(interpreter->Print(nullptr, ORVPrintParameters()), -1);
}

TEST(SVG2InterpreterTest, TakesParsedElements) {
    ORVLightXmlElement root;
    const std::string text = "<svg width='96' height='96'><rect width='1' height='1'/></svg>";
    ORVLightXmlParser parser;
    ASSERT_EQ(
        parser.Parse({text.data(), text.size(), ORVLightXmlInputStreamBuffer::Lifetime::kElements}, root), 1);
    const ORVRef<ORVPrintInput> input(new ORVPrintInputXMLElement(&root));
    const std::unique_ptr<ORVPrintInterpreter> interpreter(fctCreateORVPrintSVG2Interpreter(input.get()));
    float width = 0.0F, height = 0.0F;
    EXPECT_EQ(interpreter->GetSize(width, height), 1);
    EXPECT_EQ(width, 90.0F);
}

std::string Repeated(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

// Small documents with much content must return. The sketch is not kept; only the result matters.
TEST(SVG2BombTest, UsesOfUsesEnd) {
    std::string content = "<defs><g id='g0'><rect width='1' height='1' visibility='hidden'/></g>";
    for (int i = 1; i < 12; ++i) {
        const std::string use = "<use href='#g" + std::to_string(i - 1) + "'/>";
        content += "<g id='g" + std::to_string(i) + "'>" + Repeated(use, 10) + "</g>";
    }
    content += "</defs><use href='#g11'/>";
    const ORVScopedPrintLimit repeats(ORVPrintLimit::kRepeats, 100'000);
    EXPECT_EQ(SketchContent(content),
              "result " + std::to_string(ORVPrintModelRender::kTooManyRepeats) + "\n");
}

TEST(SVG2BombTest, MarkersAndPatternsOfEachOtherEnd) {
    const ORVScopedPrintLimit repeats(ORVPrintLimit::kRepeats, 100'000);
    std::string markers;
    for (int i = 1; i < 9; ++i)
        markers += "<marker id='m" + std::to_string(i) + "'><path visibility='hidden' d='" +
                   Repeated("M0 0h1", 10) + "'/><path stroke='none' fill='none' d='" +
                   Repeated("M0 0h1", 10) + "' style='marker:url(#m" + std::to_string(i - 1) +
                   ")'/></marker>";
    EXPECT_NE(SketchContent(markers + "<path d='" + Repeated("M0 0h1", 10) +
                            "' fill='none' style='marker:url(#m8)' stroke='none'/>")
                  .find("result"),
              std::string::npos);
    EXPECT_NE(SketchContent("<pattern id='p' width='.0001' height='.0001' patternUnits='userSpaceOnUse'>"
                            "<path/></pattern><rect width='100' height='100' fill='url(#p)'/>")
                  .find("result"),
              std::string::npos);
}

TEST(SVG2BombTest, SelectorsThatSearchLongEnd) {
    // Each of many elements is matched against all its siblings, for many rules.
    std::string rules;
    for (int i = 0; i < 300; ++i) rules += "a ~ *:nth-last-of-type(9999){fill:red}";
    const std::string content = "<style>" + rules + "</style>" + Repeated("<path/>", 20'000);
    const ORVScopedPrintLimit repeats(ORVPrintLimit::kRepeats, 10'000);
    EXPECT_NE(SketchContent(content).find("result"), std::string::npos);
}

TEST(SVG2BombTest, MasksWithinMasksEnd) {
    std::string content;
    for (int i = 1; i < 100; ++i)
        content += "<mask id='m" + std::to_string(i) + "'><rect width='9' height='9' mask='url(#m" +
                   std::to_string(i + 1) + ")'/></mask>";
    content += "<mask id='m100'/><rect width='9' height='9' mask='url(#m1)'/>";
    EXPECT_NE(SketchContent(content).find("result"), std::string::npos);
}

TEST(SVG2BombTest, BoxesOfDeepDocumentsAreFound) {
    const std::string calls = SketchContent(
        "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='1' height='1'/></clipPath>"
        "<g clip-path='url(#c)'>" +
        Repeated("<g>", 900) + "<rect width='1' height='1'/>" + Repeated("</g>", 900) + "</g>");
    EXPECT_EQ(calls, "clip path 0,0 1,1\n  0,0 1,1 fill #000000\n");
}

TEST(SVG2BombTest, DeepDocumentsAreDrawn) {
    const std::string calls = SketchContent(Repeated("<g fill='red'>", 1000) +
                                            "<rect width='1' height='1'/>" + Repeated("</g>", 1000));
    EXPECT_EQ(calls, "0,0 1,1 fill #ff0000\n");
}

}  // namespace
