// SPDX-License-Identifier: Apache-2.0
#include "generators/tiff/tiff_sink.h"

#include <tiffio.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <new>
#include <string>

#include "generators/common/ORVOutput.h"
#include "generators/common/deflate_chunk.h"
#include "generators/common/generator_status.h"
#include "platform/system/ORVLoadedLibrary.h"

namespace {

// Classic TIFF has 32-bit offsets. Some room is left for the data of a page besides pixels.
constexpr double kClassicLimit = 4.0e9;

/// Functions of the library, loaded on first use.
struct TiffLibrary {
    ORVLoadedLibrary library{"libtiff.so.6"};
    decltype(TIFFClientOpen)* open = nullptr;
    decltype(TIFFClose)* close = nullptr;
    decltype(TIFFSetField)* set = nullptr;
    decltype(TIFFWriteRawStrip)* writeRaw = nullptr;
    decltype(TIFFWriteEncodedStrip)* writeEncoded = nullptr;
    decltype(TIFFWriteDirectory)* endPage = nullptr;

    TiffLibrary() {
        library.Find("TIFFClientOpen", open);
        library.Find("TIFFClose", close);
        library.Find("TIFFSetField", set);
        library.Find("TIFFWriteRawStrip", writeRaw);
        library.Find("TIFFWriteEncodedStrip", writeEncoded);
        library.Find("TIFFWriteDirectory", endPage);
        decltype(TIFFSetErrorHandler)* setErrorHandler = nullptr;
        decltype(TIFFSetWarningHandler)* setWarningHandler = nullptr;
        library.Find("TIFFSetErrorHandler", setErrorHandler);
        library.Find("TIFFSetWarningHandler", setWarningHandler);
        if (!library.IsUsable()) return;
        // Failures are returned; the library must not also write to standard error.
        setErrorHandler(nullptr);
        setWarningHandler(nullptr);
    }

    static const TiffLibrary& Get() {
        static const TiffLibrary loaded;
        return loaded;
    }
};

// I/O callbacks of the library.

tmsize_t ReadData(thandle_t data, void* bytes, tmsize_t size) {
    return static_cast<ORVTemporaryData*>(data)->Read(bytes, static_cast<std::size_t>(size));
}

tmsize_t WriteData(thandle_t data, void* bytes, tmsize_t size) {
    return static_cast<tmsize_t>(
        static_cast<ORVTemporaryData*>(data)->Write(bytes, static_cast<std::size_t>(size)));
}

toff_t SeekData(thandle_t data, toff_t offset, int origin) {
    return static_cast<toff_t>(
        static_cast<ORVTemporaryData*>(data)->Seek(static_cast<std::int64_t>(offset), origin));
}

toff_t SizeOfData(thandle_t data) {
    return static_cast<toff_t>(static_cast<ORVTemporaryData*>(data)->GetSize());
}

}  // namespace

TiffSink::~TiffSink() { Close(); }

void TiffSink::Close() {
    if (tiff_) TiffLibrary::Get().close(tiff_);
    tiff_ = nullptr;
}

int TiffSink::Fail(const char* error) {
    if (!failure_) NoteNotDrawn(error);
    return kDrawingFailed;
}

/// Reports that the data cannot be written, possibly because of one of our own limits.
int TiffSink::FailWriting() {
    if (data_.IsPastLimit()) {
        output_.EndPastLimit();
        return kOutputFailed;
    }
    return Fail("the temporary file cannot be written; is the disk full?");
}

int TiffSink::Open(const RasterPageInfo& page) {
    const TiffLibrary& library = TiffLibrary::Get();
    if (!library.library.IsUsable()) return Fail(library.library.GetError().c_str());
    if (!data_.Open()) {
        const std::string reason = std::strerror(errno);
        return Fail(
            (std::string("no temporary file can be made in ") + ORVTemporaryData::GetFolder() + ": " + reason)
                .c_str());
    }
    const double pages = page.pageCount > 0 ? page.pageCount : 1.0;
    const double bits = page.pixels == RasterPixels::kRGB    ? 24.0
                        : page.pixels == RasterPixels::kGrey ? 8.0
                                                             : 1.0;
    const bool isBig = pages * page.width * page.height * bits / 8.0 > kClassicLimit;
    tiff_ = library.open(
        "", isBig ? "w8m" : "wm", &data_, ReadData, WriteData, SeekData, [](thandle_t) { return 0; },
        SizeOfData, nullptr, nullptr);
    if (tiff_) return kGeneratorDone;
    return data_.IsPastLimit()
               ? FailWriting()
               : Fail("the temporary file cannot be begun; is the disk full, or is there too little memory?");
}

