// SPDX-License-Identifier: Apache-2.0

// Compares all value parsers with their reference implementations, using almost valid texts.

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "interpreters/svg/style/paint.h"
#include "interpreters/svg/style/style_attribute.h"
#include "interpreters/svg/style/text_properties.h"
#include "interpreters/svg/values/colour.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/point_list.h"
#include "interpreters/svg/values/transform_list.h"
#include "interpreters/svg/values/view_box.h"
#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/visualization/fonts/ORVFont.h"
#include "tests/interpreters/svg/values/naive_values.h"
#include "tests/support/page_state.h"
#include "tests/support/random_texts.h"

namespace {

// Equal bit by bit, or both NaN.
bool Same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (a != a && b != b);
}

// The difference between two lists of numbers; empty if they are equal.
std::string Difference(const std::vector<double>& actual, const std::vector<double>& expected) {
    if (std::equal(actual.begin(), actual.end(), expected.begin(), expected.end(), Same)) return {};
    std::ostringstream text;
    text.precision(17);
    text << "read";
    for (const double number : actual) text << ' ' << number;
    text << ", not";
    for (const double number : expected) text << ' ' << number;
    return text.str();
}

// Numbers with signs, points and exponents, units and parts of units, and surrounding characters.
const std::vector<std::string> kLengthPieces{
    "1",  "2.5", ".5", "-",  "+",  "e",  "E3", "e-2", "0",  "7",    "9", " ",  "  ",    "\t", "%",   "pt",
    "pc", "cm",  "mm", "in", "p",  "t",  "c",  "m",   "i",  "n",    "k", "x",  "px",    "em", ",",   ".",
    "ü",  "PT",  "\n", "%%", "ft", "e+", "3e", "4.",  "in", "auto", "%", "0x", "1e999", "-0", "nan", "inf"};

using Reader = int (*)(const SvgDrawState&, std::string_view, double&);
using PlainReader = int (*)(const SvgDrawState&, std::string, double&);

std::string CompareLengths(Reader reader, PlainReader plain, const std::string& text) {
    for (const int flip : {0, 1}) {
        const PageState state(300.0, 407.7, flip);
        double a = -7.0, b = -7.0;
        const int statusA = reader(state, text, a), statusB = plain(state, text, b);
        if (statusA != statusB)
            return "status " + std::to_string(statusA) + ", not " + std::to_string(statusB);
        if (!Same(a, b)) return Difference({a}, {b});
    }
    return {};
}

TEST(ReadersPropertyTest, Lengths) {
    CheckRandomTexts(kLengthPieces, [](const std::string& text) {
        return CompareLengths(ParseLength, naive::Length, text);
    });
}

TEST(ReadersPropertyTest, HorizontalLengths) {
    CheckRandomTexts(kLengthPieces, [](const std::string& text) {
        return CompareLengths(ParseHorizontalLength, naive::HorizontalLength, text);
    });
}

TEST(ReadersPropertyTest, VerticalLengths) {
    CheckRandomTexts(kLengthPieces, [](const std::string& text) {
        return CompareLengths(ParseVerticalLength, naive::VerticalLength, text);
    });
}

TEST(ReadersPropertyTest, VerticalCoordinates) {
    CheckRandomTexts(kLengthPieces, [](const std::string& text) {
        return CompareLengths(ParseVerticalCoordinate, naive::VerticalCoordinate, text);
    });
}

std::string ColourName(int red, int green, int blue) {
    return std::to_string(red) + "," + std::to_string(green) + "," + std::to_string(blue);
}

TEST(ReadersPropertyTest, Colours) {
    CheckRandomTexts({"rgb", "RGB", "(",    ")",          ",",           ",",       "%",          "%",
                      " ",   "#",   "f",    "0c",         "A",           "12",      "255",        "300",
                      "-1",  "red", "Blue", "ü",          "+",           "x",       "1.5",        "#f0c",
                      "\t",  "%,",  "gray", "rgb(1,2,3)", "rgb(10%,20%", "rgb(9,8", "4294967296", "100%,"},
                     [](const std::string& text) -> std::string {
                         const PageState state(10.0, 10.0);
                         unsigned int index = 99;
                         std::string actual = "none", expected = "none";
                         if (ParseColour(state, text, index) == 1) {
                             const auto colour = state.page->GetColourTable()->GetColour(index);
                             actual = ColourName(colour.red, colour.green, colour.blue);
                         }
                         int parts[3] = {};
                         if (naive::Colour(text, parts)) expected = ColourName(parts[0], parts[1], parts[2]);
                         return actual == expected ? "" : actual + ", not " + expected;
                     });
}

std::vector<double> NumbersOf(const std::vector<ORVPrtTransformOperation>& operations) {
    std::vector<double> numbers;
    for (const ORVPrtTransformOperation& one : operations)
        numbers.insert(numbers.end(), {static_cast<double>(one.kind), one.a, one.b, one.c, one.d});
    return numbers;
}

