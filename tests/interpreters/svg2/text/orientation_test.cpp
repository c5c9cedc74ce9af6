// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/orientation.h"

#include <gtest/gtest.h>

#include <string_view>

#include "interpreters/svg2/text/capitals.h"

namespace {

TEST(OrientationTest, EastAsianCharactersStandUpright) {
    for (const char32_t c : U"\u00A7\u1100\u2E80\u3042\u30FC\u4E00\uAC00\uFF21\U0001F600\U00020000")
        if (c != 0) EXPECT_TRUE(svg2::IsUpright(c)) << std::hex << static_cast<unsigned>(c);
    for (const char32_t c : U"a1 \u00E9\u0411\u05D0\u0628\u2014\uFF0D\uFF71")
        EXPECT_FALSE(svg2::IsUpright(c)) << std::hex << static_cast<unsigned>(c);
}

TEST(OrientationTest, BracketsAndDashesNeedFormsOfTheirOwn) {
    for (const char32_t c : std::u32string_view(U"\u300C\u300D\u301C\u30FC\uFF08\uFF5E"))
        EXPECT_TRUE(svg2::NeedsVerticalForm(c) && svg2::IsUpright(c)) << std::hex << static_cast<unsigned>(c);
    for (const char32_t c : std::u32string_view(U"\u3001\u3042\u4E00\uFF21a"))
        EXPECT_FALSE(svg2::NeedsVerticalForm(c)) << std::hex << static_cast<unsigned>(c);
}

TEST(CapitalsTest, SmallLettersHaveCapitals) {
    const struct {
        char32_t small, capital;
    } kRows[] = {{'a', 'A'},       {'z', 'Z'},       {'A', 'A'},     {'1', '1'},     {0xE9, 0xC9},
                 {0xF7, 0xF7},     {0xDF, 0xDF},     {0xFF, 0x178},  {0x101, 0x100}, {0x100, 0x100},
                 {0x13A, 0x139},   {0x14B, 0x14A},   {0x17E, 0x17D}, {0x131, 'I'},   {0x3B1, 0x391},
                 {0x3C2, 0x3A3},   {0x3AC, 0x386},   {0x3AD, 0x388}, {0x3CC, 0x38C}, {0x3CD, 0x38E},
                 {0x3CE, 0x38F},   {0x430, 0x410},   {0x44F, 0x42F}, {0x451, 0x401}, {0x461, 0x460},
                 {0x1E01, 0x1E00}, {0x1E9F, 0x1E9F}, {0x5D0, 0x5D0}};
    for (const auto& row : kRows)
        EXPECT_EQ(svg2::CapitalOf(row.small), row.capital) << std::hex << static_cast<unsigned>(row.small);
}

}  // namespace
