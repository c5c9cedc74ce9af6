// SPDX-License-Identifier: Apache-2.0

// Clips, layers, blend modes and masks, compared with the reference implementation.

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <string>

#include "generators/common/generator_status.h"
#include "tests/generators/raster/pixel_page.h"
#include "tests/generators/raster/plain_page.h"
#include "tests/support/named_rows.h"

namespace {

using Blend = ORVPrintBlendMode;
using MaskKind = ORVPrintMask::Kind;

constexpr int kWidth = 44, kHeight = 37;
constexpr ORVMathBox2D kEverything{-1e4, 1e4, -1e4, 1e4};

/// Returns how much of each pixel an outline covers: its ink on a separate page.
PlainPage::Map CoverageOf(const ORVPrintPath& path, const ORVMathAffine2D& toPage = {},
                          bool evenOdd = false) {
    ORVRasterOptions options;
    options.threads = 1;
    PixelPage page(kWidth, kHeight, options);
    ORVPrintFill fill;
    fill.evenOdd = evenOdd;
    EXPECT_EQ(page.Get().DrawShape({path, toPage, &fill, nullptr}), 1);
    page.Finish();
    PlainPage::Map coverage;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) coverage.push_back(page.Ink(x, y) / 255.0);
    return coverage;
}

/// Draws on a page and on the page of the reference implementation.
class BothPages {
public:
    explicit BothPages(const ORVRasterOptions& options = {}) : page_(kWidth, kHeight, options) {}

    void Fill(const ORVPrintPath& path, const ORVPrintColour& colour) {
        ORVPrintFill fill;
        fill.colour = colour;
        EXPECT_EQ(page_.Get().DrawShape({path, {}, &fill, nullptr}), 1);
        plain_.Draw(CoverageOf(path), [&](int, int) { return PlainColourOf(colour); });
    }
    void FillGradient(const ORVPrintPath& path, const ORVPrintGradient& gradient) {
        ORVPrintFill fill;
        fill.gradient = &gradient;
        EXPECT_EQ(page_.Get().DrawShape({path, {}, &fill, nullptr}), 1);
        plain_.Draw(CoverageOf(path), [&](int x, int y) {
            const auto place = PlainPlaceAt(gradient, {x + 0.5, y + 0.5});
            return place ? PlainColourAt(gradient, *place) : PlainColour{};
        });
    }
    void BeginClip(const ORVPrintPath& path, bool evenOdd) {
        EXPECT_EQ(page_.Get().BeginClipPath({path, {}, evenOdd}), 1);
        plain_.BeginClip(CoverageOf(path, {}, evenOdd));
    }
    void BeginBoxClip(const ORVMathBox2D& box) {
        EXPECT_EQ(page_.Get().BeginClip(box), 1);
        plain_.BeginBoxClip(box);
    }
    void EndClip() {
        EXPECT_EQ(page_.Get().EndClipPath(), 1);
        plain_.EndClip();
    }
    void BeginLayer(const ORVPrintLayer& layer) {
        EXPECT_EQ(page_.Get().BeginLayer(layer), 1);
        plain_.BeginLayer(layer);
    }
    void EndLayer() {
        EXPECT_EQ(page_.Get().EndLayer(), 1);
        plain_.EndLayer();
    }
    void BeginMask(const ORVPrintMask& mask) {
        EXPECT_EQ(page_.Get().BeginMask(mask), 1);
        plain_.BeginMask(mask);
    }
    void EndMask() {
        EXPECT_EQ(page_.Get().EndMask(), 1);
        plain_.EndMask();
    }
    /// @param tolerance  per channel, in levels of 8 bits
    void ExpectEqual(double tolerance, const std::string& what) {
        page_.Finish();
        double farthest = 0.0;
        std::string where;
        for (int y = 0; y < kHeight; ++y)
            for (int x = 0; x < kWidth; ++x) {
                const std::array<double, 3> expected = plain_.GetColour(x, y);
                for (std::size_t i = 0; i < 3; ++i) {
                    const double seen = page_.Colour(x, y) >> (16 - 8 * i) & 255;
                    const double off = std::fabs(seen - expected[i] * 255.0);
                    if (!(off > farthest)) continue;
                    farthest = off;
                    where = " at " + std::to_string(x) + ", " + std::to_string(y) + ": " +
                            std::to_string(seen) + " for " + std::to_string(expected[i] * 255.0);
                }
            }
        EXPECT_LE(farthest, tolerance) << what << where;
    }
    PixelPage& Get() { return page_; }

private:
    PixelPage page_;
    PlainPage plain_{kWidth, kHeight};
};

