// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cmath>

#include "interpreters/svg2/values/colour.h"
#include "interpreters/svg2/values/length.h"
#include "interpreters/svg2/values/path_data.h"
#include "interpreters/svg2/values/transform.h"
#include "interpreters/svg2/values/view_box.h"

namespace svg2 {
namespace {

std::string Written(std::string_view text) {
    Colour colour;
    if (!ReadColour(text, colour)) return "none";
    char written[16];
    std::snprintf(written, sizeof written, "%02x%02x%02x %g", colour.red, colour.green, colour.blue,
                  std::round(static_cast<double>(colour.opacity) * 100.0) / 100.0);
    return written;
}

TEST(ColourValueTest, IsReadInEveryNotation) {
    const struct {
        const char *text, *colour;
    } kRows[] = {
        {"red", "ff0000 1"},
        {" ReD ", "ff0000 1"},
        {"rebeccapurple", "663399 1"},
        {"lightgoldenrodyellow", "fafad2 1"},
        {"reddish", "none"},
        {"#f80", "ff8800 1"},
        {"#F80C", "ff8800 0.8"},
        {"#ff8000", "ff8000 1"},
        {"#ff800080", "ff8000 0.5"},
        {"#ff80", "ffff88 0"},
        {"#ff800", "none"},
        {"#ggg", "none"},
        {"rgb(255, 128, 0)", "ff8000 1"},
        {"rgb(255 128 0 / 50%)", "ff8000 0.5"},
        {"rgba(255,128,0,.25)", "ff8000 0.25"},
        {"rgb(100%, 50%, 0%)", "ff8000 1"},
        {"rgb(300, -5, 12.6)", "ff000d 1"},
        {"rgb(1,2)", "none"},
        {"hsl(120, 100%, 25%)", "008000 1"},
        {"hsl(0.5turn 100% 50%)", "00ffff 1"},
        {"hsla(-120, 100%, 50%, 0.5)", "0000ff 0.5"},
        {"transparent", "000000 0"},
        {"CanvasText", "000000 1"},
        {"canvas", "ffffff 1"},
        {"light-dark(#123456, white)", "123456 1"},
        {"red icc-color(profile, 1, 2)", "ff0000 1"},
        {"red blue", "none"},
        {"", "none"},
        {"currentColor", "none"},
    };
    for (const auto& row : kRows) EXPECT_EQ(Written(row.text), row.colour) << row.text;
}

TEST(ColourValueTest, OfAnotherSpaceIsCutToSRgb) {
    const struct {
        const char *text, *colour;
    } kRows[] = {
        {"hwb(144 0% 33%)", "00ab44 1"},
        {"hwb(0 60% 60% / 50%)", "808080 0.5"},
        {"lab(54.29 80.8 69.89)", "ff0000 1"},
        {"lab(100% 0 0)", "ffffff 1"},
        {"lch(54.29 106.84 40.86)", "ff0000 1"},
        {"oklab(0.628 0.2249 0.1258)", "ff0000 1"},
        {"oklch(62.8% 0.2577 29.23deg)", "ff0000 1"},
        {"color(srgb 1 50% 0)", "ff8000 1"},
        {"color(srgb-linear 0.5 0 0)", "bc0000 1"},
        {"color(display-p3 0 1 0 / 50%)", "00ff00 0.5"},
        {"color(xyz 0.4124 0.2126 0.0193)", "ff0000 1"},
        {"color(foo 1 0 0)", "none"},
        {"lab(1 2)", "none"},
    };
    for (const auto& row : kRows) EXPECT_EQ(Written(row.text), row.colour) << row.text;
}

TEST(LengthValueTest, IsReadInEveryUnit) {
    UnitSizes sizes;
    sizes.fontSize = 20.0;
    sizes.rootFontSize = 10.0;
    sizes.xHeight = 9.0;
    sizes.viewportWidth = 200.0;
    sizes.viewportHeight = 100.0;
    const struct {
        const char* text;
        double px, percent;
    } kRows[] = {
        {"12", 12, 0},
        {"1.5e1px", 15, 0},
        {"1in", 96, 0},
        {"2.54cm", 96, 0},
        {"25.4mm", 96, 0},
        {"101.6Q", 96, 0},
        {"72pt", 96, 0},
        {"6pc", 96, 0},
        {"2em", 40, 0},
        {"2ex", 18, 0},
        {"3rem", 30, 0},
        {"1lh", 24, 0},
        {"10vw", 20, 0},
        {"10VH", 10, 0},
        {"10vmin", 10, 0},
        {"10vmax", 20, 0},
        {"-5%", 0, -5},
        {"calc(10px + 50%)", 10, 50},
        {"calc((1in - 6px) / 3 * 2)", 60, 0},
        {"calc(2 * (3px + 1em))", 46, 0},
        {"min(10px, 3em, 20px)", 10, 0},
        {"max(10px, 1em)", 20, 0},
        {"clamp(5px, 1px, 9px)", 5, 0},
        {"clamp(5px, 7px, 9px)", 7, 0},
        {"clamp(5px, 17px, 9px)", 9, 0},
    };
    for (const auto& row : kRows) {
        Length length;
        ASSERT_TRUE(ReadLength(row.text, sizes, length)) << row.text;
        EXPECT_NEAR(length.px, row.px, 1e-9) << row.text;
        EXPECT_NEAR(length.percent, row.percent, 1e-9) << row.text;
    }
    for (const char* text : {"", "px", "12 px", "1furlong", "auto", "1px2", "calc(1px + 2)", "calc(1px",
                             "calc(1px / 0)", "1e400"}) {
        Length length{7.0, 0.0};
        EXPECT_FALSE(ReadLength(text, sizes, length)) << text;
        EXPECT_EQ(length.px, 7.0) << text;
    }
}

TEST(TransformValueTest, AttributesAndSheetsHaveGrammarsOfTheirOwn) {
    const struct {
        const char* text;
        bool isAttribute, isProperty;
        ORVMathPoint2D image;  // of (1, 2)
    } kRows[] = {
        {"translate(10)", true, false, {11, 2}},
        {"translate(10px)", false, true, {11, 2}},
        {"translate(10 20)", true, false, {11, 22}},
        {"translate(10%, 50%)", false, true, {21, 52}},
        {"translateY(5px)", false, true, {1, 7}},
        {"scale(2)", true, true, {2, 4}},
        {"scale(2,3)", true, true, {2, 6}},
        {"rotate(90)", true, false, {-2, 1}},
        {"rotate(90deg)", false, true, {-2, 1}},
        {"rotate(0.25turn)", false, true, {-2, 1}},
        {"rotate(90,1,1)", true, false, {0, 1}},
        {"skewX(45)", true, false, {3, 2}},
        {"skewX(45deg)", false, true, {3, 2}},
        {"skewY(45)", true, false, {1, 3}},
        {"matrix(1,2,3,4,5,6)", true, true, {12, 16}},
        {"translate(1,0) , scale(2)", true, false, {3, 4}},
        {"none", true, true, {1, 2}},
        {"", true, true, {1, 2}},
        {"rotate(1,2)", false, false, {}},
        {"bend(1)", false, false, {}},
        {"scale(1,2,3)", false, false, {}},
    };
    for (const auto& row : kRows) {
        ORVMathAffine2D map;
        ASSERT_EQ(ReadTransformAttribute(row.text, map), row.isAttribute) << row.text;
        const auto check = [&] {
            EXPECT_NEAR(map({1, 2}).x, row.image.x, 1e-12) << row.text;
            EXPECT_NEAR(map({1, 2}).y, row.image.y, 1e-12) << row.text;
        };
        if (row.isAttribute) check();
        map = {};
        ASSERT_EQ(ReadTransformProperty(row.text, {}, 200.0, 100.0, map), row.isProperty) << row.text;
        if (row.isProperty) check();
    }
}

std::string WrittenPath(const char* data) {
    ORVPrintPath path;
    const bool isWhole = ReadPathData(data, path);
    constexpr char kVerbs[] = "MLCZ";
    constexpr std::size_t kPoints[] = {1, 1, 3, 0};
    std::string text;
    std::size_t point = 0;
    for (const ORVPrintPath::Verb verb : path.verbs) {
        text += kVerbs[static_cast<std::size_t>(verb)];
        for (std::size_t i = 0; i < kPoints[static_cast<std::size_t>(verb)]; ++i, ++point) {
            char number[64];
            std::snprintf(number, sizeof number, "%s%g,%g", i > 0 ? " " : "",
                          std::round(path.points[point].x * 100) / 100 + 0.0,
                          std::round(path.points[point].y * 100) / 100 + 0.0);
            text += number;
        }
    }
    return isWhole ? text : text + "!";
}

TEST(PathDataTest, IsReadUpToTheFirstError) {
    const struct {
        const char *data, *path;
    } kRows[] = {
        {"M1 2", "M1,2"},
        {"M1,2L3,4z", "M1,2L3,4Z"},
        {"m1 2 3 4", "M1,2L4,6"},
        {"M0 0h5v-2H1V3", "M0,0L5,0L5,-2L1,-2L1,3"},
        {"M0 0C1 2 3 4 5 6S9 8 7 6", "M0,0C1,2 3,4 5,6C7,8 9,8 7,6"},
        {"M0 0S9 8 7 6", "M0,0C0,0 9,8 7,6"},
        {"M0 0Q3 3 6 0T12 0", "M0,0C2,2 4,2 6,0C8,-2 10,-2 12,0"},
        {"M0 0Q3 3 6 0L7 0T12 0", "M0,0C2,2 4,2 6,0L7,0C7,0 8.67,0 12,0"},
        {"M0 0A5 5 0 0 1 10 0", "M0,0C0,-2.76 2.24,-5 5,-5C7.76,-5 10,-2.76 10,0"},
        {"M0 0a5 5 0 0110 0", "M0,0C0,-2.76 2.24,-5 5,-5C7.76,-5 10,-2.76 10,0"},
        {"M0 0A0 5 0 0 1 10 0", "M0,0L10,0"},
        {"M0 0A1 1 0 0 1 10 0", "M0,0C0,-2.76 2.24,-5 5,-5C7.76,-5 10,-2.76 10,0"},
        {"M0 0L1 1zL5 5", "M0,0L1,1ZM0,0L5,5"},
        {"M0 0L1 1zzm1 1l1 0", "M0,0L1,1ZM1,1L2,1"},
        {"M.5.5-1-1", "M0.5,0.5L-1,-1"},
        {"M0 0L1 1 2", "M0,0L1,1!"},
        {"M0 0L1 1X2 2", "M0,0L1,1!"},
        {"M0 0A5 5 0 2 1 10 0", "M0,0!"},
        {"L1 1", "!"},
        {"", ""},
        {"none", ""},
        {"M1e2 1E-1", "M100,0.1"},
    };
    for (const auto& row : kRows) EXPECT_EQ(WrittenPath(row.data), row.path) << row.data;
}

TEST(ViewBoxTest, FitsAsTheRatioSays) {
    const Rectangle viewBox{10.0, 0.0, 100.0, 50.0}, viewport{0.0, 0.0, 100.0, 100.0};
    const struct {
        const char* ratio;
        ORVMathPoint2D corner, opposite;  // of the view box, in the viewport
    } kRows[] = {
        {"", {0, 25}, {100, 75}},
        {"xMidYMid", {0, 25}, {100, 75}},
        {"xMinYMin meet", {0, 0}, {100, 50}},
        {"xMaxYMax", {0, 50}, {100, 100}},
        {"none", {0, 0}, {100, 100}},
        {"xMidYMid slice", {-50, 0}, {150, 100}},
        {"defer xMaxYMin slice", {-100, 0}, {100, 100}},
        {"xMidYMiddle", {0, 25}, {100, 75}},
        {"xMinYMin cut", {0, 25}, {100, 75}},
    };
    for (const auto& row : kRows) {
        const ORVMathAffine2D map = FitViewBox(viewBox, ReadAspectRatio(row.ratio), viewport);
        EXPECT_EQ(map({10.0, 0.0}), row.corner) << row.ratio;
        EXPECT_EQ(map({110.0, 50.0}), row.opposite) << row.ratio;
    }
}

TEST(ViewBoxTest, IsFourNumbersWithSizesThatAreNotNegative) {
    EXPECT_EQ(ReadViewBox("1,2 3e1 ,4"), (Rectangle{1.0, 2.0, 30.0, 4.0}));
    EXPECT_EQ(ReadViewBox(" 0 0 0 5 "), (Rectangle{0.0, 0.0, 0.0, 5.0}));
    for (const char* text : {"", "1 2 3", "1 2 3 4 5", "0 0 -1 1", "0 0 1px 1"})
        EXPECT_FALSE(ReadViewBox(text)) << text;
}

}  // namespace
}  // namespace svg2
