// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/ORVFont.h"

#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

constexpr const char* kFixedNames[] = {"times.ttf",    "arial.ttf",     "cour.ttf",
                                       "MTCORSVA.TTF", "Adobe Poetica", "Alpha Geometrique"};

struct Names {
    ORVUnicodeString file, foundry, family, style, fullName, postScriptName;
};

Names NamesOf(int index) {
    Names names;
    EXPECT_EQ(
        ORVOutlineFont::sGetFontOtherGeneralInformation(index, names.file, names.foundry, names.family,
                                                        names.style, names.fullName, names.postScriptName),
        1);
    return names;
}

/// Looks up a font by a walk through the catalogue. The look-up by index must give the same font.
const ORVFont* Walk(const std::string& family, bool forStyle) {
    for (int i = 1; i <= ORVFont::sGetFontCount(); ++i) {
        const ORVUnicodeString name = ORVFont::sGetFontName(i);
        if (forStyle && name.SearchSubString(".font") >= 0) continue;
        const ORVFont* font = ORVFont::sGetFont(name.GetView(), 0);
        if (!font) continue;
        if (font->GetKind() == ORVFont::kPlain) {
            ORVUnicodeString plainName, file;
            int kind = 0;
            ORVFont::sGetFontGeneralInformation(font->GetCatalogueIndex(), plainName, kind, file);
            plainName.ReplaceAll(".font", "");
            if (!forStyle && plainName.GetView() == family) return font;
            continue;
        }
        const Names names = NamesOf(font->GetCatalogueIndex());
        if (names.family.GetView() == family || names.fullName.GetView() == family ||
            names.postScriptName.GetView() == family)
            return font;
    }
    return nullptr;
}

/// Returns the path of some outline font file, for registering plain fonts.
std::string SomeFontFile() {
    const ORVFontFace* face = ORVFont::sGetFont("arial.ttf")->GetFace(25);
    return face ? face->GetFilePath() : std::string();
}

const ORVFont* RegisteredFont() {
    static const ORVFont* const font = ORVFont::sRegisterPlainFont("PlotterOne.font", SomeFontFile());
    return font;
}

class CatalogueTest : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_GT(ORVFont::sGetFontCount(), 0) << "the tests need fonts-liberation and fonts-dejavu-core";
        ASSERT_NE(RegisteredFont(), nullptr);
    }
};

TEST_F(CatalogueTest, EveryNameLeadsBackToItsFont) {
    std::set<std::string> seen;
    for (int i = 1; i <= ORVFont::sGetFontCount(); ++i) {
        const ORVUnicodeString& name = ORVFont::sGetFontName(i);
        EXPECT_TRUE(seen.insert(name.ConvertToChar()).second) << name.ConvertToChar();
        const ORVFont* font = ORVFont::sGetFont(name.GetView());
        ASSERT_NE(font, nullptr) << name.ConvertToChar();
        EXPECT_EQ(font->GetCatalogueIndex(), i);
        EXPECT_EQ(font->GetName(), name);
    }
}

TEST_F(CatalogueTest, IndexEqualsTheWalk) {
    std::set<std::string> families = {
        "",      "Nowhere Sans",   "liberation sans", "PlotterOne", "PlotterOne.font",
        "Arial", "LiberationSans", "Liberation Sans "};
    for (int i = 1; i <= ORVFont::sGetFontCount(); ++i) {
        families.insert(ORVFont::sGetFontName(i).ConvertToChar());
        if (ORVFont::sGetFont(ORVFont::sGetFontName(i).GetView())->GetKind() == ORVFont::kPlain) continue;
        const Names names = NamesOf(i);
        for (const ORVUnicodeString* name :
             {&names.foundry, &names.family, &names.style, &names.fullName, &names.postScriptName})
            families.insert(name->ConvertToChar());
    }
    for (const std::string& family : families) {
        EXPECT_EQ(FindFontForAttribute(family), Walk(family, false)) << family;
        EXPECT_EQ(FindFontForStyle(family), Walk(family, true)) << family;
    }
}

TEST_F(CatalogueTest, FamilyFullAndPostScriptNameAllMatch) {
    const ORVFont* regular = FindFontForAttribute("Liberation Sans");
    ASSERT_NE(regular, nullptr);
    EXPECT_EQ(regular->GetName().GetView(), "LiberationSans-Regular.ttf");
    EXPECT_EQ(FindFontForStyle("Liberation Sans"), regular);
    const ORVFont* bold = FindFontForAttribute("Liberation Sans Bold");
    ASSERT_NE(bold, nullptr);
    EXPECT_EQ(bold->GetName().GetView(), "LiberationSans-Bold.ttf");
    EXPECT_EQ(FindFontForAttribute("LiberationSans-Bold"), bold);
    EXPECT_EQ(FindFontForAttribute("LIBERATION SANS"), nullptr);
}

