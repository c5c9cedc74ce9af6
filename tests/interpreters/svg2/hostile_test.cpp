// SPDX-License-Identifier: Apache-2.0

// Small standard SVG documents that demand unlimited work, and large ones that must not be mistaken for
// these. The limit of repeats is low: uncounted work would take minutes.

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/print/ORVPrintModelRender.h"
#include "platform/system/ORVPrintLimits.h"
#include "tests/interpreters/svg2/call_sketch.h"
#include "tests/support/test_texts.h"
#include "tests/support/tiny_fonts.h"

namespace {

enum class End { kPage, kError };

struct HostileCase {
    const char* name;
    End end;
    std::string content;
};

void PrintTo(const HostileCase& hostile, std::ostream* out) { *out << hostile.name; }

/// Replaces "^" with the "#" of references, since "#" stands for numbers here.
std::string WithReferences(std::string text) {
    std::replace(text.begin(), text.end(), '^', '#');
    return text;
}

/// Repeats a text, replacing "#" with the number of the repetition and "@" with the next one.
std::string Numbered(const std::string& text, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) {
        for (const char c : text) {
            if (c == '#')
                all += std::to_string(i);
            else if (c == '@')
                all += std::to_string(i + 1);
            else
                all += c;
        }
    }
    return all;
}

const std::string kShape = "<rect width='9' height='9'/>";
const std::string kStops = "<stop/><stop offset='1' stop-color='red'/>";

