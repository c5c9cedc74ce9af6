// What is written is checked by other programs: qpdf and the tools of poppler read it.

#include "generators/pdf/ORVPdfGenerator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iterator>
#include <limits>
#include <optional>
#include <random>
#include <string>

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
    explicit PdfDocument(const char* title = "", std::optional<std::int64_t> creationTime = std::nullopt)
        : generator_(output_, creationTime) {
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
    const std::string& Bytes() const { return output_.GetBytes(); }
    /// The only page as pixels, a user unit wide each.
    std::string Pixels() const { return CommandResult("pdftoppm -r 90 " + path_).text; }
    /// An image or mask as it comes out of the document.
    ORVRef<ORVPixelImage> ExtractImage(int number = 0) const {
        const std::string root = folder_.PathOf("image");
        EXPECT_EQ(CommandResult("pdfimages -png " + path_ + " " + root).status, 0);
        std::ifstream file(root + "-00" + std::to_string(number) + ".png", std::ios::binary);
        const std::string png((std::istreambuf_iterator<char>(file)), {});
        return ORVRef<ORVPixelImage>(ReadMemoryPNGPixelImage(png.data(), png.size(), 0));
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

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + 1)) ++count;
    return count;
}

/// Draws with all that differs between a page and a form: lines, dashes, opacity, text, images, patterns.
void DrawVariety(ORVPrintGenerator& generator, const ORVMathAffine2D& map) {
    const auto tile = PlainImage(3, 3, {200, 30, 30}), picture = PlainImage(4, 4, {20, 90, 160, 128});
    const double dashes[]{4.0, 2.0};
    ORVPrintStroke stroke;
    stroke.colour = {0, 0, 200};
    stroke.width = 3.0;
    stroke.join = ORVPrintStroke::Join::kRound;
    stroke.cap = ORVPrintStroke::Cap::kRound;
    stroke.dashes = dashes;
    ORVPrintFill fill;
    fill.colour = {0, 120, 0, 130};
    const ORVPrintPath box = RectanglePath(2.0, 2.0, 20.0, 15.0);
    EXPECT_EQ(generator.DrawShape({box, map, &fill, &stroke}), 1);
    stroke = {};
    ORVPrintPath corner;
    corner.MoveTo({25.0, 2.0});
    corner.LineTo({30.0, 20.0});
    corner.LineTo({35.0, 2.0});
    EXPECT_EQ(generator.DrawShape({corner, map, nullptr, &stroke}), 1);
    const ORVTextLayout layout = ORVLayoutText("Tap 7", {});
    const ORVPrintFill black;
    EXPECT_EQ(generator.DrawText({layout, "Tap 7", map * ORVMathAffine2D{1.0, 0.0, 0.0, -1.0, 2.0, 32.0},
                                  &black, nullptr, nullptr}),
              1);
    EXPECT_EQ(generator.DrawImage({*picture, map * ORVMathAffine2D{8.0, 0.0, 0.0, 8.0, 28.0, 24.0}}), 1);
    fill = {};
    fill.pattern = tile.get();
    fill.patternToPage = map;
    const ORVPrintPath tiled = RectanglePath(2.0, 36.0, 30.0, 5.0);
    EXPECT_EQ(generator.DrawShape({tiled, map, &fill, nullptr}), 1);
}

/// Draws a variety as a symbol.
void PlaceVariety(ORVPrintGenerator& generator, const void* key, const ORVMathAffine2D& map) {
    const int answer = generator.BeginSymbol({key, map});
    if (answer == ORVPrintGenerator::kSymbolKnown) return;
    ASSERT_EQ(answer, ORVPrintGenerator::kDrawSymbol);
    DrawVariety(generator, {});
    EXPECT_EQ(generator.EndSymbol(), 1);
}

// Turned, mirrored, stretched.
constexpr ORVMathAffine2D kPlaces[]{{1.0, 0.0, 0.0, 1.0, 5.0, 5.0},
                                    {1.0, 0.0, 0.0, 1.0, 60.0, 5.0},
                                    {0.0, -1.0, 1.0, 0.0, 170.0, 5.0},
                                    {-1.5, 0.0, 0.0, 1.5, 70.0, 60.0},
                                    {2.0, 0.0, 0.0, 1.0, 100.0, 70.0}};

