// SPDX-License-Identifier: Apache-2.0

// The limits of the interpreter and the renderer: documents at a limit, and just past it.

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "platform/model/ORVPrtPolylineElt.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/xml/ORVLightXml.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/support/CheckingGenerator.h"
#include "tests/support/built_model.h"
#include "tests/support/test_texts.h"

namespace {

using Refusal = std::optional<ORVPrintLimit>;

Refusal RefusalOf(const BuiltModel& built) { return built.GetModel().GetBudget().GetRefusal(); }

int Draw(const BuiltModel& built, const ORVPrintParameters& parameters) {
    RecordingGenerator generator;
    return ORVPrintModelRender(built.GetModel(), &generator, parameters).Draw();
}

int ParseStatus(const std::string& document) {
    ORVLightXmlParser parser;
    ORVLightXmlElement root;
    return parser.Parse({document.data(), document.size()}, root);
}

class LimitsTest : public testing::TestWithParam<Backend> {
protected:
    BuiltModel Build(const std::string& document) const { return BuiltModel(document, {GetParam()}); }
    Refusal RefusalOfDrawing(const std::string& content) const { return RefusalOf(Build(Drawing(content))); }
};
INSTANTIATE_TEST_SUITE_P(Backends, LimitsTest, testing::ValuesIn(kBackends),
                         [](const auto& row) { return std::string(NameOf(row.param)); });

TEST(XmlLimitValues, DepthOfElements) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kElementDepth, 5);
    // The second document requires the conforming parser.
    for (const std::string start : {"", "<!DOCTYPE g [<!ENTITY e 'x'>]>"}) {
        EXPECT_EQ(ParseStatus(start + Repeat("<g>", 5) + Repeat("</g>", 5)), 1) << start;
        EXPECT_EQ(ParseStatus(start + Repeat("<g>", 6) + Repeat("</g>", 6)), -1) << start;
        EXPECT_EQ(ParseStatus(start + Repeat("<g>", 5) + "<h/>" + Repeat("</g>", 5)), -1) << start;
    }
}

TEST(XmlLimitValues, GrowthByEntities) {
    // 10 MB of text from 104 KB: about a hundred times.
    const std::string document =
        "<!DOCTYPE t [<!ENTITY e '" + std::string(100'000, 'x') + "'>]><t>" + Repeat("&e;", 104) + "</t>";
    {
        const ORVScopedPrintLimit limit(ORVPrintLimit::kEntityGrowth, 90);
        EXPECT_EQ(ParseStatus(document), -1);
    }
    const ORVScopedPrintLimit limit(ORVPrintLimit::kEntityGrowth, 110);
    EXPECT_EQ(ParseStatus(document), 1);
}

TEST_P(LimitsTest, Duplicates) {
    // A group of one rectangle, used twice in another colour: four duplicates.
    const std::string content = "<defs><g id='a'><rect width='1' height='1' fill='red'/></g></defs>" +
                                Repeat("<use xlink:href='#a' fill='blue'/>", 2);
    // The document itself has six primitives: page, holder, group, rectangle and two references. The others
    // taken are duplicates.
    const std::uint64_t taken = Build(Drawing(content)).GetModel().GetBudget().GetTaken();
    const std::uint64_t growth = (taken - 4) * kGrowthPerPrimitive;
    const std::string more = Repeat("<use xlink:href='#a' fill='lime'/>", 100);
    EXPECT_EQ(RefusalOfDrawing(content), Refusal());
    {
        // Each further reference requires two duplicates and allows for three more.
        const ORVScopedPrintLimit limit(ORVPrintLimit::kDuplicates, 0);
        EXPECT_LE(4U, growth);
        EXPECT_EQ(RefusalOfDrawing(content + more), Refusal());
    }
    const std::string wide = "<defs><g id='w'>" + Repeat("<rect width='1' height='1' fill='red'/>", 100) +
                             "</g></defs>" + Repeat("<use xlink:href='#w' fill='blue'/>", 20);
    const BuiltModel built = Build(Drawing(wide));
    const std::uint64_t duplicates = 20U * 101U;
    const std::uint64_t allowed = kGrowthPerPrimitive * (1 + 1 + 101 + 20);
    ASSERT_EQ(built.GetModel().GetBudget().GetDuplicates(), duplicates);
    {
        const ORVScopedPrintLimit limit(ORVPrintLimit::kDuplicates, duplicates - allowed);
        EXPECT_EQ(RefusalOfDrawing(wide), Refusal());
    }
    const ORVScopedPrintLimit limit(ORVPrintLimit::kDuplicates, duplicates - allowed - 1);
    EXPECT_EQ(RefusalOfDrawing(wide), Refusal(ORVPrintLimit::kDuplicates));
}

