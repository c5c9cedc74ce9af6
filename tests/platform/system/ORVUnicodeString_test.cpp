// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVUnicodeString.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <string_view>

#include "platform/system/ORVString.h"
#include "tests/support/named_rows.h"

namespace {

using namespace std::string_view_literals;

// "aäb€c😀": characters of one, two, three and four bytes.
constexpr std::string_view kMixed =
    "a\xC3\xA4"
    "b\xE2\x82\xAC"
    "c\xF0\x9F\x98\x80";

TEST(ORVUnicodeString, HoldsUtf8AndCountsCharacters) {
    const ORVUnicodeString text(kMixed);
    EXPECT_EQ(text.GetLengthInChar(), 6U);
    EXPECT_EQ(text.GetView(), kMixed);
    EXPECT_STREQ(text.ConvertToChar(), std::string(kMixed).c_str());
    EXPECT_EQ(ORVUnicodeString().GetLengthInChar(), 0U);
    EXPECT_TRUE(ORVUnicodeString().IsEmpty());
    EXPECT_TRUE(ORVUnicodeString(static_cast<const char*>(nullptr)).IsEmpty());
}

TEST(ORVUnicodeString, BuildsFromUtf8AndDropsOneByteOrderMark) {
    ORVUnicodeString text;
    EXPECT_EQ(text.BuildFromUTF8(kMixed.data(), kMixed.size()), 1);
    EXPECT_EQ(text.GetView(), kMixed);
    EXPECT_EQ(text.BuildFromUTF8("\xEF\xBB\xBFxy", 5), 1);
    EXPECT_EQ(text.GetView(), "xy");
    EXPECT_EQ(text.BuildFromUTF8("\xEF\xBB\xBF", 3), 1);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.BuildFromUTF8("a\0b", 3), 1);
    EXPECT_EQ(text.GetView(), "a\0b"sv);
    EXPECT_EQ(text.BuildFromUTF8(nullptr, 0), 1);
    EXPECT_TRUE(text.IsEmpty());
    EXPECT_EQ(text.BuildFromUTF8(nullptr, 5), 1);
    EXPECT_TRUE(text.IsEmpty());
}

TEST(ORVUnicodeString, IsEmptyAfterInvalidUtf8) {
    ORVUnicodeString text("before");
    EXPECT_EQ(text.BuildFromUTF8("ab\xFF", 3), -1);
    EXPECT_TRUE(text.IsEmpty());
}

struct Utf8Case {
    const char* name;
    std::string_view bytes;
    bool wellFormed;
};
class WellFormedUtf8Test : public testing::TestWithParam<Utf8Case> {};
TEST_P(WellFormedUtf8Test, IsToldAtAnyPlaceOfALongText) {
    for (const std::size_t before : {0U, 1U, 7U, 8U, 9U, 31U})
        for (const std::size_t after : {0U, 1U, 8U, 20U}) {
            const std::string text =
                std::string(before, 'a').append(GetParam().bytes) + std::string(after, 'z');
            EXPECT_EQ(ORVIsWellFormedUTF8(text), GetParam().wellFormed) << before << ' ' << after;
        }
}
INSTANTIATE_TEST_SUITE_P(
    ORVUnicodeString, WellFormedUtf8Test,
    testing::Values(
        Utf8Case{"Empty", "", true}, Utf8Case{"Nul", "\0"sv, true}, Utf8Case{"Ascii", "\x7F", true},
        Utf8Case{"FirstOfTwoBytes", "\xC2\x80", true}, Utf8Case{"LastOfTwoBytes", "\xDF\xBF", true},
        Utf8Case{"FirstOfThreeBytes", "\xE0\xA0\x80", true},
        Utf8Case{"BelowSurrogates", "\xED\x9F\xBF", true}, Utf8Case{"AboveSurrogates", "\xEE\x80\x80", true},
        Utf8Case{"LastOfThreeBytes", "\xEF\xBF\xBF", true},
        Utf8Case{"FirstOfFourBytes", "\xF0\x90\x80\x80", true},
        Utf8Case{"LastCharacter", "\xF4\x8F\xBF\xBF", true},
        Utf8Case{"PastTheLastCharacter", "\xF4\x90\x80\x80", false}, Utf8Case{"Continuation", "\x80", false},
        Utf8Case{"OverlongSlash", "\xC0\xAF", false}, Utf8Case{"OverlongTwo", "\xC1\xBF", false},
        Utf8Case{"OverlongThree", "\xE0\x9F\xBF", false}, Utf8Case{"OverlongFour", "\xF0\x8F\xBF\xBF", false},
        Utf8Case{"HighSurrogate", "\xED\xA0\x80", false}, Utf8Case{"LowSurrogate", "\xED\xBF\xBF", false},
        Utf8Case{"CutAfterOne", "\xE2", false}, Utf8Case{"CutAfterTwo", "\xE2\x82", false},
        Utf8Case{"CutAfterThree", "\xF0\x9F\x98", false},
        Utf8Case{"FiveBytes", "\xF8\x88\x80\x80\x80", false}, Utf8Case{"FF", "\xFF", false}),
    kNameOfRow);

