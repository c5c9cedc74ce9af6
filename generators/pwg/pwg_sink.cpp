// SPDX-License-Identifier: Apache-2.0
#include "generators/pwg/pwg_sink.h"

#include <cups/cups.h>
#include <cups/raster.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <limits>

#include "generators/common/ORVOutput.h"
#include "generators/common/generator_status.h"
#include "platform/system/ORVLoadedLibrary.h"

namespace {

constexpr double kUserUnitsPerInch = 90.0;
constexpr double kHundredthsOfMillimetrePerInch = 2540.0;

/// Functions of the library, loaded on first use.
struct CupsLibrary {
    ORVLoadedLibrary library{"libcups.so.2"};
    decltype(cupsRasterOpenIO)* open = nullptr;
    decltype(cupsRasterClose)* close = nullptr;
    decltype(cupsRasterInitPWGHeader)* initHeader = nullptr;
    decltype(cupsRasterWriteHeader2)* writeHeader = nullptr;
    decltype(cupsRasterWritePixels)* writePixels = nullptr;
    decltype(pwgMediaForSize)* mediaForSize = nullptr;

    CupsLibrary() {
        library.Find("cupsRasterOpenIO", open);
        library.Find("cupsRasterClose", close);
        library.Find("cupsRasterInitPWGHeader", initHeader);
        library.Find("cupsRasterWriteHeader2", writeHeader);
        library.Find("cupsRasterWritePixels", writePixels);
        library.Find("pwgMediaForSize", mediaForSize);
    }

    static const CupsLibrary& Get() {
        static const CupsLibrary loaded;
        return loaded;
    }
};

ssize_t Write(void* context, unsigned char* bytes, size_t size) {
    try {
        return static_cast<ORVOutput*>(context)->Write(bytes, size) == 1 ? static_cast<ssize_t>(size) : -1;
    } catch (const std::exception&) {
        return -1;  // exceptions must not pass through the library
    }
}

const char* TypeOf(RasterPixels pixels, PrintRaster raster) {
    switch (pixels) {
        case RasterPixels::kGrey: return "sgray_8";
        case RasterPixels::kBlack: return raster == PrintRaster::kApple ? "sgray_8" : "black_1";
        case RasterPixels::kClear: break;  // not used here
        case RasterPixels::kRGB: break;
    }
    return "srgb_8";
}

int HundredthsOfMillimetre(double userUnits) {
    return static_cast<int>(std::lround(userUnits / kUserUnitsPerInch * kHundredthsOfMillimetrePerInch));
}

int WholeDotsPerInch(const RasterPageInfo& page) { return static_cast<int>(std::lround(page.dotsPerInch)); }

/// Creates the header for a paper of the page's size. Known sizes get their name, others a custom name.
/// @return false if the library cannot represent the size
bool MakeHeader(const CupsLibrary& library, const RasterPageInfo& page, PrintRaster raster,
                cups_page_header2_t& header) {
    std::memset(&header, 0, sizeof header);
    pwg_media_t* media =
        library.mediaForSize(HundredthsOfMillimetre(page.pageWidth), HundredthsOfMillimetre(page.pageHeight));
    const int dotsPerInch = WholeDotsPerInch(page);
    return media && library.initHeader(&header, media, TypeOf(page.pixels, raster), dotsPerInch, dotsPerInch,
                                       nullptr, nullptr) == 1;
}

/// Expands 1-bit pixels (most significant bit first, 1 for black) to grey.
void WidenToGrey(const std::uint8_t* bits, std::uint8_t* grey, int width) {
    for (int x = 0; x < width; ++x) grey[x] = bits[x / 8] & (0x80U >> (x % 8)) ? 0 : 0xFF;
}

unsigned int Points(double userUnits) {
    return static_cast<unsigned int>(std::lround(userUnits / kUserUnitsPerInch * 72.0));
}

}  // namespace

PwgSink::~PwgSink() {
    if (stream_) CupsLibrary::Get().close(stream_);
}

int PwgSink::Failure() const { return output_.GetError().empty() ? kDrawingFailed : kOutputFailed; }

