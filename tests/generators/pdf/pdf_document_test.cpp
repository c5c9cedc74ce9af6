// SPDX-License-Identifier: Apache-2.0

// Contents of a document besides its pages: links and destinations, outline, metadata, boxes.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <string>

#include "tests/generators/pdf/drawn_pdf.h"
#include "tests/support/text_search.h"

namespace {

using testing::HasSubstr;
using testing::Not;

TEST(PdfDocumentTest, LinksLeadToAddressesAndPlaces) {
    DrawnPdf document;
    document.BeginPage();
    ORVPrintGroup place;
    place.id = "pläce 'x' (1)";
    place.isLinkTarget = true;
    EXPECT_EQ(document.Get().BeginGroup(place), 1);
    EXPECT_EQ(FillRectangle(document.Get(), 1.0, 1.0, 5.0, 5.0), 1);
    EXPECT_EQ(document.Get().EndGroup(), 1);
    document.EndPage();
    document.BeginPage();
    ORVPrintGroup toPlace, toAddress;
    toPlace.linkElementId = place.id;
    toAddress.linkURL = "http://example.org/a(b)\\c'd\"?q=ü x\x7F";
    for (const ORVPrintGroup& link : {toPlace, toAddress}) {
        EXPECT_EQ(document.Get().BeginGroup(link), 1);
        EXPECT_EQ(FillRectangle(document.Get(), 20.0, 20.0, 9.0, 9.0), 1);
        EXPECT_EQ(document.Get().EndGroup(), 1);
    }
    document.EndPage();
    document.BeginPage();
    document.EndPage();
    document.Finish();
    const std::string plain = document.Plain();
    EXPECT_THAT(plain, HasSubstr("(http://example.org/a%28b%29%5Cc%27d%22?q=%C3%BC%20x%7F)"));
    // The destination has the name of its group, in the link and in the table of destinations.
    EXPECT_THAT(plain, HasSubstr("/Dest (pl\xC3\xA4"
                                 "ce 'x' \\(1\\))"));
    EXPECT_THAT(plain, testing::ContainsRegex("ce 'x' ..1...\n *\\["));
    // The group's upper left corner is one user unit from the page's; in points, from the lower left corner.
    EXPECT_THAT(plain, testing::ContainsRegex("/XYZ\n *.8\n *71.2\n"));
    EXPECT_EQ(CountOf(plain, "/Annots"), 1U) << "the links of one page only";
}

TEST(PdfDocumentTest, APlaceInsideALinkIsPartOfIt) {
    for (const bool leadsToPlace : {false, true}) {
        DrawnPdf document;
        document.BeginPage();
        ORVPrintGroup outer, inner;
        outer.linkURL = leadsToPlace ? "" : "http://outer/";
        outer.linkElementId = leadsToPlace ? "outer" : "";
        inner.linkElementId = "inner";
        for (const ORVPrintGroup* group : {&outer, &inner}) EXPECT_EQ(document.Get().BeginGroup(*group), 1);
        EXPECT_EQ(FillRectangle(document.Get(), 20.0, 20.0, 9.0, 9.0), 1);
        for (int i = 0; i < 2; ++i) EXPECT_EQ(document.Get().EndGroup(), 1);
        // Outside of the outer link, the inner group is a link.
        EXPECT_EQ(document.Get().BeginGroup(inner), 1);
        EXPECT_EQ(FillRectangle(document.Get(), 40.0, 20.0, 9.0, 9.0), 1);
        EXPECT_EQ(document.Get().EndGroup(), 1);
        document.EndPage();
        document.Finish();
        const std::string plain = document.Plain();
        EXPECT_EQ(CountOf(plain, "/Subtype /Link"), 2U) << leadsToPlace;
        EXPECT_EQ(CountOf(plain, "/Dest (inner)"), 1U) << leadsToPlace;
    }
}

TEST(PdfDocumentTest, EmptyAndNestedLinksDoNotDisturb) {
    DrawnPdf document;
    document.BeginPage();
    ORVPrintGroup outer, inner;
    outer.linkURL = "http://outer/";
    inner.linkURL = "http://inner/";
    inner.id = "target";
    inner.isLinkTarget = true;
    EXPECT_EQ(document.Get().BeginGroup(outer), 1);
    EXPECT_EQ(document.Get().EndGroup(), 1);
    EXPECT_EQ(document.Get().BeginGroup(outer), 1);
    EXPECT_EQ(document.Get().BeginGroup(inner), 1);
    EXPECT_EQ(FillRectangle(document.Get(), 20.0, 20.0, 9.0, 9.0), 1);
    EXPECT_EQ(document.Get().EndGroup(), 1);
    EXPECT_EQ(document.Get().EndGroup(), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), HasSubstr("(http://outer/)"));
    EXPECT_THAT(document.Plain(), Not(HasSubstr("(http://inner/)")));
}

TEST(PdfDocumentTest, LinksRunNothing) {
    for (const auto& [address, isWritten] : {std::pair{"javascript:alert(1)", false}, {"mailto:a@b", true}}) {
        DrawnPdf document;
        document.BeginPage();
        ORVPrintGroup link;
        link.linkURL = address;
        EXPECT_EQ(document.Get().BeginGroup(link), 1);
        EXPECT_EQ(FillRectangle(document.Get(), 20.0, 20.0, 9.0, 9.0), 1);
        EXPECT_EQ(document.Get().EndGroup(), 1);
        document.EndPage();
        document.Finish();
        const std::string plain = document.Plain();
        for (const char* part : {"/Annots", "/URI"})
            EXPECT_EQ(plain.find(part) != plain.npos, isWritten) << address;
    }
}

