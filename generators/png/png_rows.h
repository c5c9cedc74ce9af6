// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "generators/png/deflate_block.h"
#include "generators/raster/ORVBandSink.h"

/// Compresses rows of pixels to a piece of a deflate stream, optimised for drawings: it looks for runs of a
/// pixel, for repetitions of the row above, and for recently used pixels. Deterministic. An object reuses its
/// memory and must be used by one thread at a time.
class PngRows {
public:
    /// Bytes after the last row that may be read; their values do not matter.
    static constexpr std::size_t kTail = RasterBand::kTail;

    /// Compresses rows to a piece of a deflate stream that ends on a byte boundary and refers to nothing
    /// before it.
    /// @param rows        rows of rowBytes bytes: the filter byte and the pixels; kTail readable bytes follow
    /// @param pixelBytes  3, or 1 for all other formats
    /// @param isDrawn     for each row, 0 if all its pixels are known to be equal; empty if unknown. Affects
    ///         the speed only
    void Compress(std::span<const std::uint8_t> rows, std::size_t rowBytes, std::size_t pixelBytes,
                  std::span<const std::uint8_t> isDrawn, std::vector<std::uint8_t>& out);

private:
    static constexpr unsigned int kHashBits = 12;
    using Places = std::array<std::uint32_t, std::size_t{1} << kHashBits>;

    struct Match {
        std::size_t length = 0, distance = 0;
        int gain = 0;  // saving over literals, in eighths of a bit
    };

    template <std::size_t kPixel>
    void TakeRow(std::size_t at, std::size_t end, bool isEven);
    template <std::size_t kPixel>
    std::size_t TakeRowStart(std::size_t at, std::size_t end);
    template <std::size_t kPixel>
    void TakePixel(std::size_t at);
    template <std::size_t kPixel>
    void FindMatch(std::size_t at, std::size_t end, Match& best);
    template <std::size_t kPixel>
    void Consider(std::size_t at, std::size_t from, std::size_t end, Match& best) const;
    template <std::size_t kPixel>
    std::size_t LengthOfMatch(std::size_t at, std::size_t from, std::size_t most) const;
    template <std::size_t kPixel>
    void NotePlaces(std::size_t at, std::size_t end);
    int GainOf(std::size_t at, std::size_t length, std::size_t distance) const;
    bool HasRowAbove(std::size_t at) const;
    void AddRun(std::size_t length, std::size_t distance);
    void UpdateCosts();

    const std::uint8_t* bytes_ = nullptr;
    std::size_t size_ = 0, rowBytes_ = 0;
    bool hasWide_ = false;        // in vectors of 32 bytes
    std::size_t firstPixel_ = 0;  // of the current row
    DeflateBlock block_;
    std::size_t nextUpdate_ = 0;
    std::vector<std::uint8_t>* out_ = nullptr;
    // The last position of a byte sequence with a certain hash, and of a pixel.
    Places places_{}, pixelPlaces_{};
};