TEST_F(CatalogueTest, UprightRegularFaceComesFirstInItsFamily) {
    for (const char* family :
         {"Liberation Sans", "Liberation Serif", "Liberation Mono", "DejaVu Sans", "DejaVu Sans Mono"}) {
        const ORVFont* font = FindFontForAttribute(family);
        ASSERT_NE(font, nullptr) << family;
        EXPECT_FALSE(font->GetFace(25)->IsItalic()) << family;
        EXPECT_EQ(font->GetFace(25)->GetWeight(), 400) << family;
    }
}

TEST_F(CatalogueTest, PlainFontMatchesOnlyThroughTheAttribute) {
    EXPECT_EQ(FindFontForAttribute("PlotterOne"), RegisteredFont());
    EXPECT_EQ(FindFontForStyle("PlotterOne"), nullptr);
    EXPECT_EQ(FindFontForAttribute("PlotterOne.font"), nullptr);
    EXPECT_EQ(ORVFont::sGetFont("PlotterOne.font"), RegisteredFont());
    EXPECT_EQ(RegisteredFont()->GetKind(), ORVFont::kPlain);
    EXPECT_EQ(RegisteredFont()->GetFace(26), RegisteredFont()->GetFace(25));
    Names names;
    EXPECT_EQ(ORVOutlineFont::sGetFontOtherGeneralInformation(
                  RegisteredFont()->GetCatalogueIndex(), names.file, names.foundry, names.family, names.style,
                  names.fullName, names.postScriptName),
              -1);
}

TEST_F(CatalogueTest, RegistrationRefusesTakenNamesAndOtherFiles) {
    EXPECT_EQ(ORVFont::sRegisterPlainFont("PlotterOne.font", SomeFontFile()), nullptr);
    EXPECT_EQ(ORVFont::sRegisterPlainFont("", SomeFontFile()), nullptr);
    EXPECT_EQ(ORVFont::sRegisterPlainFont("Missing.font", "/nowhere/at/all.ttf"), nullptr);
    EXPECT_EQ(ORVFont::sRegisterPlainFont("Folder.font", "/"), nullptr);
    EXPECT_EQ(ORVFont::sGetFont("Missing.font"), nullptr);
}

TEST_F(CatalogueTest, FixedNamesAreAlwaysFound) {
    for (const char* name : kFixedNames) {
        const ORVFont* font = ORVFont::sGetFont(name);
        ASSERT_NE(font, nullptr) << name;
        EXPECT_EQ(font->GetName().GetView(), name);
        EXPECT_NE(font->GetFace(25), nullptr) << name;
        EXPECT_EQ(ORVFont::sGetFont(name), font);
        EXPECT_NE(font->GetKind(), ORVFont::kPlain);
        EXPECT_GE(font->GetCatalogueIndex(), 1);
    }
    EXPECT_EQ(ORVFont::sGetFont("ARIAL.TTF.TTF"), nullptr);
    EXPECT_EQ(ORVFont::sGetFont(""), nullptr);
}

TEST_F(CatalogueTest, FixedNamesHaveTheLookTheyStandFor) {
    const auto widthOf = [](const char* name, std::string_view text) {
        ORVTextStyle style;
        style.font = ORVFont::sGetFont(name);
        return ORVMeasureText(text, style).advance;
    };
    EXPECT_DOUBLE_EQ(widthOf("cour.ttf", "i"), widthOf("cour.ttf", "m"));
    EXPECT_LT(widthOf("arial.ttf", "i"), widthOf("arial.ttf", "m"));
    EXPECT_NE(ORVFont::sGetFont("times.ttf")->GetFace(25), ORVFont::sGetFont("arial.ttf")->GetFace(25));
    EXPECT_NE(ORVFont::sGetFont("cour.ttf")->GetFace(25), ORVFont::sGetFont("arial.ttf")->GetFace(25));
    if (!FindFontForStyle("Z003") && !FindFontForStyle("TeX Gyre Chorus")) {
        EXPECT_TRUE(ORVFont::sGetFont("MTCORSVA.TTF")->GetFace(25)->IsItalic());
    }
}

TEST_F(CatalogueTest, WeightsTakeTheFamilysFaces) {
    const ORVFont* sans = FindFontForAttribute("Liberation Sans");
    EXPECT_EQ(sans->GetFace(25)->GetWeight(), 400);
    EXPECT_EQ(sans->GetFace(24), sans->GetFace(25));  // the family has no light face
    EXPECT_EQ(sans->GetFace(26)->GetWeight(), 700);
    EXPECT_EQ(sans->GetFace(26)->GetFamily(), "Liberation Sans");
    EXPECT_FALSE(sans->GetFace(26)->IsItalic());
    EXPECT_EQ(sans->GetFace(27), sans->GetFace(26));  // nor one heavier than bold
    EXPECT_EQ(sans->GetFace(0), sans->GetFace(25));

    const ORVFont* italic = FindFontForAttribute("Liberation Serif Italic");
    EXPECT_TRUE(italic->GetFace(26)->IsItalic());
    EXPECT_EQ(italic->GetFace(26)->GetWeight(), 700);

    // At normal weight, a face requested by its own name is used as it is.
    const ORVFont* bold = FindFontForAttribute("Liberation Sans Bold");
    EXPECT_EQ(bold->GetFace(25)->GetWeight(), 700);
}