TEST(PdfDocumentTest, TitlesOfPagesBecomeTheOutlineAndLabelsTheirNames) {
    DrawnPdf document;
    for (const auto& [title, label] : {std::pair{"Ground floor", ""}, {"", "A2"}, {"Größe", ""}, {"", ""}}) {
        ORVPrintPageInfo info = PageInfo(90.0, 90.0);
        info.title = title;
        info.label = label;
        EXPECT_EQ(document.Get().BeginPage(info), 1);
        document.EndPage();
    }
    document.Finish();
    std::string json = document.Run("qpdf --json --json-key=outlines --json-key=pagelabels");
    for (const char* title : {"Ground floor", "A2", "Größe", "Page 4"})
        EXPECT_THAT(json, HasSubstr("\"title\": \"" + std::string(title) + "\""));
    EXPECT_THAT(json, HasSubstr("\"destpageposfrom1\": 3"));
    json.erase(std::remove_if(json.begin(), json.end(), [](char c) { return c == ' ' || c == '\n'; }),
               json.end());
    EXPECT_THAT(json, HasSubstr("{\"index\":0,\"label\":{\"/S\":\"/D\",\"/St\":1}},"
                                "{\"index\":1,\"label\":{\"/P\":\"u:A2\",\"/St\":1}},"
                                "{\"index\":2,\"label\":{\"/S\":\"/D\",\"/St\":3}}"));
}

TEST(PdfDocumentTest, WithoutTitlesThereIsNoOutline) {
    DrawnPdf document;
    document.BeginPage();
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), Not(HasSubstr("/Outlines")));
    EXPECT_THAT(document.Plain(), Not(HasSubstr("/PageLabels")));
    EXPECT_THAT(document.Plain(), Not(HasSubstr("/ViewerPreferences")));
    EXPECT_THAT(document.Plain(), Not(HasSubstr("Date")));
}

TEST(PdfDocumentTest, MetadataStatesTitleProgramAndTime) {
    DrawnPdf document("Plan <1> & 2", 1'000'000'000);
    document.BeginPage();
    document.EndPage();
    document.Finish();
    const std::string info = document.Run("TZ=UTC pdfinfo -isodates");
    EXPECT_THAT(info, HasSubstr("CreationDate:    2001-09-09T01:46:40Z"));
    EXPECT_THAT(info, HasSubstr("ModDate:         2001-09-09T01:46:40Z"));
    EXPECT_THAT(info, HasSubstr("Producer:        orvprint"));
    const std::string meta = document.Run("pdfinfo -meta");
    EXPECT_THAT(meta, HasSubstr("Plan &lt;1&gt; &amp; 2</rdf:li>"));
    EXPECT_THAT(meta, HasSubstr("<xmp:CreateDate>2001-09-09T01:46:40Z</xmp:CreateDate>"));
    EXPECT_THAT(document.Plain(), HasSubstr("/DisplayDocTitle true"));
}

TEST(PdfDocumentTest, TimesBeyondFourDigitYearsAreNotStated) {
    for (const std::int64_t time : {std::numeric_limits<std::int64_t>::max(),
                                    std::numeric_limits<std::int64_t>::min(), std::int64_t{253402300800}}) {
        DrawnPdf document("", time);
        document.BeginPage();
        document.EndPage();
        document.Finish();
        EXPECT_THAT(document.Plain(), Not(HasSubstr("Date"))) << time;
    }
}

TEST(PdfDocumentTest, PageBoxesTellSheetAndTrim) {
    DrawnPdf document;
    ORVPrintPageInfo info = PageInfo(100.0, 50.0);
    info.trim = {10.0, 90.0, 5.0, 30.0};
    EXPECT_EQ(document.Get().BeginPage(info), 1);
    document.EndPage();
    for (const ORVMathBox2D& beyond : {ORVMathBox2D{200.0, 300.0, 5.0, 30.0}, {10.0, 90.0, 60.0, 70.0}}) {
        info.trim = beyond;
        EXPECT_EQ(document.Get().BeginPage(info), 1);
        document.EndPage();
    }
    document.Finish();
    const std::string boxes = document.Run("pdfinfo -box -l 3");
    EXPECT_THAT(boxes, testing::ContainsRegex("Page    1 MediaBox: +0.00 +0.00 +80.00 +40.00"));
    EXPECT_THAT(boxes, testing::ContainsRegex("Page    1 CropBox: +0.00 +0.00 +80.00 +40.00"));
    EXPECT_THAT(boxes, testing::ContainsRegex("Page    1 TrimBox: +8.00 +16.00 +72.00 +36.00"));
    EXPECT_THAT(boxes, testing::ContainsRegex("Page    2 TrimBox: +0.00 +0.00 +80.00 +40.00"));
    EXPECT_THAT(boxes, testing::ContainsRegex("Page    3 TrimBox: +0.00 +0.00 +80.00 +40.00"));
}

}  // namespace
