// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "generators/raster/raster_gradient.h"

/// Computes the colours of gradients, row by row. A pixel's colour depends only on its position. Not
/// thread-safe: each thread needs its own object, and each page a new one.
class GradientSource {
public:
    /// Prepares to read the columns [left, right).
    /// @return the work done, in pixels filled with one colour
    std::uint64_t Begin(const RasterGradient& gradient, int left, int right);
    /// @return premultiplied RGBA colours of the pixels [begin, end) of a row, with room for three more;
    ///         valid until the next call
    const std::uint8_t* Read(int row, int begin, int end);
    /// Work per pixel read, in pixels filled with one colour.
    std::uint64_t GetPixelWork() const;

private:
    /// Colours of a gradient: one before the first stop, those of the table, one after the last stop, and
    /// transparent.
    struct Table {
        const RasterGradientStops* stops = nullptr;
        std::vector<std::uint32_t> colours;
    };
    void Write(int row, int begin, int end);
    template <ORVPrintGradient::Spread kSpread>
    void WriteSpread(int row, int begin, int end);

    std::array<Table, 64> tables_;
    const RasterGradient* gradient_ = nullptr;
    const std::uint32_t* colours_ = nullptr;
    float entries_ = 0.0F;
    int left_ = 0;                    // of `row_`, if all rows are equal
    std::vector<std::uint32_t> row_;  // last row written
    std::uint32_t level_ = 0;         // number of leading pixels of `row_` with the colour below
    std::uint32_t levelColour_ = 0;
};