int PwgSink::Open() {
    const CupsLibrary& library = CupsLibrary::Get();
    if (!library.library.IsUsable()) {
        NoteNotDrawn(library.library.GetError());
        return kDrawingFailed;
    }
    if (output_.BeginPart() != 1) return kOutputFailed;
    stream_ = library.open(Write, &output_,
                           raster_ == PrintRaster::kApple ? CUPS_RASTER_WRITE_APPLE : CUPS_RASTER_WRITE_PWG);
    return stream_ ? kGeneratorDone : Failure();
}

void PwgSink::FitPage(RasterPageInfo& page) const {
    const CupsLibrary& library = CupsLibrary::Get();
    // Longer sides overflow in the library.
    const std::int64_t longest = std::numeric_limits<int>::max() / std::max(WholeDotsPerInch(page), 1);
    const double side = std::max(page.pageWidth, page.pageHeight);
    cups_page_header2_t header;
    if (!library.library.IsUsable() || HundredthsOfMillimetre(side) > longest ||
        !MakeHeader(library, page, raster_, header))
        return;
    page.width = std::max(static_cast<int>(header.cupsWidth), 1);
    page.height = std::max(static_cast<int>(header.cupsHeight), 1);
}

int PwgSink::BeginPage(const RasterPageInfo& page) {
    if (!stream_)
        if (const int status = Open(); status != kGeneratorDone) return status;
    const CupsLibrary& library = CupsLibrary::Get();
    cups_page_header2_t header;
    if (!MakeHeader(library, page, raster_, header)) {
        NoteNotDrawn("the page has no size that this format can state");
        failed_ = true;
        return kDrawingFailed;
    }
    // The pixel format and size are set here: a page has at least one pixel.
    const unsigned int bits = header.cupsBitsPerPixel;
    header.cupsWidth = static_cast<unsigned int>(page.width);
    header.cupsHeight = static_cast<unsigned int>(page.height);
    header.cupsBytesPerLine = (header.cupsWidth * bits + 7) / 8;
    header.PageSize[0] = Points(page.pageWidth);
    header.PageSize[1] = Points(page.pageHeight);
    header.cupsInteger[CUPS_RASTER_PWG_TotalPageCount] = page.pageCount;
    header.NumCopies = 1;
    greyWidth_ = raster_ == PrintRaster::kApple && page.pixels == RasterPixels::kBlack ? page.width : 0;
    failed_ = library.writeHeader(stream_, &header) != 1;
    return failed_ ? Failure() : static_cast<int>(kGeneratorDone);
}

void PwgSink::EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const {
    if (greyWidth_ > 0) {
        bytes.resize(static_cast<std::size_t>(greyWidth_) * static_cast<std::size_t>(band.rowCount));
        for (std::size_t y = 0; y < static_cast<std::size_t>(band.rowCount); ++y)
            WidenToGrey(band.pixels + y * band.stride,
                        bytes.data() + y * static_cast<std::size_t>(greyWidth_), greyWidth_);
        return;
    }
    bytes.resize(band.rowBytes * static_cast<std::size_t>(band.rowCount));
    for (std::size_t y = 0; y < static_cast<std::size_t>(band.rowCount); ++y)
        std::memcpy(bytes.data() + y * band.rowBytes, band.pixels + y * band.stride, band.rowBytes);
}

int PwgSink::WriteBand(const RasterBand& /*band*/, const std::vector<std::uint8_t>& bytes) {
    const auto size = static_cast<unsigned int>(bytes.size());
    auto* data = const_cast<std::uint8_t*>(bytes.data());  // only read
    failed_ = CupsLibrary::Get().writePixels(stream_, data, size) != size;
    return failed_ ? Failure() : static_cast<int>(kGeneratorDone);
}

int PwgSink::EndDocument() {
    if (!stream_) return failure_ ? kDrawingFailed : kGeneratorDone;
    CupsLibrary::Get().close(stream_);
    stream_ = nullptr;
    return output_.EndPart() == 1 && !failed_ ? kGeneratorDone : Failure();
}
