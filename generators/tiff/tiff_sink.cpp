#include "generators/tiff/tiff_sink.h"

#include <tiffio.h>
#include <unistd.h>

#include <cstring>
#include <new>
#include <string>

#include "generators/common/ORVOutput.h"
#include "generators/common/deflate_piece.h"
#include "generators/common/generator_status.h"
#include "platform/system/ORVLoadedLibrary.h"

namespace {

// Offsets of the classic form have 32 bits. Some room is left for what a page has besides its pixels.
constexpr double kClassicLimit = 4.0e9;

/// The library's functions.
struct TiffLibrary {
    ORVLoadedLibrary library{"libtiff.so.6"};
    decltype(TIFFFdOpen)* open = nullptr;
    decltype(TIFFClose)* close = nullptr;
    decltype(TIFFSetField)* set = nullptr;
    decltype(TIFFWriteRawStrip)* writeRaw = nullptr;
    decltype(TIFFWriteEncodedStrip)* writeEncoded = nullptr;
    decltype(TIFFWriteDirectory)* endPage = nullptr;

    TiffLibrary() {
        library.Find("TIFFFdOpen", open);
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
        // Failures are returned; the library shall not write to standard error besides.
        setErrorHandler(nullptr);
        setWarningHandler(nullptr);
    }

    static const TiffLibrary& Get() {
        static const TiffLibrary loaded;
        return loaded;
    }
};

}  // namespace

TiffSink::~TiffSink() { Close(); }

void TiffSink::Close() {
    if (tiff_) TiffLibrary::Get().close(tiff_);
    tiff_ = nullptr;
}

int TiffSink::Fail(const char* error) {
    if (error_.empty()) error_ = error;
    return kDrawingFailed;
}

int TiffSink::Open(const RasterPageInfo& page) {
    const TiffLibrary& library = TiffLibrary::Get();
    if (!library.library.IsUsable()) return Fail(library.library.GetError().c_str());
    file_.reset(std::tmpfile());
    const int descriptor = file_ ? dup(fileno(file_.get())) : -1;
    if (descriptor < 0) return Fail("no temporary file can be made");
    const double pages = page.pageCount > 0 ? page.pageCount : 1.0;
    const double bits = page.pixels == RasterPixels::kRGB    ? 24.0
                        : page.pixels == RasterPixels::kGrey ? 8.0
                                                             : 1.0;
    const bool isBig = pages * page.width * page.height * bits / 8.0 > kClassicLimit;
    tiff_ = library.open(descriptor, "", isBig ? "w8" : "w");
    if (!tiff_) {
        close(descriptor);
        return Fail("the temporary file cannot be begun; is the disk full, or memory spent?");
    }
    return kGeneratorDone;
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
        // Numbers of pages have 16 bits.
        const auto number = page.number > 0 ? page.number - 1 : 0;
        done = set(TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
        if (done && number <= 0xFFFFU && page.pageCount <= 0xFFFFU)
            done = set(TIFFTAG_PAGENUMBER, static_cast<int>(number), static_cast<int>(page.pageCount));
    }
    if (done && !page.title.empty()) done = set(TIFFTAG_DOCUMENTNAME, std::string(page.title).c_str());
    return done ? kGeneratorDone
                : Fail("the page cannot be described; memory is spent, or TIFF lacks its compression");
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
    void* data = const_cast<std::uint8_t*>(bytes.data());  // is read only
    const auto size = static_cast<tmsize_t>(bytes.size());
    const tmsize_t written = pixels_ == RasterPixels::kBlack ? library.writeEncoded(tiff_, strip_, data, size)
                                                             : library.writeRaw(tiff_, strip_, data, size);
    ++strip_;
    return written == size || (written > 0 && pixels_ == RasterPixels::kBlack)
               ? static_cast<int>(kGeneratorDone)
               : Fail("the temporary file cannot be written; is the disk full?");
}

int TiffSink::EndPage() {
    if (!tiff_) return kDrawingFailed;
    return TiffLibrary::Get().endPage(tiff_) == 1
               ? static_cast<int>(kGeneratorDone)
               : Fail("the temporary file cannot be written; is the disk full?");
}

int TiffSink::EndDocument() {
    Close();
    if (!file_ || !error_.empty()) return error_.empty() ? kGeneratorDone : kDrawingFailed;
    if (output_.BeginPart() != 1) return kOutputFailed;
    std::rewind(file_.get());
    std::vector<char> bytes(std::size_t{1} << 18U);
    std::size_t count = 0;
    while ((count = std::fread(bytes.data(), 1, bytes.size(), file_.get())) > 0)
        if (output_.Write(bytes.data(), count) != 1) return kOutputFailed;
    if (std::ferror(file_.get()) != 0) return Fail("the temporary file cannot be read");
    file_.reset();
    return output_.EndPart() == 1 ? kGeneratorDone : kOutputFailed;
}
