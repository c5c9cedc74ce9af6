// SPDX-License-Identifier: Apache-2.0

// Layers, masks and outline clips: as other programs draw them, and as written to the file.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "generators/common/generator_status.h"
#include "generators/pdf/pdf_parts.h"
#include "tests/generators/limited_output.h"
#include "tests/generators/pdf/drawn_page.h"
#include "tests/support/named_rows.h"
#include "tests/support/text_search.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using MaskKind = ORVPrintMask::Kind;

constexpr ORVMathBox2D kAll{0.0, 90.0, 0.0, 90.0};
constexpr PaperColour kWhite{255, 255, 255}, kRed{255, 0, 0}, kHalfRed{255, 127, 127};

ORVPrintLayer LayerOf(double opacity = 1.0, ORVPrintBlendMode blend = ORVPrintBlendMode::kNormal) {
    ORVPrintLayer layer;
    layer.opacity = opacity;
    layer.blend = blend;
    layer.box = kAll;
    return layer;
}

/// Draws a layer. @param draw  draws its content
template <class Draw>
void DrawLayer(ORVPrintGenerator& generator, const ORVPrintLayer& layer, Draw draw) {
    EXPECT_EQ(generator.BeginLayer(layer), 1);
    draw();
    EXPECT_EQ(generator.EndLayer(), 1);
}

/// Draws a mask. @param draw  draws its content
template <class Draw>
void DrawMask(ORVPrintGenerator& generator, MaskKind kind, Draw draw, const ORVMathBox2D& box = kAll) {
    EXPECT_EQ(generator.BeginMask({kind, box}), 1);
    draw();
    EXPECT_EQ(generator.EndMask(), 1);
}

TEST(PdfLayersTest, OpacityIsThatOfTheWholeLayer) {
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 30.0, {0, 0, 255}), 1);
        // The graphics state of the page must not affect the layer, nor that of the layer the page.
        EXPECT_EQ(FillRectangle(page, 80.0, 80.0, 10.0, 10.0, {0, 0, 0, 51}), 1);
        DrawLayer(page, LayerOf(0.5), [&] {
            EXPECT_EQ(FillRectangle(page, 10.0, 10.0, 40.0, 60.0, {0, 255, 0}), 1);
            EXPECT_EQ(FillRectangle(page, 20.0, 10.0, 40.0, 60.0, {255, 0, 0}), 1);
        });
        EXPECT_EQ(FillRectangle(page, 80.0, 60.0, 10.0, 10.0, {255, 0, 0}), 1);
    });
    ExpectColours(document, {{40.0, 50.0, kHalfRed},
                             {40.0, 20.0, {127, 0, 127}},
                             {15.0, 50.0, {127, 255, 127}},
                             {85.0, 65.0, kRed}});
    EXPECT_THAT(document.Plain(), HasSubstr("/I true"));
}

struct Blend {
    const char* name;
    ORVPrintBlendMode mode;
    PaperColour expected;  // (200, 60, 100) over (90, 180, 40)
    const char* written;
    int tolerance = 8;  // some readers are inaccurate
};

class PdfBlendTest : public testing::TestWithParam<Blend> {};

TEST_P(PdfBlendTest, ColoursMeetAsTheyShould) {
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 60.0, {90, 180, 40}), 1);
        DrawLayer(page, LayerOf(1.0, GetParam().mode), [&] {
            EXPECT_EQ(FillRectangle(page, 0.0, 30.0, 90.0, 60.0, {200, 60, 100}), 1);
        });
    });
    ExpectColours(
        document,
        {{45.0, 15.0, {90, 180, 40}}, {45.0, 45.0, GetParam().expected}, {45.0, 75.0, {200, 60, 100}}},
        GetParam().tolerance);
    EXPECT_THAT(document.Plain(), HasSubstr(GetParam().written));
}

