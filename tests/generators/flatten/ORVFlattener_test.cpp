// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/ORVFlattener.h"

#include <gmock/gmock.h>

#include <array>
#include <string>
#include <vector>

#include "generators/common/generator_status.h"
#include "tests/generators/drawing_calls.h"
#include "tests/platform/print/recording_generator.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr unsigned int kVectorsOnly = ORVPrintGenerator::kGradients | ORVPrintGenerator::kClipPaths;

/// A generator without layers. Records its calls and the images that it receives.
class ImagePage final : public ORVPrintGenerator {
public:
    struct Image {
        int width, height;
        ORVMathAffine2D toPage;
        std::vector<std::uint8_t> pixels;
    };
    std::vector<Image> images;
    std::vector<std::string> lines;

    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return 1; }
    int BeginPage(const ORVPrintPageInfo& /*info*/) override { return 1; }
    int BeginGroup(const ORVPrintGroup& group) override { return Add("group " + std::string(group.id)); }
    int EndGroup() override { return Add("end group"); }
    int BeginClip(const ORVMathBox2D& /*box*/) override { return Add("clip"); }
    int EndClip() override { return Add("end clip"); }
    unsigned int GetPowers() const override { return kVectorsOnly; }
    int BeginClipPath(const ORVPrintClipPath& /*clip*/) override { return Add("clip path"); }
    int EndClipPath() override { return Add("end clip path"); }
    int BeginLayer(const ORVPrintLayer& /*layer*/) override { return Add("layer"); }
    int EndLayer() override { return Add("end layer"); }
    int DrawShape(const ORVPrintShape& shape) override {
        return Add(shape.fill ? shape.stroke ? "shape" : "fill" : "stroke");
    }
    int DrawText(const ORVPrintText& text) override { return Add("text " + std::string(text.text)); }
    int DrawImage(const ORVPrintImage& image) override {
        const auto pixels = image.image.GetPixels();
        images.push_back(
            {image.image.GetWidth(), image.image.GetHeight(), image.toPage, {pixels.begin(), pixels.end()}});
        return Add("image");
    }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

    /// Returns the colour of the topmost image at a point of the page; -1 for each channel if there is none.
    std::array<int, 3> At(double x, double y) const {
        for (auto image = images.rbegin(); image != images.rend(); ++image) {
            const double column = (x - image->toPage.dx) / image->toPage.m11 * image->width;
            const double row = (y - image->toPage.dy) / image->toPage.m22 * image->height;
            if (!(column >= 0.0 && column < image->width && row >= 0.0 && row < image->height)) continue;
            const auto at = (static_cast<std::size_t>(row) * static_cast<std::size_t>(image->width) +
                             static_cast<std::size_t>(column)) *
                            4;
            EXPECT_EQ(image->pixels[at + 3], 255);
            return {image->pixels[at], image->pixels[at + 1], image->pixels[at + 2]};
        }
        return {-1, -1, -1};
    }

private:
    int Add(std::string line) {
        lines.push_back(std::move(line));
        return 1;
    }
};

ORVFlattenOptions Options(double dotsPerInch = 90.0) {
    ORVFlattenOptions options;
    options.dotsPerInch = dotsPerInch;
    options.threads = 1;
    return options;
}

class ORVFlattenerTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(flat_.BeginDocument({}), 1);
        ASSERT_EQ(flat_.BeginPage(PageInfo(100, 100)), 1);
    }
    void Fill(double x, double y, double width, double height, ORVPrintColour colour = {}) {
        ASSERT_EQ(FillRectangle(flat_, x, y, width, height, colour), 1);
    }
    void BeginLayer(double opacity, const ORVMathBox2D& box, ORVPrintBlendMode blend = {}) {
        ORVPrintLayer layer;
        layer.opacity = opacity;
        layer.blend = blend;
        layer.box = box;
        ASSERT_EQ(flat_.BeginLayer(layer), 1);
    }
    void EndPage() { ASSERT_EQ(flat_.EndPage(), 1) << flat_.GetError(); }

    ImagePage page_;
    ORVFlattener flat_{page_, Options()};
};

constexpr ORVPrintColour kRed{255, 0, 0, 255}, kBlue{0, 0, 255, 255}, kHalfRed{255, 0, 0, 128};

