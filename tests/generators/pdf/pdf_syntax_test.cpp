// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_syntax.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

TEST(PdfTextTest, PlainTextIsBracketedOtherIsUtf16) {
    std::string text;
    AppendPdfText(text, "a (b) \\");
    AppendPdfText(text, "\xC3\xA9\xF0\x9F\x98\x80\xFF");
    EXPECT_EQ(text, "(a \\(b\\) \\\\)<FEFF00E9D83DDE00FFFD>");
}

TEST(PdfTextTest, CharactersPastSixteenBitsAreTwoUnits) {
    for (const auto& [utf8, units] : {std::pair{"\uFFFD", "FFFD"},
                                      {"\U00010000", "D800DC00"},
                                      {"\U000103FF", "D800DFFF"},
                                      {"\U00010400", "D801DC00"},
                                      {"\U0010FFFF", "DBFFDFFF"}}) {
        std::string text;
        AppendHexUtf16(text, utf8);
        EXPECT_EQ(text, units);
    }
}

TEST(PdfTextTest, BytesKeepLineEnds) {
    std::string text;
    AppendPdfBytes(text, "a\r\nb");
    EXPECT_EQ(text, "(a\\r\nb)");
}

}  // namespace
