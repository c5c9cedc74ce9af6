// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/letter_case.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/visualization/fonts/text_failure.h"

namespace {

constexpr auto kUpper = ORVLetterCase::kUpper, kLower = ORVLetterCase::kLower,
               kWordStarts = ORVLetterCase::kWordStarts;

std::string Changed(std::string_view text, ORVLetterCase letterCase, std::string_view before,
                    std::string_view language) {
    std::string mapped = "not empty before";
    return ORVChangeCase(text, letterCase, before, language, mapped) ? mapped
                                                                     : std::string(ORVGetTextFailure());
}

TEST(LetterCaseTest, FollowsUnicodesMappings) {
    const struct {
        ORVLetterCase letterCase;
        const char *before, *text, *language, *changed;
    } kRows[] = {
        {kUpper, "", "", "", ""},
        {kUpper, "", "a-Z 1é", "", "A-Z 1É"},
        {kUpper, "", "straße ﬁ", "", "STRASSE FI"},
        {kUpper, "", "iı", "en", "II"},
        {kUpper, "", "iı", "tr", "İI"},
        {kUpper, "", "i", "TR-cy", "İ"},
        {kUpper, "", "i", "trk", "I"},
        {kUpper, "", "ж ς", "", "Ж Σ"},
        {kLower, "", "A-z É", "", "a-z é"},
        {kLower, "", "Iİ", "az-Latn", "ıi"},
        {kLower, "", "ΟΔΟΣ ΣΑ", "", "οδος σα"},
        {kLower, "ΟΔΟ", "Σ", "", "ς"},
        {kWordStarts, "", "hello wORLD", "", "Hello WORLD"},
        {kWordStarts, "", "it's o'neill, a-b (c) “d”", "", "It's O'neill, A-B (C) “D”"},
        {kWordStarts, "", "2nd x3", "", "2nd X3"},
        {kWordStarts, "", "ßa ǆa ﬁn", "", "Ssa ǅa Fin"},
        {kWordStarts, "", "i ı", "tr", "İ I"},
        {kWordStarts, "", "e\u0301a", "", "E\u0301a"},
        {kWordStarts, "wo", "rd a", "", "rd A"},
        {kWordStarts, "wo ", "rd", "", "Rd"},
        {kWordStarts, "it'", "s", "", "s"},
        {kWordStarts, "(", "a", "", "A"},
        {kWordStarts, "2", "nd", "", "nd"},
        {kWordStarts, "ab", "", "", ""},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(Changed(row.text, row.letterCase, row.before, row.language), row.changed)
            << row.before << "|" << row.text << " " << row.language;
}

TEST(LetterCaseTest, LongTextsTakeTimeInProportion) {
    std::string words, capitals;
    for (int i = 0; i < 100'000; ++i) words += "Σa.", capitals += "ΣA.";
    EXPECT_EQ(Changed(words, kUpper, "", "lt"), capitals);
    EXPECT_EQ(Changed(words, kLower, "", "lt").size(), words.size());
    EXPECT_EQ(Changed(words, kWordStarts, "", "").size(), words.size());
}

}  // namespace
