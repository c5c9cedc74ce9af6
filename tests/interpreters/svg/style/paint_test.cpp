// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/paint.h"

#include <gtest/gtest.h>

#include <cmath>
#include <concepts>
#include <ostream>
#include <string>

#include "platform/model/ORVPrtRectangleElt.h"
#include "tests/support/built_model.h"
#include "tests/support/named_rows.h"
#include "tests/support/page_state.h"
#include "tests/support/parsed_element.h"
#include "tests/support/sample_images.h"
#include "tests/support/sketch_case.h"
#include "tests/support/test_texts.h"

namespace {

struct DrawStyleCase {
    int before;
    PaintMention stroke, fill;
    int after;

    friend std::ostream& operator<<(std::ostream& out, const DrawStyleCase& row) {
        return out << row.before << " to " << row.after;
    }
};

class DrawStyleUpdateTest : public testing::TestWithParam<DrawStyleCase> {};
TEST_P(DrawStyleUpdateTest, FollowsTheMentions) {
    PageState state(10.0, 10.0);
    state.drawStyle = GetParam().before;
    UpdateDrawStyle(state, {GetParam().stroke, GetParam().fill});
    EXPECT_EQ(state.drawStyle, GetParam().after);
}
constexpr auto kUnsaid = PaintMention::kNone;
constexpr auto kOff = PaintMention::kOff;
constexpr auto kOn = PaintMention::kOn;
INSTANTIATE_TEST_SUITE_P(StrokeOn, DrawStyleUpdateTest,
                         testing::Values(DrawStyleCase{0, kOn, kUnsaid, 1}, DrawStyleCase{1, kOn, kUnsaid, 1},
                                         DrawStyleCase{2, kOn, kUnsaid, 3}, DrawStyleCase{3, kOn, kUnsaid, 3},
                                         DrawStyleCase{4, kOn, kUnsaid, 1}));
INSTANTIATE_TEST_SUITE_P(StrokeOff, DrawStyleUpdateTest,
                         testing::Values(DrawStyleCase{0, kOff, kUnsaid, 0},
                                         DrawStyleCase{1, kOff, kUnsaid, 0},
                                         DrawStyleCase{2, kOff, kUnsaid, 2},
                                         DrawStyleCase{3, kOff, kUnsaid, 2},
                                         DrawStyleCase{4, kOff, kUnsaid, 0}));
INSTANTIATE_TEST_SUITE_P(FillOn, DrawStyleUpdateTest,
                         testing::Values(DrawStyleCase{0, kUnsaid, kOn, 2}, DrawStyleCase{1, kUnsaid, kOn, 3},
                                         DrawStyleCase{2, kUnsaid, kOn, 2}, DrawStyleCase{3, kUnsaid, kOn, 3},
                                         DrawStyleCase{4, kUnsaid, kOn, 2}));
INSTANTIATE_TEST_SUITE_P(FillOff, DrawStyleUpdateTest,
                         testing::Values(DrawStyleCase{0, kUnsaid, kOff, 0},
                                         DrawStyleCase{1, kUnsaid, kOff, 1},
                                         DrawStyleCase{2, kUnsaid, kOff, 0},
                                         DrawStyleCase{3, kUnsaid, kOff, 1},
                                         DrawStyleCase{4, kUnsaid, kOff, 0}));
// The stroke is applied first and decides undetermined cases.
INSTANTIATE_TEST_SUITE_P(Both, DrawStyleUpdateTest,
                         testing::Values(DrawStyleCase{4, kOn, kOn, 3}, DrawStyleCase{4, kOff, kOn, 2},
                                         DrawStyleCase{4, kOn, kOff, 1}, DrawStyleCase{4, kOff, kOff, 0},
                                         DrawStyleCase{4, kUnsaid, kUnsaid, 4},
                                         DrawStyleCase{7, kOn, kOn, 7}));

struct OpacityCase {
    const char* name;
    int before;
    float factor;
    int after;
};
class OpacityTest : public testing::TestWithParam<OpacityCase> {};
TEST_P(OpacityTest, MultipliesRoundsUpAndKeepsTheLowByte) {
    PageState state(10.0, 10.0);
    state.fill.SetFillColourTransparency(static_cast<std::uint8_t>(GetParam().before));
    MultiplyOpacity(state, 1.0F, GetParam().factor);
    EXPECT_EQ(state.fill.GetFillColourTransparency(), GetParam().after);
    EXPECT_EQ(state.stroke.GetStrokeColourTransparency(), 255);
    MultiplyOpacity(state, GetParam().factor, 1.0F);
    EXPECT_EQ(state.fill.GetFillColourTransparency(), GetParam().after);
}
INSTANTIATE_TEST_SUITE_P(
    Opacity, OpacityTest,
    testing::Values(OpacityCase{"Half", 255, 0.5F, 128}, OpacityCase{"Quarter", 255, 0.25F, 64},
                    OpacityCase{"One", 77, 1.0F, 77}, OpacityCase{"Zero", 255, 0.0F, 0},
                    OpacityCase{"Compounds", 128, 0.5F, 64}, OpacityCase{"RoundsUp", 255, 0.001F, 1},
                    OpacityCase{"InSinglePrecision", 255, 0.2F, 51}, OpacityCase{"TwoWraps", 255, 2.0F, 254},
                    OpacityCase{"NegativeWraps", 255, -1.0F, 1},
                    OpacityCase{"OverflowIsNothing", 255, 1e20F, 0},
                    OpacityCase{"NegativeOverflowIsNothing", 255, -1e20F, 0}),
    kNameOfRow);

TEST(PaintValueTest, FillValues) {
    PageState state(10.0, 10.0);
    state.fillCurrentColour = 9;
    EXPECT_EQ(ApplyFillPaint(state, ""), kUnsaid);
    EXPECT_EQ(ApplyFillPaint(state, "none"), kOff);
    EXPECT_EQ(state.fill.GetFillColourIndex(), 0U);
    EXPECT_EQ(ApplyFillPaint(state, "red"), kOn);
    EXPECT_EQ(state.fill.GetFillColourIndex(), 1U);
    for (const char* kept :
         {"inherit", "None", "currentcolor", "url(#missing)", "url(x)", " url(#missing)", "rgb(0,9,9)url"}) {
        EXPECT_EQ(ApplyFillPaint(state, kept), kOn) << kept;
        EXPECT_EQ(state.fill.GetFillColourIndex(), 1U) << kept;
    }
    EXPECT_EQ(ApplyFillPaint(state, "currentColor"), kOn);
    EXPECT_EQ(state.fill.GetFillColourIndex(), 9U);
}

TEST(PaintValueTest, StrokeValues) {
    PageState state(10.0, 10.0);
    state.strokeCurrentColour = 9;
    EXPECT_EQ(ApplyStrokePaint(state, ""), kUnsaid);
    EXPECT_EQ(ApplyStrokePaint(state, "none"), kOff);
    EXPECT_EQ(ApplyStrokePaint(state, "red"), kOn);
    EXPECT_EQ(state.stroke.GetStrokeColourIndex(), 1U);
    for (const char* kept : {"url(#g)", "inherit", "burl", "rgb(0,9,9)url"}) {
        EXPECT_EQ(ApplyStrokePaint(state, kept), kOn) << kept;
        EXPECT_EQ(state.stroke.GetStrokeColourIndex(), 1U) << kept;
    }
    EXPECT_EQ(ApplyStrokePaint(state, "currentColor"), kOn);
    EXPECT_EQ(state.stroke.GetStrokeColourIndex(), 9U);
}

TEST(PaintValueTest, Keywords) {
    PageState state(10.0, 10.0);
    for (const auto& [text, cap] :
         {std::pair{"round", 12}, {"square", 11}, {"butt", 10}, {"Round", 10}, {"", 10}}) {
        ApplyLineCap(state, text);
        EXPECT_EQ(state.stroke.GetStrokeCap(), cap) << text;
    }
    for (const auto& [text, join] :
         {std::pair{"round", 14}, {"bevel", 15}, {"miter", 13}, {"arcs", 13}, {"", 13}}) {
        ApplyLineJoin(state, text);
        EXPECT_EQ(state.stroke.GetStrokeJoin(), join) << text;
    }
    for (const auto& [text, rule] :
         {std::pair{"evenodd", 1}, {"EvenOdd", 1}, {"nonzero", 0}, {"inherit", 0}}) {
        ApplyFillRule(state, text);
        EXPECT_EQ(state.fill.GetFillRule(), rule) << text;
    }
}

TEST(PaintValueTest, StrokeWidthIsALength) {
    PageState state(300.0, 400.0);
    ApplyStrokeWidth(state, "2mm");
    EXPECT_EQ(state.stroke.GetStrokeWidth(), 2.0 * 3.543307);
    for (const char* kept : {"", "thick"}) ApplyStrokeWidth(state, kept);
    EXPECT_EQ(state.stroke.GetStrokeWidth(), 2.0 * 3.543307);
    ApplyStrokeWidth(state, "-1");
    EXPECT_EQ(state.stroke.GetStrokeWidth(), -1.0);
    ApplyStrokeWidth(state, "50%");  // of the mean diagonal
    EXPECT_EQ(state.stroke.GetStrokeWidth(), std::sqrt(250000.0 * 0.5) * 50.0 / 100.0);
}

TEST(DashArrayTest, ReadsNumbersAndDropsTheRest) {
    PageState state(10.0, 10.0);
    ApplyDashArray(state, "");
    EXPECT_EQ(state.stroke.GetStrokeType(), 0);
    ApplyDashArray(state, "5, 3,x, 2");
    EXPECT_EQ(state.stroke.GetStrokeType(), 7);
    EXPECT_EQ(state.stroke.GetStrokeDashPattern(), (std::vector<float>{5.0F, 3.0F, 2.0F}));
    ApplyDashArray(state, "none");
    EXPECT_EQ(state.stroke.GetStrokeType(), 0);
    EXPECT_EQ(state.stroke.GetStrokeDashPattern().size(), 3U) << "none leaves the old pattern in place";
    ApplyDashArray(state, "x");
    EXPECT_EQ(state.stroke.GetStrokeType(), 7);
    EXPECT_EQ(state.stroke.GetStrokeDashPattern().size(), 3U);
    ApplyDashArray(state, " , ");
    EXPECT_EQ(state.stroke.GetStrokeDashPattern().size(), 3U);
    ApplyDashArray(state, "1\t2,-3");
    EXPECT_EQ(state.stroke.GetStrokeDashPattern(), (std::vector<float>{1.0F, -3.0F}));
    ApplyDashArray(state, "NONE,0.1");
    EXPECT_EQ(state.stroke.GetStrokeDashPattern(), (std::vector<float>{0.1F}));
    ApplyDashArray(state, "5mm 50%");
    EXPECT_EQ(state.stroke.GetStrokeDashPattern(), (std::vector<float>{5.0F, 50.0F})) << "no units";
}

TEST(DashArrayTest, CountsInAByte) {
    for (const auto& [count, kept] : {std::pair{255U, 255U}, {256U, 0U}, {257U, 1U}, {515U, 3U}}) {
        PageState state(10.0, 10.0);
        ApplyDashArray(state, Repeat("7 ", count));
        EXPECT_EQ(state.stroke.GetStrokeDashPattern().size(), kept) << count;
    }
}

TEST(DashArrayTest, KeepsTheFirstOfTooMany) {
    PageState state(10.0, 10.0);
    ApplyDashArray(state, "3 " + Repeat("7 ", 256));
    EXPECT_EQ(state.stroke.GetStrokeDashPattern(), (std::vector<float>{3.0F}));
}

TEST(OpacityFactorTest, KeepsTheDefaultOfWhatIsNoNumber) {
    for (const char* kept : {"", " ", "inherit", "x", "Inherit"}) {
        float factor = 0.75F;
        EXPECT_FALSE(ReadOpacityFactor(kept, factor)) << kept;
        EXPECT_EQ(factor, 0.75F) << kept;
    }
    for (const auto& [text, expected] :
         {std::pair{"0.5", 0.5F}, {" .25x", 0.25F}, {"50%", 50.0F}, {"-1", -1.0F}, {"1e1", 10.0F}}) {
        float factor = 0.75F;
        EXPECT_TRUE(ReadOpacityFactor(text, factor)) << text;
        EXPECT_EQ(factor, expected) << text;
    }
}

// Attributes of one element, through both kinds of access.
template <class Element>
class PaintAttributesTest : public testing::Test {
protected:
    void Opacity(const std::string& attributes) { ApplyOpacity(state_, Parsed(attributes).Get()); }
    void Colour(const std::string& attributes) { ApplyCurrentColour(state_, Parsed(attributes).Get()); }
    void Paint(const std::string& attributes) { ApplyPaint(state_, Parsed(attributes).Get()); }
    static ParsedElement<Element> Parsed(const std::string& attributes) {
        return ParsedElement<Element>("<r " + attributes + "/>");
    }

