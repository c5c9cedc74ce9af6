#include "generators/png/ORVPngGenerator.h"

#include <gtest/gtest.h>
#include <png.h>

#include <cmath>
#include <limits>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "tests/generators/drawing_calls.h"

namespace {

/// A decoded picture.
struct Picture {
    int width = 0, height = 0;
    std::vector<std::uint8_t> rgb;

    explicit Picture(const std::string& bytes) {
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        EXPECT_NE(png_image_begin_read_from_memory(&image, bytes.data(), bytes.size()), 0) << image.message;
        image.format = PNG_FORMAT_RGB;
        width = static_cast<int>(image.width);
        height = static_cast<int>(image.height);
        rgb.resize(PNG_IMAGE_SIZE(image));
        EXPECT_NE(png_image_finish_read(&image, nullptr, rgb.data(), 0, nullptr), 0) << image.message;
    }
    /// 0xRRGGBB
    unsigned int At(int x, int y) const {
        const std::size_t i = static_cast<std::size_t>(y * width + x) * 3;
        return static_cast<unsigned int>(rgb[i] << 16 | rgb[i + 1] << 8 | rgb[i + 2]);
    }
    bool HasInk() const {
        for (const std::uint8_t value : rgb)
            if (value != 255) return true;
        return false;
    }
};

/// One page that a test draws on, and the picture of it.
class PngPage {
public:
    PngPage(double width, double height, double dotsPerInch = 90.0) : generator_(output_, dotsPerInch) {
        EXPECT_EQ(generator_.BeginDocument({"", 1}), 1);
        EXPECT_EQ(generator_.BeginPage(PageInfo(width, height)), 1);
    }
    ORVPngGenerator& Get() { return generator_; }
    const std::string& Finish() {
        EXPECT_EQ(generator_.EndPage(), 1);
        EXPECT_EQ(generator_.EndDocument(), 1);
        return output_.GetBytes();
    }

private:
    ORVMemoryOutput output_;
    ORVPngGenerator generator_;
};

TEST(ORVPngGeneratorTest, PaperIsWhiteAndAUserUnitAPixel) {
    PngPage page(20.0, 10.0);
    EXPECT_EQ(FillRectangle(page.Get(), 5.0, 2.0, 3.0, 4.0, {255, 0, 0}), 1);
    const Picture picture(page.Finish());
    ASSERT_EQ(picture.width, 20);
    ASSERT_EQ(picture.height, 10);
    EXPECT_EQ(picture.At(0, 0), 0xFFFFFFU);
    EXPECT_EQ(picture.At(5, 2), 0xFF0000U);
    EXPECT_EQ(picture.At(7, 5), 0xFF0000U);
    EXPECT_EQ(picture.At(8, 5), 0xFFFFFFU);
    EXPECT_EQ(picture.At(7, 6), 0xFFFFFFU);
}

TEST(ORVPngGeneratorTest, ResolutionEnlargesAndIsStated) {
    PngPage page(20.0, 10.5, 180.0);
    const std::string bytes = page.Finish();
    const Picture picture(bytes);
    EXPECT_EQ(picture.width, 40);
    EXPECT_EQ(picture.height, 21);
    const std::size_t chunk = bytes.find("pHYs");
    ASSERT_NE(chunk, bytes.npos);
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(bytes[chunk + 4 + i]); };
    EXPECT_EQ(byte(2) << 8 | byte(3), 7087);  // 180 / 0.0254
    EXPECT_EQ(byte(8), 1);                    // a metre
}

TEST(ORVPngGeneratorTest, OpacityBlends) {
    PngPage page(4.0, 4.0);
    EXPECT_EQ(FillRectangle(page.Get(), 0.0, 0.0, 4.0, 4.0, {0, 0, 0, 128}), 1);
    const Picture picture(page.Finish());
    EXPECT_NEAR(picture.At(1, 1) & 0xFFU, 127, 2);
}