INSTANTIATE_TEST_SUITE_P(
    All, PdfBlendTest,
    testing::Values(Blend{"Normal", ORVPrintBlendMode::kNormal, {200, 60, 100}, "/Subtype /Form"},
                    Blend{"Multiply", ORVPrintBlendMode::kMultiply, {71, 42, 16}, "/BM /Multiply"},
                    Blend{"Screen", ORVPrintBlendMode::kScreen, {219, 198, 124}, "/BM /Screen"},
                    Blend{"Overlay", ORVPrintBlendMode::kOverlay, {141, 140, 31}, "/BM /Overlay"},
                    Blend{"Darken", ORVPrintBlendMode::kDarken, {90, 60, 40}, "/BM /Darken"},
                    Blend{"Lighten", ORVPrintBlendMode::kLighten, {200, 180, 100}, "/BM /Lighten"},
                    Blend{"ColourDodge", ORVPrintBlendMode::kColourDodge, {255, 235, 66}, "/BM /ColorDodge"},
                    Blend{"ColourBurn", ORVPrintBlendMode::kColourBurn, {45, 0, 0}, "/BM /ColorBurn"},
                    Blend{"HardLight", ORVPrintBlendMode::kHardLight, {184, 85, 31}, "/BM /HardLight"},
                    Blend{"SoftLight", ORVPrintBlendMode::kSoftLight, {125, 152, 33}, "/BM /SoftLight"},
                    Blend{"Difference", ORVPrintBlendMode::kDifference, {110, 120, 60}, "/BM /Difference"},
                    Blend{"Exclusion", ORVPrintBlendMode::kExclusion, {149, 155, 109}, "/BM /Exclusion"},
                    Blend{"Hue", ORVPrintBlendMode::kHue, {231, 91, 131}, "/BM /Hue", 36},
                    Blend{"Saturation", ORVPrintBlendMode::kSaturation, {90, 180, 40}, "/BM /Saturation", 36},
                    Blend{"Colour", ORVPrintBlendMode::kColour, {231, 91, 131}, "/BM /Color\n"},
                    Blend{"Luminosity", ORVPrintBlendMode::kLuminosity, {59, 149, 9}, "/BM /Luminosity"}),
    kNameOfRow);

TEST(PdfLayersTest, BlendingSeesBelowItsLayerUnlessThatIsIsolated) {
    for (const bool isIsolated : {true, false}) {
        DrawnPdf document;
        DrawPage(document, [&](ORVPrintGenerator& page) {
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 45.0, {0, 255, 0}), 1);
            ORVPrintLayer outer = LayerOf();
            outer.isIsolated = isIsolated;
            DrawLayer(page, outer, [&] {
                DrawLayer(page, LayerOf(1.0, ORVPrintBlendMode::kMultiply), [&] {
                    EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 0, 0}), 1);
                });
            });
        });
        ExpectColours(document, {{45.0, 20.0, isIsolated ? kRed : PaperColour{0, 0, 0}}, {45.0, 70.0, kRed}});
    }
}

TEST(PdfLayersTest, NothingShowsOutsideOfTheBoxWhichThePageCuts) {
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        ORVPrintLayer layer = LayerOf(0.5);
        layer.box = {-1e9, 40.0, 50.0, 1e9};
        DrawLayer(page, layer, [&] {
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 0, 0}), 1);
            ORVPrintLayer inner = LayerOf(0.9);
            inner.box = {20.0, 90.0, 0.0, 60.0};
            DrawLayer(page, inner, [&] { EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0), 1); });
        });
    });
    EXPECT_THAT(document.Plain(), HasSubstr("/BBox [\n    0\n    50\n    40\n    90\n  ]"));
    EXPECT_THAT(document.Plain(), HasSubstr("/BBox [\n    20\n    50\n    40\n    60\n  ]"));
    ExpectColours(document, {{10.0, 70.0, kHalfRed}, {45.0, 70.0, kWhite}, {10.0, 45.0, kWhite}});
}

