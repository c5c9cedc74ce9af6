// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/ORVTileImages.h"

#include <gmock/gmock.h>

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "generators/common/generator_status.h"
#include "tests/generators/drawing_calls.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/support/named_rows.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr ORVPrintColour kRed{255, 0, 0, 255}, kLime{0, 255, 0, 255};
constexpr int kDrawTile = ORVPrintGenerator::kDrawTile, kNoTiles = ORVPrintGenerator::kNoTiles,
              kTilesKnown = ORVPrintGenerator::kTilesKnown;

/// A format with pixels, and the patterns that it gets.
class TiledPage final : public ORVPrintGenerator {
public:
    struct Pattern {
        int width = 0, height = 0;
        ORVMathAffine2D toPage;
        std::vector<std::uint8_t> pixels;
        std::vector<ORVMathPoint2D> area;

        /// Red, green, blue and opacity of a pixel.
        std::vector<int> At(int x, int y) const {
            const auto at = static_cast<std::size_t>(y * width + x) * 4;
            return {pixels[at], pixels[at + 1], pixels[at + 2], pixels[at + 3]};
        }
    };
    std::vector<Pattern> patterns;
    std::vector<std::string> lines;
    bool fails = false;

    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return 1; }
    int BeginPage(const ORVPrintPageInfo& /*info*/) override { return 1; }
    int BeginGroup(const ORVPrintGroup& /*group*/) override { return Add("group"); }
    int EndGroup() override { return Add("end group"); }
    int BeginClip(const ORVMathBox2D& /*box*/) override { return Add("clip"); }
    int EndClip() override { return Add("end clip"); }
    unsigned int GetPowers() const override {
        return kGradients | kClipPaths | kLayers | kBlendModes | kMasks | kFilters;
    }
    int BeginTiles(const ORVPrintTiles& /*tiles*/) override { return Add("tiles"); }
    int EndTiles() override { return Add("end tiles"); }
    int DrawShape(const ORVPrintShape& shape) override {
        if (!shape.fill || !shape.fill->pattern) return Add("shape");
        const ORVPixelImage& image = *shape.fill->pattern;
        const auto pixels = image.GetPixels();
        patterns.push_back({image.GetWidth(),
                            image.GetHeight(),
                            shape.fill->patternToPage,
                            {pixels.begin(), pixels.end()},
                            {shape.path.points.begin(), shape.path.points.end()}});
        return Add("pattern");
    }
    int DrawText(const ORVPrintText& /*text*/) override { return Add("text"); }
    int DrawImage(const ORVPrintImage& /*image*/) override { return Add("image"); }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

private:
    int Add(std::string line) {
        lines.push_back(std::move(line));
        return fails ? kDrawingFailed : 1;
    }
};

ORVPrintTiles Tiles(double width, double height, const ORVMathAffine2D& toPage = {}, std::uint64_t key = 1) {
    ORVPrintTiles tiles;
    tiles.tile = {0.0, width, 0.0, height};
    tiles.xStep = width;
    tiles.yStep = height;
    tiles.toPage = toPage;
    tiles.shown = {10.0, 90.0, 20.0, 80.0};
    tiles.isPlain = false;
    tiles.key = key;
    return tiles;
}

class ORVTileImagesTest : public testing::Test {
protected:
    void SetUp() override { Begin(); }
    void Begin(double dotsPerInch = 90.0, double mostTiles = 0.0) {
        ORVFilterOptions options;
        options.dotsPerInch = dotsPerInch;
        options.threads = 1;
        stage_ = std::make_unique<ORVTileImages>(page_, options, nullptr, mostTiles);
        ASSERT_EQ(stage_->BeginDocument({}), 1);
        ASSERT_EQ(stage_->BeginPage(PageInfo(100, 100)), 1);
    }
    void Fill(double x, double y, double width, double height, ORVPrintColour colour = kRed) {
        ASSERT_EQ(FillRectangle(*stage_, x, y, width, height, colour), 1);
    }

    TiledPage page_;
    std::unique_ptr<ORVTileImages> stage_;
};