    PageState state_{300.0, 400.0};
};
TYPED_TEST_SUITE(PaintAttributesTest, ElementAccesses);

TYPED_TEST(PaintAttributesTest, OpacityIsTheDefaultOfBothOthers) {
    this->Opacity("opacity='.5'");
    EXPECT_EQ(this->state_.stroke.GetStrokeColourTransparency(), 128);
    EXPECT_EQ(this->state_.fill.GetFillColourTransparency(), 128);
    this->Opacity("opacity='.5' stroke-opacity='.25'");
    EXPECT_EQ(this->state_.stroke.GetStrokeColourTransparency(), 32);
    EXPECT_EQ(this->state_.fill.GetFillColourTransparency(), 64);
    this->Opacity("opacity='x' stroke-opacity='' fill-opacity='inherit'");
    EXPECT_EQ(this->state_.stroke.GetStrokeColourTransparency(), 32);
    EXPECT_EQ(this->state_.fill.GetFillColourTransparency(), 64);
}

TYPED_TEST(PaintAttributesTest, ColorSetsBothCurrentColours) {
    this->Colour("color='red'");
    EXPECT_EQ(this->state_.strokeCurrentColour, 1U);
    EXPECT_EQ(this->state_.fillCurrentColour, 1U);
    for (const char* kept : {"", "color=''", "color='inherit'", "color='none'", "color='currentColor'"}) {
        this->Colour(kept);
        EXPECT_EQ(this->state_.strokeCurrentColour, 1U) << kept;
        EXPECT_EQ(this->state_.fillCurrentColour, 1U) << kept;
    }
    EXPECT_EQ(this->state_.stroke, ORVPrtStrokeAttributes());
    EXPECT_EQ(this->state_.fill, ORVPrtFillAttributes());
}

TYPED_TEST(PaintAttributesTest, ReadsAllSeven) {
    this->Paint(
        "fill='red' fill-rule='evenodd' stroke='blue' stroke-dasharray='1 2' stroke-linecap='round' "
        "stroke-linejoin='bevel' stroke-width='3'");
    ORVPrtFillAttributes fill;
    fill.SetFillColourIndex(1);
    fill.SetFillRule(kFillEvenOdd);
    EXPECT_EQ(this->state_.fill, fill);
    ORVPrtStrokeAttributes stroke;
    const float dashes[] = {1.0F, 2.0F};
    stroke.SetStrokeColourIndex(2);
    stroke.SetStrokeType(kLineUserDash);
    stroke.SetStrokeDashPattern(dashes, 2);
    stroke.SetStrokeCap(kCapRound);
    stroke.SetStrokeJoin(kJoinBevel);
    stroke.SetStrokeWidth(3.0);
    EXPECT_EQ(this->state_.stroke, stroke);
    EXPECT_EQ(this->state_.drawStyle, kDrawFillAndStroke);
}

TYPED_TEST(PaintAttributesTest, AbsentFillStopsWhereItIsAFailure) {
    constexpr bool kStops = std::same_as<TypeParam, DomElementAccess>;
    this->Paint(
        "fill-rule='evenodd' stroke='blue' stroke-dasharray='1 2' stroke-linecap='round' "
        "stroke-linejoin='bevel' stroke-width='3'");
    EXPECT_EQ(this->state_.fill.GetFillRule(), kStops ? kFillNonZero : kFillEvenOdd);
    EXPECT_EQ(this->state_.stroke == ORVPrtStrokeAttributes(), kStops);
    EXPECT_EQ(this->state_.drawStyle, kStops ? kDrawFill : kDrawFillAndStroke);
}

TYPED_TEST(PaintAttributesTest, EmptyFillStopsNothing) {
    this->Paint("fill='' stroke='blue' stroke-width='3'");
    EXPECT_EQ(this->state_.stroke.GetStrokeWidth(), 3.0);
    EXPECT_EQ(this->state_.drawStyle, kDrawFillAndStroke);
    EXPECT_EQ(this->state_.fill, ORVPrtFillAttributes());
}

TYPED_TEST(PaintAttributesTest, WithoutPaintTheDrawStyleStays) {
    for (const int before : {kDrawNothing, kDrawStroke, kDrawFill, kDrawFillAndStroke, kDrawUndecided}) {
        this->state_.drawStyle = before;
        this->Paint("fill='' stroke='' stroke-width='3'");
        EXPECT_EQ(this->state_.drawStyle, before);
    }
}

TYPED_TEST(PaintAttributesTest, CurrentColourIsLookedUpWhereItIsUsed) {
    this->state_.strokeCurrentColour = 5;
    this->state_.fillCurrentColour = 6;
    this->Paint("fill='currentColor' stroke='currentColor' color='red'");
    EXPECT_EQ(this->state_.stroke.GetStrokeColourIndex(), 5U);
    EXPECT_EQ(this->state_.fill.GetFillColourIndex(), 6U);
}

class PaintedTest : public testing::TestWithParam<SketchCase> {};
TEST_P(PaintedTest, GivesThePaint) {
    ExpectPaintedSketch(
        "<svg xmlns:xlink='x' width='200' height='100'>" + std::string(GetParam().content) + "</svg>",
        GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(
    Attributes, PaintedTest,
    testing::Values(SketchCase{"SpecificOpacityReplacesTheGeneral",
                               "<rect fill='red' stroke='red' opacity='.5' fill-opacity='.25'/>",
                               "rect(0,100 0,100):3 fill=#ff0000@64 stroke=#ff0000@128"},
                    SketchCase{"StrokeOpacityAlone", "<rect fill='red' stroke='red' stroke-opacity='.5'/>",
                               "rect(0,100 0,100):3 fill=#ff0000 stroke=#ff0000@128"},
                    SketchCase{"OpacityInherit", "<rect fill='red' opacity='inherit'/>",
                               "rect(0,100 0,100):2 fill=#ff0000 stroke=#000000"},
                    SketchCase{"OpacityUnreadable", "<rect fill='red' opacity='x' fill-opacity=''/>",
                               "rect(0,100 0,100):2 fill=#ff0000 stroke=#000000"},
                    SketchCase{"OpacityCompoundsWithStyle",
                               "<rect fill='red' opacity='0.5' style='opacity:0.5'/>",
                               "rect(0,100 0,100):2 fill=#ff0000@64 stroke=#000000@64"},
                    SketchCase{"CurrentColourOfBoth",
                               "<rect color='blue' fill='currentColor' stroke='currentColor'/>",
                               "rect(0,100 0,100):3 fill=#0000ff stroke=#0000ff"},
                    SketchCase{"ColourUnreadable", "<rect color='nothing' fill='currentColor'/>",
                               "rect(0,100 0,100):2 fill=#000000 stroke=#000000"},
                    SketchCase{"FillNoneStrokeGiven", "<rect fill='none' stroke='blue' stroke-width='2'/>",
                               "rect(0,100 0,100):1 fill=#000000 stroke=#0000ff w2"}),
    kNameOfRow);

TEST(PatternFillTest, TakesTheBitmapOfThePattern) {
    const std::string image = "<image xlink:href='data:image/png;base64," + ToBase64(SamplePng(2, 3)) + "'/>";
    const std::string pattern = "<defs><pattern id='p'>" + image + "<rect/></pattern><rect id='r'/></defs>";
    const auto expect = [&](const std::string& paint, const std::string& expected) {
        ExpectPaintedSketch("<svg width='200' height='100'>" + pattern + "<rect " + paint + "/></svg>",
                            "rect(0,100 0,100):2 " + expected + " stroke=#000000");
    };
    expect("fill='url(#p)'", "fill=#000000 pattern(2x3)");
    expect("fill='url(#P) '", "fill=#000000");  // the blank is part of the identifier
    expect("fill='url(#P))'", "fill=#000000 pattern(2x3)");
    expect("fill='url(#r)'", "fill=#000000");
    expect("fill='url(#q)'", "fill=#000000");
    expect("fill='red' style='fill:url(#p)'", "fill=#ff0000 pattern(2x3)");
    expect("fill='url(#p)' style='fill:red'", "fill=#ff0000 pattern(2x3)");  // the fill style is kept
}

TEST(PatternFillTest, TheLastBitmapStays) {
    const std::string images = "<image xlink:href='data:image/png;base64," + ToBase64(SamplePng(2, 3)) +
                               "'/><g/><image xlink:href='data:image/png;base64," +
                               ToBase64(SamplePng(4, 5)) + "'/><image/>";
    ExpectPaintedSketch(Drawing("<pattern id='p'>" + images +
                                "</pattern><rect fill='url(#p)'/><rect fill='' stroke='url(#p)'/>"),
                        "rect(0,100 0,100):2 fill=#000000 pattern(4x5) stroke=#000000 "
                        "rect(0,100 0,100):3 fill=#000000 stroke=#000000");
}

TEST(PatternFillTest, WithoutABitmapTheStyleIsPatternAllTheSame) {
    for (const Backend backend : kBackends) {
        const BuiltModel built(Drawing("<pattern id='p'><image/></pattern><rect fill='url(#p)'/>"
                                       "<rect fill='url(#q)'/><rect fill='xurl(#p)'/>"),
                               {.backend = backend});
        const auto fillOf = [&](std::size_t index) {
            return static_cast<const ORVPrtRectangleElt*>(built.GetPage().GetChildren().at(index))
                ->GetFillAttributes();
        };
        EXPECT_EQ(fillOf(0).GetFillStyle(), kFillPattern);
        EXPECT_EQ(fillOf(0).GetFillPatternImage(), nullptr);
        EXPECT_EQ(fillOf(1), ORVPrtFillAttributes());
        EXPECT_EQ(fillOf(2), ORVPrtFillAttributes());
    }
}

TEST(PatternFillTest, ABrokenBitmapDoesNotHideTheOnesBehindIt) {
    const std::string good = "<image xlink:href='data:image/png;base64," + ToBase64(SamplePng(2, 3)) + "'/>";
    for (const std::string broken :
         {"<image xlink:href='none.png'/>", "<image xlink:href='data:image/png;base64,AAAA'/>"})
        for (const std::string& images : {broken + good, good + broken, broken + good + broken})
            ExpectPaintedSketch(Drawing("<pattern id='p'>" + images + "</pattern><rect fill='url(#p)'/>"),
                                "rect(0,100 0,100):2 fill=#000000 pattern(2x3) stroke=#000000");
}

}  // namespace
