// What is written is checked by other programs: qpdf and the tools of poppler read it.

#include "generators/pdf/ORVPdfGenerator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <limits>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "tests/generators/drawing_calls.h"
#include "tests/support/sample_images.h"
#include "tests/support/scratch_folder.h"

namespace {

using testing::HasSubstr;
using testing::Not;

/// Output and exit status of a shell command.
struct CommandResult {
    std::string text;
    int status = -1;

    explicit CommandResult(const std::string& command) {
        std::FILE* pipe = popen((command + " 2>&1").c_str(), "r");
        if (!pipe) return;
        char buffer[4096];
        for (std::size_t got = 0; (got = std::fread(buffer, 1, sizeof buffer, pipe)) > 0;)
            text.append(buffer, got);
        status = pclose(pipe);
    }
};

/// A document that a test draws, and other programs' view of it.
class PdfDocument {
public:
    explicit PdfDocument(const char* title = "") : generator_(output_) {
        EXPECT_EQ(generator_.BeginDocument({title, 0}), 1);
    }
    PdfDocument(const PdfDocument&) = delete;
    PdfDocument& operator=(const PdfDocument&) = delete;

    ORVPdfGenerator& Get() { return generator_; }
    void BeginPage(double width = 90.0, double height = 90.0) {
        EXPECT_EQ(generator_.BeginPage(PageInfo(width, height, ++pages_)), 1);
    }
    void EndPage() { EXPECT_EQ(generator_.EndPage(), 1); }
    /// Ends the document, which must be sound.
    void Finish() {
        EXPECT_EQ(generator_.EndDocument(), 1);
        std::ofstream(path_, std::ios::binary) << output_.GetBytes();
        const CommandResult check("qpdf --check " + path_);
        EXPECT_EQ(check.status, 0) << check.text;
    }
    std::string Run(const std::string& command) const { return CommandResult(command + " " + path_).text; }
    std::string Text() const { return CommandResult("pdftotext -layout " + path_ + " -").text; }
    /// The document without compression.
    std::string Plain() const {
        return CommandResult("qpdf --qdf --object-streams=disable " + path_ + " -").text;
    }

private:
    ORVMemoryOutput output_;
    ORVPdfGenerator generator_;
    unsigned int pages_ = 0;
    const ScratchFolder folder_;
    const std::string path_ = folder_.PathOf("page.pdf");
};

TEST(ORVPdfGeneratorTest, PagesHaveTheirOwnSizes) {
    PdfDocument document("A title with (brackets) and é");
    document.BeginPage(90.0, 45.0);
    document.EndPage();
    document.BeginPage(1052.36, 744.09);
    document.EndPage();
    document.Finish();
    const std::string info = document.Run("pdfinfo -l 2");
    EXPECT_THAT(info, HasSubstr("A title with (brackets) and é"));
    EXPECT_THAT(info, HasSubstr("Page    1 size:  72 x 36 pts"));
    EXPECT_THAT(info, HasSubstr("Page    2 size:  841.888 x 595.272 pts (A4)"));
}

TEST(ORVPdfGeneratorTest, TextCanBeSearched) {
    PdfDocument document;
    document.BeginPage(400.0, 200.0);
    for (const auto& [text, y] : {std::pair{"Office fi", 20.0}, {"Größe 漢", 50.0}, {"שלום", 80.0}})
        EXPECT_EQ(WriteText(document.Get(), text, 10.0, y), 1);
    document.EndPage();
    document.Finish();
    const std::string text = document.Text();
    for (const char* expected : {"Office fi", "Größe 漢", "שלום"}) EXPECT_THAT(text, HasSubstr(expected));
}

TEST(ORVPdfGeneratorTest, TextThatIsNoTextDoesNotDisturb) {
    PdfDocument document;
    document.BeginPage(400.0, 200.0);
    for (const char* text : {"bad \xFF bytes", "\xEF\xBF\xBF", "\xEF\xB7\x90", "\xF4\x8F\xBF\xBF", ""})
        EXPECT_EQ(WriteText(document.Get(), text, 10.0, 20.0), 1) << text;
    EXPECT_EQ(WriteText(document.Get(), "after", 10.0, 50.0), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Text(), HasSubstr("after"));
}

TEST(ORVPdfGeneratorTest, SizesOfTextBeyondAllMeasureDoNotDisturb) {
    PdfDocument document;
    document.BeginPage(100.0, 100.0);
    for (const double height : {1e-12, 1e-3, 5e4, 1e12, 1e200}) {
        ORVTextStyle style;
        style.height = height;
        EXPECT_EQ(WriteText(document.Get(), "size", 10.0, 20.0, style), 1) << height;
    }
    document.EndPage();
    document.Finish();
}

TEST(ORVPdfGeneratorTest, JpegFilesAreEmbeddedAsTheyAre) {
    const std::string file = SampleJpeg(6, 4);
    const ORVRef<ORVPixelImage> image(ReadMemoryJPEGPixelImage(file.data(), file.size(), 0));
    ASSERT_TRUE(image);
    PdfDocument document;
    document.BeginPage();
    EXPECT_EQ(document.Get().DrawImage({*image, {60.0, 0.0, 0.0, 40.0, 10.0, 10.0}}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Run("pdfimages -list"), HasSubstr("jpeg"));
    EXPECT_THAT(document.Plain(), HasSubstr("DCTDecode"));
}

TEST(ORVPdfGeneratorTest, ImageDrawnTwiceIsHeldOnce) {
    const auto image = PlainImage(3, 3, {1, 2, 3});
    PdfDocument document;
    for (int page = 0; page < 2; ++page) {
        document.BeginPage();
        for (const double x : {0.0, 20.0})
            EXPECT_EQ(document.Get().DrawImage({*image, {9.0, 0.0, 0.0, 9.0, x, 0.0}}), 1);
        document.EndPage();
    }
    document.Finish();
    const std::string plain = document.Plain();
    const std::size_t first = plain.find("/Subtype /Image");
    ASSERT_NE(first, plain.npos);
    EXPECT_EQ(plain.find("/Subtype /Image", first + 1), plain.npos);
}

TEST(ORVPdfGeneratorTest, LinksLeadToAddressesAndPlaces) {
    PdfDocument document;
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
    toAddress.linkURL = "http://example.org/a(b)\\c'd\"?q=ü x";
    for (const ORVPrintGroup& link : {toPlace, toAddress}) {
        EXPECT_EQ(document.Get().BeginGroup(link), 1);
        EXPECT_EQ(FillRectangle(document.Get(), 20.0, 20.0, 9.0, 9.0), 1);
        EXPECT_EQ(document.Get().EndGroup(), 1);
    }
    document.EndPage();
    document.Finish();
    const std::string plain = document.Plain();
    EXPECT_THAT(plain, HasSubstr("(http://example.org/a%28b%29%5Cc%27d%22?q=%C3%BC%20x)"));
    // The place is named as its group is, in the link and in the list of places.
    EXPECT_THAT(plain, HasSubstr("/Dest (pl\xC3\xA4"
                                 "ce 'x' \\(1\\))"));
    EXPECT_THAT(plain, testing::ContainsRegex("ce 'x' ..1...\n *\\["));
}

TEST(ORVPdfGeneratorTest, EmptyAndNestedLinksDoNotDisturb) {
    PdfDocument document;
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

TEST(ORVPdfGeneratorTest, TransparencyAndPatternsAreSound) {
    const auto tile = PlainImage(2, 2, {9, 9, 9});
    PdfDocument document;
    document.BeginPage();
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 50.0, 50.0, {1, 2, 3, 100}), 1);
    ORVPrintFill fill;
    fill.pattern = tile.get();
    const ORVPrintPath path = RectanglePath(20.0, 20.0, 50.0, 50.0);
    for (const std::uint8_t opacity : {std::uint8_t{255}, std::uint8_t{77}}) {
        fill.colour.opacity = opacity;
        EXPECT_EQ(document.Get().DrawShape({path, {}, &fill, nullptr}), 1);
    }
    document.EndPage();
    document.Finish();
}

TEST(ORVPdfGeneratorTest, WhatIsFarOffOrFlatDoesNotDisturb) {
    PdfDocument document;
    document.BeginPage();
    const double huge = std::numeric_limits<double>::max();
    const double tinyDashes[]{1e-30, 1e-30}, dashes[]{0.2, 0.2};
    ORVPrintStroke stroke;
    ORVPrintPath line;
    line.MoveTo({-huge, 5.0});
    line.LineTo({huge, 5.0});
    for (const double width : {1e-300, 1.0, huge}) {
        stroke.width = width;
        for (const std::span<const double> list :
             {std::span<const double>(), std::span<const double>(tinyDashes),
              std::span<const double>(dashes)}) {
            stroke.dashes = list;
            EXPECT_EQ(document.Get().DrawShape({line, {}, nullptr, &stroke}), 1);
        }
    }
    for (const double scale : {0.0, 1e-300, 1e300, std::nan("")})
        EXPECT_EQ(document.Get().DrawShape({line, ORVMathAffine2D::Scaling(scale, scale), nullptr, &stroke}),
                  1);
    document.EndPage();
    document.Finish();
}

TEST(ORVPdfGeneratorTest, PagesBeyondTheFormatAreRefusedAndTheRestIsClosed) {
    ORVMemoryOutput output;
    ORVPdfGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({"", 2}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(10.0, 10.0)), 1);
    EXPECT_EQ(generator.EndPage(), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(20'000.0, 10.0, 2)), kPageTooLarge);
    EXPECT_THAT(generator.GetError(), HasSubstr("page 2"));
    EXPECT_EQ(generator.EndDocument(), 1);
    EXPECT_THAT(output.GetBytes(), HasSubstr("%%EOF"));
}

TEST(ORVPdfGeneratorTest, OutputThatFailsIsReported) {
    class FullOutput final : public ORVOutput {
    public:
        int BeginPart() override { return 1; }
        int Write(const void* /*bytes*/, std::size_t /*size*/) override { return Fail("no room"); }
        int EndPart() override { return 0; }
        int Commit() override { return 0; }
    } output;
    ORVPdfGenerator generator(output);
    int result = generator.BeginDocument({"", 1});
    if (result == 1) result = generator.BeginPage(PageInfo(10.0, 10.0));
    if (result == 1) result = FillRectangle(generator, 0.0, 0.0, 1.0, 1.0);
    if (result == 1) result = generator.EndPage();
    const int ended = generator.EndDocument();
    EXPECT_EQ(result == 1 ? ended : result, kOutputFailed);
}

}  // namespace