void ExpectColour(const std::array<int, 3>& actual, int red, int green, int blue) {
    EXPECT_NEAR(actual[0], red, 2);
    EXPECT_NEAR(actual[1], green, 2);
    EXPECT_NEAR(actual[2], blue, 2);
}

TEST_F(ORVFlattenerTest, OpaqueContentGoesThroughAsItIs) {
    RecordingGenerator direct, target;
    target.SetPowers(kVectorsOnly);
    ORVFlattener flat(target, Options());
    for (ORVPrintGenerator* generator : std::initializer_list<ORVPrintGenerator*>{&direct, &flat}) {
        ASSERT_EQ(generator->BeginDocument({"t", 1}), 1);
        ASSERT_EQ(generator->BeginPage(PageInfo(100, 100)), 1);
        ORVPrintGroup group;
        group.id = "a";
        group.linkURL = "http://x/";
        ASSERT_EQ(generator->BeginGroup(group), 1);
        ASSERT_EQ(generator->BeginClip(BoxOf(1, 1, 50, 50)), 1);
        const ORVPrintPath path = RectanglePath(1, 2, 3, 4);
        ASSERT_EQ(generator->BeginClipPath({path, {}, true}), 1);
        const std::array<ORVPrintGradientStop, 2> stops{{{0.0, kRed}, {1.0, kBlue}}};
        const ORVPrintGradient gradient = Gradient(stops);
        ORVPrintFill fill;
        fill.gradient = &gradient;
        ORVPrintStroke stroke;
        ASSERT_EQ(generator->DrawShape({path, {}, &fill, &stroke, "id"}), 1);
        ASSERT_EQ(WriteText(*generator, "word", 5, 5), 1);
        const auto image = PlainImage(2, 2, kHalfRed);
        ASSERT_EQ(generator->DrawImage({*image, {9, 0, 0, 9, 1, 1}}), 1);
        ASSERT_EQ(generator->EndClipPath(), 1);
        ASSERT_EQ(generator->EndClip(), 1);
        ASSERT_EQ(generator->EndGroup(), 1);
        ASSERT_EQ(generator->EndPage(), 1);
        ASSERT_EQ(generator->EndDocument(), 1);
    }
    EXPECT_EQ(target.GetText(), direct.GetText());
}

TEST_F(ORVFlattenerTest, IsNeededWhereSomethingIsMissing) {
    RecordingGenerator target;
    EXPECT_FALSE(ORVFlattener::IsNeededBefore(target));
    target.SetPowers(target.GetPowers() - ORVPrintGenerator::kMasks);
    EXPECT_TRUE(ORVFlattener::IsNeededBefore(target));
    // Filters are converted to images by an earlier stage.
    EXPECT_EQ(flat_.GetPowers(), kAllPowers & ~static_cast<unsigned int>(ORVPrintGenerator::kFilters));
}

TEST_F(ORVFlattenerTest, TransparentPaintsBecomeOpaqueImagesOfTheirPart) {
    Fill(0, 0, 50, 100, kBlue);
    Fill(40, 40, 20, 10, kHalfRed);
    Fill(45, 42, 2, 2, kRed);
    EndPage();
    EXPECT_THAT(page_.lines, ElementsAre("fill", "image", "fill"));
    EXPECT_EQ(page_.images[0].width, 20);
    EXPECT_EQ(page_.images[0].height, 10);
    EXPECT_EQ(page_.images[0].toPage.dx, 40.0);
    EXPECT_EQ(page_.images[0].toPage.m11, 20.0);
    ExpectColour(page_.At(45, 45), 128, 0, 127);
    ExpectColour(page_.At(55, 45), 255, 127, 127);
}

TEST_F(ORVFlattenerTest, ImagesHaveTheirResolutionAndWholePixels) {
    ORVFlattener flat(page_, Options(135.0));
    ASSERT_EQ(flat.BeginDocument({}), 1);
    ASSERT_EQ(flat.BeginPage(PageInfo(100, 100)), 1);
    ASSERT_EQ(FillRectangle(flat, 10.5, 20, 10, 10, kHalfRed), 1);
    ASSERT_EQ(flat.EndPage(), 1);
    ASSERT_EQ(page_.images.size(), 1U);
    EXPECT_EQ(page_.images[0].width, 16);  // from 15.75 to 30.75
    EXPECT_EQ(page_.images[0].height, 15);
    EXPECT_EQ(page_.images[0].toPage.dx, 10.0);
    EXPECT_NEAR(page_.images[0].toPage.m11, 16 / 1.5, 1e-12);
    ExpectColour(page_.At(15, 25), 255, 127, 127);
}

