// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/ORVFilterImages.h"

#include <gmock/gmock.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "generators/common/generator_status.h"
#include "tests/generators/drawing_calls.h"
#include "tests/platform/print/recording_generator.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr ORVMathBox2D kEverywhere{-kInfinity, kInfinity, -kInfinity, kInfinity};
constexpr ORVPrintColour kRed{255, 0, 0, 255}, kLime{0, 255, 0, 255};

/// A generator without filters. Records its calls and the images that it receives.
class FilteredPage final : public ORVPrintGenerator {
public:
    struct Image {
        int width, height;
        ORVMathAffine2D toPage;
        std::vector<std::uint8_t> pixels;
    };
    std::vector<Image> images;
    std::vector<std::string> lines;
    bool takesTiles = false;
    unsigned int powers = kGradients | kClipPaths | kLayers | kBlendModes | kMasks;

    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return 1; }
    int BeginPage(const ORVPrintPageInfo& /*info*/) override { return 1; }
    int BeginGroup(const ORVPrintGroup& group) override { return Add("group " + std::string(group.id)); }
    int EndGroup() override { return Add("end group"); }
    int BeginClip(const ORVMathBox2D& /*box*/) override { return Add("clip"); }
    int EndClip() override { return Add("end clip"); }
    unsigned int GetPowers() const override { return powers; }
    int BeginClipPath(const ORVPrintClipPath& /*clip*/) override { return Add("clip path"); }
    int BeginFilter(const ORVPrintFilter& /*filter*/) override { return Add("filter"); }
    int EndFilter() override { return Add("end filter"); }
    int BeginTiles(const ORVPrintTiles& /*tiles*/) override {
        return takesTiles ? Add("tiles") : static_cast<int>(kNoTiles);
    }
    int EndTiles() override { return Add("end tiles"); }
    int DrawShape(const ORVPrintShape& /*shape*/) override { return Add("shape"); }
    int DrawText(const ORVPrintText& text) override {
        return Add(text.fill || text.stroke ? "text" : "unseen " + std::string(text.text));
    }
    int DrawImage(const ORVPrintImage& image) override {
        const auto pixels = image.image.GetPixels();
        images.push_back(
            {image.image.GetWidth(), image.image.GetHeight(), image.toPage, {pixels.begin(), pixels.end()}});
        return Add("image");
    }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

    /// Returns red, green, blue and opacity of the first image at a point; empty outside of the image.
    std::vector<int> At(double x, double y) const {
        if (images.empty()) return {};
        const Image& image = images.front();
        const auto fromPage = image.toPage.Inverse();
        const ORVMathPoint2D p = (*fromPage)({x, y});
        if (!(p.x >= 0.0 && p.x < 1.0 && p.y >= 0.0 && p.y < 1.0)) return {};
        const auto at =
            (static_cast<std::size_t>(p.y * image.height) * static_cast<std::size_t>(image.width) +
             static_cast<std::size_t>(p.x * image.width)) *
            4;
        return {image.pixels[at], image.pixels[at + 1], image.pixels[at + 2], image.pixels[at + 3]};
    }

private:
    int Add(std::string line) {
        lines.push_back(std::move(line));
        return 1;
    }
};

ORVPrintFilterStep Step(ORVFilterOperation operation, std::vector<int> inputs = {ORVPrintFilterStep::kSource},
                        const ORVMathBox2D& subregion = kEverywhere) {
    return {std::move(operation), std::move(inputs), false, subregion};
}

ORVFilterOptions Options(double dotsPerInch = 90.0) {
    ORVFilterOptions options;
    options.dotsPerInch = dotsPerInch;
    options.threads = 1;
    return options;
}

class ORVFilterImagesTest : public testing::Test {
protected:
    void Begin(double dotsPerInch = 90.0) {
        stage_ = std::make_unique<ORVFilterImages>(page_, Options(dotsPerInch));
        ASSERT_EQ(stage_->BeginDocument({}), 1);
        ASSERT_EQ(stage_->BeginPage(PageInfo(100, 100)), 1);
    }
    void BeginFilter(const std::vector<ORVPrintFilterStep>& steps, const ORVMathAffine2D& toPage = {},
                     const ORVMathBox2D& region = kEverywhere, unsigned int inputs = 0) {
        ASSERT_EQ(stage_->BeginFilter({steps, region, toPage, inputs}), 1);
    }
    void Fill(double x, double y, double width, double height, ORVPrintColour colour = kRed) {
        ASSERT_EQ(FillRectangle(*stage_, x, y, width, height, colour), 1);
    }
    void EndFilter() { ASSERT_EQ(stage_->EndFilter(), 1) << stage_->GetFailure().text; }