TEST(PdfLayersTest, LayersThatShowNothingAreLeftOut) {
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        DrawLayer(page, LayerOf(0.5), [] {});
        ORVPrintLayer outside = LayerOf(0.5);
        outside.box = {100.0, 200.0, 0.0, 90.0};
        const int key = 0;
        DrawLayer(page, outside, [&] {
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0), 1);
            EXPECT_EQ(WriteText(page, "Nothing", 10.0, 40.0), 1);
            // A symbol must be defined even where it is invisible, because it may be used again later.
            EXPECT_EQ(page.BeginSymbol({&key, {}}), ORVPrintGenerator::kDrawSymbol);
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 20.0, 20.0, {255, 0, 0}), 1);
            EXPECT_EQ(page.EndSymbol(), 1);
        });
        EXPECT_EQ(page.BeginSymbol({&key, {}}), ORVPrintGenerator::kSymbolKnown);
    });
    EXPECT_THAT(document.Plain(), Not(HasSubstr("/Group <<\n        /CS")));
    EXPECT_THAT(document.Plain(), Not(HasSubstr("/I true")));
    EXPECT_THAT(document.Text(), Not(HasSubstr("Nothing")));
    ExpectColours(document, {{10.0, 10.0, kRed}, {45.0, 45.0, kWhite}});
}

TEST(PdfLayersTest, TextInLayersIsFoundAndLinksWork) {
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        ORVPrintGroup link;
        link.linkURL = "http://example.org/inner";
        ORVPrintLayer layer = LayerOf(0.5);
        layer.box = {0.0, 50.0, 0.0, 90.0};
        DrawLayer(page, layer, [&] {
            EXPECT_EQ(page.BeginGroup(link), 1);
            EXPECT_EQ(WriteText(page, "Layered", 0.0, 20.0), 1);
            DrawLayer(page, LayerOf(0.5), [&] { EXPECT_EQ(FillRectangle(page, 40.0, 30.0, 30.0, 20.0), 1); });
            EXPECT_EQ(page.EndGroup(), 1);
        });
        // The area of a link around a layer is that of the layer's content, without its mask.
        link.linkURL = "http://example.org/outer";
        EXPECT_EQ(page.BeginGroup(link), 1);
        ORVPrintLayer masked = LayerOf();
        masked.hasMask = true;
        DrawLayer(page, masked, [&] {
            DrawMask(page, MaskKind::kLuminance, [&] {
                EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 255, 255}), 1);
            });
            EXPECT_EQ(FillRectangle(page, 60.0, 60.0, 20.0, 20.0), 1);
        });
        EXPECT_EQ(page.EndGroup(), 1);
    });
    EXPECT_THAT(document.Text(), HasSubstr("Layered"));
    const std::string plain = document.Plain();
    EXPECT_EQ(CountOf(plain, "/Subtype /Link"), 2U);
    EXPECT_THAT(plain, testing::ContainsRegex("/Rect .\n    0\n    32\n    40\n    6[3-9]"));
    EXPECT_THAT(plain, HasSubstr("/Rect [\n    48\n    8\n    64\n    24\n  ]"));
}

TEST(PdfLayersTest, MasksShowByTheirLightOrTheirOpacity) {
    for (const MaskKind kind : {MaskKind::kLuminance, MaskKind::kOpacity}) {
        DrawnPdf document;
        DrawPage(document, [&](ORVPrintGenerator& page) {
            ORVPrintLayer layer = LayerOf();
            layer.hasMask = true;
            DrawLayer(page, layer, [&] {
                DrawMask(page, kind, [&] {
                    EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 30.0, 90.0, {255, 255, 255}), 1);
                    EXPECT_EQ(FillRectangle(page, 30.0, 0.0, 20.0, 90.0, {255, 255, 255, 127}), 1);
                    EXPECT_EQ(FillRectangle(page, 50.0, 0.0, 20.0, 90.0), 1);
                    EXPECT_EQ(FillRectangle(page, 70.0, 0.0, 10.0, 90.0, {128, 128, 128}), 1);
                });
                EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 60.0, {255, 0, 0}), 1);
            });
            EXPECT_EQ(FillRectangle(page, 0.0, 80.0, 90.0, 10.0, {0, 0, 255}), 1);
        });
        const bool isLight = kind == MaskKind::kLuminance;
        ExpectColours(document, {{15.0, 30.0, kRed},
                                 {40.0, 30.0, kHalfRed},
                                 {60.0, 30.0, isLight ? kWhite : kRed},
                                 {75.0, 30.0, isLight ? kHalfRed : kRed},
                                 {85.0, 30.0, kWhite},
                                 {15.0, 70.0, kWhite},
                                 {85.0, 85.0, {0, 0, 255}}});
    }
}

