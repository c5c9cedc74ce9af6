// SPDX-License-Identifier: Apache-2.0

// Content that is written once and shown by references.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "tests/generators/svg/drawn_svg.h"
#include "tests/support/text_search.h"

namespace {

using testing::EndsWith;
using testing::StartsWith;

TEST(SvgSymbolsTest, SymbolsOfOneStyleAreWrittenOnce) {
    DrawnSvg page;
    ORVSvgGenerator& generator = page.Get();
    const int key = 0;
    const ORVMathAffine2D tenth = ORVMathAffine2D::Scaling(0.1, 0.1);
    EXPECT_EQ(generator.BeginSymbol({&key, tenth}), ORVPrintGenerator::kDrawSymbol);
    for (const double x : {0.0, 200.0})
        EXPECT_EQ(FillRectangle(generator, x, 0, 100.04, 100, {255, 0, 0, 255}), 1);
    EXPECT_EQ(generator.EndSymbol(), 1);
    EXPECT_NE(generator.EndSymbol(), 1);
    EXPECT_EQ(generator.BeginSymbol({&key, ORVMathAffine2D::Translation(7, 0) * tenth}),
              ORVPrintGenerator::kSymbolKnown);
    // At this scale, its coordinates need more digits.
    EXPECT_EQ(generator.BeginSymbol({&key, ORVMathAffine2D::Scaling(10.0, 10.0)}),
              ORVPrintGenerator::kDrawSymbol);
    EXPECT_EQ(FillRectangle(generator, 0, 0, 100.0437, 100), 1);
    EXPECT_EQ(generator.EndSymbol(), 1);
    EXPECT_EQ(generator.BeginSymbol({&key, ORVMathAffine2D::Scaling(0.0, 1.0)}),
              ORVPrintGenerator::kNoSymbols);
    EXPECT_EQ(page.Content(),
              "<defs><g id=\"orv-s1\">\n<rect width=\"100.04\" height=\"100\"/>\n"
              "<rect x=\"200\" width=\"100.04\" height=\"100\"/>\n</g></defs>\n"
              "<use xlink:href=\"#orv-s1\" fill=\"#f00\" transform=\"matrix(.1 0 0 .1 0 0)\"/>\n"
              "<use xlink:href=\"#orv-s1\" fill=\"#f00\" transform=\"matrix(.1 0 0 .1 7 0)\"/>\n"
              "<defs><g id=\"orv-s2\">\n<rect width=\"100.0437\" height=\"100\"/>\n</g></defs>\n"
              "<use xlink:href=\"#orv-s2\" transform=\"matrix(10 0 0 10 0 0)\"/>\n");
}

TEST(SvgSymbolsTest, SymbolsOutliveGroupsThatAreNoElements) {
    DrawnSvg page;
    ORVSvgGenerator& generator = page.Get();
    const int key = 0;
    ORVPrintGroup group;
    group.id = "same";
    // The second group writes nothing, because its identifier is already taken.
    for (const int expected :
         {ORVPrintGenerator::kDrawSymbol, ORVPrintGenerator::kDrawSymbol, ORVPrintGenerator::kSymbolKnown}) {
        EXPECT_EQ(generator.BeginGroup(group), 1);
        EXPECT_EQ(generator.BeginSymbol({&key, {}}), expected);
        if (expected == ORVPrintGenerator::kDrawSymbol) {
            EXPECT_EQ(FillRectangle(generator, 0, 0, 4, 4), 1);
            EXPECT_EQ(generator.EndSymbol(), 1);
        }
        EXPECT_EQ(generator.EndGroup(), 1);
    }
    EXPECT_EQ(CountOf(page.Content(), "<defs>"), 2U);
}

// Readers may paint all content of a use element in the same style.
TEST(SvgSymbolsTest, SymbolsOfSeveralStylesStandInEveryPlace) {
    DrawnSvg page;
    ORVSvgGenerator& generator = page.Get();
    const int key = 0, innerKey = 0;
    for (const double x : {1.0, 2.0}) {
        EXPECT_EQ(generator.BeginSymbol({&key, ORVMathAffine2D::Translation(x, 0)}),
                  ORVPrintGenerator::kDrawSymbol);
        EXPECT_EQ(FillRectangle(generator, 0, 0, 4, 4, {255, 0, 0, 255}), 1);
        EXPECT_EQ(generator.BeginSymbol({&innerKey, {}}), ORVPrintGenerator::kDrawSymbol);
        EXPECT_EQ(FillRectangle(generator, 0, 0, 5, 5), 1);
        EXPECT_EQ(generator.EndSymbol(), 1);
        EXPECT_EQ(generator.EndSymbol(), 1);
    }
    const std::string content =
        "<rect fill=\"#f00\" width=\"4\" height=\"4\"/>\n<g>\n<rect width=\"5\" height=\"5\"/>\n</g>\n</g>\n";
    EXPECT_EQ(page.Content(), "<g transform=\"translate(1 0)\">\n" + content +
                                  "<g transform=\"translate(2 0)\">\n" + content);
}

TEST(SvgSymbolsTest, LargeSymbolsAreNotHeldBack) {
    DrawnSvg page;
    const int key = 0;
    EXPECT_EQ(page.Get().BeginSymbol({&key, ORVMathAffine2D::Translation(1, 0)}),
              ORVPrintGenerator::kDrawSymbol);
    for (int i = 0; i < 50'000; ++i) EXPECT_EQ(FillRectangle(page.Get(), i % 90, 0, 1, 1), 1);
    EXPECT_EQ(page.Get().EndSymbol(), 1);
    const std::string text = page.Content();
    EXPECT_EQ(CountOf(text, "<rect "), 50'000U);
    EXPECT_THAT(text, StartsWith("<g transform=\"translate(1 0)\">\n<rect "));
    EXPECT_THAT(text, EndsWith("/>\n</g>\n"));
}

}  // namespace
