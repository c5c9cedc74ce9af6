// SPDX-License-Identifier: Apache-2.0
#include "generators/formats.h"

#include <gtest/gtest.h>

#include "generators/common/ORVOutput.h"

namespace {

TEST(FormatsTest, AreFoundByNameWithoutRegardToCase) {
    ASSERT_NE(ORVFindOutputFormat("pdf"), nullptr);
    EXPECT_EQ(ORVFindOutputFormat("PDF"), ORVFindOutputFormat("pdf"));
    EXPECT_EQ(ORVFindOutputFormat("pdf "), nullptr);
    EXPECT_EQ(ORVFindOutputFormat(""), nullptr);
}

TEST(FormatsTest, FormatsMayHaveTwoNames) {
    ASSERT_NE(ORVFindOutputFormat("tiff"), nullptr);
    EXPECT_EQ(ORVFindOutputFormat("tif"), ORVFindOutputFormat("tiff"));
    ASSERT_NE(ORVFindOutputFormat("pwg"), nullptr);
    EXPECT_EQ(ORVFindOutputFormat("PwgRaster"), ORVFindOutputFormat("pwg"));
}

TEST(FormatsTest, EveryFormatMakesADocumentOfOneEmptyPage) {
    for (const ORVOutputFormat& format : ORVOutputFormats()) {
        ORVMemoryOutput output;
        const auto generator = format.create(output, {});
        ORVPrintPageInfo page;
        page.number = 1;
        page.width = 90.0;
        page.height = 45.0;
        EXPECT_EQ(generator->Get().BeginDocument({"t", 1}), 1);
        EXPECT_EQ(generator->Get().BeginPage(page), 1);
        EXPECT_EQ(generator->Get().EndPage(), 1);
        EXPECT_EQ(generator->Get().EndDocument(), 1);
        EXPECT_EQ(output.GetPartCount(), 1U) << format.name;
        EXPECT_NE(format.mediaType.find('/'), std::string_view::npos) << format.name;
        EXPECT_FALSE(output.GetBytes().empty()) << format.name;
    }
}

}  // namespace