TEST(PdfLayersTest, MasksEndAtTheirBox) {
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        ORVPrintLayer layer = LayerOf();
        layer.hasMask = true;
        DrawLayer(page, layer, [&] {
            DrawMask(page, MaskKind::kOpacity,
                     [&] { EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0), 1); },
                     {20.0, 60.0, 30.0, 1e9});
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 0, 0}), 1);
        });
    });
    ExpectColours(document,
                  {{40.0, 60.0, kRed}, {10.0, 60.0, kWhite}, {70.0, 60.0, kWhite}, {40.0, 20.0, kWhite}});
}

TEST(PdfLayersTest, MasksWithoutContentShowNothing) {
    for (const MaskKind kind : {MaskKind::kLuminance, MaskKind::kOpacity}) {
        DrawnPdf document;
        DrawPage(document, [&](ORVPrintGenerator& page) {
            ORVPrintLayer layer = LayerOf();
            layer.hasMask = true;
            DrawLayer(page, layer, [&] {
                DrawMask(page, kind, [] {});
                EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0), 1);
            });
        });
        ExpectColours(document, {{45.0, 45.0, kWhite}});
    }
}

TEST(PdfLayersTest, MasksGoWithOpacityAndBlending) {
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 45.0, {0, 255, 0}), 1);
        ORVPrintLayer layer = LayerOf(0.5, ORVPrintBlendMode::kMultiply);
        layer.hasMask = true;
        layer.box = {10.0, 80.0, 10.0, 80.0};
        DrawLayer(page, layer, [&] {
            DrawMask(page, MaskKind::kLuminance, [&] {
                EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 45.0, 90.0, {255, 255, 255}), 1);
                EXPECT_EQ(FillRectangle(page, 45.0, 0.0, 45.0, 90.0, {128, 128, 128}), 1);
            });
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 0, 0}), 1);
        });
    });
    ExpectColours(document, {{20.0, 70.0, kHalfRed},
                             {70.0, 70.0, {255, 191, 191}},
                             {20.0, 20.0, {0, 127, 0}},
                             {70.0, 20.0, {0, 191, 0}}});
    EXPECT_EQ(CountOf(document.Plain(), "/BBox [\n    10\n    10\n    80\n    80\n  ]"), 3U);
}

TEST(PdfLayersTest, MasksOfMasksMultiply) {
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        ORVPrintLayer layer = LayerOf();
        layer.hasMask = true;
        DrawLayer(page, layer, [&] {
            DrawMask(page, MaskKind::kLuminance, [&] {
                DrawLayer(page, layer, [&] {
                    DrawMask(page, MaskKind::kLuminance, [&] {
                        EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 45.0, 90.0, {128, 128, 128}), 1);
                    });
                    EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 45.0, {255, 255, 255}), 1);
                });
            });
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 0, 0}), 1);
        });
    });
    ExpectColours(document, {{20.0, 20.0, kHalfRed}, {70.0, 20.0, kWhite}, {20.0, 70.0, kWhite}});
}

TEST(PdfLayersTest, LayersHoldSymbolsAndGradients) {
    const std::vector<ORVPrintGradientStop> stops{{0.0, {255, 0, 0}}, {1.0, {0, 0, 255, 0}}};
    ORVPrintGradient gradient;
    gradient.end = {40.0, 0.0};
    gradient.stops = stops;
    ORVPrintFill fill;
    fill.gradient = &gradient;
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 40.0, 40.0);
    const int key = 0;
    DrawnPdf document;
    DrawPage(document, [&](ORVPrintGenerator& page) {
        DrawLayer(page, LayerOf(0.5), [&] {
            EXPECT_EQ(page.DrawShape({path, {}, &fill, nullptr}), 1);
            for (const double y : {45.0, 68.0})
                if (page.BeginSymbol({&key, {1.0, 0.0, 0.0, 1.0, 45.0, y}}) ==
                    ORVPrintGenerator::kDrawSymbol) {
                    EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 20.0, 20.0, {255, 0, 0}), 1);
                    EXPECT_EQ(page.EndSymbol(), 1);
                }
        });
    });
    ExpectColours(document, {{20.0, 20.0, {223, 191, 223}}, {50.0, 50.0, kHalfRed}, {50.0, 75.0, kHalfRed}});
}

