// SPDX-License-Identifier: Apache-2.0

// Documents with extreme or invalid numbers: they give a page or a clear error, and generators receive finite
// numbers only.

#include <gtest/gtest.h>
#include <zlib.h>

#include <array>
#include <cctype>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "generators/formats.h"
#include "generators/sheet/ORVSheetGenerator.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/visualization/images/ORVPixelImage.h"
#include "tests/support/CheckingGenerator.h"
#include "tests/support/built_model.h"
#include "tests/support/named_rows.h"
#include "tests/support/sample_images.h"
#include "tests/support/test_texts.h"

namespace {

std::string Picture(const std::string& attributes) {
    return "<image " + attributes + " xlink:href='data:image/png;base64," + ToBase64(SamplePng(3, 2)) + "'/>";
}

struct NumbersCase {
    const char* name;
    std::string document;
};

constexpr const char* kPaint = " fill='red' stroke='blue' ";

std::string Painted(const std::string& elements) {
    return Drawing("<g" + std::string(kPaint) + ">" + elements + "</g>");
}

std::vector<NumbersCase> Cases() {
    const std::string shapes =
        "<g fill='red' stroke='blue'><rect fill='red' stroke='blue' x='1' y='2' width='30' height='20'/>"
        "<circle fill='red' stroke='blue' cx='50' cy='50' r='20'/>"
        "<path fill='red' stroke='blue' stroke-dasharray='3 1' d='M0 0C9 80 70 9 90 90A5 9 30 1 1 20 20z'/>"
        "<text fill='red' stroke='blue' x='5' y='60'>words</text></g>" +
        Picture("fill='red' x='1' y='1' width='10' height='10'");
    const auto within = [&](const std::string& attributes) {
        return Drawing("<g fill='red' " + attributes + ">" + shapes + "</g>");
    };
    const auto stroked = [](const std::string& attributes) {
        const std::string stroke = "fill='none' stroke='red' " + attributes;
        return Drawing("<path " + stroke + " d='M0 0L100 50L50 3C9 80 70 9 90 90z'/><line " + stroke +
                       " x2='90' y2='9'/><circle " + stroke + " cx='50' cy='50' r='20'/><text " + stroke +
                       " x='9' y='30'>words</text>");
    };
    std::vector<NumbersCase> cases;
    // Page sizes.
    for (const auto& [name, attributes] : std::initializer_list<std::pair<const char*, std::string>>{
             {"PageInfinite", "width='1e999' height='1e999'"},
             {"PageHuge", "width='1e308' height='1e308'"},
             {"PageLarge", "width='1e9' height='1e9'"},
             {"PageDenormal", "width='1e-320' height='1e-320'"},
             {"PageTiny", "width='1e-30' height='1e-30'"},
             {"PageLongAndThin", "width='1e6' height='1e-6'"},
             {"PageWithoutSize", "width='0' height='0'"},
             {"PageInverted", "width='-100' height='-50'"},
             {"ViewBoxInfinite", "viewBox='1e999 -1e999 1e999 1e999'"},
             {"ViewBoxHuge", "viewBox='-1e308 -1e308 1e308 1e308'"},
             {"ViewBoxFarAway", "viewBox='1e300 1e300 100 100'"},
             {"ViewBoxInverted", "viewBox='0 0 -100 -50'"},
             {"ViewBoxWithoutSize", "viewBox='0 0 0 0'"},
             {"ViewBoxDenormal", "viewBox='0 0 1e-310 1e-310'"},
             {"ViewBoxNoNumber", "viewBox='nan inf 1e x'"}})
        cases.push_back({name, DrawingWith(attributes, shapes)});
    // Transforms.
    for (const auto& [name, transform] : std::initializer_list<std::pair<const char*, const char*>>{
             {"ScaleZero", "scale(0)"},
             {"ScaleZeroInOneDirection", "scale(1 0)"},
             {"ScaleDenormal", "scale(1e-310)"},
             {"ScaleTiny", "scale(1e-150)"},
             {"ScaleHuge", "scale(1e308)"},
             {"ScaleLarge", "scale(1e150)"},
             {"ScaleInfinite", "scale(1e999)"},
             {"ScaleHugeAndTiny", "scale(1e300 1e-300)"},
             {"ScaleThereAndBack", "scale(1e200) scale(1e-200)"},
             {"TranslateHuge", "translate(1e308 -1e308)"},
             {"TranslateInfinite", "translate(1e999)"},
             {"RotateHuge", "rotate(1e308)"},
             {"RotateInfinite", "rotate(1e999)"},
             {"RotateAboutFarAway", "rotate(30 1e308 1e308)"},
             {"SkewToNothing", "skewX(90)"},
             {"SkewHuge", "skewY(1e308)"},
             {"MatrixSingular", "matrix(1 2 2 4 0 0)"},
             {"MatrixHuge", "matrix(1e308 1e308 -1e308 1e308 1e308 1e308)"},
             {"MatrixNearlySingular", "matrix(1 1 1 1.0000000000000002 0 0)"}})
        cases.push_back({name, within("transform='" + std::string(transform) + "'")});
    // Strokes.
    for (const auto& [name, attributes] : std::initializer_list<std::pair<const char*, std::string>>{
             {"StrokeHuge", "stroke-width='1e308'"},
             {"StrokeInfinite", "stroke-width='1e999'"},
             {"StrokeDenormal", "stroke-width='1e-320'"},
             {"StrokeZero", "stroke-width='0'"},
             {"StrokeNegative", "stroke-width='-5'"},
             {"DashesZero", "stroke-dasharray='0 0 0'"},
             {"DashesOfNothing", "stroke-dasharray='0 5' stroke-linecap='round'"},
             {"DashesDenormal", "stroke-dasharray='1e-320 1e-320'"},
             {"DashesTiny", "stroke-dasharray='1e-30 1e-30'"},
             {"DashesSmall", "stroke-dasharray='1e-5 1e-5'"},
             {"DashesHuge", "stroke-dasharray='1e38 1e38'"},
             {"DashesInfinite", "stroke-dasharray='1e308 1'"},
             {"DashesNegative", "stroke-dasharray='-5 3'"},
             {"DashesMany", "stroke-dasharray='" + Repeat("1 ", 10'001) + "'"},
             {"DashesTwoHundredFiftySix", "stroke-dasharray='" + Repeat("1 ", 256) + "'"},
             {"OpacityHuge", "stroke-opacity='1e308' opacity='-1e308'"},
             {"OpacityNoNumber", "stroke-opacity='1e999' fill-opacity='nan'"},
             {"MitersAndCaps", "stroke-linejoin='miter' stroke-linecap='square' stroke-width='1e30'"}})
        cases.push_back({name, stroked(attributes)});
    // Empty shapes.
    cases.push_back({"ShapesOfNothing",
                     Painted("<rect/><circle/><ellipse/><line/><polyline/><polyline points='5 5'/><polygon/>"
                             "<polygon points='5 5 5 5 5 5'/><path/><path d='M5 5'/><path d='M5 5z'/>"
                             "<path d='M5 5l0 0'/><path d='M5 5C5 5 5 5 5 5'/><path d='M5 5A3 3 0 0 0 5 5'/>"
                             "<path d='M5 5A0 3 0 0 0 9 9'/><text/><text x='5'> </text><use/><image/>" +
                             Picture("width='0' height='0'"))});
    cases.push_back({"LinesOfNothingWithCaps",
                     Drawing("<g fill='none' stroke='red' stroke-width='9' stroke-linecap='round'>"
                             "<line x1='5' y1='5' x2='5' y2='5' fill='red' stroke='red'/>"
                             "<path fill='red' stroke='red' stroke-dasharray='1 2' d='M5 5L5 5'/></g>")});
    cases.push_back(
        {"ShapesInverted", Painted("<rect x='50' y='50' width='-30' height='-20'/><circle r='-5'/>"
                                   "<ellipse rx='-5' ry='3'/><path d='M5 5A-3 -3 0 0 0 9 9'/>" +
                                   Picture("x='50' y='50' width='-20' height='-10'"))});
    // Extreme coordinates and sizes.
    for (const auto& [name, number] :
         std::initializer_list<std::pair<const char*, std::string>>{{"CoordinatesInfinite", "1e999"},
                                                                    {"CoordinatesHuge", "1e308"},
                                                                    {"CoordinatesLarge", "1e100"},
                                                                    {"CoordinatesBeyondIntegers", "3e9"},
                                                                    {"CoordinatesDenormal", "4.9e-324"}}) {
        const std::string n = number, minus = "-" + number;
        cases.push_back(
            {name,
             Painted("<rect x='" + minus + "' y='" + n + "' width='" + n + "' height='" + n +
                     "'/><rect width='" + n + "' height='1'/><circle cx='" + n + "' r='" + n +
                     "'/><circle r='" + n + "'/><ellipse rx='" + n + "' ry='1'/><line x1='" + minus +
                     "' x2='" + n + "' y2='" + n + "'/><polyline points='0 0 " + n + " " + minus +
                     " 5 5'/><polygon points='" + n + " " + n + " 0 0 " + minus + " 3'/><path d='M0 0L" + n +
                     " " + n + "C" + minus + " 0 0 " + n + " 5 5Q" + n + " 1 " + minus + " 2A" + n + " " + n +
                     " 30 1 1 9 9A5 5 " + n + " 0 1 50 50a5 5 0 0 1 " + n + " 0z'/><text x='" + n + "' y='" +
                     minus + "'>far</text><text font-size='" + n +
                     "' y='50'>large</text><text letter-spacing='" + n + "' y='50'>wide</text>" +
                     Picture("width='" + n + "' height='" + n + "'") +
                     Picture("x='" + minus + "' width='5' height='5'"))});
        cases.push_back(
            {name,
             Drawing("<defs><symbol id='s' viewBox='0 0 " + n + " " + n +
                     "'><rect width='5' height='5' fill='red'/></symbol><marker id='m' refX='" + n +
                     "' markerWidth='" + n + "'><rect width='" + n +
                     "' height='3' fill='red'/></marker><rect id='r' width='9' height='9' fill='red'/></defs>"
                     "<use xlink:href='#s' width='50' height='50'/><use xlink:href='#r' width='" +
                     n + "' height='" + n + "'/><use xlink:href='#r' x='" + n +
                     "'/><path fill='none' stroke='red' marker='url(#m)' d='M1 1L50 50L" + n +
                     " 9'/><svg x='" + minus + "' width='" + n + "' height='" + n + "' viewBox='0 0 1 1'>" +
                     "<rect width='1' height='1' fill='red'/></svg>")});
    }
    return cases;
}

// The content of all compressed streams of a PDF, except binary ones.
std::string ContentOfPdf(const std::string& pdf) {
    std::string content;
    for (std::size_t at = pdf.find("stream\n"); at != pdf.npos; at = pdf.find("stream\n", at + 1)) {
        z_stream stream{};
        if (inflateInit(&stream) != Z_OK) continue;
        std::string bytes = pdf.substr(at + 7);
        stream.next_in = reinterpret_cast<Bytef*>(bytes.data());
        stream.avail_in = static_cast<uInt>(bytes.size());
        std::array<char, 4096> buffer{};
        std::string piece;
        int status = Z_OK;
        while (status == Z_OK) {
            stream.next_out = reinterpret_cast<Bytef*>(buffer.data());
            stream.avail_out = buffer.size();
            status = inflate(&stream, Z_NO_FLUSH);
            piece.append(buffer.data(), buffer.size() - stream.avail_out);
        }
        inflateEnd(&stream);
        // Fonts and images contain zero bytes.
        if (piece.find('\0') == piece.npos) content += piece + "\n";
    }
    return content;
}

// The position of "nan" or "inf" that is not part of a word; npos if there is none.
std::size_t FindNoNumber(std::string_view text) {
    for (const char* word : {"nan", "inf"})
        for (std::size_t at = text.find(word); at != text.npos; at = text.find(word, at + 1)) {
            const auto before = static_cast<unsigned char>(at > 0 ? text[at - 1] : ' ');
            const auto after = static_cast<unsigned char>(at + 3 < text.size() ? text[at + 3] : ' ');
            if (std::isalpha(before) == 0 && std::isalpha(after) == 0) return at;
        }
    return text.npos;
}

class HostileNumbersTest : public testing::TestWithParam<ORVOutputFormat> {
protected:
    static constexpr std::uint64_t kPixelLimit = 1 << 18;

    // Prints a document directly or onto sheets.
    void Print(const NumbersCase& row, bool onSheets) {
        SCOPED_TRACE(std::string(row.name) + (onSheets ? " on sheets" : ""));
        const BuiltModel built(row.document, {Backend::kLight});
        ORVMemoryOutput output;
        ORVFormatOptions options;
        options.dotsPerInch = 45.0;
        options.pixelLimit = kPixelLimit;
        options.threads = 1;
        const auto generator = GetParam().create(output, options);
        CheckingGenerator beforeFormat(&generator->Get());
        ORVSheetOptions sheets;
        sheets.layout.paper = ORVPaperSize{300.0, 400.0};
        sheets.layout.scale.kind = ORVSheetScale::Kind::kFit;
        sheets.strokeScale = 2.0;
        ORVSheetGenerator sheet(beforeFormat, sheets);
        CheckingGenerator beforeSheets(&sheet);

        const int result = ORVPrintModelRender(built.GetModel(), onSheets ? &beforeSheets : &beforeFormat,
                                               ORVPrintParameters())
                               .Draw();
        EXPECT_EQ(beforeSheets.GetFault(), "");
        EXPECT_EQ(beforeFormat.GetFault(), "");
        if (result == 1) {
            EXPECT_FALSE(output.GetBytes().empty());
            const std::string text = GetParam().name == "pdf"
                                         ? output.GetBytes() + ContentOfPdf(output.GetBytes())
                                     : GetParam().makesDots ? std::string()
                                                            : output.GetBytes();
            const std::size_t at = FindNoNumber(text);
            EXPECT_EQ(at, text.npos) << text.substr(at > 60 ? at - 60 : 0, 120);
        } else if (result != ORVPrintModelRender::kPageWithoutArea) {
            // Print raster formats cannot represent all page sizes.
            EXPECT_TRUE(result == kPageTooLarge ||
                        (result == kDrawingFailed && (GetParam().name == "pwg" || GetParam().name == "urf")))
                << result;
            EXPECT_FALSE(generator->GetError().empty() && sheet.GetError().empty());
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Formats, HostileNumbersTest,
                         testing::ValuesIn(ORVOutputFormats().begin(), ORVOutputFormats().end()), kNameOfRow);

TEST_P(HostileNumbersTest, GivePagesOrRefusals) {
    for (const NumbersCase& row : Cases()) Print(row, false);
}

TEST_P(HostileNumbersTest, GiveSheetsOrRefusals) {
    for (const NumbersCase& row : Cases()) Print(row, true);
}

// The page is the same with and without elements that cannot be drawn.
TEST(HostileNumbersPageTest, WhatCannotBeDrawnIsLeftOut) {
    const std::string good = "<rect x='10' y='10' width='50' height='30' fill='red'/>";
    const auto print = [](const std::string& content) {
        const BuiltModel built(Drawing(content), {Backend::kLight});
        ORVMemoryOutput output;
        const auto generator = ORVFindOutputFormat("png")->create(output, {});
        EXPECT_EQ(ORVPrintModelRender(built.GetModel(), &generator->Get(), ORVPrintParameters()).Draw(), 1);
        return output.GetBytes();
    };
    EXPECT_EQ(
        print(good +
              "<rect x='1e999' width='5' height='5' fill='blue'/>"
              "<rect width='0' height='0' fill='blue'/>"
              "<g fill='blue' transform='scale(0)'><rect width='9' height='9' fill='blue'/></g>"
              "<g fill='blue' transform='translate(1e999)'><rect width='9' height='9' fill='blue'/></g>"),
        print(good));
}

}  // namespace