TEST_F(CatalogueTest, IndexesOutsideGiveNothing) {
    ORVUnicodeString name("kept"), file;
    int kind = 5;
    for (const int index : {-1, 0, ORVFont::sGetFontCount() + 1}) {
        EXPECT_TRUE(ORVFont::sGetFontName(index).IsEmpty());
        EXPECT_EQ(ORVFont::sGetFontGeneralInformation(index, name, kind, file), -1);
    }
    EXPECT_EQ(name.GetView(), "kept");
    EXPECT_EQ(kind, 5);
}

TEST_F(CatalogueTest, VersionCheckTakesEveryFont) {
    const ORVFont* font = ORVFont::sGetFont("arial.ttf");
    const ORVFont* before = font;
    EXPECT_GE(ORVFontCheckFontForVersion(font, 3), 0);
    EXPECT_EQ(font, before);
    const ORVFont* none = nullptr;
    EXPECT_LT(ORVFontCheckFontForVersion(none, 0), 0);
}

TEST_F(CatalogueTest, ManyThreadsMayAsk) {
    std::vector<std::thread> threads;
    std::vector<const ORVFont*> found(8);
    for (std::size_t i = 0; i < found.size(); ++i)
        threads.emplace_back([&found, i] {
            for (int round = 0; round < 200; ++round) {
                for (const char* name : kFixedNames) ORVFont::sGetFont(name)->GetFace(24 + round % 4);
                found[i] = FindFontForStyle("Liberation Mono");
            }
        });
    for (std::thread& thread : threads) thread.join();
    for (const ORVFont* font : found) EXPECT_EQ(font, FindFontForStyle("Liberation Mono"));
}

TEST_F(CatalogueTest, FamiliesAreChosenByNameByMetricsOrByLook) {
    const struct {
        const char *families, *file;
        bool isOfFamily;
    } kRows[] = {
        {"Liberation Mono", "LiberationMono-Regular.ttf", true},
        {"liberation MONO", "LiberationMono-Regular.ttf", true},
        {" Liberation\n  Mono ", "LiberationMono-Regular.ttf", true},
        {"'Liberation  Mono', Liberation Sans", "LiberationSans-Regular.ttf", true},
        {"Nowhere, 'Liberation Sans'", "LiberationSans-Regular.ttf", true},
        {"Arial", "LiberationSans-Regular.ttf", true},
        {"Nowhere, Courier New", "LiberationMono-Regular.ttf", true},
        {"Nowhere", "LiberationSerif-Regular.ttf", false},
        {"Nowhere Else", "LiberationSerif-Regular.ttf", false},
        {"", "LiberationSerif-Regular.ttf", true},
    };
    for (const auto& row : kRows) {
        const ORVFontChoice choice = ORVChooseFont({.families = row.families});
        EXPECT_EQ(choice.font->GetName().GetView(), row.file) << row.families;
        EXPECT_EQ(choice.isOfFamily, row.isOfFamily) << row.families;
    }
    const ORVFontChoice bold = ORVChooseFont({.families = "Nowhere", .weight = 700});
    EXPECT_EQ(bold.font->GetName().GetView(), "LiberationSerif-Bold.ttf");
    EXPECT_EQ(ORVChooseFont({.families = "Nowhere Again"}).font->GetName().GetView(),
              "LiberationSerif-Regular.ttf");
    const ORVFontChoice generic = ORVChooseFont({.families = "Nowhere, monospace"});
    EXPECT_TRUE(generic.isOfFamily);
    EXPECT_EQ(generic.font, ORVChooseFont({.families = "monospace"}).font);
}

TEST(FontChoiceTest, NamesOfLooksAreReadInAnyCase) {
    const char* const kRows[][2] = {{"Sans", "sans-serif"},       {"SANS-SERIF", "sans-serif"},
                                    {"Sans Serif", "sans-serif"}, {"Serif", "serif"},
                                    {"Monospace", "monospace"},   {"Nowhere, Mono", "monospace"}};
    for (const auto& [written, meant] : kRows) {
        const ORVFontChoice choice = ORVChooseFont({.families = written});
        EXPECT_EQ(choice.font, ORVChooseFont({.families = meant}).font) << written;
        EXPECT_TRUE(choice.isOfFamily) << written;
    }
}

}  // namespace