TEST_F(ORVTileImagesTest, OtherContentGoesThroughAsItIs) {
    RecordingGenerator plain, staged;
    ORVTileImages stage(staged, {});
    EXPECT_EQ(stage.GetPowers(), staged.GetPowers());
    const ORVPrintPath path = RectanglePath(1, 2, 3, 4);
    const std::vector<ORVPrintFilterStep> steps{{ORVFilterOffset{5.0, 0.0}, {}, false, {}}};
    ORVPrintGroup group;
    group.id = "g";
    ORVPrintLayer layer;
    layer.opacity = 0.5;
    layer.hasMask = true;
    for (ORVPrintGenerator* to :
         {static_cast<ORVPrintGenerator*>(&plain), static_cast<ORVPrintGenerator*>(&stage)}) {
        ASSERT_EQ(to->BeginDocument({"title", 1}), 1);
        ASSERT_EQ(to->BeginPage(PageInfo(10, 10)), 1);
        ASSERT_EQ(to->BeginGroup(group), 1);
        ASSERT_EQ(to->BeginClip({0, 5, 0, 5}), 1);
        ASSERT_EQ(to->BeginClipPath({path, {}}), 1);
        ASSERT_EQ(to->BeginLayer(layer), 1);
        ASSERT_EQ(to->BeginMask({}), 1);
        ASSERT_EQ(FillRectangle(*to, 0, 0, 1, 1, kLime), 1);
        ASSERT_EQ(to->EndMask(), 1);
        ASSERT_EQ(to->BeginFilter({steps, {0, 9, 0, 9}, {}, 1}), 1);
        ASSERT_EQ(to->BeginFilterInput(), 1);
        ASSERT_EQ(to->EndFilterInput(), 1);
        ASSERT_EQ(FillRectangle(*to, 1, 1, 2, 2, kRed), 1);
        ASSERT_EQ(to->EndFilter(), 1);
        ASSERT_EQ(to->EndLayer(), 1);
        ASSERT_EQ(to->EndClipPath(), 1);
        ASSERT_EQ(to->EndClip(), 1);
        ASSERT_EQ(to->EndGroup(), 1);
        ASSERT_EQ(to->EndPage(), 1);
        ASSERT_EQ(to->EndDocument(), 1);
    }
    EXPECT_EQ(plain.GetLines(), staged.GetLines());
    EXPECT_GT(staged.GetLines().size(), 15U);
}

TEST_F(ORVTileImagesTest, PlainTilesArePassedOnExceptWithinTiles) {
    ORVPrintTiles tiles = Tiles(10, 10);
    tiles.isPlain = true;
    EXPECT_EQ(stage_->BeginTiles(tiles), kDrawTile);
    Fill(0, 0, 1, 1);
    EXPECT_EQ(stage_->EndTiles(), 1);
    EXPECT_THAT(page_.lines, ElementsAre("tiles", "shape", "end tiles"));
    ASSERT_EQ(stage_->BeginTiles(Tiles(20, 20)), kDrawTile);
    EXPECT_EQ(stage_->BeginTiles(tiles), kNoTiles);
    EXPECT_EQ(page_.lines.size(), 3U);
}