std::vector<HostileCase> References() {
    const auto chained = [](const std::string& element, const std::string& rest) {
        return Numbered("<" + element + " id='g#' " + rest, 3000);
    };
    const std::string filled = Numbered("<rect width='9' height='9' fill='url(^g#)'/>", 3000);
    return {
        {"GradientsOfEachOther", End::kError,
         WithReferences(chained("linearGradient", "href='^g@'/>") + "<linearGradient id='g3000'>" + kStops +
                        "</linearGradient>" + filled)},
        {"GradientsInACircle", End::kError,
         WithReferences(chained("linearGradient", "href='^g@'/>") +
                        "<linearGradient id='g3000' href='^g0'/>" + filled)},
        {"PatternsOfEachOther", End::kError,
         WithReferences(chained("pattern", "href='^g@'/>") +
                        "<pattern id='g3000' width='9' height='9' patternUnits='userSpaceOnUse'>" + kShape +
                        "</pattern>" + filled)},
        {"StopsThatManyGradientsBorrow", End::kError,
         WithReferences("<linearGradient id='s'>" + Repeat("<stop/>", 2000) + "</linearGradient>" +
                        Numbered("<linearGradient id='g#' href='^s'/>", 2000) + filled)},
        {"StopsThatManyShapesShow", End::kError,
         WithReferences("<linearGradient id='g'>" + Repeat("<stop/>", 5000) + "</linearGradient>" +
                        Repeat("<rect width='9' height='9' fill='url(^g)'/>", 2000))},
        {"GradientsWithATemplateEach", End::kPage,
         WithReferences(Numbered("<linearGradient id='t#'>" + kStops +
                                     "</linearGradient><linearGradient id='g#' href='^t#'/>",
                                 3000) +
                        filled)},
        {"MasksOfMasks", End::kError,
         WithReferences(Numbered("<mask id='g#'>" +
                                     Repeat("<rect width='9' height='9' mask='url(^g@)'/>", 5) + "</mask>",
                                 9) +
                        "<mask id='g9'>" + kShape + "</mask><rect width='9' height='9' mask='url(^g0)'/>")},
        {"ClipsOfClips", End::kError,
         WithReferences(
             Numbered("<clipPath id='g#'>" + Repeat("<rect width='9' height='9' clip-path='url(^g@)'/>", 10) +
                          "</clipPath>",
                      9) +
             "<clipPath id='g9'>" + kShape + "</clipPath><rect width='9' height='9' clip-path='url(^g0)'/>")},
        {"AClipOfMany", End::kPage,
         WithReferences("<clipPath id='c'>" + Numbered("<circle cx='#' r='.4'/>", 5000) +
                        "</clipPath><rect width='9' height='9' clip-path='url(^c)'/>")},
        {"AWideElementUsedOften", End::kError,
         WithReferences("<rect id='a' width='9' height='9' " + Numbered("a#='1' ", 5000) + "/>" +
                        Repeat("<use href='^a'/>", 3000))},
        {"ALongPathUsedOften", End::kError,
         WithReferences("<path id='a' d='M0 0" + Repeat("h1v1", 20'000) + "'/>" +
                        Repeat("<use href='^a'/>", 3000))},
        {"ASwitchOfManyLanguagesUsedOften", End::kPage,
         WithReferences("<switch id='a'>" + Repeat("<g systemLanguage='xx'/>", 20'000) + "</switch>" +
                        Repeat("<use href='^a'/>", 20'000))},
        {"ALongTransformUsedOften", End::kError,
         WithReferences("<path id='a' d='M0 0h1' transform='" + Repeat("scale(1)", 10'000) + "'/>" +
                        Repeat("<use href='^a'/>", 3000))},
        {"ALongStyleUsedOften", End::kError,
         WithReferences("<rect id='a' width='9' height='9' style='" + Repeat("fill:red;", 10'000) + "'/>" +
                        Repeat("<use href='^a'/>", 1000))},
        {"MarkersOnManyVertices", End::kPage,
         WithReferences("<marker id='m'><path d='M0 0h1v1z'/></marker><path marker-mid='url(^m)' d='M0 0" +
                        Repeat("h1v1", 10'000) + "'/>")},
        {"AGlyphOfMany", End::kError,
         std::string("<style>@font-face{font-family:t;src:url(data:;base64,") + tiny_fonts::kSvgBomb +
             ")}</style><text y='9' font-family='t'>A</text>"},
        {"LargeMarkersOnManyVertices", End::kError,
         WithReferences("<marker id='m'>" + Repeat("<path d='M0 0h1v1z'/>", 100) +
                        "</marker><path marker-mid='url(^m)' d='M0 0" + Repeat("h1v1", 3'000) + "'/>")},
    };
}

std::vector<HostileCase> Sheets() {
    const auto styled = [](const std::string& rules, const std::string& content) {
        return "<style>" + rules + "</style>" + content;
    };
    std::string doubled = "--a0:;";
    for (int i = 1; i < 30; ++i)
        doubled +=
            "--a" + std::to_string(i) + ":" + Repeat("var(--a" + std::to_string(i - 1) + ")", 10) + ";";
    return {
        {"DeclarationsOfManyElements", End::kError,
         styled("rect{" + Repeat("fill:red;", 5'000) + "}", Repeat(kShape, 1000))},
        {"PlacesStatedOften", End::kPage, styled("rect{" + Repeat("x:1px;", 20'000) + "}", kShape)},
        {"VariablesThatBecomeNothing", End::kError,
         "<g style='" + doubled + "fill:var(--a29)'>" + kShape + "</g>"},
        {"ManyVariablesOfAnElement", End::kPage,
         "<g style='" + Numbered("--v#:1;", 20'000) + "--c:red;fill:var(--c)'>" + kShape + "</g>"},
        {"VariablesOnEachLevel", End::kPage,
         Numbered("<g style='--v#:1;--w#:2;--x#:3;--y#:4'>", 900) + Repeat(kShape, 10) + Repeat("</g>", 900)},
        {"ClassesOfManyElements", End::kError,
         styled(Numbered(".c#{fill:red}", 1000),
                Repeat("<rect class='" + Numbered("c# ", 1000) + "' width='9' height='9'/>", 100))},
        {"PartsOfLongAttributes", End::kError,
         styled(Numbered("[d*='" + std::string(30, 'x') + "y#']{fill:red}", 300),
                Repeat("<path d='" + std::string(2000, 'x') + "'/>", 100))},
        {"SiblingsOfSiblings", End::kError, styled(Repeat("a ~ rect{fill:red}", 100), Repeat(kShape, 1500))},
        {"PlacesAmongManySiblings", End::kPage,
         styled("rect:nth-of-type(3n+1){fill:red}rect:nth-last-of-type(2n){stroke:red}",
                Repeat(kShape, 10'000))},
        {"RulesThatDoNotEnd", End::kPage, styled(Repeat("rect{", 10'000), kShape)},
        {"RulesInRulesThatMultiply", End::kError,
         styled("rect{" + Repeat("&amp;&amp;&amp;&amp;{", 14) + "fill:red", Repeat(kShape, 9))},
        {"RulesInRulesOfManySelectors", End::kPage,
         styled(Repeat("circle,", 20'000) + "rect{" + Repeat("x:1px;b{y:1px}", 1000) + "}", kShape)},
        {"ManyLayers", End::kPage, styled(Numbered("@layer a#.b{rect{fill:red}}", 10'000), kShape)},
        {"WhatShapesHaveBesideThem", End::kError,
         styled(Numbered("rect:has(~ .a#){fill:red}", 300), Repeat(kShape, 1500))},
        {"PlacesAmongAll", End::kPage,
         styled("rect:nth-child(3n of rect){fill:red}", Repeat(kShape, 20'000))},
        {"SelectorsWithoutARule", End::kPage, styled("rect{fill:red}rect", kShape)},
        {"ListsWithinLists", End::kPage,
         styled(Repeat(":is(", 10'000) + "rect" + Repeat(")", 10'000), kShape)},
    };
}

std::vector<HostileCase> All() {
    std::vector<HostileCase> all = References();
    for (HostileCase& row : Sheets()) all.push_back(std::move(row));
    return all;
}

class StandardHostileTest : public testing::TestWithParam<HostileCase> {};

TEST_P(StandardHostileTest, EndsInAPageOrInAnError) {
    const ORVScopedPrintLimit repeats(ORVPrintLimit::kRepeats, 20'000);
    const std::string calls = SketchContent(GetParam().content);
    const std::string error = "result " + std::to_string(ORVPrintModelRender::kTooManyRepeats) + "\n";
    EXPECT_EQ(calls.ends_with(error), GetParam().end == End::kError) << calls.substr(0, 300);
    if (GetParam().end == End::kPage) EXPECT_EQ(calls.find("result"), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(Svg2, StandardHostileTest, testing::ValuesIn(All()),
                         [](const auto& hostile) { return std::string(hostile.param.name); });

}  // namespace