TEST(ORVPngGeneratorTest, EvenOddLeavesHoles) {
    PngPage page(10.0, 10.0);
    ORVPrintPath path = RectanglePath(0.0, 0.0, 10.0, 10.0);
    const ORVPrintPath inner = RectanglePath(3.0, 3.0, 4.0, 4.0);
    path.verbs.insert(path.verbs.end(), inner.verbs.begin(), inner.verbs.end());
    path.points.insert(path.points.end(), inner.points.begin(), inner.points.end());
    ORVPrintFill fill;
    fill.evenOdd = true;
    EXPECT_EQ(page.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    const Picture picture(page.Finish());
    EXPECT_EQ(picture.At(1, 1), 0U);
    EXPECT_EQ(picture.At(5, 5), 0xFFFFFFU);
}

TEST(ORVPngGeneratorTest, StrokeFollowsTheMap) {
    PngPage page(20.0, 20.0);
    ORVPrintPath path;
    path.MoveTo({0.0, 5.0});
    path.LineTo({10.0, 5.0});
    ORVPrintStroke stroke;
    stroke.width = 2.0;
    EXPECT_EQ(page.Get().DrawShape({path, ORVMathAffine2D::Scaling(2.0, 2.0), nullptr, &stroke}), 1);
    const Picture picture(page.Finish());
    EXPECT_EQ(picture.At(10, 8), 0U);  // 4 pixels wide around y = 10
    EXPECT_EQ(picture.At(10, 11), 0U);
    EXPECT_EQ(picture.At(10, 12), 0xFFFFFFU);
}

TEST(ORVPngGeneratorTest, DashesLeaveGaps) {
    PngPage page(20.0, 4.0);
    ORVPrintPath path;
    path.MoveTo({0.0, 2.0});
    path.LineTo({20.0, 2.0});
    const double dashes[]{4.0, 6.0};
    ORVPrintStroke stroke;
    stroke.width = 2.0;
    stroke.dashes = dashes;
    EXPECT_EQ(page.Get().DrawShape({path, {}, nullptr, &stroke}), 1);
    const Picture picture(page.Finish());
    EXPECT_EQ(picture.At(2, 2), 0U);
    EXPECT_EQ(picture.At(7, 2), 0xFFFFFFU);
    EXPECT_EQ(picture.At(12, 2), 0U);
}

TEST(ORVPngGeneratorTest, ImagesKeepTheirEdges) {
    PngPage page(20.0, 20.0);
    const auto image = PlainImage(2, 2, {0, 0, 255});
    EXPECT_EQ(page.Get().DrawImage({*image, {10.0, 0.0, 0.0, 10.0, 5.0, 5.0}}), 1);
    const Picture picture(page.Finish());
    EXPECT_EQ(picture.At(5, 5), 0x0000FFU);
    EXPECT_EQ(picture.At(14, 14), 0x0000FFU);
    EXPECT_EQ(picture.At(15, 15), 0xFFFFFFU);
}

TEST(ORVPngGeneratorTest, PatternsRepeatFromThePageOrigin) {
    // Two columns: red, green.
    const std::vector<std::uint8_t> pixels{255, 0, 0, 255, 0, 255, 0, 255};
    const ORVRef<ORVPixelImage> tile(ORVPixelImage::CreateFromPixels(2, 1, pixels));
    PngPage page(8.0, 4.0);
    ORVPrintFill fill;
    fill.pattern = tile.get();
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 5.0, 4.0);
    EXPECT_EQ(page.Get().DrawShape({path, ORVMathAffine2D::Translation(3.0, 0.0), &fill, nullptr}), 1);
    const Picture picture(page.Finish());
    EXPECT_EQ(picture.At(2, 1), 0xFFFFFFU);
    EXPECT_EQ(picture.At(3, 1), 0x00FF00U);
    EXPECT_EQ(picture.At(4, 1), 0xFF0000U);
}

TEST(ORVPngGeneratorTest, TextIsDrawnAndClipped) {
    PngPage page(100.0, 30.0);
    EXPECT_EQ(WriteText(page.Get(), "HHHH", 5.0, 20.0), 1);
    const Picture drawn(page.Finish());
    EXPECT_TRUE(drawn.HasInk());

    PngPage clipped(100.0, 30.0);
    const ORVTextLayout layout = ORVLayoutText("HHHH", {});
    const ORVPrintFill fill;
    const ORVPrintPath clip = RectanglePath(90.0, 0.0, 5.0, 5.0);
    EXPECT_EQ(
        clipped.Get().DrawText({layout, "HHHH", {1.0, 0.0, 0.0, -1.0, 5.0, 20.0}, &fill, nullptr, &clip}), 1);
    EXPECT_FALSE(Picture(clipped.Finish()).HasInk());
}

TEST(ORVPngGeneratorTest, WhatIsFarOffOrFlatDoesNotDisturb) {
    PngPage page(10.0, 10.0);
    const double huge = std::numeric_limits<double>::max();
    EXPECT_EQ(FillRectangle(page.Get(), -huge, 5.0, huge, 1.0, {255, 0, 0}), 1);
    EXPECT_EQ(FillRectangle(page.Get(), huge, huge, 1.0, 1.0), 1);
    ORVPrintFill fill;
    ORVPrintStroke stroke;
    stroke.width = huge;
    const ORVPrintPath path = RectanglePath(0.0, 0.0, 1.0, 1.0);
    for (const double scale : {0.0, 1e-300, 1e300, std::nan("")})
        EXPECT_EQ(page.Get().DrawShape({path, ORVMathAffine2D::Scaling(scale, scale), &fill, &stroke}), 1);
    EXPECT_EQ(WriteText(page.Get(), "far", 1e30, 1e30), 1);
    // The page still takes what is drawn after all that.
    EXPECT_EQ(FillRectangle(page.Get(), 2.0, 2.0, 2.0, 2.0, {0, 255, 0}), 1);
    EXPECT_EQ(Picture(page.Finish()).At(3, 3), 0x00FF00U);
}

TEST(ORVPngGeneratorTest, PagesBeyondTheLimitAreRefused) {
    ORVMemoryOutput output;
    ORVPngGenerator generator(output, 90.0);
    EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(40'000.0, 10.0)), kPageTooLarge);
    EXPECT_EQ(generator.BeginPage(PageInfo(20'000.0, 20'000.0)), kPageTooLarge);
    EXPECT_FALSE(generator.GetError().empty());
    EXPECT_EQ(output.GetPartCount(), 0U);
}

TEST(ORVPngGeneratorTest, EveryPageIsAPart) {
    ORVMemoryOutput output;
    ORVPngGenerator generator(output, 90.0);
    EXPECT_EQ(generator.BeginDocument({"", 2}), 1);
    for (unsigned int i = 1; i <= 2; ++i) {
        EXPECT_EQ(generator.BeginPage(PageInfo(5.0, 5.0, i)), 1);
        EXPECT_EQ(generator.EndPage(), 1);
    }
    EXPECT_EQ(generator.EndDocument(), 1);
    EXPECT_EQ(output.GetPartCount(), 2U);
}

}  // namespace
