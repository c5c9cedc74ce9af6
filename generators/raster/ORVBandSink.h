// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/system/ORVFailure.h"

/// What a page's pixels are: bytes of red, green and blue, or one of grey; or black and white, eight pixels a
/// byte, the leftmost in the highest bit, 1 being black.
/// kClear are four bytes of red, green, blue and opacity on paper that is transparent; colours are multiplied
/// by the opacity.
enum class RasterPixels : std::uint8_t { kRGB, kGrey, kBlack, kClear };

struct RasterPageInfo {
    int width = 0, height = 0;  ///< pixels
    double dotsPerInch = 0.0;
    double pageWidth = 0.0, pageHeight = 0.0;  ///< user units of 1/90 inch
    RasterPixels pixels = RasterPixels::kRGB;
    int bandRows = 0;                        ///< of all bands but the last, which may have fewer
    unsigned int number = 0, pageCount = 0;  ///< of the page; of all, 0 when that is not known
    std::string_view title;                  ///< of the document
};

/// A band of rows, whole pixels of which follow each other without gaps.
struct RasterBand {
    int firstRow = 0, rowCount = 0;
    const std::uint8_t* pixels = nullptr;
    std::size_t rowBytes = 0;  ///< that hold pixels
    std::size_t stride = 0;    ///< from row to row
    /// Bytes of 0 in front of each row, which nothing else separates from the row before. 0 when rows have
    /// none.
    std::size_t rowFront = 0;
    const std::uint8_t* isDrawn = nullptr;  ///< of each row: 0 for one of paper alone
    bool isBlank = false;                   ///< white all over, or transparent

    /// Bytes that may be read behind the last row where rows have a front. They do not count.
    static constexpr std::size_t kTail = 16;
};

/// Where the bands of a page go: an encoder.
class ORVBandSink {
public:
    virtual ~ORVBandSink() = default;

    /// True when a page without colours may come as grey though colours were asked for.
    virtual bool TakesGreyForColour() const { return false; }
    /// Sets the width and height of a page whose other facts are known, where the format has a rule of its
    /// own for them. They are rounded to the nearest whole number before.
    virtual void FitPage(RasterPageInfo& /*page*/) const {}
    /// Begins a page. @return 1, or a generator status
    [[nodiscard]] virtual int BeginPage(const RasterPageInfo& page) = 0;
    /// Encodes a band into bytes. Called by several threads at a time, for bands in any order.
    virtual void EncodeBand(const RasterBand& band, std::vector<std::uint8_t>& bytes) const = 0;
    /// Takes the bytes of the next band, from the top. @return 1, or a generator status
    [[nodiscard]] virtual int WriteBand(const RasterBand& band, const std::vector<std::uint8_t>& bytes) = 0;
    [[nodiscard]] virtual int EndPage() = 0;
    [[nodiscard]] virtual int EndDocument() = 0;

    /// What went wrong; nothing when nothing did, or when it was the output.
    const ORVFailure& GetFailure() const { return failure_; }

protected:
    /// Notes that the library behind the format cannot draw, in words.
    void NoteNotDrawn(std::string text) {
        failure_ = ORVFailure::Of(ORVFailureReason::kNotDrawn, std::move(text));
    }
    ORVFailure failure_;
};