/// Draws random shapes in nested layers, clips and masks.
class RandomDrawing {
public:
    RandomDrawing(unsigned int seed, std::vector<Blend> modes) : random_(seed), modes_(std::move(modes)) {}

    template <class Target>
    void Draw(Target& target, int depth) {
        const int count = 1 + Choice(3);
        for (int i = 0; i < count; ++i) {
            const int what = depth == 0 ? Choice(2) : Choice(6);
            if (what == 0) target.Fill(Shape(), Colour());
            if (what == 1) DrawGradient(target);
            if (what == 2) {
                if (Choice(3) == 0)
                    target.BeginBoxClip(
                        {Between(-5.0, 20.0), Between(20.0, 50.0), Between(-5.0, 15.0), Between(20.0, 40.0)});
                else
                    target.BeginClip(Shape(), Choice(2) == 0);
                Draw(target, depth - 1);
                target.EndClip();
            }
            if (what > 2) DrawLayer(target, depth);
        }
    }

    double Between(double least, double most) {
        return std::uniform_real_distribution<double>(least, most)(random_);
    }
    int Choice(int count) { return std::uniform_int_distribution<int>(0, count - 1)(random_); }
    std::uint8_t Byte() { return static_cast<std::uint8_t>(Choice(256)); }
    ORVPrintColour Colour() {
        return {Byte(), Byte(), Byte(),
                Choice(2) == 0 ? std::uint8_t{255} : static_cast<std::uint8_t>(100 + Choice(156))};
    }
    ORVPrintPath Shape() {
        ORVPrintPath path;
        path.MoveTo(Point());
        const int count = 2 + Choice(4);
        for (int i = 0; i < count; ++i)
            if (Choice(3) == 0)
                path.CubicTo(Point(), Point(), Point());
            else
                path.LineTo(Point());
        path.Close();
        return path;
    }

private:
    ORVMathPoint2D Point() { return {Between(-10.0, 54.0), Between(-10.0, 47.0)}; }
    ORVMathBox2D Box() {
        if (Choice(2) == 0) return kEverything;
        const double x = Between(-10.0, 20.0), y = Between(-10.0, 15.0);
        return {x, x + Between(10.0, 50.0), y, y + Between(10.0, 40.0)};
    }
    template <class Target>
    void DrawGradient(Target& target) {
        const std::array stops{ORVPrintGradientStop{0.0, Colour()}, ORVPrintGradientStop{1.0, Colour()}};
        ORVPrintGradient gradient;
        gradient.kind = static_cast<ORVPrintGradient::Kind>(Choice(2));
        gradient.start = {20.0, 15.0};
        gradient.end = {Between(24.0, 60.0), Between(0.0, 30.0)};
        gradient.endRadius = 100.0;
        gradient.stops = stops;
        target.FillGradient(Shape(), gradient);
    }
    template <class Target>
    void DrawLayer(Target& target, int depth) {
        ORVPrintLayer layer;
        layer.opacity = Choice(2) == 0 ? 1.0 : (1 + Choice(255)) / 255.0;
        layer.blend = modes_[static_cast<std::size_t>(Choice(static_cast<int>(modes_.size())))];
        layer.isIsolated = Choice(2) == 0;
        layer.hasMask = Choice(3) == 0;
        layer.box = Box();
        target.BeginLayer(layer);
        if (layer.hasMask) {
            ORVPrintMask mask;
            mask.kind = static_cast<MaskKind>(Choice(2));
            mask.box = Box();
            target.BeginMask(mask);
            Draw(target, depth - 1);
            target.EndMask();
        }
        Draw(target, depth - 1);
        target.EndLayer();
    }

    std::mt19937 random_;
    const std::vector<Blend> modes_;
};

TEST(RasterLayersTest, DrawingsLookLikeTheSlowPage) {
    for (unsigned int seed = 0; seed < 30; ++seed) {
        BothPages pages;
        RandomDrawing(seed, {Blend::kNormal}).Draw(pages, 3);
        pages.ExpectEqual(4.0, "seed " + std::to_string(seed));
    }
}

TEST(RasterLayersTest, DrawingsWithModesLookLikeTheSlowPage) {
    // The other modes have discontinuities, where rounding errors become large differences.
    const std::vector<Blend> modes{Blend::kNormal,     Blend::kMultiply,  Blend::kScreen,
                                   Blend::kDarken,     Blend::kLighten,   Blend::kOverlay,
                                   Blend::kDifference, Blend::kExclusion, Blend::kHardLight};
    for (unsigned int seed = 100; seed < 140; ++seed) {
        BothPages pages;
        RandomDrawing(seed, modes).Draw(pages, 3);
        pages.ExpectEqual(8.0, "seed " + std::to_string(seed));
    }
}