    FilteredPage page_;
    std::unique_ptr<ORVFilterImages> stage_;
};

TEST_F(ORVFilterImagesTest, OtherContentGoesThroughAsItIs) {
    RecordingGenerator plain, staged;
    plain.SetPowers(0);
    staged.SetPowers(0);
    ORVFilterImages stage(staged, Options());
    EXPECT_EQ(stage.GetPowers(), ORVPrintGenerator::kFilters);
    for (ORVPrintGenerator* to :
         {static_cast<ORVPrintGenerator*>(&plain), static_cast<ORVPrintGenerator*>(&stage)}) {
        ASSERT_EQ(to->BeginDocument({}), 1);
        ASSERT_EQ(to->BeginPage(PageInfo(10, 10)), 1);
        ASSERT_EQ(to->BeginClip({0, 5, 0, 5}), 1);
        ASSERT_EQ(FillRectangle(*to, 1, 1, 2, 2, kRed), 1);
        ASSERT_EQ(to->EndClip(), 1);
        ASSERT_EQ(to->EndPage(), 1);
        ASSERT_EQ(to->EndDocument(), 1);
    }
    EXPECT_EQ(plain.GetLines(), staged.GetLines());
}

TEST_F(ORVFilterImagesTest, ContentBecomesOneImageOfTheDevicesPixels) {
    Begin(180.0);
    BeginFilter({Step(ORVFilterOffset{10, 0})}, {1, 0, 0, 1, 0.25, 0});
    Fill(20, 30, 10, 10);
    Fill(30, 30, 10, 10, kLime);
    EndFilter();
    EXPECT_THAT(page_.lines, ElementsAre("image"));
    EXPECT_THAT(page_.At(35, 35), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(page_.At(45, 35), ElementsAre(0, 255, 0, 255));
    // Aligned to whole pixels of half a unit.
    const ORVMathAffine2D& map = page_.images.front().toPage;
    EXPECT_EQ(map.dx * 2.0, std::floor(map.dx * 2.0));
    EXPECT_EQ(map.m11 * 2.0, page_.images.front().width);
    EXPECT_EQ(map.m12, 0.0);
}

TEST_F(ORVFilterImagesTest, TextInFiltersStaysToBeFoundWhereTheFormatCanSaySo) {
    const auto draw = [&] {
        Begin();
        BeginFilter({Step(ORVFilterOffset{1, 0})});
        ASSERT_EQ(WriteText(*stage_, "seen", 10.0, 50.0), 1);
        BeginFilter({Step(ORVFilterOffset{1, 0})});
        ASSERT_EQ(WriteText(*stage_, "within", 10.0, 80.0), 1);
        EndFilter();
        ORVPrintLayer layer;
        layer.hasMask = true;
        layer.box = {0, 100, 0, 100};
        ASSERT_EQ(stage_->BeginLayer(layer), 1);
        ASSERT_EQ(stage_->BeginMask({ORVPrintMask::Kind::kOpacity, layer.box}), 1);
        ASSERT_EQ(WriteText(*stage_, "mask", 10.0, 20.0), 1);
        ASSERT_EQ(stage_->EndMask(), 1);
        ASSERT_EQ(stage_->EndLayer(), 1);
        EndFilter();
    };
    draw();
    EXPECT_THAT(page_.lines, ElementsAre("image")) << "others get no text";
    page_.lines.clear();
    page_.powers |= ORVPrintGenerator::kUnseenText;
    draw();
    EXPECT_THAT(page_.lines, ElementsAre("image", "unseen seen", "unseen within"));
}

TEST_F(ORVFilterImagesTest, ImagesAreCutToWhatShows) {
    Begin();
    ASSERT_EQ(stage_->BeginClip({40, 60, 40, 60}), 1);
    BeginFilter({Step(ORVFilterFlood{kLime}, {}, {-1e5, 1e5, -1e5, 1e5})}, {}, {-1e5, 1e5, -1e5, 1e5});
    EndFilter();
    ASSERT_EQ(stage_->EndClip(), 1);
    ASSERT_EQ(page_.images.size(), 1U);
    EXPECT_LE(page_.images.front().width, 24);
    EXPECT_THAT(page_.At(41, 41), ElementsAre(0, 255, 0, 255));
}

TEST_F(ORVFilterImagesTest, WhatLiesBesideThePageMayComeIntoIt) {
    Begin();
    BeginFilter({Step(ORVFilterOffset{50, 0})});
    Fill(-40, 10, 20, 20);
    EndFilter();
    EXPECT_THAT(page_.At(20, 20), ElementsAre(255, 0, 0, 255));
}

TEST_F(ORVFilterImagesTest, WhatDoesNotShowTakesNoImage) {
    Begin();
    BeginFilter({Step(ORVFilterOffset{500, 0})});
    Fill(10, 10, 20, 20);
    EndFilter();
    BeginFilter({Step(ORVFilterNothing{}, {})});
    Fill(10, 10, 20, 20);
    EndFilter();
    EXPECT_THAT(page_.lines, IsEmpty());
}

TEST_F(ORVFilterImagesTest, TurnedContentIsFilteredAlongItsOwnAxes) {
    Begin();
    // A quarter turn about the centre of the page: a shift to the right becomes one down.
    BeginFilter({Step(ORVFilterOffset{20, 0})}, {0, -1, 1, 0, 100, 0});
    Fill(40, 40, 10, 10);
    EndFilter();
    EXPECT_THAT(page_.At(45, 65), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(page_.At(45, 45), testing::AnyOf(IsEmpty(), ElementsAre(0, 0, 0, 0)));
}

TEST_F(ORVFilterImagesTest, StepsTakeEachOthersResults) {
    Begin();
    // A shadow: the shifted opacity of the content, coloured, with the content over it.
    BeginFilter({Step(ORVFilterOffset{5, 5}, {ORVPrintFilterStep::kSourceAlpha}),
                 Step(ORVFilterFlood{kLime}, {}, {0, 100, 0, 100}),
                 Step(ORVFilterComposite{ORVFilterComposite::Operator::kIn}, {1, 0}),
                 Step(ORVFilterMerge{}, {2, ORVPrintFilterStep::kSource})});
    Fill(20, 20, 20, 20);
    EndFilter();
    EXPECT_THAT(page_.At(22, 22), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(page_.At(42, 42), ElementsAre(0, 255, 0, 255));
}

TEST_F(ORVFilterImagesTest, SubregionsAndRegionsCut) {
    Begin();
    BeginFilter({Step(ORVFilterOffset{0, 0}, {ORVPrintFilterStep::kSource}, {20, 30, 0, 100})}, {},
                {0, 100, 25, 100});
    Fill(10, 10, 50, 50);
    EndFilter();
    EXPECT_THAT(page_.At(25, 30), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(page_.At(25, 20), testing::AnyOf(IsEmpty(), ElementsAre(0, 0, 0, 0)));
    EXPECT_THAT(page_.At(35, 30), testing::AnyOf(IsEmpty(), ElementsAre(0, 0, 0, 0)));
}

TEST_F(ORVFilterImagesTest, InputsAreDrawnOnTheSamePixels) {
    Begin();
    BeginFilter({Step(ORVFilterInput{0}, {}, {0, 100, 0, 100})}, {}, {0, 100, 0, 100}, 1);
    ASSERT_EQ(stage_->BeginFilterInput(), 1);
    Fill(50, 50, 10, 10, kLime);
    ASSERT_EQ(stage_->EndFilterInput(), 1);
    Fill(10, 10, 10, 10);
    EndFilter();
    EXPECT_THAT(page_.At(55, 55), ElementsAre(0, 255, 0, 255));
    EXPECT_THAT(page_.At(15, 15), ElementsAre(0, 0, 0, 0));
}

// Slopes are measured between pixels, which are closer together at a higher resolution.
TEST_F(ORVFilterImagesTest, LitSurfacesLookAlikeAtAnyResolution) {
    ORVFilterLighting lighting;
    lighting.surfaceScale = 8.0;
    lighting.colour = {255, 255, 255, 255};
    lighting.elevation = 45.0;
    const ORVMathBox2D page{0, 100, 0, 100};
    for (const bool isWithinAnother : {false, true}) {
        SCOPED_TRACE(isWithinAnother);
        std::vector<int> levels;
        for (const double dotsPerInch : {96.0, 288.0}) {
            page_ = {};
            Begin(dotsPerInch);
            if (isWithinAnother) BeginFilter({Step(ORVFilterPass{})});
            BeginFilter({Step(ORVFilterBlur{6.0, 6.0}), Step(lighting, {0}, page)}, {}, page);
            Fill(30, 0, 100, 100);
            EndFilter();
            if (isWithinAnother) EndFilter();
            const std::vector<int> slope = page_.At(30, 50), flat = page_.At(80, 50);
            ASSERT_EQ(slope.size(), 4U);
            EXPECT_LT(slope[0] + 20, flat[0]);
            levels.push_back(slope[0]);
        }
        EXPECT_NEAR(levels[0], levels[1], 5);
    }
}

// Each level draws its whole input and passes it on, which is work even if the filter changes nothing.
TEST_F(ORVFilterImagesTest, PagesWithinPagesOfFiltersAreRefused) {
    constexpr int kLevels = 30;
    stage_ = std::make_unique<ORVFilterImages>(page_, Options());
    ASSERT_EQ(stage_->BeginDocument({}), 1);
    ASSERT_EQ(stage_->BeginPage(PageInfo(2000, 2000)), 1);
    for (int i = 0; i < kLevels; ++i) BeginFilter({Step(ORVFilterPass{})});
    Fill(0, 0, 2000, 2000);
    for (int i = 1; i < kLevels; ++i) EndFilter();
    EXPECT_NE(stage_->EndFilter(), 1);
    EXPECT_THAT(stage_->GetFailure().text, HasSubstr("too much work"));
}

TEST_F(ORVFilterImagesTest, TilesRepeatTheirSubregionWithItsTransparentParts) {
    Begin();
    const ORVMathBox2D tile{0, 20, 0, 10};
    BeginFilter({Step(ORVFilterPass{}, {ORVPrintFilterStep::kSource}, tile), Step(ORVFilterTile{}, {0})});
    Fill(0, 0, 5, 5);
    EndFilter();
    EXPECT_THAT(page_.At(22, 32), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(page_.At(27, 32), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(page_.At(22, 37), ElementsAre(0, 0, 0, 0));
}

TEST_F(ORVFilterImagesTest, FiltersNest) {
    Begin();
    BeginFilter({Step(ORVFilterOffset{10, 0})});
    ORVPrintGroup group;
    group.id = "a";
    ASSERT_EQ(stage_->BeginGroup(group), 1);
    BeginFilter({Step(ORVFilterOffset{0, 20})});
    Fill(10, 10, 10, 10);
    EndFilter();
    ASSERT_EQ(stage_->EndGroup(), 1);
    EndFilter();
    EXPECT_THAT(page_.lines, ElementsAre("group a", "end group", "image"));
    EXPECT_THAT(page_.At(25, 35), ElementsAre(255, 0, 0, 255));
}

TEST_F(ORVFilterImagesTest, LayersAndMasksWorkInFilters) {
    Begin();
    BeginFilter({Step(ORVFilterOffset{10, 0})});
    ORVPrintLayer layer;
    layer.opacity = 0.5;
    layer.hasMask = true;
    layer.box = {0, 100, 0, 100};
    ASSERT_EQ(stage_->BeginLayer(layer), 1);
    ASSERT_EQ(stage_->BeginMask({ORVPrintMask::Kind::kOpacity, {0, 100, 0, 100}}), 1);
    Fill(20, 20, 10, 10);
    ASSERT_EQ(stage_->EndMask(), 1);
    Fill(10, 10, 50, 50, kLime);
    ASSERT_EQ(stage_->EndLayer(), 1);
    EndFilter();
    EXPECT_THAT(page_.At(35, 25), ElementsAre(0, 255, 0, 128));
    EXPECT_THAT(page_.At(45, 45), testing::AnyOf(IsEmpty(), ElementsAre(0, 0, 0, 0)));
}

TEST_F(ORVFilterImagesTest, FormatsWithFiltersGetThoseWithoutInputs) {
    page_.powers |= ORVPrintGenerator::kFilters;
    Begin();
    BeginFilter({Step(ORVFilterOffset{10, 0})});
    Fill(10, 10, 10, 10);
    EndFilter();
    EXPECT_THAT(page_.lines, ElementsAre("filter", "shape", "end filter"));
    page_.lines.clear();
    BeginFilter({Step(ORVFilterInput{0}, {}, {0, 100, 0, 100})}, {}, {0, 100, 0, 100}, 1);
    ASSERT_EQ(stage_->BeginFilterInput(), 1);
    Fill(50, 50, 10, 10, kLime);
    ASSERT_EQ(stage_->EndFilterInput(), 1);
    EndFilter();
    EXPECT_THAT(page_.lines, ElementsAre("image"));
}

TEST_F(ORVFilterImagesTest, TilesAreForFormatsThatRepeatThemButNotWithinFilters) {
    ORVPrintTiles tiles;
    tiles.tile = {0, 10, 0, 10};
    tiles.shown = {0, 100, 0, 100};
    tiles.toPage = ORVMathAffine2D::Scaling(2.0, 2.0);
    Begin();
    EXPECT_EQ(stage_->BeginTiles(tiles), ORVPrintGenerator::kNoTiles);
    page_.takesTiles = true;
    ASSERT_EQ(stage_->BeginTiles(tiles), ORVPrintGenerator::kDrawTile);
    // Filters in a tile have the resolution of the page.
    BeginFilter({Step(ORVFilterOffset{0, 0}, {ORVPrintFilterStep::kSource}, {0, 10, 0, 10})}, {},
                {0, 10, 0, 10});
    EXPECT_EQ(stage_->BeginTiles(tiles), ORVPrintGenerator::kNoTiles);
    Fill(0, 0, 10, 10);
    EndFilter();
    ASSERT_EQ(stage_->EndTiles(), 1);
    EXPECT_THAT(page_.lines, ElementsAre("tiles", "image", "end tiles"));
    EXPECT_EQ(page_.images.at(0).width, 20);
}

TEST_F(ORVFilterImagesTest, TooMuchWorkIsRefused) {
    Begin();
    ORVFilterConvolution giant;
    giant.columns = giant.rows = 900;
    giant.kernel.assign(900 * 900, 1.0);
    giant.targetX = giant.targetY = 450;
    BeginFilter({Step(giant, {ORVPrintFilterStep::kSource}, {0, 100, 0, 100})}, {}, {0, 100, 0, 100});
    Fill(0, 0, 100, 100);
    EXPECT_EQ(stage_->EndFilter(), kDrawingFailed);
    EXPECT_THAT(stage_->GetFailure().text, HasSubstr("too much work"));
}

TEST_F(ORVFilterImagesTest, TooManyPixelsGetALowerResolution) {
    Begin(9000.0);
    BeginFilter({Step(ORVFilterOffset{0, 0})});
    Fill(0, 0, 100, 100);
    EndFilter();
    ASSERT_EQ(page_.images.size(), 1U);
    EXPECT_LT(page_.images.front().width, 9000);
    EXPECT_GT(page_.images.front().width, 2000);
    EXPECT_THAT(page_.At(99, 99), ElementsAre(255, 0, 0, 255));
}

// Resolution falls from that requested to the lowest permitted one in the course of a page, and never below.
TEST_F(ORVFilterImagesTest, ManyFiltersGetALowerResolution) {
    struct Row {
        double least, fullWork;
        int first, last;  // widths of the first and last image, approximately
    };
    for (const Row& row :
         {Row{0.0, 1e6, 1500, 1500}, Row{90.0, 1e12, 1500, 1500}, Row{90.0, 7.5e7, 1500, 300},
          Row{180.0, 7.5e7, 1500, 600}, Row{450.0, 1e6, 1500, 1500}}) {
        page_.images.clear();
        ORVFilterOptions options = Options(450.0);
        options.leastDotsPerInch = row.least;
        options.fullWork = row.fullWork;
        stage_ = std::make_unique<ORVFilterImages>(page_, options);
        ASSERT_EQ(stage_->BeginDocument({}), 1);
        for (unsigned int number = 1; number <= 2; ++number) {
            ASSERT_EQ(stage_->BeginPage(PageInfo(310, 310, number)), 1);
            for (int i = 0; i < 5; ++i) {
                BeginFilter({Step(ORVFilterOffset{0, 0})});
                Fill(0, 0, 300, i == 0 ? 30 : 300);
                EndFilter();
            }
            EXPECT_EQ(stage_->EndPage(), 1);
        }
        ASSERT_EQ(page_.images.size(), 10U);
        const ORVLoweredImages& lowered = stage_->GetLowered();
        EXPECT_EQ(lowered.count > 0, row.last < row.first);
        EXPECT_LE(lowered.count, 8U);  // the first image of a page has full resolution
        if (lowered.count > 0) EXPECT_NEAR(lowered.dotsPerInch, row.least, 1e-9);
        // The resolution is restored for each page.
        for (const std::size_t page : {0U, 5U}) {
            EXPECT_NEAR(page_.images[page].width, row.first, 4) << row.least << " " << row.fullWork;
            EXPECT_NEAR(page_.images[page + 4].width, row.last, 4) << row.least << " " << row.fullWork;
        }
    }
}

}  // namespace