TEST(PdfLayersTest, LargeLayersComeInPiecesThatLookTheSame) {
    constexpr int kCount = 40'000;
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        DrawLayer(page, LayerOf(0.5), [&] {
            EXPECT_EQ(FillRectangle(page, 50.0, 82.0, 10.0, 8.0, {255, 0, 0}), 1);
            EXPECT_EQ(page.BeginClip({0.0, 80.0, 0.0, 80.0}), 1);
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {0, 0, 255}), 1);
            for (int i = 0; i < kCount; ++i) {
                const double y = i * 1e-3;
                const std::uint8_t shade = static_cast<std::uint8_t>(i);
                ASSERT_EQ(FillRectangle(page, 0.0, y, 40.0, 0.5, {shade, 0, shade, 200}), 1);
                if (i % 1000 == 0) ASSERT_EQ(WriteText(page, "Piece", 10.0, 60.0), 1);
            }
            EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 40.5, {255, 0, 0}), 1);
            EXPECT_EQ(page.EndClip(), 1);
            EXPECT_EQ(FillRectangle(page, 60.0, 82.0, 20.0, 8.0, {255, 0, 0}), 1);
        });
    });
    const std::string plain = document.Plain();
    EXPECT_EQ(CountOf(plain, " re\n"), kCount + 4U);
    EXPECT_GT(CountOf(plain, "/Subtype /Form"), 4U);
    EXPECT_EQ(CountOf(plain, "/S /Transparency"), 2U);  // one for the layer, one for the page
    EXPECT_EQ(CountOf(document.Text(), "Piece"), 1U);   // all are in the same place
    ExpectColours(document, {{20.0, 20.0, kHalfRed},
                             {70.0, 20.0, kHalfRed},
                             {70.0, 60.0, {127, 127, 255}},
                             {85.0, 60.0, kWhite},
                             {55.0, 86.0, kHalfRed},
                             {70.0, 86.0, kHalfRed}});
}

TEST(PdfLayersTest, ManyLayersShareTheirGraphicsStates) {
    constexpr int kCount = 3000;
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        for (int i = 0; i < kCount; ++i)
            DrawLayer(page, LayerOf(i % 2 ? 0.5 : 0.25),
                      [&] { EXPECT_EQ(FillRectangle(page, i * 0.02, 0.0, 1.0, 1.0), 1); });
    });
    EXPECT_EQ(CountOf(document.Plain(), "/ca "), 2U);
    EXPECT_LT(document.Bytes().size(), kCount * 330U);
}

TEST(PdfLayersTest, DeepNestingTakesNoStack) {
    constexpr int kDepth = 100'000;
    ORVMemoryOutput output;
    ORVPdfGenerator generator(output);
    ASSERT_EQ(generator.BeginDocument({"", 1}), 1);
    ASSERT_EQ(generator.BeginPage(PageInfo(90.0, 90.0)), 1);
    for (int i = 0; i < kDepth; ++i) ASSERT_EQ(generator.BeginLayer(LayerOf(0.999)), 1);
    EXPECT_EQ(FillRectangle(generator, 0.0, 0.0, 1.0, 1.0), 1);
    for (int i = 0; i < kDepth / 2; ++i) ASSERT_EQ(generator.EndLayer(), 1);
    EXPECT_EQ(generator.EndPage(), 1);  // ends the other layers
    EXPECT_EQ(generator.EndDocument(), 1);
    EXPECT_GT(output.GetBytes().size(), kDepth * 100U);
}