// ---- Layers -----------------------------------------------------------------------------------------------

ORVPrintLayer LayerOf(double opacity, Blend blend = Blend::kNormal, bool isIsolated = true) {
    ORVPrintLayer layer;
    layer.opacity = opacity;
    layer.blend = blend;
    layer.isIsolated = isIsolated;
    layer.box = kEverything;
    return layer;
}

TEST(RasterLayersTest, AreLaidOverThePageAsOneImage) {
    PixelPage page(30.0, 10.0);
    EXPECT_EQ(page.Get().BeginLayer(LayerOf(0.5)), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 20.0, 10.0, {255, 0, 0}), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 10.0, 0.0, 20.0, 10.0, {0, 0, 255}), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(5, 5), 0xFF7F7FU);
    EXPECT_EQ(page.Colour(15, 5), 0x7F7FFFU);  // no red shines through
    EXPECT_EQ(page.Colour(25, 5), 0x7F7FFFU);
}

struct IsolationCase {
    const char* name;
    bool isIsolated;
    double opacity;
    unsigned int colour;  // cyan multiplied with its backdrop, on yellow paper
};
class RasterIsolationTest : public testing::TestWithParam<IsolationCase> {};
TEST_P(RasterIsolationTest, DecidesWhatBlendModesSee) {
    PixelPage page(10.0, 10.0);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 10.0, 10.0, {255, 255, 0}), 1);
    EXPECT_EQ(page.Get().BeginLayer(LayerOf(GetParam().opacity, Blend::kNormal, GetParam().isIsolated)), 1);
    EXPECT_EQ(page.Get().BeginLayer(LayerOf(1.0, Blend::kMultiply)), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 10.0, 10.0, {0, 255, 255}), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    page.Finish();
    EXPECT_EQ(page.Colour(5, 5), GetParam().colour);
}
INSTANTIATE_TEST_SUITE_P(Raster, RasterIsolationTest,
                         testing::Values(IsolationCase{"Isolated", true, 1.0, 0x00FFFFU},
                                         IsolationCase{"NotIsolated", false, 1.0, 0x00FF00U},
                                         IsolationCase{"IsolatedHalf", true, 128.0 / 255.0, 0x7FFF80U},
                                         IsolationCase{"NotIsolatedHalf", false, 128.0 / 255.0, 0x7FFF00U}),
                         kNameOfRow);

TEST(RasterLayersTest, InGreyHaveTheModesOfTheirColours) {
    ORVRasterOptions options;
    options.colourMode = ORVColourMode::kGrey;
    PixelPage page(10.0, 4.0, options);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 5.0, 4.0, {255, 255, 0}), 1);
    EXPECT_EQ(page.Get().BeginLayer(LayerOf(1.0, Blend::kMultiply)), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 10.0, 4.0, {0, 255, 255}), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    const PixelSink::Pixels& pixels = page.Finish();
    EXPECT_EQ(pixels.page.pixels, RasterPixels::kGrey);
    EXPECT_EQ(pixels.bytes[2], 149);  // the grey of green
    EXPECT_EQ(pixels.bytes[7], 178);  // the grey of cyan
}

TEST(RasterLayersTest, WithoutContentLeaveThePageBlank) {
    PixelPage page(30.0, 10.0);
    EXPECT_EQ(page.Get().BeginLayer(LayerOf(0.5)), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 100.0, 0.0, 20.0, 10.0), 1);
    EXPECT_EQ(page.Get().BeginLayer(LayerOf(1.0, Blend::kHue)), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    EXPECT_EQ(page.Get().BeginLayer(LayerOf(0.0)), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 20.0, 10.0), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    EXPECT_EQ(page.Finish().blankBands, 1);
}

// ---- Masks ------------------------------------------------------------------------------------------------