TEST_F(ORVFlattenerTest, WhatComesInARowIsOneImageAndWhatLiesBesideItDoesNotInterrupt) {
    Fill(10, 10, 10, 10, kHalfRed);
    Fill(80, 80, 10, 10, kBlue);
    Fill(15, 10, 10, 10, kHalfRed);
    Fill(12, 12, 1, 1, kBlue);
    Fill(10, 10, 10, 10, kHalfRed);
    EndPage();
    EXPECT_THAT(page_.lines, ElementsAre("fill", "image", "fill", "image"));
    EXPECT_EQ(page_.images[0].width, 15);
    ExpectColour(page_.At(12.5, 12.5), 128, 0, 127);
    ExpectColour(page_.At(18, 18), 255, 32, 32);  // three half-transparent layers
}

TEST_F(ORVFlattenerTest, AnOpaqueOutlineOfATransparentShapeStaysOne) {
    const ORVPrintPath path = RectanglePath(10, 10, 20, 20);
    ORVPrintFill fill;
    fill.colour = kHalfRed;
    ORVPrintStroke stroke;
    ASSERT_EQ(flat_.DrawShape({path, {}, &fill, &stroke}), 1);
    fill.colour = kRed;
    stroke.colour = kHalfRed;
    ASSERT_EQ(flat_.DrawShape({path, {}, &fill, &stroke}), 1);
    EndPage();
    EXPECT_THAT(page_.lines, ElementsAre("image", "stroke", "fill", "image"));
}

TEST_F(ORVFlattenerTest, TransparentGradientsAreTakenAndOpaqueOnesAreNot) {
    const std::array<ORVPrintGradientStop, 2> stops{{{0.0, kRed}, {1.0, kBlue}}},
        fading{{{0.0, kRed}, {1.0, {255, 0, 0, 0}}}};
    const ORVPrintPath path = RectanglePath(10, 10, 20, 20);
    ORVPrintGradient gradient = Gradient(stops, {20, 0, 0, 1, 10, 0});
    ORVPrintFill fill;
    fill.gradient = &gradient;
    ASSERT_EQ(flat_.DrawShape({path, {}, &fill, nullptr}), 1);
    gradient.kind = ORVPrintGradient::Kind::kRadial;  // transparent outside the cone of its circles
    gradient.endRadius = 0.5;
    ASSERT_EQ(flat_.DrawShape({path, {}, &fill, nullptr}), 1);
    gradient.kind = ORVPrintGradient::Kind::kLinear;
    gradient.stops = fading;
    ASSERT_EQ(flat_.DrawShape({path, {}, &fill, nullptr}), 1);
    ASSERT_EQ(WriteText(flat_, "x", 80, 80), 1);
    const ORVTextLayout layout = ORVLayoutText("taken", {});
    ASSERT_EQ(flat_.DrawText({layout, "taken", {1, 0, 0, -1, 12, 20}, &fill, nullptr, nullptr}), 1);
    EndPage();
    EXPECT_THAT(page_.lines, ElementsAre("fill", "text x", "image"));
}

TEST_F(ORVFlattenerTest, LayersAreDrawnAsAWholeAndCutToTheirBox) {
    BeginLayer(0.5, BoxOf(10, 10, 30, 40));
    Fill(0, 0, 20, 100, kRed);
    Fill(5, 0, 20, 100, kBlue);
    ASSERT_EQ(flat_.EndLayer(), 1);
    EXPECT_THAT(page_.lines, IsEmpty());
    EndPage();
    EXPECT_THAT(page_.lines, ElementsAre("image"));
    EXPECT_EQ(page_.images[0].width, 15);
    EXPECT_EQ(page_.images[0].height, 30);
    ExpectColour(page_.At(15, 15), 127, 127, 255);
}

TEST_F(ORVFlattenerTest, BlendModesSeeWhatLiesBelow) {
    Fill(0, 0, 50, 100, {255, 255, 0, 255});
    BeginLayer(1.0, BoxOf(40, 40, 60, 60), ORVPrintBlendMode::kMultiply);
    Fill(40, 40, 20, 20, {0, 255, 255, 255});
    ASSERT_EQ(flat_.EndLayer(), 1);
    EndPage();
    EXPECT_THAT(page_.lines, ElementsAre("fill", "image"));
    ExpectColour(page_.At(45, 50), 0, 255, 0);
    ExpectColour(page_.At(55, 50), 0, 255, 255);
}