TEST(ReadersPropertyTest, Transforms) {
    CheckRandomTexts({"matrix",
                      "translate",
                      "scale",
                      "rotate",
                      "skewX",
                      "skewY",
                      "Translate",
                      "SCALE",
                      "(",
                      ")",
                      "(1 2)",
                      "(30,4,5)",
                      "(x 5)",
                      ";",
                      " ",
                      ",",
                      "-1",
                      "2e3",
                      "()",
                      "( )",
                      "mat",
                      "rotat",
                      "s",
                      "skew",
                      "(1,2,3,4,5,6)",
                      "(3e1)",
                      "scale(2)",
                      "rotate(45 10)",
                      "translate (5)",
                      "SKEWx",
                      "(7",
                      "\t",
                      "(1mm 2%)",
                      ";;",
                      "skewX(3 4)",
                      "(x)"},
                     [](const std::string& text) -> std::string {
                         for (const int flip : {0, 1, 2}) {
                             const PageState state(30.0, 40.0, flip);
                             const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
                             if (ApplyTransformList(state, text, group.get()) != 1) return "refused";
                             const std::string difference =
                                 Difference(NumbersOf(group->GetTransformAttributes().GetOperations()),
                                            NumbersOf(naive::Transform(state, text)));
                             if (!difference.empty()) return difference;
                         }
                         return {};
                     });
}

TEST(ReadersPropertyTest, ViewBoxes) {
    CheckRandomTexts(
        {"0", "10", "-5", "1e2", ".5", "x", ",", " ", " ", "  ", "\t", "20px", "3%", "-", "e", "7 8"},
        [](const std::string& text) -> std::string {
            ORVPrtViewBox a{-1.0, -2.0, -3.0, -4.0}, b = a;
            if (ReadViewBox(text, a) != naive::ViewBox(text, b)) return "status";
            return Difference({a.minX, a.minY, a.width, a.height}, {b.minX, b.minY, b.width, b.height});
        });
}

TEST(ReadersPropertyTest, PointLists) {
    CheckRandomTexts({"1", "2.5", "-3",  "x",  ",",    " ",     " ", "  ", "1cm", "50%", "%",
                      "e", "\t",  "4 5", "in", "p%t5", "1e999", "0", "+",  "7,8", " ,"},
                     [](const std::string& text) -> std::string {
                         std::vector<double> numbers{99.0};
                         for (const int flip : {0, 1}) {
                             const PageState state(200.0, 100.0, flip);
                             ReadCoordinateNumbers(state, text, numbers);
                             const std::string difference = Difference(numbers, naive::Numbers(state, text));
                             if (!difference.empty()) return difference;
                         }
                         return {};
                     });
}

TEST(ReadersPropertyTest, DashArrays) {
    CheckRandomTexts({"1", "2.5", "-3", "x", ",", " ", "  ", "5px", "e", "none", "\t", "4 5", ".1", "7,7 7,"},
                     [](const std::string& text) -> std::string {
                         PageState state(10.0, 10.0);
                         ApplyDashArray(state, text);
                         if (text.empty() || text == "none")
                             return state.stroke == ORVPrtStrokeAttributes() ? "" : "the stroke changed";
                         if (state.stroke.GetStrokeType() != 7) return "no dashes";
                         const std::vector<float> dashes = naive::Dashes(text);
                         const std::vector<float>& actual = state.stroke.GetStrokeDashPattern();
                         return Difference({actual.begin(), actual.end()}, {dashes.begin(), dashes.end()});
                     });
}

// The last stroke-width, cap and opacity of the attribute reveal how it was split.
TEST(ReadersPropertyTest, StyleSplitting) {
    CheckRandomTexts({"stroke-width",
                      "stroke-linecap",
                      "fill-opacity",
                      ":",
                      ":",
                      ":",
                      ";",
                      ";",
                      " ",
                      "2",
                      "3",
                      "round",
                      "square",
                      "0.5",
                      "\t",
                      "stroke-width:4",
                      "stroke-linecap : butt",
                      "x",
                      "; ",
                      "stroke-width:5;",
                      "fill-opacity:.25;",
                      "Stroke-Width:6;"},
                     [](const std::string& text) -> std::string {
                         PageState fast(10.0, 10.0), plain(10.0, 10.0);
                         ApplyStyleText(fast, text);

                         float opacity = 1.0F;
                         for (const auto& [name, value] : naive::Declarations(text)) {
                             if (name == "stroke-width") ApplyStrokeWidth(plain, value);
                             if (name == "stroke-linecap") ApplyLineCap(plain, value);
                             if (name == "fill-opacity") ReadOpacityFactor(value, opacity);
                         }
                         MultiplyOpacity(plain, 1.0F, opacity);
                         if (!(fast.stroke == plain.stroke)) return "another stroke";
                         return fast.fill == plain.fill ? "" : "another fill";
                     });
}

// The first generic family of the list becomes the font; the other names do not exist.
TEST(ReadersPropertyTest, FontFamilyLists) {
    CheckRandomTexts({"serif", "sans-", "cursive", "fantasy", "mono", "space", "\"", "'", ",", ",", " ", "\t",
                      "Nobody", "ü", ";", "monospace", " serif ", "'cursive'"},
                     [](const std::string& text) -> std::string {
                         for (const auto source : {PropertySource::kAttribute, PropertySource::kStyle}) {
                             std::string expected = "none";
                             for (const std::string& family : naive::Families(text)) {
                                 if (family == "serif") expected = "times.ttf";
                                 if (family == "sans-serif") expected = "arial.ttf";
                                 if (family == "cursive")
                                     expected =
                                         source == PropertySource::kStyle ? "Adobe Poetica" : "MTCORSVA.TTF";
                                 if (family == "fantasy") expected = "Alpha Geometrique";
                                 if (family == "monospace") expected = "cour.ttf";
                                 if (expected != "none") break;
                             }
                             PageState state(10.0, 10.0);
                             ApplyFontFamily(state, text, source);
                             const ORVFont* font = state.text.GetFont();
                             const std::string actual(font ? font->GetName().GetView() : "none");
                             if (actual != expected) return actual + ", not " + expected;
                         }
                         return {};
                     });
}

}  // namespace