struct MaskCase {
    const char* name;
    MaskKind kind;
    ORVPrintColour colour;
    double shown;
};
class RasterMaskTest : public testing::TestWithParam<MaskCase> {};
TEST_P(RasterMaskTest, ShowsByItsColour) {
    PixelPage page(30.0, 10.0);
    ORVPrintLayer layer = LayerOf(1.0);
    layer.hasMask = true;
    EXPECT_EQ(page.Get().BeginLayer(layer), 1);
    EXPECT_EQ(page.Get().BeginMask({GetParam().kind, {0.0, 20.0, 0.0, 10.0}}), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 10.0, 0.0, 20.0, 10.0, GetParam().colour), 1);
    EXPECT_EQ(page.Get().EndMask(), 1);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 30.0, 10.0), 1);
    EXPECT_EQ(page.Get().EndLayer(), 1);
    page.Finish();
    EXPECT_EQ(page.Ink(5, 5), 0);  // the mask is empty here
    EXPECT_NEAR(page.Ink(15, 5), GetParam().shown * 255.0, 0.6);
    EXPECT_EQ(page.Ink(25, 5), 0);  // outside the mask's box
}
INSTANTIATE_TEST_SUITE_P(
    Raster, RasterMaskTest,
    testing::Values(MaskCase{"White", MaskKind::kLuminance, {255, 255, 255}, 1.0},
                    MaskCase{"Black", MaskKind::kLuminance, {0, 0, 0}, 0.0},
                    MaskCase{"Red", MaskKind::kLuminance, {255, 0, 0}, 0.2125},
                    MaskCase{"Green", MaskKind::kLuminance, {0, 255, 0}, 0.7154},
                    MaskCase{"Blue", MaskKind::kLuminance, {0, 0, 255}, 0.0721},
                    MaskCase{"HalfWhite", MaskKind::kLuminance, {255, 255, 255, 51}, 0.2},
                    MaskCase{"LinearGrey", MaskKind::kLinearLuminance, {128, 128, 128}, 0.2159},
                    MaskCase{"LinearRed", MaskKind::kLinearLuminance, {255, 0, 0}, 0.2125},
                    MaskCase{"FaintLinearGrey", MaskKind::kLinearLuminance, {188, 188, 188, 51}, 0.1},
                    MaskCase{"OpaqueBlack", MaskKind::kOpacity, {0, 0, 0}, 1.0},
                    MaskCase{"FaintBlack", MaskKind::kOpacity, {0, 0, 0, 51}, 0.2}),
    kNameOfRow);

TEST(RasterMasksTest, WithoutContentHideAll) {
    for (const MaskKind kind : {MaskKind::kLuminance, MaskKind::kOpacity}) {
        PixelPage page(30.0, 10.0);
        ORVPrintLayer layer = LayerOf(1.0);
        layer.hasMask = true;
        EXPECT_EQ(page.Get().BeginLayer(layer), 1);
        EXPECT_EQ(page.Get().BeginMask({kind, kEverything}), 1);
        EXPECT_EQ(page.Get().EndMask(), 1);
        EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 30.0, 10.0), 1);
        EXPECT_EQ(page.Get().EndLayer(), 1);
        page.Finish();
        EXPECT_EQ(page.TotalInk(), 0.0);
    }
}

// ---- Clips ------------------------------------------------------------------------------------------------

TEST(RasterClipPathsTest, NestToAnyDepth) {
    // More clips than are stored separately, each turned a little, with shapes at every depth.
    BothPages pages;
    RandomDrawing random(5, {Blend::kNormal});
    ORVPrintPath path;
    constexpr int kDepth = 9;
    for (int i = 0; i < kDepth; ++i) {
        path.Clear();
        for (int k = 0; k < 5; ++k) {
            const double angle = (k * 2 + 0.3 * i) * 1.2566;
            const ORVMathPoint2D p{22.0 + 24.0 * std::cos(angle), 18.0 + 22.0 * std::sin(angle)};
            k == 0 ? path.MoveTo(p) : path.LineTo(p);
        }
        path.Close();
        pages.BeginClip(path, false);
        pages.Fill(random.Shape(), random.Colour());
    }
    for (int i = 0; i < kDepth; ++i) {
        pages.Fill(random.Shape(), random.Colour());
        pages.EndClip();
    }
    pages.ExpectEqual(4.0, "nested clips");
}

// ---- Bands, threads, limits -------------------------------------------------------------------------------

/// Passes the calls of a random drawing to a generator.
class OnePage {
public:
    explicit OnePage(ORVPrintGenerator& generator) : generator_(generator) {}
    void Fill(const ORVPrintPath& path, const ORVPrintColour& colour) {
        ORVPrintFill fill;
        fill.colour = colour;
        EXPECT_EQ(generator_.DrawShape({path, {}, &fill, nullptr}), 1);
    }
    void FillGradient(const ORVPrintPath& path, const ORVPrintGradient& gradient) {
        ORVPrintFill fill;
        fill.gradient = &gradient;
        ORVPrintStroke stroke;
        stroke.gradient = &gradient;
        EXPECT_EQ(generator_.DrawShape({path, {}, &fill, &stroke}), 1);
    }
    void BeginClip(const ORVPrintPath& path, bool evenOdd) {
        EXPECT_EQ(generator_.BeginClipPath({path, {}, evenOdd}), 1);
    }
    void BeginBoxClip(const ORVMathBox2D& box) { EXPECT_EQ(generator_.BeginClip(box), 1); }
    void EndClip() { EXPECT_EQ(generator_.EndClip(), 1); }
    void BeginLayer(const ORVPrintLayer& layer) { EXPECT_EQ(generator_.BeginLayer(layer), 1); }
    void EndLayer() { EXPECT_EQ(generator_.EndLayer(), 1); }
    void BeginMask(const ORVPrintMask& mask) { EXPECT_EQ(generator_.BeginMask(mask), 1); }
    void EndMask() { EXPECT_EQ(generator_.EndMask(), 1); }

private:
    ORVPrintGenerator& generator_;
};

