// Holds every value reader to its plain transcription on texts that are nearly right.

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtImageElt.h"
#include "plugin/style/paint.h"
#include "plugin/style/style_attribute.h"
#include "plugin/values/colour.h"
#include "plugin/values/length.h"
#include "plugin/values/point_list.h"
#include "plugin/values/transform_list.h"
#include "plugin/values/view_box.h"
#include "tests/plugin/values/naive_values.h"
#include "tests/plugin/values/page_state.h"

namespace {

constexpr int kTexts = 20'000;

// Texts put together from pieces, the same on every run.
class Texts {
public:
    Texts(unsigned seed, std::vector<std::string> pieces) : random_(seed), pieces_(std::move(pieces)) {}
    std::string Next() {
        std::string text;
        for (auto count = random_() % 9; count > 0; --count) text += pieces_[random_() % pieces_.size()];
        return text;
    }

private:
    std::mt19937 random_;
    std::vector<std::string> pieces_;
};

// The same bits, or both no number.
bool Same(double a, double b) {
    return std::bit_cast<std::uint64_t>(a) == std::bit_cast<std::uint64_t>(b) || (a != a && b != b);
}

const std::vector<std::string> kNumberPieces{"1", "2.5", ".5", "-",    "+",  "e",     "E3", "e-2", "0",  "7",
                                             " ", "  ",  "\t", "%",    "pt", "pc",    "cm", "mm",  "in", "p",
                                             "m", "px",  "em", "auto", "ü",  "1e999", ",",  "."};

TEST(ReadersPropertyTest, Lengths) {
    Texts texts(1, kNumberPieces);
    const PageState state(300.0, 400.0);
    const auto agree = [&](auto fast, auto plain, const std::string& text) {
        double a = -7.0, b = -7.0;
        const int statusA = fast(state, text, a), statusB = plain(state, text, b);
        ASSERT_EQ(statusA, statusB) << text;
        ASSERT_TRUE(Same(a, b)) << text << ": " << a << ", not " << b;
    };
    for (int i = 0; i < kTexts; ++i) {
        const std::string text = texts.Next();
        agree(ParseLength, naive::Length, text);
        agree(ParseHorizontalLength, naive::HorizontalLength, text);
        agree(ParseVerticalLength, naive::VerticalLength, text);
        agree(ParseVerticalCoordinate, naive::VerticalCoordinate, text);
    }
}

TEST(ReadersPropertyTest, Colours) {
    Texts texts(2, {"rgb",        "RGB", "(",    ")",          ",",
                    "%",          " ",   "#",    "f",          "0c",
                    "A",          "12",  "255",  "300",        "-1",
                    "4294967296", "red", "Blue", "ü",          "+",
                    "x",          "1.5", "#f0c", "rgb(1,2,3)", "rgb(10%,20%,30%)"});
    for (int i = 0; i < kTexts; ++i) {
        const std::string text = texts.Next();
        PageState state(10.0, 10.0);
        unsigned int index = 99;
        int expected[3] = {};
        const bool isColour = naive::Colour(text, expected);
        ASSERT_EQ(ParseColour(state, text, index) == 1, isColour) << text;
        if (!isColour) continue;
        const ORVPrtColourTable::Colour colour = state.page->GetColourTable()->GetColour(index);
        ASSERT_EQ((std::vector<int>{colour.red, colour.green, colour.blue}),
                  std::vector<int>(std::begin(expected), std::end(expected)))
            << text;
    }
}

TEST(ReadersPropertyTest, Transforms) {
    Texts texts(3,
                {"matrix", "translate", "scale", "rotate",   "skewX",         "skewY", "Translate", "SCALE",
                 "(",      ")",         "(1 2)", "(30,4,5)", "(1,2,3,4,5,6)", "(x 5)", ";",         " ",
                 ",",      "-1",        "2e3",   "()",       "( )",           "mat",   "rotat",     "s"});
    for (int i = 0; i < kTexts; ++i) {
        const std::string text = texts.Next();
        const PageState state(30.0, 40.0, i % 2);
        const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
        ASSERT_EQ(ApplyTransformList(state, text, group.get()), 1);
        ASSERT_EQ(group->GetTransformAttributes().GetOperations(), naive::Transform(state, text)) << text;
    }
}

TEST(ReadersPropertyTest, ViewBoxes) {
    Texts texts(4, {"0", "10", "-5", "1e2", ".5", "x", ",", " ", "  ", "\t", "20px"});
    for (int i = 0; i < kTexts; ++i) {
        const std::string text = texts.Next();
        ORVPrtViewBox a{-1.0, -2.0, -3.0, -4.0}, b = a;
        ASSERT_EQ(ReadViewBox(text, a), naive::ViewBox(text, b)) << text;
        ASSERT_EQ(a, b) << text;
    }
}

TEST(ReadersPropertyTest, PointLists) {
    Texts texts(5, {"1", "2.5", "-3", "x", ",", " ", "  ", "1cm", "50%", "%", "e", "\t", "4 5", "in"});
    std::vector<double> numbers;
    for (int i = 0; i < kTexts; ++i) {
        const std::string text = texts.Next();
        const PageState state(200.0, 100.0, i % 2);
        ReadCoordinateNumbers(state, text, numbers);
        ASSERT_EQ(numbers, naive::Numbers(state, text)) << text;
    }
}

TEST(ReadersPropertyTest, DashArrays) {
    Texts texts(6, {"1", "2.5", "-3", "x", ",", " ", "  ", "5px", "e", "none", "\t", "4 5"});
    for (int i = 0; i < kTexts; ++i) {
        const std::string text = texts.Next();
        PageState state(10.0, 10.0);
        ApplyDashArray(state, text);
        if (text.empty() || text == "none") {
            ASSERT_EQ(state.stroke, ORVPrtStrokeAttributes());
            continue;
        }
        ASSERT_EQ(state.stroke.GetStrokeType(), 7) << text;
        ASSERT_EQ(state.stroke.GetStrokeDashPattern(), naive::Dashes(text)) << text;
    }
}

// Splitting shows in what the last stroke-width, cap and opacity of the attribute were.
TEST(ReadersPropertyTest, StyleSplitting) {
    Texts texts(7, {"stroke-width", "stroke-linecap", "fill-opacity", ":", ":", ";", ";", " ", "2", "3",
                    "round", "square", "0.5", "\t", "stroke-width:4", "stroke-linecap : butt", "x"});
    for (int i = 0; i < kTexts; ++i) {
        const std::string text = texts.Next();
        PageState fast(10.0, 10.0);
        ApplyStyleText(fast, text);

        PageState plain(10.0, 10.0);
        float opacity = 1.0F;
        for (const auto& [name, value] : naive::Declarations(text)) {
            if (name == "stroke-width") ApplyStrokeWidth(plain, value);
            if (name == "stroke-linecap") ApplyLineCap(plain, value);
            if (name == "fill-opacity") ReadOpacityFactor(value, opacity);
        }
        MultiplyOpacity(plain, 1.0F, opacity);
        ASSERT_EQ(fast.stroke, plain.stroke) << text;
        ASSERT_EQ(fast.fill, plain.fill) << text;
    }
}

}  // namespace
