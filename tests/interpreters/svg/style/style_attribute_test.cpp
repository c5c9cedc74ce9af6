// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/style_attribute.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <string>

#include "interpreters/svg/style/property_table.h"
#include "platform/visualization/fonts/ORVFont.h"
#include "tests/support/named_rows.h"
#include "tests/support/page_state.h"
#include "tests/support/parsed_element.h"

namespace {

// Initial state of a style: members differ from their defaults where the rules depend on previous values.
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
constexpr auto kName = kNameOfRow;
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
                    StyleCase{"BlankAttributeIsAStep", " ", DrawStyle, 4},
                    StyleCase{"EmptyName", ":none;stroke:blue", DrawStyle, 1},
                    StyleCase{"TabBehindTheName", "fill\t:none", DrawStyle, 4},
                    StyleCase{"LineBreakIsNotTrimmed", "fill:red;\nstroke:blue", DrawStyle, 2},
                    StyleCase{"InnerBlanksStay", "fi ll:none", DrawStyle, 4},
                    StyleCase{"ColonAfterASemicolonIsItsOwn", "fill;stroke:blue", DrawStyle, 1},
                    StyleCase{"CommentIsNoComment", "/*x*/fill:none", DrawStyle, 4},
                    StyleCase{"ImportanceIsPartOfTheValue", "fill:none !important", DrawStyle, 2},
                    StyleCase{"UnknownChangesNothing", "zoom:2;stroke:blue", DrawStyle, 1},
                    StyleCase{"LaterOneWins", "stroke-width:2;stroke-width:3", Width, 3}),
    kName);
