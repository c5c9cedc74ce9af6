// SPDX-License-Identifier: Apache-2.0
#include "generators/postscript/dsc_header.h"

#include <gmock/gmock.h>

#include "generators/common/ORVOutput.h"
#include "tests/support/named_rows.h"
#include "tests/support/test_texts.h"

namespace {

struct TextCase {
    const char* name;
    const char* text;
    const char* expected;
};
class DscTextTest : public testing::TestWithParam<TextCase> {};
TEST_P(DscTextTest, IsPrintable) { EXPECT_EQ(DscText(GetParam().text), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(DscText, DscTextTest,
                         testing::Values(TextCase{"Plain", "A title (of 2)", "A title (of 2)"},
                                         TextCase{"BeginsLikeAString", "(x", "(\\(x)"},
                                         TextCase{"Latin", "Größe\\", "(Gr\\366\\337e\\\\)"},
                                         TextCase{"Others", "漢 x", "(? x)"},
                                         TextCase{"Controls", "a\nb\x7F", "(a\\012b?)"},
                                         TextCase{"ClosingBracket", "ü)", "(\\374\\))"},
                                         TextCase{"CutOff", "\xC3", "(?)"}),
                         kNameOfRow);

TEST(DscTextTest, IsCutOffBeforeLinesGetTooLong) {
    EXPECT_LT(DscText(std::string(1000, 'x')).size(), 220U);
    EXPECT_EQ(DscText(std::string(200, 'x')), std::string(200, 'x'));
    EXPECT_EQ(DscText(std::string(201, 'x')), "(" + std::string(199, 'x') + ")");
    std::string title;
    title += Repeat("ü", 300);
    EXPECT_LT(DscText(title).size(), 220U);
}

const std::string kDocument =
    "%!PS-Adobe-3.0\n%%Creator: somebody\n%%CreationDate: today\n%%Pages: 1\n%%BoundingBox: 1 2 3 4\n"
    "%%EndComments\n%%Creator: not in the head\n%%BoundingBox: neither\nlast line without end";

std::string Filtered(const DscHeader& header, std::size_t piece) {
    ORVMemoryOutput output;
    DscHeaderFilter filter(output, header);
    for (std::size_t at = 0; at < kDocument.size(); at += piece)
        EXPECT_TRUE(filter.Write(std::string_view(kDocument).substr(at, piece)));
    EXPECT_TRUE(filter.Finish());
    return output.GetBytes();
}

TEST(DscHeaderFilterTest, PutsTheHeadRightHoweverItComes) {
    DscHeader header;
    header.width = 72.0;
    header.height = 36.2;
    const std::string rest =
        "%%EndComments\n%%Creator: not in the head\n%%BoundingBox: neither\nlast line without end";
    for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, kDocument.size()}) {
        EXPECT_EQ(Filtered(header, piece),
                  "%!PS-Adobe-3.0\n%%Creator: orvprint\n%%Pages: 1\n%%BoundingBox: 0 0 72 37\n" + rest);
    }
    header.title = "T";
    header.creationDate = "2001-02-03";
    header.encapsulated = true;
    EXPECT_EQ(Filtered(header, 5),
              "%!PS-Adobe-3.0\n%%Title: T\n%%Creator: orvprint\n%%CreationDate: 2001-02-03\n%%Pages: 1\n"
              "%%BoundingBox: 0 0 72 37\n%%HiResBoundingBox: 0 0.8 72 37\n" +
                  rest);
}

TEST(DscHeaderFilterTest, SheetsAreRoundedUpToWholePoints) {
    DscHeader header;
    header.width = 72.0000001;  // whole except for a rounding error
    header.height = 72.01;
    EXPECT_THAT(Filtered(header, kDocument.size()), testing::HasSubstr("%%BoundingBox: 0 0 72 73\n"));
}

TEST(DscHeaderFilterTest, HeadWithoutEndIsPassedOn) {
    ORVMemoryOutput output;
    const DscHeader header;
    DscHeaderFilter filter(output, header);
    EXPECT_TRUE(filter.Write("%!PS"));
    EXPECT_TRUE(filter.Finish());
    EXPECT_EQ(output.GetBytes(), "%!PS");
}

}  // namespace
