#include "plugin/style/style_attribute.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "plugin/style/property_table.h"
#include "tests/plugin/values/page_state.h"

namespace {

// What a style finds: members that differ from their defaults where the rules look at what was there.
void Touch(SvgDrawState& state) {
    state.drawStyle = kDrawUndecided;
    state.text.SetAnchor(30);
    state.text.SetExtraSpacing(5.0);
}

struct StyleCase {
    const char* name;
    const char* style;
    std::function<double(const SvgDrawState&)> member;
    double expected;
};
void PrintTo(const StyleCase& row, std::ostream* out) { *out << row.style; }

double DrawStyle(const SvgDrawState& s) { return s.drawStyle; }
double Height(const SvgDrawState& s) { return s.text.GetHeight(); }
double Weight(const SvgDrawState& s) { return s.text.GetWeight(); }
double Anchor(const SvgDrawState& s) { return s.text.GetAnchor(); }
double Mode(const SvgDrawState& s) { return s.text.GetWritingMode(); }
double Spacing(const SvgDrawState& s) { return s.text.GetExtraSpacing(); }
double PageWidth(const SvgDrawState& s) { return s.pageWidth; }
double Width(const SvgDrawState& s) { return s.stroke.GetStrokeWidth(); }
double Cap(const SvgDrawState& s) { return s.stroke.GetStrokeCap(); }
double Join(const SvgDrawState& s) { return s.stroke.GetStrokeJoin(); }
double Type(const SvgDrawState& s) { return s.stroke.GetStrokeType(); }
double Rule(const SvgDrawState& s) { return s.fill.GetFillRule(); }
double FillOpacity(const SvgDrawState& s) { return s.fill.GetFillColourTransparency(); }
double StrokeOpacity(const SvgDrawState& s) { return s.stroke.GetStrokeColourTransparency(); }
double FillColour(const SvgDrawState& s) { return s.fill.GetFillColourIndex(); }
double StrokeColour(const SvgDrawState& s) { return s.stroke.GetStrokeColourIndex(); }
double CurrentFill(const SvgDrawState& s) { return s.fillCurrentColour; }
double CurrentStroke(const SvgDrawState& s) { return s.strokeCurrentColour; }

class StyleTest : public testing::TestWithParam<StyleCase> {};
TEST_P(StyleTest, SetsTheMember) {
    PageState state(300.0, 400.0);
    Touch(state);
    ApplyStyleText(state, GetParam().style);
    EXPECT_EQ(GetParam().member(state), GetParam().expected);
}
constexpr auto kName = [](const auto& row) { return std::string(row.param.name); };
INSTANTIATE_TEST_SUITE_P(
    Splitting, StyleTest,
    testing::Values(StyleCase{"BlanksAreTrimmed", "  fill  :  none  ", DrawStyle, 0},
                    StyleCase{"TabIsNotTrimmedFromTheValue", "fill:\tnone", DrawStyle, 2},
                    StyleCase{"TabIsNotTrimmedFromTheName", "\tfill:none", DrawStyle, 4},
                    StyleCase{"LastSemicolonIsFine", "fill:none;", DrawStyle, 0},
                    StyleCase{"DoubledSemicolonLosesTheRest", "fill:red;;stroke:blue", DrawStyle, 2},
                    StyleCase{"LeadingSemicolonLosesAll", ";fill:none", DrawStyle, 4},
                    StyleCase{"BlankBetweenSemicolonsLosesNothing", "fill:red; ;stroke:blue", DrawStyle, 3},
                    StyleCase{"WithoutColonIsSkipped", "fill none;stroke:blue", DrawStyle, 1},
                    StyleCase{"NameIsExact", "FILL:none", DrawStyle, 4},
                    StyleCase{"SecondColonBelongsToTheValue", "fill:none:", DrawStyle, 2},
                    StyleCase{"LaterOneWins", "stroke-width:2;stroke-width:3", Width, 3}),
    kName);
INSTANTIATE_TEST_SUITE_P(
    Paint, StyleTest,
    testing::Values(StyleCase{"FillNone", "fill:none", DrawStyle, 0},
                    StyleCase{"FillColour", "fill:red", DrawStyle, 2},
                    StyleCase{"FillColourIndex", "fill:red", FillColour, 1},
                    StyleCase{"FillUnreadableTurnsOn", "fill:rot", DrawStyle, 2},
                    StyleCase{"FillEmptySaysNothing", "fill:", DrawStyle, 4},
                    StyleCase{"EmptyFillKeepsAnEarlierMention", "fill:none;fill:", DrawStyle, 0},
                    StyleCase{"StrokeColour", "stroke:red", DrawStyle, 1},
                    StyleCase{"StrokeColourIndex", "stroke:red", StrokeColour, 1},
                    StyleCase{"StrokeUrlTurnsOn", "stroke:url(#g)", DrawStyle, 1},
                    StyleCase{"StrokeNone", "stroke:none", DrawStyle, 0},
                    StyleCase{"Color", "color:red", CurrentFill, 1},
                    StyleCase{"ColorOfStrokes", "color:red", CurrentStroke, 1},
                    StyleCase{"ColorUnreadable", "color:rot", CurrentFill, 0},
                    StyleCase{"Rule", "fill-rule:evenodd", Rule, 1},
                    StyleCase{"Width", "stroke-width:2mm", Width, 2.0 * 3.543307},
                    StyleCase{"Cap", "stroke-linecap:square", Cap, 11},
                    StyleCase{"Join", "stroke-linejoin:bevel", Join, 15},
                    StyleCase{"Dash", "stroke-dasharray:1", Type, 7},
                    StyleCase{"FactorsAreNotMultiplied", "fill-opacity:0.5;opacity:0.8", FillOpacity, 204},
                    StyleCase{"LaterSpecificFactorWins", "opacity:0.8;fill-opacity:0.5", FillOpacity, 128},
                    StyleCase{"OtherFactorStays", "opacity:0.8;fill-opacity:0.5", StrokeOpacity, 204},
                    StyleCase{"FactorBeyondOneWraps", "fill-opacity:2", FillOpacity, 254},
                    StyleCase{"OpacityInherit", "opacity:inherit", FillOpacity, 255},
                    StyleCase{"UnreadableOpacityKeepsTheFactor", "opacity:.5;opacity:x", FillOpacity, 128}),
    kName);
INSTANTIATE_TEST_SUITE_P(
    Text, StyleTest,
    testing::Values(StyleCase{"Size", "font-size:20", Height, 20},
                    StyleCase{"SizeWithUnit", "font-size:1in", Height, 25.4 * 3.543307},
                    StyleCase{"SizePercentIsNotDivided", "font-size:50%", Height, 600},
                    StyleCase{"SizePercentIsAnInteger", "font-size:1.9%", Height, 12},
                    StyleCase{"SizeLosesEveryPercent", "font-size:%5%0", Height, 600},
                    StyleCase{"SizeKeyword", "font-size:large", Height, 12},
                    StyleCase{"SizeUnreadable", "font-size:x", Height, 12},
                    StyleCase{"Weight300IsNormal", "font-weight:300", Weight, 25},
                    StyleCase{"WeightBold", "font-weight:bold", Weight, 26},
                    StyleCase{"WeightUnknown", "font-weight:fat", Weight, 25},
                    StyleCase{"AnchorMiddleKeepsTheVerticalPart", "text-anchor:middle", Anchor, 34},
                    StyleCase{"AnchorInherit", "text-anchor:inherit", Anchor, 30},
                    StyleCase{"WritingMode", "writing-mode:tb-rl", Mode, 2},
                    StyleCase{"LetterSpacingResetsTheSpacing", "letter-spacing:2", Spacing, 0},
                    StyleCase{"LetterSpacingReplacesThePageWidth", "letter-spacing:2", PageWidth, 2},
                    StyleCase{"LetterSpacingUnreadableKeepsThePageWidth", "letter-spacing:x", PageWidth, 300},
                    StyleCase{"LetterSpacingUnreadableResets", "letter-spacing:x", Spacing, 0},
                    StyleCase{"LetterSpacingNormalIsNoKeyword", "letter-spacing:normal", Spacing, 0},
                    StyleCase{"LetterSpacingMisspeltKeyword", "letter-spacing:nornal", Spacing, 5},
                    StyleCase{"LetterSpacingInherit", "letter-spacing:inherit", Spacing, 5}),
    kName);

TEST(StyleTextTest, EmptyChangesNothing) {
    PageState state(300.0, 400.0);
    state.fill.SetFillColourTransparency(77);
    ApplyStyleText(state, "");
    EXPECT_EQ(state.fill.GetFillColourTransparency(), 77);
    EXPECT_EQ(state.drawStyle, kDrawFill);
}

TEST(StyleTextTest, WithoutOpacityTheOpacityStays) {
    PageState state(300.0, 400.0);
    state.fill.SetFillColourTransparency(77);
    ApplyStyleText(state, "x:y");
    EXPECT_EQ(state.fill.GetFillColourTransparency(), 77);
}

TEST(PropertyTableTest, KnowsSixtyNames) {
    EXPECT_EQ(GetProperties().size(), 60U);
    for (const PropertyRow& row : GetProperties()) EXPECT_EQ(FindProperty(row.name), &row) << row.name;
    for (const char* unknown : {"", "a", "zoom", "fil", "fills", "Fill", "font-famil"})
        EXPECT_EQ(FindProperty(unknown), nullptr) << unknown;
}

// Recognised and dropped: none of these may change anything.
TEST(PropertyTableTest, IgnoredPropertiesChangeNothing) {
    for (const PropertyRow& row : GetProperties()) {
        if (row.apply) continue;
        for (const char* value : {"none", "1", "italic", "middle", "url(#m)", "hidden"}) {
            PageState state(300.0, 400.0);
            const SvgInheritedState before = state;
            ApplyStyleText(state, std::string(row.name) + ":" + value);
            EXPECT_EQ(state.stroke, before.stroke) << row.name;
            EXPECT_EQ(state.fill, before.fill) << row.name;
            EXPECT_EQ(state.text, before.text) << row.name;
            EXPECT_EQ(state.drawStyle, before.drawStyle) << row.name;
            EXPECT_EQ(state.markers, before.markers) << row.name;
            EXPECT_EQ(state.pageWidth, before.pageWidth) << row.name;
        }
    }
}

TEST(PropertyTableTest, TheHonouredOnesAreThese) {
    std::string honoured;
    for (const PropertyRow& row : GetProperties())
        if (row.apply) honoured += std::string(row.name) + " ";
    EXPECT_EQ(
        honoured,
        "color fill fill-opacity fill-rule font-family font-size font-weight letter-spacing opacity stroke "
        "stroke-dasharray stroke-linecap stroke-linejoin stroke-opacity stroke-width text-anchor "
        "writing-mode ");
}

}  // namespace