TEST(RasterLayersTest, BandsAndThreadsDoNotShow) {
    std::vector<Blend> modes;
    for (int i = 0; i < 16; ++i) modes.push_back(static_cast<Blend>(i));
    for (const ORVColourMode mode : {ORVColourMode::kColour, ORVColourMode::kGrey, ORVColourMode::kMono})
        for (unsigned int seed = 200; seed < 215; ++seed) {
            std::vector<std::uint8_t> expected;
            for (const int rows : {kHeight, 1, 5, 16})
                for (const unsigned int threads : {1U, 3U}) {
                    ORVRasterOptions options;
                    options.colourMode = mode;
                    options.bandRows = rows;
                    options.threads = threads;
                    PixelPage page(kWidth, kHeight, options);
                    OnePage target(page.Get());
                    RandomDrawing(seed, modes).Draw(target, 4);
                    const std::vector<std::uint8_t>& bytes = page.Finish().bytes;
                    if (expected.empty()) expected = bytes;
                    EXPECT_EQ(bytes == expected, true)
                        << seed << ": " << rows << " rows, " << threads << " threads";
                }
        }
}

TEST(RasterLayersTest, SoDeepThatFewRowsFitLookTheSame) {
    // The deeper drawing is painted a few rows at a time, because its layers take so much memory.
    const auto draw = [](int depth) {
        PixelPage page(2000.0, 60.0);
        const ORVPrintLayer half = LayerOf(128.0 / 255.0);
        ORVPrintLayer whole = LayerOf(1.0);
        whole.isIsolated = true;
        EXPECT_EQ(page.Get().BeginLayer(half), 1);
        for (int i = 0; i < depth; ++i) {
            EXPECT_EQ(page.Get().BeginLayer(whole), 1);
            EXPECT_EQ(page.Get().BeginLayer(LayerOf(1.0, Blend::kMultiply)), 1);
            EXPECT_EQ(FillRectangle(page.Get(), 3.0, 3.0, 1990.0, 50.0, {255, 255, 255, 0}), 1);
            EXPECT_EQ(page.Get().EndLayer(), 1);
        }
        EXPECT_EQ(FillRectangle(page.Get(), 10.0, 5.5, 1900.0, 40.3, {0, 100, 200}), 1);
        for (int i = 0; i <= depth; ++i) EXPECT_EQ(page.Get().EndLayer(), 1);
        return page.Finish().bytes;
    };
    EXPECT_EQ(draw(0) == draw(200), true);
}

/// Nests layers that cover the page. @return the status of EndPage
int NestLayers(int depth, std::uint64_t limit, double side) {
    ORVRasterOptions options;
    options.paintLimit = limit;
    PixelSink::Pixels pixels;
    ORVRasterGenerator generator(std::make_unique<PixelSink>(pixels), options);
    EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(side, side)), 1);
    for (int i = 0; i < depth; ++i) EXPECT_EQ(generator.BeginLayer(LayerOf(0.5)), 1);
    EXPECT_EQ(FillRectangle(generator, 0.0, 0.0, side, side), 1);
    for (int i = 0; i < depth; ++i) EXPECT_EQ(generator.EndLayer(), 1);
    const int status = generator.EndPage();
    EXPECT_EQ(generator.GetError().empty(), status == 1);
    return status;
}

TEST(RasterLayersTest, CountAsPainting) {
    EXPECT_EQ(NestLayers(5, 0, 200.0), 1);
    EXPECT_EQ(NestLayers(100, 0, 200.0), kTooMuchToPaint);
    EXPECT_EQ(NestLayers(100, 3000 * 200 * 200, 200.0), 1);
    EXPECT_EQ(NestLayers(10'000, 0, 200.0), kTooMuchToPaint);
}

TEST(RasterLayersTest, ThatTakeTooMuchMemoryForARowAreRefused) {
    EXPECT_EQ(NestLayers(20'000, std::uint64_t{1} << 50U, 1000.0), kTooMuchToPaint);
}

}  // namespace