INSTANTIATE_TEST_SUITE_P(
    Paint, StyleTest,
    testing::Values(
        StyleCase{"FillNone", "fill:none", DrawStyle, 0}, StyleCase{"FillColour", "fill:red", DrawStyle, 2},
        StyleCase{"FillColourIndex", "fill:red", FillColour, 1},
        StyleCase{"FillUnreadableTurnsOn", "fill:rot", DrawStyle, 2},
        StyleCase{"FillEmptySaysNothing", "fill:", DrawStyle, 4},
        StyleCase{"EmptyFillKeepsAnEarlierMention", "fill:none;fill:", DrawStyle, 0},
        StyleCase{"StrokeColour", "stroke:red", DrawStyle, 1},
        StyleCase{"StrokeColourIndex", "stroke:red", StrokeColour, 1},
        StyleCase{"StrokeUrlTurnsOn", "stroke:url(#g)", DrawStyle, 1},
        StyleCase{"StrokeNone", "stroke:none", DrawStyle, 0}, StyleCase{"Color", "color:red", CurrentFill, 1},
        StyleCase{"ColorOfStrokes", "color:red", CurrentStroke, 1},
        StyleCase{"ColorUnreadable", "color:rot", CurrentFill, 0},
        StyleCase{"StrokeEmptySaysNothing", "stroke:", DrawStyle, 4},
        StyleCase{"LaterMentionWins", "stroke:red;stroke:none", DrawStyle, 0},
        StyleCase{"FillAndStroke", "stroke:red;fill:red", DrawStyle, 3},
        StyleCase{"CurrentColourOfBefore", "color:red;fill:currentColor", FillColour, 1},
        StyleCase{"CurrentColourOfStrokes", "color:red;stroke:currentColor", StrokeColour, 1},
        StyleCase{"CurrentColourComesTooLate", "fill:currentColor;color:red", FillColour, 0},
        StyleCase{"ColorEmpty", "color:", CurrentStroke, 0},
        StyleCase{"ColorLeavesTheDrawStyle", "color:red", DrawStyle, 4},
        StyleCase{"CapRound", "stroke-linecap:round", Cap, 12},
        StyleCase{"CapUnknown", "stroke-linecap:flat", Cap, 10},
        StyleCase{"JoinRound", "stroke-linejoin:round", Join, 14},
        StyleCase{"JoinUnknown", "stroke-linejoin:arcs", Join, 13},
        StyleCase{"RuleUnknown", "fill-rule:Evenodd", Rule, 0},
        StyleCase{"DashNone", "stroke-dasharray:1;stroke-dasharray:none", Type, 0},
        StyleCase{"DashEmpty", "stroke-dasharray:", Type, 0},
        StyleCase{"WidthUnreadable", "stroke-width:thin", Width, 1},
        StyleCase{"WidthLeavesTheDrawStyle", "stroke-width:2", DrawStyle, 4},
        StyleCase{"StrokeOpacity", "stroke-opacity:.5", StrokeOpacity, 128},
        StyleCase{"StrokeOpacityIsNotOfTheFill", "stroke-opacity:.5", FillOpacity, 255},
        StyleCase{"FillOpacityIsNotOfTheStroke", "fill-opacity:.5", StrokeOpacity, 255},
        StyleCase{"OpacityIsOfBoth", "opacity:.5", StrokeOpacity, 128},
        StyleCase{"OpacityEmpty", "opacity:.5;opacity:", StrokeOpacity, 128},
        StyleCase{"StrokeFactorsAreNotMultiplied", "stroke-opacity:.5;opacity:.8", StrokeOpacity, 204},
        StyleCase{"StrokeOpacityInherit", "stroke-opacity:inherit", StrokeOpacity, 255},
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
                    StyleCase{"SizePercentOfWhatIsSet", "font-size:2;font-size:3%", Height, 6},
                    StyleCase{"SizePercentUnreadable", "font-size:x%", Height, 12},
                    StyleCase{"SizeEmpty", "font-size:", Height, 12},
                    StyleCase{"SizeKeywordIsExact", "font-size:Large", Height, 12},
                    StyleCase{"WeightBolderIsLighter", "font-weight:bold;font-weight:bolder", Weight, 25},
                    StyleCase{"WeightLighterIsBolder", "font-weight:lighter", Weight, 26},
                    StyleCase{"AnchorStart", "text-anchor:start", Anchor, 30},
                    StyleCase{"AnchorEnd", "text-anchor:end", Anchor, 38},
                    StyleCase{"WritingModeUnknown", "writing-mode:tb;writing-mode:inherit", Mode, 2},
                    StyleCase{"LetterSpacingPercentIsOfTheMeanDiagonal", "letter-spacing:100%", PageWidth,
                              std::sqrt((300.0 * 300.0 + 400.0 * 400.0) * 0.5) * 100.0 / 100.0},
                    StyleCase{"LetterSpacingChangesWhatPercentagesAre", "letter-spacing:0;stroke-width:100%",
                              Width, std::sqrt((0.0 * 0.0 + 400.0 * 400.0) * 0.5) * 100.0 / 100.0},
                    StyleCase{"LetterSpacingEmptyResets", "letter-spacing:", Spacing, 0},
                    StyleCase{"LetterSpacingEmptyKeepsThePageWidth", "letter-spacing:", PageWidth, 300},
                    StyleCase{"LetterSpacingKeywordKeepsThePageWidth", "letter-spacing:nornal", PageWidth,
                              300},
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

TEST(StyleTextTest, OpacityCompoundsWithWhatIsThere) {
    PageState state(300.0, 400.0);
    for (const int expected : {128, 64, 32, 16, 8, 4, 2, 1, 1}) {
        ApplyStyleText(state, "opacity:.5");
        EXPECT_EQ(state.fill.GetFillColourTransparency(), expected);
        EXPECT_EQ(state.stroke.GetStrokeColourTransparency(), expected);
    }
}

TEST(StyleTextTest, FontFamilyIsThatOfStyles) {
    PageState state(300.0, 400.0);
    ApplyStyleText(state, "font-family: 'Nobody', cursive");
    ASSERT_NE(state.text.GetFont(), nullptr);
    EXPECT_EQ(state.text.GetFont()->GetName().GetView(), "Adobe Poetica");
}

template <class Element>
class StyleAttributeTest : public testing::Test {};
TYPED_TEST_SUITE(StyleAttributeTest, ElementAccesses);

TYPED_TEST(StyleAttributeTest, IsAppliedWhereItIsThere) {
    PageState state(300.0, 400.0);
    state.drawStyle = kDrawUndecided;
    for (const char* nothing : {"<r/>", "<r style=''/>", "<r STYLE='fill:none'/>"}) {
        ApplyStyleAttribute(state, ParsedElement<TypeParam>(nothing).Get());
        EXPECT_EQ(state.drawStyle, kDrawUndecided) << nothing;
    }
    ApplyStyleAttribute(state, ParsedElement<TypeParam>("<r style='stroke:red'/>").Get());
    EXPECT_EQ(state.drawStyle, kDrawStroke);
}

TEST(PropertyTableTest, KnowsSixtyNames) {
    for (const char* name : {"font",
                             "font-family",
                             "font-size",
                             "font-size-adjust",
                             "font-stretch",
                             "font-style",
                             "font-variant",
                             "font-weight",
                             "direction",
                             "letter-spacing",
                             "text-decoration",
                             "unicode-bidi",
                             "word-spacing",
                             "alignment-baseline",
                             "baseline-shift",
                             "dominant-baseline",
                             "glyph-orientation-horizontal",
                             "glyph-orientation-vertical",
                             "kerning",
                             "text-anchor",
                             "writing-mode",
                             "clip",
                             "cursor",
                             "overflow",
                             "clip-path",
                             "clip-rule",
                             "mask",
                             "enable-background",
                             "filter",
                             "flood-color",
                             "lighting-color",
                             "stop-color",
                             "stop-opacity",
                             "color",
                             "fill",
                             "fill-rule",
                             "stroke",
                             "stroke-dasharray",
                             "stroke-dashoffset",
                             "stroke-linecap",
                             "stroke-linejoin",
                             "stroke-miterlimit",
                             "stroke-width",
                             "color-interpolation",
                             "color-rendering",
                             "opacity",
                             "stroke-opacity",
                             "fill-opacity",
                             "display",
                             "image-rendering",
                             "pointer-events",
                             "shape-rendering",
                             "text-rendering",
                             "visibility",
                             "marker-start",
                             "marker-mid",
                             "marker-end",
                             "color-interpolation-filters",
                             "color-profile",
                             "marker"})
        EXPECT_NE(FindProperty(name), nullptr) << name;
    EXPECT_EQ(GetProperties().size(), 60U);
    for (const PropertyRow& row : GetProperties()) EXPECT_EQ(FindProperty(row.name), &row) << row.name;
    for (const char* unknown : {"", "a", "zoom", "fil", "fills", "Fill", "font-famil"})
        EXPECT_EQ(FindProperty(unknown), nullptr) << unknown;
}

// Recognised but ignored: none of these may change anything.
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

TEST(StyleScannerTest, SplitsUpToWhatIsLost) {
    StyleScanner scanner(" a : b;c;d:e:f;;g:h");
    StyleDeclaration declaration;
    ASSERT_TRUE(scanner.Next(declaration));
    EXPECT_EQ(declaration.text, " a : b");
    EXPECT_EQ(declaration.name, "a");
    EXPECT_EQ(declaration.value, "b");
    ASSERT_TRUE(scanner.Next(declaration));
    EXPECT_EQ(declaration.text, "c");
    EXPECT_EQ(declaration.name, "");
    EXPECT_EQ(declaration.value, "");
    ASSERT_TRUE(scanner.Next(declaration));
    EXPECT_EQ(declaration.name, "d");
    EXPECT_EQ(declaration.value, "e:f");
    EXPECT_FALSE(scanner.Next(declaration));
    EXPECT_EQ(scanner.GetRest(), ";g:h");
}

TEST(StyleScannerTest, ALastSemicolonLosesNothing) {
    StyleScanner scanner("a:b;");
    StyleDeclaration declaration;
    EXPECT_TRUE(scanner.Next(declaration));
    EXPECT_FALSE(scanner.Next(declaration));
    EXPECT_EQ(scanner.GetRest(), "");
}

}  // namespace