TEST_P(LimitsTest, DuplicatesOfLongListsAndTexts) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kDuplicates, 1000);
    const std::string line = "<polyline stroke='red' fill='red' points='" + Repeat("1 2 ", 10'000) + "3 4'/>";
    const std::string text = "<text fill='red'>" + std::string(160'000, 'x') + "</text>";
    for (const std::string& content : {line, text}) {
        const std::string definition = "<defs><g id='a'>" + content + "</g></defs>";
        EXPECT_EQ(RefusalOfDrawing(definition + "<use xlink:href='#a'/>"), Refusal());
        EXPECT_EQ(RefusalOfDrawing(definition + "<use xlink:href='#a' fill='blue'/>"),
                  Refusal(ORVPrintLimit::kDuplicates));
    }
}

TEST_P(LimitsTest, VisitsOfAllPagesTogether) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kVisits, 30'000);
    const std::string page = "<svg width='9' height='9'><defs><g id='a'>" +
                             Repeat("<rect width='1' height='1' fill='red'/>", 100) + "</g></defs>" +
                             Repeat("<use xlink:href='#a' width='5' height='5'/>", 100) + "</svg>";
    EXPECT_EQ(RefusalOf(Build("<svg>" + Repeat(page, 2) + "</svg>")), Refusal());
    EXPECT_EQ(RefusalOf(Build("<svg>" + Repeat(page, 4) + "</svg>")), Refusal(ORVPrintLimit::kVisits));
}

TEST_P(LimitsTest, PointsOfAPath) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kPathPoints, 6);
    struct Row {
        const char* atLimit;
        const char* past;
    };
    for (const Row& row :
         {Row{"M0 0L1 1 2 2 3 3 4 4 5 5", "M0 0L1 1 2 2 3 3 4 4 5 5 6 6"},
          Row{"M0 0l1 1 2 2 3 3l4 4 5 5", "M0 0l1 1 2 2 3 3l4 4 5 5l6 6"},
          Row{"M0 0H1 2 3 4 5", "M0 0H1 2 3 4 5 6"}, Row{"M0 0V1 2 3 4 5", "M0 0V1 2 3 4 5 6"},
          Row{"M0 0H1V2zzz", "M0 0H1V2zzzz"}, Row{"M0 0L5 5 8 0C1 1 2 2 3 3", "M0 0L5 5 8 0C1 1 2 2 3 3L1 1"},
          Row{"M0 0S1 1 2 2L5 5 6 6 7 7", "M0 0S1 1 2 2L5 5 6 6 7 7 8 8"},
          Row{"M0 0Q1 1 2 2T5 5 6 6 7 7", "M0 0Q1 1 2 2T5 5 6 6 7 7 8 8"},
          Row{"M0 0A1 1 0 0 0 2 2A1 1 0 0 0 4 4A1 1 0 0 0 6 6L1 1L2 2",
              "M0 0A1 1 0 0 0 2 2A1 1 0 0 0 4 4A1 1 0 0 0 6 6L1 1L2 2A1 1 0 0 0 6 6"}}) {
        const std::string start = "<path stroke='red' fill='none' d='";
        EXPECT_EQ(RefusalOfDrawing(start + row.atLimit + "'/>"), Refusal()) << row.atLimit;
        EXPECT_EQ(RefusalOfDrawing(start + row.past + "'/>"), Refusal(ORVPrintLimit::kPathPoints))
            << row.past;
    }
}