TEST_F(ORVFlattenerTest, MasksShowTheirPartOfALayer) {
    ORVPrintLayer layer;
    layer.hasMask = true;
    layer.box = BoxOf(10, 10, 50, 50);
    ASSERT_EQ(flat_.BeginLayer(layer), 1);
    ASSERT_EQ(flat_.BeginMask({ORVPrintMask::Kind::kLuminance, BoxOf(0, 0, 100, 30)}), 1);
    Fill(0, 0, 20, 100, {255, 255, 255, 255});
    Fill(90, 90, 5, 5, {255, 255, 255, 255});
    ASSERT_EQ(flat_.EndMask(), 1);
    Fill(10, 10, 40, 40, kRed);
    ASSERT_EQ(flat_.EndLayer(), 1);
    EndPage();
    ASSERT_EQ(page_.images.size(), 1U);
    EXPECT_EQ(page_.images[0].width, 40);
    ExpectColour(page_.At(15, 15), 255, 0, 0);
    ExpectColour(page_.At(30, 15), 255, 255, 255);
    ExpectColour(page_.At(15, 40), 255, 255, 255);
}

TEST_F(ORVFlattenerTest, ALayerThatIsButABoxStaysVectors) {
    ORVPrintLayer layer;
    layer.isIsolated = false;
    layer.box = BoxOf(10, 10, 50, 50);
    ASSERT_EQ(flat_.BeginLayer(layer), 1);
    Fill(0, 0, 20, 100, kRed);
    Fill(40, 40, 20, 20, kHalfRed);
    ASSERT_EQ(flat_.EndLayer(), 1);
    EndPage();
    EXPECT_THAT(page_.lines, ElementsAre("clip", "fill", "image", "end clip"));
    EXPECT_EQ(page_.images[0].width, 10);
}

TEST_F(ORVFlattenerTest, ImagesStandInTheClipsOfTheirContent) {
    Fill(10, 10, 10, 10, kHalfRed);
    ASSERT_EQ(flat_.BeginClip(BoxOf(30, 30, 60, 60)), 1);
    Fill(50, 50, 20, 20, kHalfRed);
    const ORVPrintPath path = RectanglePath(55, 55, 20, 20);
    ASSERT_EQ(flat_.BeginClipPath({path, {}}), 1);
    BeginLayer(0.5, BoxOf(50, 50, 90, 90));
    Fill(0, 0, 100, 100, kBlue);
    ASSERT_EQ(flat_.EndLayer(), 1);
    ASSERT_EQ(flat_.EndClipPath(), 1);
    ASSERT_EQ(flat_.EndClip(), 1);
    EndPage();
    EXPECT_THAT(page_.lines,
                ElementsAre("image", "clip", "image", "clip path", "image", "end clip path", "end clip"));
    EXPECT_EQ(page_.images[1].width, 10) << "cut to the clip";
    EXPECT_EQ(page_.images[2].width, 5) << "cut to all clips";
    ExpectColour(page_.At(57, 57), 128, 63, 191);  // blue over red over white
}

TEST_F(ORVFlattenerTest, GroupsGoThroughAndLinksHoldTheirImages) {
    Fill(10, 10, 10, 10, kHalfRed);
    ORVPrintGroup group;
    group.id = "link";
    group.linkURL = "http://x/";
    ASSERT_EQ(flat_.BeginGroup(group), 1);
    Fill(12, 10, 10, 10, kHalfRed);
    ASSERT_EQ(flat_.EndGroup(), 1);
    BeginLayer(0.5, BoxOf(0, 0, 50, 50));
    group.id = "inner";
    ASSERT_EQ(flat_.BeginGroup(group), 1);
    Fill(0, 0, 50, 50, kBlue);
    ASSERT_EQ(flat_.EndGroup(), 1);
    ASSERT_EQ(flat_.EndLayer(), 1);
    EndPage();
    EXPECT_THAT(page_.lines, ElementsAre("image", "group link", "image", "end group", "group inner",
                                         "end group", "image"));
}