TEST(PdfLayersTest, WhatDoesNotEndWhatBeganLastIsRefused) {
    DrawnPdf document;
    ORVPrintGenerator& generator = document.Get();
    EXPECT_NE(generator.BeginLayer(LayerOf()), 1);  // no page is open
    EXPECT_NE(generator.BeginClipPath({ORVPrintPath(), {}}), 1);
    document.BeginPage();
    EXPECT_NE(generator.EndLayer(), 1);
    EXPECT_NE(generator.EndMask(), 1);
    EXPECT_NE(generator.BeginMask({MaskKind::kLuminance, kAll}), 1);
    EXPECT_EQ(generator.BeginLayer(LayerOf()), 1);
    EXPECT_NE(generator.BeginMask({MaskKind::kLuminance, kAll}), 1);  // the layer has no mask
    EXPECT_NE(generator.EndClip(), 1);
    EXPECT_NE(generator.EndSymbol(), 1);
    ORVPrintLayer masked = LayerOf();
    masked.hasMask = true;
    EXPECT_EQ(generator.BeginLayer(masked), 1);
    DrawMask(generator, MaskKind::kLuminance, [&] { EXPECT_NE(generator.EndLayer(), 1); });
    EXPECT_NE(generator.BeginMask({MaskKind::kLuminance, kAll}), 1);  // already drawn
    EXPECT_EQ(generator.BeginClip(kAll), 1);
    document.EndPage();
    document.Finish();
}

TEST(PdfLayersTest, PagesThatBreakOffAreSound) {
    DrawnPdf document;
    DrawPage(document, [](ORVPrintGenerator& page) {
        ORVPrintGroup link;
        link.linkURL = "http://example.org/";
        EXPECT_EQ(page.BeginGroup(link), 1);
        EXPECT_EQ(page.BeginClip(kAll), 1);
        ORVPrintLayer masked = LayerOf();
        masked.hasMask = true;
        EXPECT_EQ(page.BeginLayer(masked), 1);
        DrawMask(page, MaskKind::kOpacity, [&] { EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0), 1); });
        EXPECT_EQ(page.BeginClip({0.0, 45.0, 0.0, 90.0}), 1);
        EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 0, 0}), 1);
        EXPECT_EQ(page.BeginLayer(masked), 1);
        EXPECT_EQ(page.BeginMask({MaskKind::kLuminance, kAll}), 1);
        EXPECT_EQ(page.BeginClipPath({RectanglePath(0.0, 0.0, 5.0, 5.0), {}}), 1);
        EXPECT_EQ(FillRectangle(page, 0.0, 0.0, 90.0, 90.0, {255, 255, 255}), 1);
    });
    EXPECT_EQ(CountOf(document.Plain(), "/Subtype /Link"), 1U);
    ExpectColours(document, {{20.0, 45.0, kRed}, {70.0, 45.0, kWhite}});
}

TEST(PdfLayersTest, OutputThatFailsInLayersIsReported) {
    LimitedOutput output(100'000);
    ORVPdfGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(90.0, 90.0)), 1);
    int result = 1;
    for (int i = 0; i < 100'000 && result == 1; ++i) {
        result = generator.BeginLayer(LayerOf(i % 1000 * 0.001));
        if (result == 1) result = FillRectangle(generator, i * 0.001, 0.0, 1.0, 1.0);
        if (result == 1) result = generator.EndLayer();
    }
    EXPECT_EQ(result, kOutputFailed);
    EXPECT_EQ(generator.EndDocument(), kOutputFailed);
}

TEST(PdfGeneratorPowersTest, AllIsSaidNatively) {
    ORVMemoryOutput output;
    EXPECT_EQ(ORVPdfGenerator(output).GetPowers(),
              static_cast<unsigned int>(ORVPrintGenerator::kGradients | ORVPrintGenerator::kClipPaths |
                                        ORVPrintGenerator::kLayers | ORVPrintGenerator::kBlendModes |
                                        ORVPrintGenerator::kMasks | ORVPrintGenerator::kContentLayers |
                                        ORVPrintGenerator::kUnseenText));
}

}  // namespace