TEST_P(LimitsTest, PointsOfAList) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kPathPoints, 3);
    for (const std::string name : {"polyline", "polygon"}) {
        const std::string start = "<" + name + " stroke='red' fill='none' points='0 0 1 1 2 2";
        EXPECT_EQ(RefusalOfDrawing(start + "'/>"), Refusal());
        EXPECT_EQ(RefusalOfDrawing(start + " 3 3'/>"), Refusal(ORVPrintLimit::kPathPoints));
    }
    const BuiltModel built =
        Build(Drawing("<polyline stroke='red' fill='none' points='0 0 1 1 2 2 3 3 4 4'/>"));
    const auto* line = static_cast<const ORVPrtPolylineElt*>(built.GetPage().GetChildren().front());
    EXPECT_EQ(line->GetPoints().size(), 3U);
}

TEST_P(LimitsTest, Dashes) {
    const ORVScopedPrintLimit limit(ORVPrintLimit::kDashes, 4);
    const auto dashes = [&](const std::string& list) {
        const BuiltModel built = Build(
            Drawing("<polyline fill='none' stroke='red' points='0 0 9 9' stroke-dasharray='" + list + "'/>"));
        return static_cast<const ORVPrtPolylineElt*>(built.GetPage().GetChildren().front())
            ->GetStrokeAttributes();
    };
    EXPECT_EQ(dashes("1,2,3,4").GetStrokeDashPattern().size(), 4U);
    EXPECT_EQ(dashes("1,2,3,4").GetStrokeType(), kLineUserDash);
    EXPECT_TRUE(dashes("1,2,3,4,5").GetStrokeDashPattern().empty());
    EXPECT_EQ(dashes("1,2,3,4,5").GetStrokeType(), kLineSolid);
}

TEST_P(LimitsTest, RepeatsOfSharedPrimitives) {
    // 1,000 rectangles, drawn 20 times: 20 references, one shared group.
    const BuiltModel built =
        Build(Drawing("<defs><g id='a'>" + Repeat("<rect width='.01' height='.01' fill='red'/>", 1000) +
                      "</g></defs>" + Repeat("<use xlink:href='#a'/>", 20)));
    const std::uint64_t drawn = 20 + 20 * 1001, distinct = 20 + 20 + 1000;
    ORVPrintParameters parameters;
    parameters.SetRepeatLimit(drawn - (1 + kGrowthPerPrimitive) * distinct);
    EXPECT_EQ(Draw(built, parameters), 1);
    parameters.SetRepeatLimit(drawn - (1 + kGrowthPerPrimitive) * distinct - 1);
    EXPECT_EQ(Draw(built, parameters), ORVPrintModelRender::kTooManyRepeats);
    // For a generator that stores symbols, the shared group is drawn once.
    RecordingGenerator storing;
    storing.TakeSymbols();
    EXPECT_EQ(ORVPrintModelRender(built.GetModel(), &storing, parameters).Draw(), 1);
}

TEST_P(LimitsTest, AreaOfRepeats) {
    ORVPrintParameters parameters;
    parameters.SetRepeatLimit(1000);
    // 200 x 100 a thousand times are 20 million units; 1,000 repeats and the document allow 8 million.
    const auto drawing = [](const char* size) {
        return Drawing(std::string("<defs><g id='a'><g id='b'>") +
                       Repeat(std::string("<rect fill='red' ") + size + "/>", 20) + "</g></g></defs>" +
                       Repeat("<use xlink:href='#a'/>", 50));
    };
    EXPECT_EQ(Draw(Build(drawing("width='2' height='1'")), parameters), 1);
    EXPECT_EQ(Draw(Build(drawing("width='200' height='100'")), parameters),
              ORVPrintModelRender::kTooManyRepeats);
    // Shapes outside the page do not count.
    EXPECT_EQ(Draw(Build(drawing("x='500' width='200' height='100'")), parameters), 1);
}