TEST_F(ORVFlattenerTest, APageOfVeryManyImagesEndsInOne) {
    constexpr int kDots = 400;
    ASSERT_EQ(flat_.BeginClip(BoxOf(0, 0, 90, 90)), 1);
    for (int i = 0; i < kDots; ++i) {
        Fill(10 + i % 50, 20, 2, 2, {255, 0, 0, 1});
        Fill(10 + i % 50, 20, 1, 1, kBlue);
    }
    ASSERT_EQ(flat_.EndClip(), 1);
    ASSERT_EQ(flat_.BeginClip(BoxOf(0, 0, 95, 95)), 1);
    Fill(70, 80, 5, 5, kRed);
    ASSERT_EQ(flat_.EndClip(), 1);
    EndPage();
    EXPECT_EQ(page_.images.size(), 256U + 2U) << "the dots and the square";
    const std::vector<std::string> tail(page_.lines.end() - 3, page_.lines.end());
    EXPECT_THAT(tail, ElementsAre("end clip", "image", "image"));
    ExpectColour(page_.At(72, 82), 255, 0, 0);
    ExpectColour(page_.At(30.5, 20.5), 0, 0, 255);

    ASSERT_EQ(flat_.BeginPage(PageInfo(100, 100, 2)), 1);
    Fill(0, 0, 5, 5, kBlue);
    EXPECT_EQ(page_.lines.back(), "fill") << "the next page begins anew";
}

TEST_F(ORVFlattenerTest, PartsFarApartAreImagesOfTheirOwn) {
    ORVFlattener flat(page_, Options());
    ASSERT_EQ(flat.BeginDocument({}), 1);
    ASSERT_EQ(flat.BeginPage(PageInfo(2000, 2000)), 1);
    for (int i = 0; i < 8; ++i) ASSERT_EQ(FillRectangle(flat, 10 + 5 * i, 10, 10, 10, kHalfRed), 1);
    for (int i = 0; i < 8; ++i) ASSERT_EQ(FillRectangle(flat, 1900, 1800, 50, 50, kHalfRed), 1);
    ASSERT_EQ(flat.EndPage(), 1);
    ASSERT_EQ(page_.images.size(), 2U);
    EXPECT_EQ(page_.images[0].width, 45);
    EXPECT_EQ(page_.images[1].width, 50);
    // Beyond a certain number of parts, they share images.
    page_.images.clear();
    ASSERT_EQ(flat.BeginPage(PageInfo(2000, 2000, 2)), 1);
    for (int i = 0; i < 400; ++i)
        ASSERT_EQ(FillRectangle(flat, 100 * (i % 20), 100 * (i / 20), 50, 50, kHalfRed), 1);
    ASSERT_EQ(flat.EndPage(), 1);
    EXPECT_LE(page_.images.size(), 16U);
}

TEST_F(ORVFlattenerTest, APageOfVeryManyPixelsEndsInOneImage) {
    ORVFlattener flat(page_, Options(1440.0));
    ASSERT_EQ(flat.BeginDocument({}), 1);
    ASSERT_EQ(flat.BeginPage(PageInfo(400, 400)), 1);  // 41 million pixels
    for (int i = 0; i < 10; ++i) {
        ASSERT_EQ(FillRectangle(flat, 0, 0, 400, i < 2 ? 250 : 5, {255, 0, 0, 1}), 1);
        ASSERT_EQ(FillRectangle(flat, i, 0, 1, 1, kBlue), 1);
    }
    ASSERT_EQ(flat.EndPage(), 1);
    // Two shapes of 26 million pixels, in seven images each, and one image for all the rest.
    EXPECT_EQ(page_.images.size(), 7U + 7U + 1U);
    ExpectColour(page_.At(9.5, 0.5), 0, 0, 255);
}

