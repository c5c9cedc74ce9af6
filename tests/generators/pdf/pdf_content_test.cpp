// SPDX-License-Identifier: Apache-2.0

// Operators of a page, as written to the file.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <string>

#include "tests/generators/pdf/drawn_page.h"
#include "tests/support/text_search.h"

namespace {

using testing::HasSubstr;
using testing::Not;

/// Draws `count` rectangles whose positions and colours repeat only after thousands.
void DrawMany(ORVPrintGenerator& generator, int count) {
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(FillRectangle(generator, i % 83 * 1.017, i % 89 * 0.993, 0.5 + i % 7, 0.5,
                                {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8), 7}),
                  1);
}

TEST(PdfContentTest, LargePagesComeInPiecesAndTheSameCallsGiveTheSameBytes) {
    DrawnPdf first, second, other;
    for (DrawnPdf* document : {&first, &second, &other}) {
        document->BeginPage();
        DrawMany(document->Get(), 140'000);
        if (document == &other) DrawMany(document->Get(), 1);
        document->EndPage();
        document->Finish();
    }
    EXPECT_TRUE(first.Bytes() == second.Bytes());
    EXPECT_LT(first.Bytes().size(), 2'000'000U);
    const std::string plain = first.Plain();
    EXPECT_EQ(CountOf(plain, " re\n"), 140'000U);
    EXPECT_THAT(plain, testing::ContainsRegex("/Contents .\n"));
    const auto identifier = [](const DrawnPdf& document) {
        const std::size_t at = document.Bytes().rfind("/ID[");
        return document.Bytes().substr(at, 70);
    };
    EXPECT_EQ(identifier(first), identifier(second));
    EXPECT_NE(identifier(first), identifier(other));
}

TEST(PdfContentTest, LargePagesThatShrinkLittleAreSoundToo) {
    constexpr int kCount = 100'000;
    std::mt19937 random(7);
    const auto coordinate = [&random] { return static_cast<double>(random() % 90'000) / 1000.0; };
    DrawnPdf document;
    document.BeginPage();
    for (int i = 0; i < kCount; ++i)
        ASSERT_EQ(FillRectangle(document.Get(), coordinate(), coordinate(), 1.0 + i % 5, 1.0,
                                {static_cast<std::uint8_t>(random()), 1, 2}),
                  1);
    document.EndPage();
    document.Finish();
    EXPECT_GT(document.Bytes().size(), 900'000U);
    EXPECT_EQ(CountOf(document.Plain(), " re\n"), static_cast<std::size_t>(kCount));
}

TEST(PdfContentTest, ColoursAreTheNearestOfAThousandSteps) {
    DrawnPdf document;
    document.BeginPage();
    for (int i = 0; i < 256; ++i) {
        const auto part = static_cast<std::uint8_t>(i);
        EXPECT_EQ(FillRectangle(document.Get(), 1.0, 1.0, 2.0, 2.0, {part, part, part}), 1);
    }
    document.EndPage();
    document.Finish();
    const std::string plain = document.Plain();
    for (int i = 1; i < 256; ++i) {
        std::string written = std::to_string(std::lround(i / 255.0 * 1000.0));
        written = i == 255 ? "1" : "." + std::string(3 - written.size(), '0') + written;
        while (i < 255 && written.back() == '0') written.pop_back();
        EXPECT_THAT(plain, HasSubstr("\n" + written + " g\n"));
    }
}

TEST(PdfContentTest, GraysAreWrittenAsGrays) {
    const auto image = PlainImage(2, 2, {77, 77, 77, 99});
    DrawnPdf document;
    document.BeginPage();
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 50.0, 50.0, {70, 70, 70, 100}), 1);
    EXPECT_EQ(document.Get().DrawImage({*image, {9.0, 0.0, 0.0, 9.0, 0.0, 0.0}}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), Not(HasSubstr("RGB")));
    EXPECT_THAT(document.Plain(), Not(HasSubstr(" rg\n")));
    EXPECT_THAT(document.Plain(), HasSubstr("/CS /DeviceGray"));
}

TEST(PdfContentTest, LinesOfNoWidthAreTheThinnestOfTheDevice) {
    DrawnPdf document;
    document.BeginPage();
    ORVPrintStroke stroke;
    ORVPrintPath line;
    line.MoveTo({1.0, 5.0});
    line.LineTo({80.0, 5.0});
    for (const double width : {1e-9, 0.009, 0.5, 0.02}) {
        stroke.width = width;
        EXPECT_EQ(document.Get().DrawShape({line, {}, nullptr, &stroke}), 1);
    }
    document.EndPage();
    document.Finish();
    const std::string plain = document.Plain();
    EXPECT_EQ(CountOf(plain, "\n0 w\n"), 1U);
    EXPECT_EQ(CountOf(plain, "\n.5 w\n"), 1U);
    EXPECT_EQ(CountOf(plain, "\n.02 w\n"), 1U);
    EXPECT_EQ(CountOf(plain, " w\n"), 3U) << "those below a hundredth of a unit have one width";
}

TEST(PdfContentTest, FillAndStrokeAreOneOperatorUnlessTheFillShowsThrough) {
    for (const std::uint8_t opacity : {std::uint8_t{255}, std::uint8_t{254}, std::uint8_t{100}}) {
        DrawnPdf document;
        document.BeginPage();
        const ORVPrintFill fill;
        ORVPrintStroke stroke;
        stroke.width = 5.0;
        stroke.colour = {255, 0, 0, opacity};
        const ORVPrintPath path = RectanglePath(10.0, 10.0, 50.0, 50.0);
        EXPECT_EQ(document.Get().DrawShape({path, {}, &fill, &stroke}), 1);
        document.EndPage();
        document.Finish();
        const std::string plain = document.Plain();
        const std::size_t once = opacity == 255 ? 1 : 0;
        EXPECT_EQ(CountOf(plain, "\nB\n"), once) << int{opacity};
        EXPECT_EQ(CountOf(plain, "\nf\n"), 1 - once) << int{opacity};
        EXPECT_EQ(CountOf(plain, "\nS\n"), 1 - once) << int{opacity};
    }
}

TEST(PdfContentTest, DashesBeginWhereTheyAreTold) {
    const double dashes[]{20.0, 10.0};
    ORVPrintPath line;
    line.MoveTo({0.0, 45.0});
    line.LineTo({90.0, 45.0});
    ORVPrintStroke stroke;
    stroke.width = 10.0;
    stroke.dashes = dashes;
    struct Row {
        double offset;
        const char* written;
        bool isDashAt5, isDashAt15, isDashAt25;
    };
    // The offset is written modulo the length of the dashes, and once for consecutive lines that share it.
    for (const Row& row :
         {Row{0.0, "]0 d\n", true, true, false}, Row{10.0, "]10 d\n", true, false, true},
          Row{20.0, "]20 d\n", false, true, true}, Row{610.0, "]10 d\n", true, false, true}}) {
        stroke.dashOffset = row.offset;
        DrawnPdf document;
        document.BeginPage();
        for (int i = 0; i < 2; ++i) EXPECT_EQ(document.Get().DrawShape({line, {}, nullptr, &stroke}), 1);
        stroke.dashOffset += 1.0;
        EXPECT_EQ(document.Get().DrawShape({line, {1.0, 0.0, 0.0, 1.0, 0.0, 30.0}, nullptr, &stroke}), 1);
        document.EndPage();
        document.Finish();
        EXPECT_EQ(CountOf(document.Plain(), row.written), 1U);
        EXPECT_EQ(CountOf(document.Plain(), " d\n"), 2U);
        const PaperColour black, white{255, 255, 255};
        ExpectColours(document, {{5.0, 45.0, row.isDashAt5 ? black : white},
                                 {15.0, 45.0, row.isDashAt15 ? black : white},
                                 {25.0, 45.0, row.isDashAt25 ? black : white}});
    }
}

}  // namespace
