#include "generators/pdf/pdf_syntax.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(PdfTextTest, PlainTextIsBracketedOtherIsUtf16) {
    std::string text;
    AppendPdfText(text, "a (b) \\");
    AppendPdfText(text, "\xC3\xA9\xF0\x9F\x98\x80\xFF");
    EXPECT_EQ(text, "(a \\(b\\) \\\\)<FEFF00E9D83DDE00FFFD>");
}

TEST(PdfTextTest, BytesKeepLineEnds) {
    std::string text;
    AppendPdfBytes(text, "a\r\nb");
    EXPECT_EQ(text, "(a\\r\nb)");
}

}  // namespace