TEST(ORVPdfGeneratorTest, SymbolsLookAsTheirContentDoes) {
    PdfDocument plain, symbols;
    const int key = 0;
    for (PdfDocument* document : {&plain, &symbols}) {
        document->BeginPage(200.0, 130.0);
        // What is in force before must not reach the symbol, nor what it sets come out.
        const double dashes[]{1.0, 1.0};
        ORVPrintStroke stroke;
        stroke.width = 2.0;
        stroke.colour = {9, 99, 199, 77};
        stroke.join = ORVPrintStroke::Join::kBevel;
        stroke.dashes = dashes;
        const ORVPrintPath frame = RectanglePath(1.0, 1.0, 198.0, 128.0);
        for (const ORVMathAffine2D& place : kPlaces) {
            EXPECT_EQ(document->Get().DrawShape({frame, {}, nullptr, &stroke}), 1);
            if (document == &plain)
                DrawVariety(document->Get(), place);
            else
                PlaceVariety(document->Get(), &key, place);
        }
        document->EndPage();
        document->Finish();
    }
    EXPECT_EQ(CountOf(symbols.Plain(), "/Subtype /Form"), 1U);
    const std::string expected = plain.Pixels(), got = symbols.Pixels();
    ASSERT_EQ(expected.size(), got.size());
    std::size_t differing = 0;
    for (std::size_t i = 0; i < got.size(); ++i)
        differing +=
            std::abs(static_cast<unsigned char>(got[i]) - static_cast<unsigned char>(expected[i])) > 40;
    // Glyphs and edges are rounded to pixels a little differently.
    EXPECT_LT(differing, got.size() / 200);
    for (const char* text : {"Tap 7"}) EXPECT_EQ(CountOf(symbols.Text(), text), CountOf(plain.Text(), text));
}

TEST(ORVPdfGeneratorTest, SymbolsNestAndServeAllPages) {
    PdfDocument document;
    const int inner = 0, outer = 0;
    for (int page = 0; page < 2; ++page) {
        document.BeginPage();
        for (const double x : {0.0, 40.0}) {
            const int answer = document.Get().BeginSymbol({&outer, ORVMathAffine2D::Translation(x, 0.0)});
            if (answer == ORVPrintGenerator::kSymbolKnown) continue;
            EXPECT_EQ(answer, ORVPrintGenerator::kDrawSymbol);
            PlaceVariety(document.Get(), &inner, {});
            PlaceVariety(document.Get(), &inner, ORVMathAffine2D::Translation(0.0, 40.0));
            EXPECT_EQ(document.Get().EndSymbol(), 1);
        }
        document.EndPage();
    }
    document.Finish();
    EXPECT_EQ(CountOf(document.Plain(), "/Subtype /Form"), 2U);
    EXPECT_EQ(CountOf(document.Text(), "Tap 7"), 8U);
}

TEST(ORVPdfGeneratorTest, LinksAroundSymbolsCoverThem) {
    PdfDocument document;
    const int key = 0;
    document.BeginPage(90.0, 90.0);
    ORVPrintGroup link;
    link.linkURL = "http://example.org/";
    for (const double x : {10.0, 50.0}) {
        EXPECT_EQ(document.Get().BeginGroup(link), 1);
        if (document.Get().BeginSymbol({&key, ORVMathAffine2D::Translation(x, 20.0)}) ==
            ORVPrintGenerator::kDrawSymbol) {
            EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 10.0, 5.0), 1);
            EXPECT_EQ(document.Get().EndSymbol(), 1);
        }
        EXPECT_EQ(document.Get().EndGroup(), 1);
    }
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), HasSubstr("/Rect [\n    8\n    52\n    16\n    56\n  ]"));
    EXPECT_THAT(document.Plain(), HasSubstr("/Rect [\n    40\n    52\n    48\n    56\n  ]"));
}