int TiffSink::BeginPage(const RasterPageInfo& page) {
    if (!tiff_)
        if (const int status = Open(page); status != kGeneratorDone) return status;
    pixels_ = page.pixels;
    strip_ = 0;
    const auto set = [this](std::uint32_t tag, auto... values) {
        return TiffLibrary::Get().set(tiff_, tag, values...) == 1;
    };
    const bool isBlack = pixels_ == RasterPixels::kBlack, isColour = pixels_ == RasterPixels::kRGB;
    bool done =
        set(TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(page.width)) &&
        set(TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(page.height)) &&
        set(TIFFTAG_BITSPERSAMPLE, isBlack ? 1 : 8) && set(TIFFTAG_SAMPLESPERPIXEL, isColour ? 3 : 1) &&
        set(TIFFTAG_PHOTOMETRIC, isColour  ? PHOTOMETRIC_RGB
                                 : isBlack ? PHOTOMETRIC_MINISWHITE
                                           : PHOTOMETRIC_MINISBLACK) &&
        set(TIFFTAG_COMPRESSION, isBlack ? COMPRESSION_CCITTFAX4 : COMPRESSION_ADOBE_DEFLATE) &&
        set(TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) && set(TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT) &&
        set(TIFFTAG_ROWSPERSTRIP, static_cast<std::uint32_t>(page.bandRows)) &&
        set(TIFFTAG_RESOLUTIONUNIT, RESUNIT_INCH) && set(TIFFTAG_XRESOLUTION, page.dotsPerInch) &&
        set(TIFFTAG_YRESOLUTION, page.dotsPerInch);
    if (done && page.pageCount != 1) {
        // Page numbers have 16 bits.
        const auto number = page.number > 0 ? page.number - 1 : 0;
        done = set(TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
        if (done && number <= 0xFFFFU && page.pageCount <= 0xFFFFU)
            done = set(TIFFTAG_PAGENUMBER, static_cast<int>(number), static_cast<int>(page.pageCount));
    }
    if (done && !page.title.empty()) done = set(TIFFTAG_DOCUMENTNAME, std::string(page.title).c_str());
    return done ? kGeneratorDone
                : Fail("the page cannot be described; out of memory, or TIFF lacks its compression");
}

void TiffSink::EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const {
    std::vector<std::uint8_t> rows(band.rowBytes * static_cast<std::size_t>(band.rowCount));
    for (std::size_t y = 0; y < static_cast<std::size_t>(band.rowCount); ++y)
        std::memcpy(rows.data() + y * band.rowBytes, band.pixels + y * band.stride, band.rowBytes);
    if (pixels_ == RasterPixels::kBlack)
        bytes.swap(rows);
    else if (!ORVDeflateWhole(rows, bytes))
        throw std::bad_alloc();
}

int TiffSink::WriteBand(const RasterBand& /*band*/, const std::vector<std::uint8_t>& bytes) {
    const TiffLibrary& library = TiffLibrary::Get();
    void* data = const_cast<std::uint8_t*>(bytes.data());  // only read
    const auto size = static_cast<tmsize_t>(bytes.size());
    const tmsize_t written = pixels_ == RasterPixels::kBlack ? library.writeEncoded(tiff_, strip_, data, size)
                                                             : library.writeRaw(tiff_, strip_, data, size);
    ++strip_;
    return written == size || (written > 0 && pixels_ == RasterPixels::kBlack)
               ? static_cast<int>(kGeneratorDone)
               : FailWriting();
}

int TiffSink::EndPage() {
    if (!tiff_) return kDrawingFailed;
    return TiffLibrary::Get().endPage(tiff_) == 1 ? static_cast<int>(kGeneratorDone) : FailWriting();
}

int TiffSink::EndDocument() {
    Close();
    if (!data_.IsOpen() || failure_) return failure_ ? kDrawingFailed : kGeneratorDone;
    if (output_.BeginPart() != 1) return kOutputFailed;
    std::vector<char> bytes(std::size_t{1} << 18U);
    std::ptrdiff_t count = data_.Seek(0, SEEK_SET) == 0 ? 0 : -1;
    while (count >= 0 && (count = data_.Read(bytes.data(), bytes.size())) > 0)
        if (output_.Write(bytes.data(), static_cast<std::size_t>(count)) != 1) return kOutputFailed;
    if (count < 0) return Fail("the temporary file cannot be read");
    data_.Close();
    return output_.EndPart() == 1 ? kGeneratorDone : kOutputFailed;
}