TEST_P(LimitsTest, DashesCountAsArea) {
    ORVPrintParameters parameters;
    parameters.SetRepeatLimit(1000);
    const auto dashed = [&](const char* start, const char* dashes, const char* end) {
        const std::string element =
            std::string(start) + " fill='none' stroke='red' stroke-dasharray='" + dashes + "'>" + end;
        return Draw(Build(Drawing(Repeat(element, 100))), parameters);
    };
    constexpr const char* kLine[] = {"<polyline points='0 0 200 100'", "</polyline>"};
    constexpr const char* kText[] = {"<text font-size='90' font-family='Liberation Sans'", "MMM</text>"};
    for (const auto& element : {kLine, kText}) {
        EXPECT_EQ(dashed(element[0], "50", element[1]), 1) << element[0];
        EXPECT_EQ(dashed(element[0], "0.1", element[1]), ORVPrintModelRender::kTooManyRepeats) << element[0];
    }
}

// Groups, symbols, links and paths that were begun must be ended when drawing stops at the limit.
TEST_P(LimitsTest, GivingADrawingUpEndsWhatWasBegun) {
    const std::string shared = "<g id='a'><g id='b'>" +
                               Repeat(
                                   "<path fill='none' stroke='red' d='M0 0L200 100C9 9 8 8 7 7'/>"
                                   "<rect fill='red' width='200' height='100'/>",
                                   20) +
                               "</g></g>";
    const BuiltModel built = Build(Drawing("<defs>" + shared + "</defs><a xlink:href='http://a.example'>" +
                                           Repeat("<use xlink:href='#a'/>", 50) + "</a>"));
    for (const std::uint64_t repeats : {0U, 100U, 1000U}) {
        for (const bool takesSymbols : {false, true}) {
            CheckingGenerator generator(nullptr, takesSymbols);
            ORVPrintParameters parameters;
            parameters.SetRepeatLimit(repeats);
            const int result = ORVPrintModelRender(built.GetModel(), &generator, parameters).Draw();
            EXPECT_TRUE(takesSymbols || result == ORVPrintModelRender::kTooManyRepeats) << repeats;
            EXPECT_EQ(generator.GetFault(), "") << repeats;
        }
    }
}

TEST_P(LimitsTest, APageWithoutACountableAreaIsDrawn) {
    EXPECT_EQ(Draw(Build("<svg width='40' height='1e308'><polyline fill='none' stroke='red' "
                         "points='0 0 9 1e308 0 1e308 9 0'/></svg>"),
                   {}),
              1);
}

TEST_P(LimitsTest, WhatTheDocumentItselfHoldsIsDrawnWhateverItsArea) {
    ORVPrintParameters parameters;
    parameters.SetRepeatLimit(0);
    EXPECT_EQ(Draw(Build(Drawing(Repeat("<rect fill='red' stroke='blue' stroke-width='999' width='999' "
                                        "height='999'/><text font-size='900' fill='red'>MMM</text>"
                                        "<polyline fill='none' stroke='red' points='0 0 200 100'/>",
                                        1000))),
                   parameters),
              1);
}

TEST_P(LimitsTest, Pages) {
    const BuiltModel built = Build("<svg>" + Repeat("<svg width='9' height='9'/>", 3) + "</svg>");
    ORVPrintParameters parameters;
    parameters.SetPageLimit(3);
    EXPECT_EQ(Draw(built, parameters), 1);
    parameters.SetPageLimit(2);
    EXPECT_EQ(Draw(built, parameters), ORVPrintModelRender::kTooManyPages);
}

}  // namespace