TEST(ORVPdfGeneratorTest, SymbolsThatShowNothingOrBreakOffDoNotDisturb) {
    PdfDocument document;
    const int empty = 0, open = 0;
    document.BeginPage();
    EXPECT_EQ(document.Get().BeginSymbol({&empty, {}}), ORVPrintGenerator::kDrawSymbol);
    EXPECT_EQ(document.Get().EndSymbol(), 1);
    EXPECT_EQ(document.Get().BeginSymbol({&empty, {}}), ORVPrintGenerator::kSymbolKnown);
    EXPECT_NE(document.Get().EndSymbol(), 1);
    EXPECT_EQ(document.Get().BeginSymbol({&open, {}}), ORVPrintGenerator::kDrawSymbol);
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 10.0, 5.0), 1);
    EXPECT_NE(document.Get().BeginGroup({}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), HasSubstr("Do"));
}

TEST(ORVPdfGeneratorTest, ClipsCutWhatIsDrawnAndItsLinks) {
    PdfDocument document;
    document.BeginPage(90.0, 90.0);
    ORVPrintGroup link;
    link.linkURL = "http://example.org/";
    EXPECT_EQ(document.Get().BeginClip({10.0, 40.0, 20.0, 60.0}), 1);
    EXPECT_EQ(document.Get().BeginClip({0.0, 30.0, 0.0, 90.0}), 1);
    EXPECT_EQ(document.Get().BeginGroup(link), 1);
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 90.0, 90.0), 1);
    EXPECT_EQ(document.Get().EndGroup(), 1);
    EXPECT_EQ(document.Get().EndClip(), 1);
    EXPECT_EQ(document.Get().EndClip(), 1);
    EXPECT_NE(document.Get().EndClip(), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), HasSubstr("/Rect [\n    8\n    24\n    24\n    56\n  ]"));
    // 20 x 40 pixels of black.
    const std::string pixels = document.Pixels();
    EXPECT_EQ(std::count(pixels.end() - 90 * 90 * 3, pixels.end(), '\0'), 20 * 40 * 3);
}

struct ImageCase {
    const char* name;
    std::function<std::array<std::uint8_t, 4>(int x, int y)> pixel;
    const char* listed;  // kind, colours, components and bits as pdfimages lists them
    const char* mask;    // the same of the mask, empty for none
};
class PdfImageTest : public testing::TestWithParam<ImageCase> {};
TEST_P(PdfImageTest, TakesTheFewestBitsThatKeepThePixels) {
    constexpr int kWidth = 37, kHeight = 29;
    std::vector<std::uint8_t> pixels;
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x)
            for (const std::uint8_t part : GetParam().pixel(x, y)) pixels.push_back(part);
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(kWidth, kHeight, pixels));
    ASSERT_TRUE(image);
    PdfDocument document;
    document.BeginPage(kWidth, kHeight);
    EXPECT_EQ(document.Get().DrawImage({*image, {kWidth, 0.0, 0.0, kHeight, 0.0, 0.0}}), 1);
    document.EndPage();
    document.Finish();
    std::string list = document.Run("pdfimages -list");
    list.erase(std::unique(list.begin(), list.end(), [](char a, char b) { return a == ' ' && b == ' '; }),
               list.end());
    EXPECT_THAT(list, HasSubstr(std::string("image 37 29 ") + GetParam().listed + " image"));
    if (*GetParam().mask == '\0')
        EXPECT_THAT(list, Not(HasSubstr("smask")));
    else
        EXPECT_THAT(list, HasSubstr(std::string("smask 37 29 ") + GetParam().mask + " image"));
    for (const std::size_t part : {0U, 1U, 2U, 3U}) {
        if (part == 3 && *GetParam().mask == '\0') continue;
        const auto extracted = document.ExtractImage(part == 3 ? 1 : 0);
        ASSERT_TRUE(extracted);
        const auto got = extracted->GetPixels();
        ASSERT_EQ(got.size(), pixels.size());
        for (std::size_t i = 0; i < got.size(); i += 4)
            ASSERT_EQ(int{got[i + part % 3]}, int{pixels[i + part]}) << "byte " << i + part;
    }
}
std::uint8_t Byte(int value) { return static_cast<std::uint8_t>(value); }
INSTANTIATE_TEST_SUITE_P(
    Pixels, PdfImageTest,
    testing::Values(
        ImageCase{"BlackAndWhite",
                  [](int x, int y) {
                      return std::array{Byte((x ^ y) % 2 * 255), Byte((x ^ y) % 2 * 255),
                                        Byte((x ^ y) % 2 * 255), Byte(255)};
                  },
                  "gray 1 1", ""},
        ImageCase{"FourGraysOfEvenSteps",
                  [](int x, int) {
                      return std::array{Byte(x % 4 * 85), Byte(x % 4 * 85), Byte(x % 4 * 85), Byte(255)};
                  },
                  "gray 1 2", ""},
        ImageCase{"SixteenGraysOfEvenSteps",
                  [](int x, int) {
                      return std::array{Byte(x % 16 * 17), Byte(x % 16 * 17), Byte(x % 16 * 17), Byte(255)};
                  },
                  "gray 1 4", ""},
        ImageCase{"ManyGrays",
                  [](int x, int y) {
                      return std::array{Byte(x * 5 + y), Byte(x * 5 + y), Byte(x * 5 + y), Byte(255)};
                  },
                  "gray 1 8", ""},
        ImageCase{"ThreeOddGrays",
                  [](int x, int) {
                      return std::array{Byte(x % 3 * 7), Byte(x % 3 * 7), Byte(x % 3 * 7), Byte(255)};
                  },
                  "index 1 2", ""},
        ImageCase{"ThreeColours",
                  [](int x, int y) {
                      return std::array{Byte((x + y) % 3 * 90), Byte(40), Byte(13), Byte(255)};
                  },
                  "index 1 2", ""},
        ImageCase{"TwoHundredColours",
                  [](int x, int y) {
                      return std::array{Byte((x + y * 37) % 200), Byte(92), Byte(13), Byte(255)};
                  },
                  "index 1 8", ""},
        ImageCase{"ManyColours",
                  [](int x, int y) {
                      return std::array{Byte(x * 3), Byte(y * 5), Byte(9), Byte(255)};
                  },
                  "rgb 3 8", ""},
        ImageCase{"CutOut",
                  [](int x, int y) {
                      return std::array{Byte(x * 3), Byte(y * 5), Byte(9), Byte(x % 2 * 255)};
                  },
                  "rgb 3 8", "gray 1 1"},
        ImageCase{"FadedOut",
                  [](int x, int y) {
                      return std::array{Byte(x), Byte(y * 8), Byte(9), Byte(x * 6 + y % 2)};
                  },
                  "rgb 3 8", "gray 1 8"}),
    [](const auto& row) { return row.param.name; });