TEST(ORVUnicodeString, ComparesExactlyAndWithoutCase) {
    const ORVUnicodeString text("Svg");
    EXPECT_EQ(text.Compare("Svg"), 2);
    EXPECT_EQ(text.Compare("sVG"), 1);
    EXPECT_EQ(text.Compare("sv"), 0);
    EXPECT_EQ(text.Compare("svg "), 0);
    EXPECT_EQ(text.Compare(""), 0);
    EXPECT_EQ(ORVUnicodeString().Compare(""), 2);
    EXPECT_EQ(ORVUnicodeString("\xC3\xA4").Compare("\xC3\x84"), 0);  // only ASCII case is ignored
    EXPECT_EQ(ORVUnicodeString("@[`{").Compare("`{@["), 0);
    EXPECT_EQ(ORVUnicodeString("a\0b"sv).Compare("a\0B"sv), 1);
}

TEST(ORVUnicodeString, SearchesByCharacters) {
    const ORVUnicodeString text(kMixed);
    EXPECT_EQ(text.SearchSubString("a"), 0);
    EXPECT_EQ(text.SearchSubString("b"), 2);
    EXPECT_EQ(text.SearchSubString("\xF0\x9F\x98\x80"), 5);
    EXPECT_EQ(text.SearchSubString("b", 2), 2);
    EXPECT_EQ(text.SearchSubString("b", 3), -1);
    EXPECT_EQ(text.SearchSubString("x"), -1);
    EXPECT_EQ(text.SearchSubString(""), -1);
    EXPECT_EQ(text.SearchSubString("a", 1000), -1);
}

TEST(ORVUnicodeString, SearchesBackward) {
    const ORVUnicodeString text("ab.cd.ef");
    EXPECT_EQ(text.SearchSubString(".", ORVUnicodeString::kToEnd, ORVUnicodeString::kBackward), 5);
    EXPECT_EQ(text.SearchSubString(".", 5, ORVUnicodeString::kBackward), 5);
    EXPECT_EQ(text.SearchSubString(".", 4, ORVUnicodeString::kBackward), 2);
    EXPECT_EQ(text.SearchSubString(".", 1, ORVUnicodeString::kBackward), -1);
}

TEST(ORVUnicodeString, TakesPartsByCharacters) {
    const ORVUnicodeString text(kMixed);
    EXPECT_EQ(text.GetSubString(1, 3).GetView(),
              "\xC3\xA4"
              "b\xE2\x82\xAC");
    EXPECT_EQ(text.GetSubString(5).GetView(), "\xF0\x9F\x98\x80");
    EXPECT_EQ(text.GetSubString(4, 100).GetLengthInChar(), 2U);
    EXPECT_TRUE(text.GetSubString(6).IsEmpty());
    EXPECT_TRUE(text.GetSubString(100, 5).IsEmpty());
    EXPECT_TRUE(text.GetSubString(2, 0).IsEmpty());
}