TEST_F(ORVFlattenerTest, VeryLargePartsAreImagesBelowEachOther) {
    for (const auto& [side, count] : {std::pair{350.0, 1U}, {400.0, 4U}}) {
        page_.images.clear();
        ORVFlattener flat(page_, Options(900.0));
        ASSERT_EQ(flat.BeginDocument({}), 1);
        ASSERT_EQ(flat.BeginPage(PageInfo(400, 400)), 1);
        ASSERT_EQ(FillRectangle(flat, 0, 0, side, side, kBlue), 1);
        ASSERT_EQ(FillRectangle(flat, 0, 0, side, side, kHalfRed), 1);
        ASSERT_EQ(flat.EndPage(), 1);
        ASSERT_EQ(page_.images.size(), count);
        double end = 0.0;
        for (const ImagePage::Image& image : page_.images) {
            EXPECT_DOUBLE_EQ(image.toPage.dy, end);
            EXPECT_DOUBLE_EQ(image.toPage.m22, image.height / 10.0);
            EXPECT_EQ(image.width, static_cast<int>(side * 10.0));
            end += image.toPage.m22;
            ExpectColour(page_.At(1.0, image.toPage.dy + 0.01), 128, 0, 127);
            ExpectColour(page_.At(1.0, end - 0.01), 128, 0, 127);
        }
        EXPECT_DOUBLE_EQ(end, side);
    }
}

TEST_F(ORVFlattenerTest, WhatIsNotSeenTakesNoImage) {
    Fill(200, 10, 20, 20, kHalfRed);
    BeginLayer(0.5, BoxOf(10, 10, 20, 20));
    Fill(50, 50, 20, 20);
    ASSERT_EQ(flat_.EndLayer(), 1);
    BeginLayer(0.5, {});
    Fill(50, 50, 20, 20);
    ASSERT_EQ(flat_.EndLayer(), 1);
    EndPage();
    EXPECT_THAT(page_.lines, IsEmpty());
}

TEST_F(ORVFlattenerTest, ClipsAreTakenFromFormatsWithoutThem) {
    RecordingGenerator target;
    target.SetPowers(0);
    ORVFlattener flat(target, Options());
    ASSERT_EQ(flat.BeginDocument({}), 1);
    ASSERT_EQ(flat.BeginPage(PageInfo(100, 100)), 1);
    const ORVPrintPath path = RectanglePath(10, 10, 20, 20);
    ASSERT_EQ(flat.BeginClipPath({path, {}}), 1);
    ASSERT_EQ(FillRectangle(flat, 0, 0, 50, 20), 1);
    ASSERT_EQ(flat.EndClipPath(), 1);
    ASSERT_EQ(flat.EndPage(), 1);
    EXPECT_THAT(target.GetDrawn(), ElementsAre("image 20x10 [20 0 0 10 10 10]"));
}

TEST_F(ORVFlattenerTest, LimitsHoldForAllImages) {
    struct Row {
        std::uint64_t pixels, outputPixels;
        int status;
        const char* error;
    };
    for (const Row& row : {Row{399, 10'000, kPageTooLarge, "--flatten-dpi"},
                           Row{400, 799, kOutputTooLarge, "too many pixels"}, Row{400, 800, 1, ""}}) {
        ORVFlattenOptions options = Options();
        options.pixelLimit = row.pixels;
        options.outputPixelLimit = row.outputPixels;
        ORVFlattener flat(page_, options);
        ASSERT_EQ(flat.BeginDocument({}), 1);
        int result = 1;
        for (unsigned int page = 1; page <= 2 && result == 1; ++page) {
            ASSERT_EQ(flat.BeginPage(PageInfo(100, 100, page)), 1);
            ASSERT_EQ(FillRectangle(flat, 10, 10, 20, 20, kHalfRed), 1);
            result = flat.EndPage();
        }
        EXPECT_EQ(result, row.status);
        EXPECT_THAT(flat.GetError(), HasSubstr(row.error));
        EXPECT_EQ(flat.EndDocument(), 1);
    }
}

TEST_F(ORVFlattenerTest, PassesOnFailures) {
    for (std::size_t call = 1;; ++call) {
        ASSERT_LT(call, 20U);
        RecordingGenerator target;
        target.SetPowers(kVectorsOnly);
        target.FailAt(call);
        ORVFlattener flat(target, Options());
        int result = flat.BeginDocument({});
        if (result == 1) result = flat.BeginPage(PageInfo(100, 100));
        if (result == 1) result = flat.BeginClip(BoxOf(0, 0, 50, 50));
        if (result == 1) result = FillRectangle(flat, 0, 0, 5, 5, kHalfRed);
        if (result == 1) result = FillRectangle(flat, 0, 0, 5, 5);
        if (result == 1) result = flat.EndClip();
        if (result == 1) result = flat.EndPage();
        if (result == 1) break;
        EXPECT_EQ(result, -99);
    }
}

}  // namespace