TEST_F(ORVTileImagesTest, ATileFillsTheAreaAsAnImage) {
    ASSERT_EQ(stage_->BeginTiles(Tiles(10, 5, ORVMathAffine2D::Translation(3, 4))), kDrawTile);
    Fill(0, 0, 4, 5);
    Fill(9, -5, 50, 6, kLime);  // the tile clips it
    EXPECT_THAT(page_.lines, IsEmpty());
    ASSERT_EQ(stage_->EndTiles(), 1) << stage_->GetFailure().text;
    EXPECT_THAT(page_.lines, ElementsAre("pattern"));
    const TiledPage::Pattern& pattern = page_.patterns.at(0);
    EXPECT_EQ(pattern.width, 10);
    EXPECT_EQ(pattern.height, 5);
    EXPECT_EQ(pattern.toPage, ORVMathAffine2D::Translation(3, 4));
    EXPECT_THAT(pattern.At(3, 4), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(pattern.At(4, 4), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(pattern.At(9, 0), ElementsAre(0, 255, 0, 255));
    EXPECT_THAT(pattern.At(9, 1), ElementsAre(0, 0, 0, 0));
    // More than what is shown: the clip around it ends it.
    ORVMathBox2D area;
    for (const ORVMathPoint2D& point : pattern.area) area.Add(point);
    EXPECT_EQ(area.xMin, 8.0);
    EXPECT_EQ(area.yMax, 82.0);
}

struct SizeCase {
    const char* name;
    double width, height;
    ORVMathAffine2D toPage;
    double dotsPerInch;
    int pixelWidth, pixelHeight;
};
class TileSizeTest : public ORVTileImagesTest, public testing::WithParamInterface<SizeCase> {};
TEST_P(TileSizeTest, IsAWholeNumberOfPixels) {
    const SizeCase& row = GetParam();
    Begin(row.dotsPerInch);
    ASSERT_EQ(stage_->BeginTiles(Tiles(row.width, row.height, row.toPage)), kDrawTile);
    Fill(0, 0, row.width, row.height);
    ASSERT_EQ(stage_->EndTiles(), 1);
    const TiledPage::Pattern& pattern = page_.patterns.at(0);
    EXPECT_EQ(pattern.width, row.pixelWidth);
    EXPECT_EQ(pattern.height, row.pixelHeight);
    // The border pixels are covered as the others.
    EXPECT_THAT(pattern.At(0, 0), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(pattern.At(row.pixelWidth - 1, row.pixelHeight - 1), ElementsAre(255, 0, 0, 255));
    // One tile is one image.
    const ORVMathPoint2D end = pattern.toPage({static_cast<double>(row.pixelWidth), 0.0});
    const ORVMathPoint2D corner = row.toPage({row.width, 0.0});
    EXPECT_NEAR(end.x, corner.x, 1e-9);
    EXPECT_NEAR(end.y, corner.y, 1e-9);
}
INSTANTIATE_TEST_SUITE_P(
    Tiles, TileSizeTest,
    testing::Values(SizeCase{"Whole", 8, 6, {}, 90, 8, 6}, SizeCase{"NearlyWhole", 8.1, 5.9, {}, 90, 8, 6},
                    SizeCase{"Fractions", 7.3, 6.2, {}, 90, 15, 13},
                    SizeCase{"Large", 32.5, 31.4, {}, 90, 33, 31},
                    SizeCase{"Small", 0.25, 0.25, {}, 90, 1, 1}, SizeCase{"Finer", 8, 6, {}, 180, 16, 12},
                    SizeCase{"Enlarged", 8, 6, ORVMathAffine2D::Scaling(2, 3), 90, 16, 18},
                    SizeCase{"Turned", 8, 6, {0.0, 2.0, -1.0, 0.0, 0.0, 0.0}, 90, 8, 12}),
    kNameOfRow);

TEST_F(ORVTileImagesTest, ImagesAreAsFineAsThePageIsOnTheDevice) {
    double scale = 1.0;
    ORVFilterOptions options;
    options.dotsPerInch = 90.0;
    stage_ = std::make_unique<ORVTileImages>(page_, options, [&] { return scale; });
    for (const int page : {1, 2}) {
        scale = page * 1.5;
        ASSERT_EQ(stage_->BeginPage(PageInfo(100, 100)), 1);
        ASSERT_EQ(stage_->BeginTiles(Tiles(10, 10)), kDrawTile);
        Fill(0, 0, 5, 5);
        ASSERT_EQ(stage_->EndTiles(), 1);
        EXPECT_EQ(page_.patterns.back().width, 15 * page);
    }
}

TEST_F(ORVTileImagesTest, KnownTilesAreNotDrawnAgain) {
    ASSERT_EQ(stage_->BeginTiles(Tiles(10, 10)), kDrawTile);
    Fill(0, 0, 5, 5);
    ASSERT_EQ(stage_->EndTiles(), 1);
    EXPECT_EQ(stage_->BeginTiles(Tiles(10, 10, ORVMathAffine2D::Translation(1, 0))), kTilesKnown);
    ASSERT_EQ(page_.patterns.size(), 2U);
    EXPECT_EQ(page_.patterns[1].pixels, page_.patterns[0].pixels);
    EXPECT_EQ(page_.patterns[1].toPage.dx, 1.0);
    // Of another size, with another key, on another page.
    EXPECT_EQ(stage_->BeginTiles(Tiles(10, 10, ORVMathAffine2D::Scaling(2, 2))), kDrawTile);
    ASSERT_EQ(stage_->EndTiles(), 1);
    EXPECT_EQ(stage_->BeginTiles(Tiles(10, 10, {}, 2)), kDrawTile);
    ASSERT_EQ(stage_->EndTiles(), 1);
    ASSERT_EQ(stage_->EndPage(), 1);
    ASSERT_EQ(stage_->BeginPage(PageInfo(100, 100)), 1);
    EXPECT_EQ(stage_->BeginTiles(Tiles(10, 10)), kDrawTile);
}

TEST_F(ORVTileImagesTest, TilesWithinTilesAreImagesInThem) {
    ASSERT_EQ(stage_->BeginTiles(Tiles(20, 20)), kDrawTile);
    ASSERT_EQ(stage_->BeginTiles(Tiles(2, 2, ORVMathAffine2D::Scaling(2, 2), 2)), kDrawTile);
    Fill(0, 0, 1, 2, kLime);
    ASSERT_EQ(stage_->EndTiles(), 1);
    ASSERT_EQ(stage_->EndTiles(), 1);
    EXPECT_THAT(page_.lines, ElementsAre("pattern"));
    const TiledPage::Pattern& pattern = page_.patterns.at(0);
    EXPECT_EQ(pattern.width, 20);
    EXPECT_THAT(pattern.At(13, 19), ElementsAre(0, 255, 0, 255));
    EXPECT_THAT(pattern.At(14, 19), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(pattern.At(16, 19), ElementsAre(0, 255, 0, 255));
}

TEST_F(ORVTileImagesTest, FormatsWithoutPixelsGetImagesOfTilesThatAreRepeatedVeryOften) {
    // 8 times 6 tiles are shown.
    Begin(90.0, 48.0);
    EXPECT_EQ(stage_->BeginTiles(Tiles(10, 10)), kNoTiles);
    EXPECT_THAT(page_.lines, IsEmpty());
    ASSERT_EQ(stage_->BeginTiles(Tiles(10, 9.9)), kDrawTile);
    Fill(0, 0, 5, 5);
    ASSERT_EQ(stage_->EndTiles(), 1);
    EXPECT_THAT(page_.lines, ElementsAre("pattern"));
    // Within a tile, all are images.
    ASSERT_EQ(stage_->BeginTiles(Tiles(1, 1)), kDrawTile);
    EXPECT_EQ(stage_->BeginTiles(Tiles(10, 10, {}, 2)), kDrawTile);
}

TEST_F(ORVTileImagesTest, FormatsWithoutPixelsGetImagesOfTilesThatReturnOftenOnAPage) {
    Begin(90.0, 48.0);
    for (int i = 0; i < 2; ++i) EXPECT_EQ(stage_->BeginTiles(Tiles(10, 10)), kNoTiles);
    EXPECT_EQ(stage_->BeginTiles(Tiles(10, 10, {}, 2)), kNoTiles);
    ASSERT_EQ(stage_->BeginTiles(Tiles(10, 10)), kDrawTile);
    Fill(0, 0, 5, 5);
    ASSERT_EQ(stage_->EndTiles(), 1);
    EXPECT_EQ(stage_->BeginTiles(Tiles(10, 10)), kTilesKnown);
    ASSERT_EQ(stage_->EndPage(), 1);
    ASSERT_EQ(stage_->BeginPage(PageInfo(100, 100)), 1);
    EXPECT_EQ(stage_->BeginTiles(Tiles(10, 10)), kNoTiles);
}

TEST_F(ORVTileImagesTest, HeavyTilesAreImagesInAllFormats) {
    Begin(90.0, 48.0);
    ORVPrintTiles tiles = Tiles(10, 10);
    tiles.isHeavy = true;
    ASSERT_EQ(stage_->BeginTiles(tiles), kDrawTile);
    Fill(0, 0, 5, 5);
    ASSERT_EQ(stage_->EndTiles(), 1);
    EXPECT_THAT(page_.lines, ElementsAre("pattern"));
}

TEST_F(ORVTileImagesTest, TransparentTilesShowNothing) {
    ASSERT_EQ(stage_->BeginTiles(Tiles(10, 10)), kDrawTile);
    ASSERT_EQ(stage_->EndTiles(), 1);
    EXPECT_THAT(page_.lines, IsEmpty());
}

TEST_F(ORVTileImagesTest, FiltersInTilesAreOfTheirResolution) {
    ASSERT_EQ(stage_->BeginTiles(Tiles(20, 20)), kDrawTile);
    const std::vector<ORVPrintFilterStep> steps{
        {ORVFilterOffset{5.0, 0.0}, {ORVPrintFilterStep::kSource}, false, {-100.0, 100.0, -100.0, 100.0}}};
    ASSERT_EQ(stage_->BeginFilter({steps, {-100.0, 100.0, -100.0, 100.0}, {}, 0}), 1);
    Fill(0, 0, 5, 20);
    ASSERT_EQ(stage_->EndFilter(), 1);
    ASSERT_EQ(stage_->EndTiles(), 1);
    EXPECT_THAT(page_.patterns.at(0).At(4, 10), ElementsAre(0, 0, 0, 0));
    EXPECT_THAT(page_.patterns.at(0).At(5, 10), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(page_.patterns.at(0).At(9, 10), ElementsAre(255, 0, 0, 255));
    EXPECT_THAT(page_.patterns.at(0).At(10, 10), ElementsAre(0, 0, 0, 0));
}

TEST_F(ORVTileImagesTest, LargeTilesAreDrawnOneByOne) {
    EXPECT_EQ(stage_->BeginTiles(Tiles(2000, 2000)), kDrawTile);
    EXPECT_EQ(stage_->EndTiles(), 1);
    EXPECT_EQ(stage_->BeginTiles(Tiles(2001, 2000)), kNoTiles);
    EXPECT_EQ(stage_->BeginTiles(Tiles(1e12, 1)), kNoTiles);
    EXPECT_EQ(stage_->BeginTiles(Tiles(std::nan(""), 1)), kNoTiles);
}

TEST_F(ORVTileImagesTest, ImagesOfAPageAreLimited) {
    // Seven images of four million pixels are more than twenty-four million.
    for (std::uint64_t key = 1; key <= 7; ++key) {
        const int answer = stage_->BeginTiles(Tiles(2000, 2000, {}, key));
        EXPECT_EQ(answer, key <= 6 ? kDrawTile : kNoTiles) << key;
        if (answer != kDrawTile) continue;
        Fill(0, 0, 1, 1);
        ASSERT_EQ(stage_->EndTiles(), 1);
    }
    ASSERT_EQ(stage_->EndPage(), 1);
    ASSERT_EQ(stage_->BeginPage(PageInfo(100, 100)), 1);
    EXPECT_EQ(stage_->BeginTiles(Tiles(2000, 2000)), kDrawTile);
}

TEST_F(ORVTileImagesTest, FailuresOfTheTargetArePassedOn) {
    ASSERT_EQ(stage_->BeginTiles(Tiles(10, 10)), kDrawTile);
    Fill(0, 0, 5, 5);
    page_.fails = true;
    EXPECT_EQ(stage_->EndTiles(), kDrawingFailed);
    EXPECT_EQ(stage_->EndTiles(), kDrawingFailed);  // none is open
}

}  // namespace
