// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/text_properties.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "tests/support/named_rows.h"
#include "tests/support/page_state.h"
#include "tests/support/parsed_element.h"

namespace {

std::string FontOf(std::string_view families, PropertySource source) {
    PageState state(10.0, 10.0);
    ApplyFontFamily(state, families, source);
    return state.text.GetFont() ? std::string(state.text.GetFont()->GetName().GetView()) : "none";
}

struct FamilyCase {
    const char* name;
    const char* families;
    const char* attributeFont;
    const char* styleFont;
};
class FontFamilyTest : public testing::TestWithParam<FamilyCase> {};
TEST_P(FontFamilyTest, TakesTheFirstThatIsThere) {
    EXPECT_EQ(FontOf(GetParam().families, PropertySource::kAttribute), GetParam().attributeFont);
    EXPECT_EQ(FontOf(GetParam().families, PropertySource::kStyle), GetParam().styleFont);
}
INSTANTIATE_TEST_SUITE_P(
    Families, FontFamilyTest,
    testing::Values(FamilyCase{"Serif", "serif", "times.ttf", "times.ttf"},
                    FamilyCase{"SansSerif", "sans-serif", "arial.ttf", "arial.ttf"},
                    FamilyCase{"CursiveDiffers", "cursive", "MTCORSVA.TTF", "Adobe Poetica"},
                    FamilyCase{"Fantasy", "fantasy", "Alpha Geometrique", "Alpha Geometrique"},
                    FamilyCase{"Monospace", "monospace", "cour.ttf", "cour.ttf"},
                    FamilyCase{"ListGoesOn", "\"Nobody's\", 'Nowhere' , serif", "times.ttf", "times.ttf"},
                    FamilyCase{"QuotesGoEverywhere", "se\"ri'f", "times.ttf", "times.ttf"},
                    FamilyCase{"EmptyPieces", " , '' ,,monospace", "cour.ttf", "cour.ttf"},
                    FamilyCase{"FirstOfTwo", "fantasy,serif", "Alpha Geometrique", "Alpha Geometrique"},
                    FamilyCase{"CatalogueNamesAreNoFamilies", "times.ttf", "none", "none"},
                    FamilyCase{"TabIsNotTrimmed", "\tserif", "none", "none"},
                    FamilyCase{"QuotedGeneric", "'serif'", "times.ttf", "times.ttf"},
                    FamilyCase{"BlanksInsideQuotesGo", "' serif '", "times.ttf", "times.ttf"},
                    FamilyCase{"CommaInsideQuotesSeparates", "'no,serif'", "times.ttf", "times.ttf"},
                    FamilyCase{"GenericIsExact", "Serif", "none", "none"},
                    FamilyCase{"Unknown", "Nobody", "none", "none"}, FamilyCase{"Empty", "", "none", "none"}),
    kNameOfRow);

TEST(FontFamilyTest, AnInstalledFamilyIsFoundByFamilyFullAndPostScriptName) {
    ORVUnicodeString file, foundry, family, style, full, postScript;
    ASSERT_GE(
        ORVOutlineFont::sGetFontOtherGeneralInformation(1, file, foundry, family, style, full, postScript),
        0);
    for (const ORVUnicodeString& name : {family, full, postScript}) {
        EXPECT_NE(FontOf(name.GetView(), PropertySource::kAttribute), "none") << name.ConvertToChar();
        EXPECT_NE(FontOf(name.GetView(), PropertySource::kStyle), "none") << name.ConvertToChar();
    }
}

TEST(FontFamilyTest, NoFontLeavesTheOldOne) {
    PageState state(10.0, 10.0);
    ApplyFontFamily(state, "serif", PropertySource::kAttribute);
    const ORVFont* before = state.text.GetFont();
    ApplyFontFamily(state, "Nobody", PropertySource::kAttribute);
    EXPECT_EQ(state.text.GetFont(), before);
}

TEST(FontFamilyTest, APlainFontIsFoundByTheAttributeOnly) {
    const ORVFontFace* face = ORVFont::sGetFont("arial.ttf")->GetFace(kWeightNormal);
    ASSERT_NE(face, nullptr);
    ASSERT_NE(ORVFont::sRegisterPlainFont("Drafting Pen.font", face->GetFilePath()), nullptr);
    EXPECT_EQ(FontOf("Drafting Pen", PropertySource::kAttribute), "Drafting Pen.font");
    EXPECT_EQ(FontOf("'Nobody', \"Drafting Pen\" , serif", PropertySource::kAttribute), "Drafting Pen.font");
    EXPECT_EQ(FontOf("Drafting Pen.font", PropertySource::kAttribute), "none");
    EXPECT_EQ(FontOf("drafting pen", PropertySource::kAttribute), "none");
    EXPECT_EQ(FontOf("Drafting Pen", PropertySource::kStyle), "none");
    EXPECT_EQ(FontOf("Drafting Pen, serif", PropertySource::kStyle), "times.ttf");
}

TEST(FontSizeTest, AttributeRules) {
    const auto size = [](const char* text) {
        PageState state(300.0, 400.0);
        state.text.SetHeight(10.0);
        ApplyFontSize(state, text);
        return state.text.GetHeight();
    };
    EXPECT_EQ(size("20"), 20.0);
    EXPECT_EQ(size("200%"), 2000.0);
    EXPECT_EQ(size("x%"), 10.0);
    EXPECT_EQ(size("%"), 10.0);
    EXPECT_EQ(size("12.9%"), 120.0);
    EXPECT_EQ(size(" 2%0%"), 200.0);
    EXPECT_EQ(size("0%"), 0.0);
    EXPECT_EQ(size("2mm"), 2.0 * 3.543307);
    EXPECT_EQ(size("2em"), 2.0);
    EXPECT_EQ(size("-1%"), 42949672950.0);
    for (const char* kept : {"xx-small", "x-small", "small", "medium", "large", "x-large", "xx-large",
                             "larger", "smaller", "", "big", "inherit"})
        EXPECT_EQ(size(kept), 10.0) << kept;
    EXPECT_EQ(size("-5"), -5.0);
}

TEST(FontWeightTest, Keywords) {
    const auto weight = [](int before, const char* text) {
        PageState state(10.0, 10.0);
        state.text.SetWeight(before);
        ApplyFontWeight(state, text);
        return state.text.GetWeight();
    };
    for (const auto& [text, expected] : {std::pair{"100", 24},
                                         {"200", 24},
                                         {"300", 25},
                                         {"400", 25},
                                         {"500", 25},
                                         {"normal", 25},
                                         {"600", 26},
                                         {"700", 26},
                                         {"bold", 26},
                                         {"800", 27},
                                         {"900", 27},
                                         {"inherit", 99},
                                         {"Bold", 99},
                                         {"", 99},
                                         {"1000", 99}})
        EXPECT_EQ(weight(99, text), expected) << text;
    // Reversed on purpose.
    for (const auto& [before, after] : {std::pair{24, 24}, {25, 24}, {26, 25}, {27, 26}, {28, 28}, {23, 23}})
        EXPECT_EQ(weight(before, "bolder"), after) << before;
    for (const auto& [before, after] : {std::pair{24, 25}, {25, 26}, {26, 27}, {27, 27}, {28, 28}, {23, 23}})
        EXPECT_EQ(weight(before, "lighter"), after) << before;
}

TEST(TextAnchorTest, ChangesTheHorizontalPartOnly) {
    for (int before = 26; before <= 41; ++before) {
        const int vertical = before >= 28 && before <= 39 ? (before - 28) % 4 : 1;
        for (const auto& [text, base] : {std::pair{"start", 28}, {"middle", 32}, {"end", 36}}) {
            PageState state(10.0, 10.0);
            state.text.SetAnchor(before);
            ApplyTextAnchor(state, text);
            EXPECT_EQ(state.text.GetAnchor(), base + vertical) << text << " on " << before;
        }
        for (const char* kept : {"inherit", "", "Middle", "left"}) {
            PageState state(10.0, 10.0);
            state.text.SetAnchor(before);
            ApplyTextAnchor(state, kept);
            EXPECT_EQ(state.text.GetAnchor(), before);
        }
    }
}

TEST(WritingModeTest, Keywords) {
    for (const auto& [text, mode] : {std::pair{"lr-tb", 0},
                                     {"lr", 0},
                                     {"rl-tb", 1},
                                     {"rl", 1},
                                     {"tb-rl", 2},
                                     {"tb", 2},
                                     {"inherit", 7},
                                     {"", 7},
                                     {"LR", 7}}) {
        PageState state(10.0, 10.0);
        state.text.SetWritingMode(7);
        ApplyWritingModeValue(state, text);
        EXPECT_EQ(state.text.GetWritingMode(), mode) << text;
    }
}

TEST(TextVersionTest, TakesNumbersFromZero) {
    for (const auto& [text, version] :
         {std::pair{"3", 3}, {"0", 0}, {"-1", 9}, {"x", 9}, {"", 9}, {" +7x", 7}}) {
        PageState state(10.0, 10.0);
        state.text.SetTextVersion(9);
        ApplyTextVersion(state, text);
        EXPECT_EQ(state.text.GetTextVersion(), version) << text;
    }
}

template <class Element>
class TextAttributesTest : public testing::Test {
protected:
    // The result of applying a step with these attributes to a state.
    template <class Step>
    SvgInheritedState After(Step step, const std::string& attributes) {
        PageState state(300.0, 400.0);
        state.text.SetExtraSpacing(5.0);
        step(state, ParsedElement<Element>("<r xmlns:tlv='t' " + attributes + "/>").Get());
        return state;
    }
};
TYPED_TEST_SUITE(TextAttributesTest, ElementAccesses);

TYPED_TEST(TextAttributesTest, LetterSpacingSetsTheSpacing) {
    for (const auto& [attributes, spacing] :
         {std::pair{"letter-spacing='2mm'", 2.0 * 3.543307},
          {"letter-spacing='-2'", -2.0},
          {"letter-spacing='50%'", std::sqrt(250000.0 * 0.5) * 50.0 / 100.0},
          {"letter-spacing='abc'", 0.0},
          {"letter-spacing='normal'", 0.0},
          {"letter-spacing='Inherit'", 0.0},
          {"letter-spacing='nornal'", 5.0},
          {"letter-spacing='inherit'", 5.0},
          {"letter-spacing=''", 5.0},
          {"", 5.0}}) {
        const SvgInheritedState state = this->After(ApplyTextLayout<TypeParam>, attributes);
        EXPECT_EQ(state.text.GetExtraSpacing(), spacing) << attributes;
        EXPECT_EQ(state.pageWidth, 300.0) << attributes;
    }
}

TYPED_TEST(TextAttributesTest, LayoutReadsTheAnchorAndIgnoresTheBaseline) {
    const SvgInheritedState state =
        this->After(ApplyTextLayout<TypeParam>, "text-anchor='end' alignment-baseline='hanging'");
    EXPECT_EQ(state.text.GetAnchor(), 37);
    EXPECT_EQ(this->After(ApplyTextLayout<TypeParam>, "").text.GetAnchor(), 29);
}

TYPED_TEST(TextAttributesTest, FontReadsFamilySizeAndWeight) {
    const SvgInheritedState state = this->After(
        ApplyFont<TypeParam>,
        "font-family='cursive' font-size='200%' font-weight='800' font-style='italic' font='9px serif'");
    EXPECT_EQ(state.text.GetFont()->GetName().GetView(), "MTCORSVA.TTF");
    EXPECT_EQ(state.text.GetHeight(), 2400.0);
    EXPECT_EQ(state.text.GetWeight(), 27);
    EXPECT_EQ(state.text.GetSlant(), 0.0F);
}

TYPED_TEST(TextAttributesTest, AbsentAndEmptyAttributesChangeNothing) {
    for (const char* attributes :
         {"",
          "font-family='' font-size='' font-weight='' writing-mode='' tlv:text-version='' text-anchor=''"}) {
        ORVPrtTextAttributes untouched;
        untouched.SetExtraSpacing(5.0);
        EXPECT_EQ(this->After(ApplyFont<TypeParam>, attributes).text, untouched);
        EXPECT_EQ(this->After(ApplyTextLayout<TypeParam>, attributes).text, untouched);
        EXPECT_EQ(this->After(ApplyWritingMode<TypeParam>, attributes).text, untouched);
    }
}

TYPED_TEST(TextAttributesTest, WritingModeReadsTheVersionToo) {
    SvgInheritedState state = this->After(ApplyWritingMode<TypeParam>, "tlv:text-version='3'");
    EXPECT_EQ(state.text.GetWritingMode(), 0);
    EXPECT_EQ(state.text.GetTextVersion(), 3);
    state = this->After(ApplyWritingMode<TypeParam>, "writing-mode='tb' tlv:text-version='-1'");
    EXPECT_EQ(state.text.GetWritingMode(), 2);
    EXPECT_EQ(state.text.GetTextVersion(), 0);
    EXPECT_EQ(this->After(ApplyWritingMode<TypeParam>, "text-version='3'").text.GetTextVersion(), 0);
}

}  // namespace
