// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/system/ORVFailure.h"

/// Pixel formats: RGB bytes, one grey byte, or one bit per pixel with the leftmost in the most significant
/// bit and 1 for black. kClear is premultiplied RGBA, four bytes, on transparent paper.
enum class RasterPixels : std::uint8_t { kRGB, kGrey, kBlack, kClear };

struct RasterPageInfo {
    int width = 0, height = 0;  ///< in pixels
    double dotsPerInch = 0.0;
    double pageWidth = 0.0, pageHeight = 0.0;  ///< user units of 1/90 inch
    RasterPixels pixels = RasterPixels::kRGB;
    /// Rows of a band; the last band of a page may have fewer.
    int bandRows = 0;
    /// Number of this page; pages of the document, 0 if not known.
    unsigned int number = 0, pageCount = 0;
    std::string_view title;  ///< title of the document
};

/// A band of consecutive rows. The pixels of a row are contiguous.
struct RasterBand {
    int firstRow = 0, rowCount = 0;
    const std::uint8_t* pixels = nullptr;
    std::size_t rowBytes = 0;  ///< bytes of pixels in a row
    std::size_t stride = 0;    ///< bytes from one row to the next
    bool isBlank = false;      ///< entirely white, or entirely transparent
};

/// Receives the bands of a page: an encoder of a raster format.
class ORVBandSink {
public:
    virtual ~ORVBandSink() = default;

    /// True if a page that has only greys may be encoded as grey even though colour was requested.
    virtual bool TakesGreyForColour() const { return false; }
    /// Changes the width and height of a page if the format requires it; all other fields are set. By default
    /// they stay rounded to the nearest pixel.
    virtual void FitPage(RasterPageInfo& /*page*/) const {}
    /// Begins a page. @return 1, or a generator status
    [[nodiscard]] virtual int BeginPage(const RasterPageInfo& page) = 0;
    /// Encodes a band into `bytes`. Called from several threads at once, for bands in any order.
    virtual void EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const = 0;
    /// Writes the bytes of the next band; bands come from top to bottom. @return 1, or a generator status
    [[nodiscard]] virtual int WriteBand(const RasterBand& band, const std::vector<std::uint8_t>& bytes) = 0;
    [[nodiscard]] virtual int EndPage() = 0;
    [[nodiscard]] virtual int EndDocument() = 0;

    /// The error, if any. Errors of the output are reported by the output itself.
    const ORVFailure& GetFailure() const { return failure_; }

protected:
    /// Records an error of the library behind the format, with this text.
    void NoteNotDrawn(std::string text) {
        failure_ = ORVFailure::Of(ORVFailureReason::kNotDrawn, std::move(text));
    }
    ORVFailure failure_;
};