TEST(ORVPdfGeneratorTest, TwoColoursTakeOneBit) {
    const std::uint8_t pixels[]{200, 40, 13, 255, 7, 99, 180, 255};
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(2, 1, pixels));
    PdfDocument document;
    document.BeginPage(90.0, 90.0);
    EXPECT_EQ(document.Get().DrawImage({*image, {90.0, 0.0, 0.0, 90.0, 0.0, 0.0}}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), HasSubstr("/BitsPerComponent 1"));
    EXPECT_THAT(document.Plain(), HasSubstr("/Indexed"));
    const std::string page = document.Pixels();
    ASSERT_GE(page.size(), 90U * 90U * 3U);
    const std::string row = page.substr(page.size() - 270);
    EXPECT_EQ(row.substr(0, 3), "\xC8\x28\x0D");
    EXPECT_EQ(row.substr(267), "\x07\x63\xB4");
}

TEST(ORVPdfGeneratorTest, ImagesOfEqualContentAreHeldOnce) {
    const auto first = PlainImage(3, 3, {1, 2, 3}), second = PlainImage(3, 3, {1, 2, 3}),
               other = PlainImage(3, 3, {1, 2, 4}), turned = PlainImage(9, 1, {1, 2, 3});
    const std::string file = SampleJpeg(6, 4);
    const ORVRef<ORVPixelImage> jpeg(ReadMemoryJPEGPixelImage(file.data(), file.size(), 0)),
        again(ReadMemoryJPEGPixelImage(file.data(), file.size(), 0));
    PdfDocument document;
    document.BeginPage();
    for (const ORVPixelImage* image :
         {first.get(), second.get(), other.get(), turned.get(), jpeg.get(), again.get()})
        EXPECT_EQ(document.Get().DrawImage({*image, {9.0, 0.0, 0.0, 9.0, 0.0, 0.0}}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_EQ(CountOf(document.Plain(), "/Subtype /Image"), 4U);
}

TEST(ORVPdfGeneratorTest, LargeImagesComeOutAsTheyAre) {
    constexpr int kSide = 800;
    std::vector<std::uint8_t> pixels;
    std::uint32_t noise = 1;
    for (int i = 0; i < kSide * kSide * 4; ++i) {
        noise = noise * 1664525U + 1013904223U;
        pixels.push_back(i % 4 == 3 ? 255 : static_cast<std::uint8_t>(noise >> 24U));
    }
    const ORVRef<ORVPixelImage> image(ORVPixelImage::CreateFromPixels(kSide, kSide, pixels));
    PdfDocument document;
    document.BeginPage();
    EXPECT_EQ(document.Get().DrawImage({*image, {60.0, 0.0, 0.0, 60.0, 10.0, 10.0}}), 1);
    document.EndPage();
    document.Finish();
    const auto extracted = document.ExtractImage();
    ASSERT_TRUE(extracted);
    EXPECT_TRUE(std::equal(pixels.begin(), pixels.end(), extracted->GetPixels().begin(),
                           extracted->GetPixels().end()));
}

/// Draws so many lines of a pattern that repeats late.
void DrawMany(ORVPrintGenerator& generator, int count) {
    for (int i = 0; i < count; ++i)
        EXPECT_EQ(FillRectangle(generator, i % 83 * 1.017, i % 89 * 0.993, 0.5 + i % 7, 0.5,
                                {static_cast<std::uint8_t>(i), static_cast<std::uint8_t>(i >> 8), 7}),
                  1);
}

TEST(ORVPdfGeneratorTest, LargePagesComeInPiecesAndTheSameCallsGiveTheSameBytes) {
    PdfDocument first, second, other;
    for (PdfDocument* document : {&first, &second, &other}) {
        document->BeginPage();
        DrawMany(document->Get(), 140'000);
        if (document == &other) DrawMany(document->Get(), 1);
        document->EndPage();
        document->Finish();
    }
    EXPECT_TRUE(first.Bytes() == second.Bytes());
    EXPECT_LT(first.Bytes().size(), 2'000'000U);
    const std::string plain = first.Plain();
    EXPECT_EQ(CountOf(plain, " re\n"), 140'000U);
    EXPECT_THAT(plain, testing::ContainsRegex("/Contents .\n"));
    const auto identifier = [](const PdfDocument& document) {
        const std::size_t at = document.Bytes().rfind("/ID[");
        return document.Bytes().substr(at, 70);
    };
    EXPECT_EQ(identifier(first), identifier(second));
    EXPECT_NE(identifier(first), identifier(other));
}

TEST(ORVPdfGeneratorTest, LargePagesThatShrinkLittleAreSoundToo) {
    constexpr int kCount = 100'000;
    std::mt19937 random(7);
    const auto coordinate = [&random] { return static_cast<double>(random() % 90'000) / 1000.0; };
    PdfDocument document;
    document.BeginPage();
    for (int i = 0; i < kCount; ++i)
        ASSERT_EQ(FillRectangle(document.Get(), coordinate(), coordinate(), 1.0 + i % 5, 1.0,
                                {static_cast<std::uint8_t>(random()), 1, 2}),
                  1);
    document.EndPage();
    document.Finish();
    EXPECT_GT(document.Bytes().size(), 900'000U);
    EXPECT_EQ(CountOf(document.Plain(), " re\n"), static_cast<std::size_t>(kCount));
}

TEST(ORVPdfGeneratorTest, ColoursAreTheNearestOfAThousandSteps) {
    PdfDocument document;
    document.BeginPage();
    for (int i = 0; i < 256; ++i) {
        const auto part = static_cast<std::uint8_t>(i);
        EXPECT_EQ(FillRectangle(document.Get(), 1.0, 1.0, 2.0, 2.0, {part, part, part}), 1);
    }
    document.EndPage();
    document.Finish();
    const std::string plain = document.Plain();
    for (int i = 1; i < 256; ++i) {
        std::string written = std::to_string(std::lround(i / 255.0 * 1000.0));
        written = i == 255 ? "1" : "." + std::string(3 - written.size(), '0') + written;
        while (i < 255 && written.back() == '0') written.pop_back();
        EXPECT_THAT(plain, HasSubstr("\n" + written + " g\n"));
    }
}

TEST(ORVPdfGeneratorTest, ManyPagesTakeManyObjectStreams) {
    PdfDocument document;
    for (int page = 0; page < 300; ++page) {
        document.BeginPage();
        EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 10.0, 5.0), 1);
        document.EndPage();
    }
    document.Finish();
    EXPECT_THAT(document.Run("pdfinfo"), HasSubstr("Pages:           300"));
    EXPECT_EQ(CountOf(document.Bytes(), "/Type/ObjStm"), 4U);
    EXPECT_EQ(CountOf(document.Bytes(), "/Type/Page"), 0U);  // all within
}

TEST(ORVPdfGeneratorTest, TitlesOfPagesBecomeTheOutlineAndLabelsTheirNames) {
    PdfDocument document;
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

TEST(ORVPdfGeneratorTest, WithoutTitlesThereIsNoOutline) {
    PdfDocument document;
    document.BeginPage();
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), Not(HasSubstr("/Outlines")));
    EXPECT_THAT(document.Plain(), Not(HasSubstr("/PageLabels")));
    EXPECT_THAT(document.Plain(), Not(HasSubstr("/ViewerPreferences")));
    EXPECT_THAT(document.Plain(), Not(HasSubstr("Date")));
}

TEST(ORVPdfGeneratorTest, MetadataStatesTitleProgramAndTime) {
    PdfDocument document("Plan <1> & 2", 1'000'000'000);
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

TEST(ORVPdfGeneratorTest, TimesBeyondFourDigitYearsAreNotStated) {
    for (const std::int64_t time : {std::numeric_limits<std::int64_t>::max(),
                                    std::numeric_limits<std::int64_t>::min(), std::int64_t{253402300800}}) {
        PdfDocument document("", time);
        document.BeginPage();
        document.EndPage();
        document.Finish();
        EXPECT_THAT(document.Plain(), Not(HasSubstr("Date"))) << time;
    }
}

TEST(ORVPdfGeneratorTest, PageBoxesTellSheetAndTrim) {
    PdfDocument document;
    ORVPrintPageInfo info = PageInfo(100.0, 50.0);
    info.trim = {10.0, 90.0, 5.0, 30.0};
    EXPECT_EQ(document.Get().BeginPage(info), 1);
    document.EndPage();
    info.trim = {200.0, 300.0, 5.0, 30.0};  // beyond the sheet
    EXPECT_EQ(document.Get().BeginPage(info), 1);
    document.EndPage();
    document.Finish();
    const std::string boxes = document.Run("pdfinfo -box -l 2");
    EXPECT_THAT(boxes, testing::ContainsRegex("Page    1 MediaBox: +0.00 +0.00 +80.00 +40.00"));
    EXPECT_THAT(boxes, testing::ContainsRegex("Page    1 CropBox: +0.00 +0.00 +80.00 +40.00"));
    EXPECT_THAT(boxes, testing::ContainsRegex("Page    1 TrimBox: +8.00 +16.00 +72.00 +36.00"));
    EXPECT_THAT(boxes, testing::ContainsRegex("Page    2 TrimBox: +0.00 +0.00 +80.00 +40.00"));
}

TEST(ORVPdfGeneratorTest, LinesOfNoWidthAreTheThinnestOfTheDevice) {
    PdfDocument document;
    document.BeginPage();
    ORVPrintStroke stroke;
    ORVPrintPath line;
    line.MoveTo({1.0, 5.0});
    line.LineTo({80.0, 5.0});
    for (const double width : {1e-9, 0.009, 0.5, 0.02}) {
        stroke.width = width;
        EXPECT_EQ(document.Get().DrawShape({line, {}, nullptr, &stroke}), 1);
    }
    document.EndPage();
    document.Finish();
    const std::string plain = document.Plain();
    EXPECT_EQ(CountOf(plain, "\n0 w\n"), 1U);
    EXPECT_EQ(CountOf(plain, "\n.5 w\n"), 1U);
    EXPECT_EQ(CountOf(plain, "\n.02 w\n"), 1U);
}

TEST(ORVPdfGeneratorTest, GraysAreWrittenAsGrays) {
    const auto image = PlainImage(2, 2, {77, 77, 77, 99});
    PdfDocument document;
    document.BeginPage();
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 50.0, 50.0, {70, 70, 70, 100}), 1);
    EXPECT_EQ(document.Get().DrawImage({*image, {9.0, 0.0, 0.0, 9.0, 0.0, 0.0}}), 1);
    document.EndPage();
    document.Finish();
    EXPECT_THAT(document.Plain(), Not(HasSubstr("RGB")));
    EXPECT_THAT(document.Plain(), Not(HasSubstr(" rg\n")));
    EXPECT_THAT(document.Plain(), HasSubstr("/CS /DeviceGray"));
}

TEST(ORVPdfGeneratorTest, TextsShareATextObjectAndTheirFont) {
    PdfDocument document;
    document.BeginPage(400.0, 200.0);
    for (const auto& [text, y] : {std::pair{"one", 20.0}, {"two", 50.0}, {"three", 80.0}})
        EXPECT_EQ(WriteText(document.Get(), text, 10.0, y), 1);
    EXPECT_EQ(FillRectangle(document.Get(), 0.0, 0.0, 5.0, 5.0), 1);
    EXPECT_EQ(WriteText(document.Get(), "four", 10.0, 110.0), 1);
    document.EndPage();
    document.Finish();
    EXPECT_EQ(CountOf(document.Plain(), "BT\n"), 2U);
    EXPECT_EQ(CountOf(document.Plain(), "ET\n"), 2U);
    EXPECT_EQ(CountOf(document.Plain(), " Tf\n"), 1U);
    EXPECT_THAT(document.Text(), testing::ContainsRegex("one(.|\n)*two(.|\n)*three(.|\n)*four"));
}

TEST(ORVPdfGeneratorTest, EveryCodeOfAFontIsRead) {
    // Enough characters that codes hold brackets, backslashes and line ends.
    PdfDocument document;
    document.BeginPage(2000.0, 200.0);
    std::vector<std::string> texts;
    for (char32_t block = 0xC0; block < 0x180; block += 0x20) {
        std::string text;
        for (char32_t c = block; c < block + 0x20; ++c) {
            text += static_cast<char>(0xC0U | c >> 6U);
            text += static_cast<char>(0x80U | (c & 0x3FU));
        }
        texts.push_back(text);
        EXPECT_EQ(WriteText(document.Get(), text, 10.0, 20.0 * static_cast<double>(texts.size())), 1);
    }
    document.EndPage();
    document.Finish();
    const std::string found = document.Text();
    for (const std::string& text : texts) EXPECT_THAT(found, HasSubstr(text));
}

TEST(ORVPdfGeneratorTest, MixedDirectionsAreFoundAsTheyAreWritten) {
    PdfDocument document;
    document.BeginPage(400.0, 200.0);
    EXPECT_EQ(WriteText(document.Get(), "abc שלום 123", 10.0, 20.0), 1);
    document.EndPage();
    document.Finish();
    const std::string text = document.Text();
    EXPECT_THAT(text, HasSubstr("abc"));
    EXPECT_THAT(text, HasSubstr("שלום"));
    EXPECT_THAT(text, HasSubstr("123"));
}

TEST(ORVPdfGeneratorTest, OutputThatFailsLateIsReported) {
    class SmallOutput final : public ORVOutput {
    public:
        int BeginPart() override { return 1; }
        int Write(const void* /*bytes*/, std::size_t size) override {
            written_ += size;
            return written_ > 100'000 ? Fail("no room") : 1;
        }
        int EndPart() override { return 1; }
        int Commit() override { return 0; }

    private:
        std::size_t written_ = 0;
    } output;
    ORVPdfGenerator generator(output);
    EXPECT_EQ(generator.BeginDocument({"", 1}), 1);
    EXPECT_EQ(generator.BeginPage(PageInfo(90.0, 90.0)), 1);
    int result = 1;
    for (int i = 0; i < 2'000'000 && result == 1; ++i)
        result = FillRectangle(generator, i % 8300 * 0.01, i % 8900 * 0.01, 0.5, 0.5,
                               {static_cast<std::uint8_t>(i * 7), static_cast<std::uint8_t>(i >> 3), 7});
    EXPECT_EQ(result, kOutputFailed);
    EXPECT_EQ(output.GetError(), "no room");
    EXPECT_EQ(generator.EndDocument(), kOutputFailed);
}

}  // namespace