TEST(ORVUnicodeString, InsertsRemovesAndAppends) {
    ORVUnicodeString text(kMixed);
    text.Remove(1, 3);
    EXPECT_EQ(text.GetView(), "ac\xF0\x9F\x98\x80");
    text.Insert(1, "\xC3\xB6");
    EXPECT_EQ(text.GetView(),
              "a\xC3\xB6"
              "c\xF0\x9F\x98\x80");
    text.Insert(100, "!");
    text.Append("?");
    EXPECT_EQ(text.GetSubString(4).GetView(), "!?");
    text.Remove(1);
    EXPECT_EQ(text.GetView(), "a");
    text.Remove(7, 2);
    EXPECT_EQ(text.GetView(), "a");
}

TEST(ORVUnicodeString, ReplacesEveryOccurrence) {
    const auto replaced = [](const char* text, const char* pattern, const char* replacement) {
        ORVUnicodeString result(text);
        result.ReplaceAll(pattern, replacement);
        return std::string(result.GetView());
    };
    EXPECT_EQ(replaced("a,b,,c", ",", " "), "a b  c");
    EXPECT_EQ(replaced("a,b", ",", ""), "ab");
    EXPECT_EQ(replaced("a,b", ",", ",,"), "a,,b");
    EXPECT_EQ(replaced("aaa", "aa", "b"), "ba");
    EXPECT_EQ(replaced("abc", "", "x"), "abc");
    EXPECT_EQ(replaced("", "a", "x"), "");
    EXPECT_EQ(replaced("abc", "abc", ""), "");
}

TEST(ORVUnicodeString, ReplacesLikeOneOccurrenceAfterTheOther) {
    std::mt19937 random(1);
    for (int round = 0; round < 2000; ++round) {
        const auto word = [&random](std::size_t longest) {
            std::string text(random() % (longest + 1), 'a');
            for (char& c : text) c = static_cast<char>('a' + random() % 2);
            return text;
        };
        const std::string original = word(12), pattern = word(3), replacement = word(3);
        std::string expected = original;
        if (!pattern.empty())
            for (std::size_t at = expected.find(pattern); at != std::string::npos;
                 at = expected.find(pattern, at + replacement.size()))
                expected.replace(at, pattern.size(), replacement);
        ORVUnicodeString text(original);
        text.ReplaceAll(pattern, replacement);
        ASSERT_EQ(text.GetView(), expected) << original << ' ' << pattern << ' ' << replacement;
    }
}

TEST(ORVUnicodeString, ConvertsNumbersByFormat) {
    double real = -7.0;
    EXPECT_EQ(ORVUnicodeString(" 12.5px").ConvertToNum(&real, "%le"), 1);
    EXPECT_EQ(real, 12.5);
    EXPECT_EQ(ORVUnicodeString("px").ConvertToNum(&real, "%le"), 0);
    EXPECT_EQ(ORVUnicodeString("  ").ConvertToNum(&real, "%le"), -1);
    EXPECT_EQ(ORVUnicodeString("3").ConvertToNum(&real, "%f"), 0);
    EXPECT_EQ(real, 12.5);
    unsigned int natural = 9;
    EXPECT_EQ(ORVUnicodeString("17").ConvertToNum(&natural, "%u"), 1);
    EXPECT_EQ(natural, 17U);
    EXPECT_EQ(ORVUnicodeString("17").ConvertToNum(&natural, "%x"), 0);
    int integer = 9;
    EXPECT_EQ(ORVUnicodeString("-17").ConvertToNum(&integer, "%d"), 1);
    EXPECT_EQ(integer, -17);
    EXPECT_EQ(ORVUnicodeString("-17").ConvertToNum(&integer, "%i"), 0);
}

TEST(ORVString, HoldsBytes) {
    const ORVString text("name");
    EXPECT_STREQ(text.CastToCharPtr(), "name");
    EXPECT_EQ(std::string_view(text), "name");
    EXPECT_TRUE(text == ORVString(std::string("name")));
    EXPECT_FALSE(text == ORVString("Name"));
    EXPECT_TRUE(ORVString(static_cast<const char*>(nullptr)).IsEmpty());
}

}  // namespace
