// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "generators/raster/raster_gradient.h"

/// Gives the colours of gradients, row by row. What a pixel gets depends on its place only. One thread has
/// one of its own; it is made for one page.
class GradientSource {
public:
    /// Prepares for reading of the columns [left, right).
    /// @return the work of that, in pixels of one colour
    std::uint64_t Begin(const RasterGradient& gradient, int left, int right);
    /// @return the premultiplied colours (RGBA) of the pixels [begin, end) of a row, and room for three more;
    ///         valid until the next call
    const std::uint8_t* Read(int row, int begin, int end);
    /// Work for each pixel that is read, in pixels of one colour.
    std::uint64_t GetPixelWork() const;

private:
    /// The colour before the first place, those of the places, the one behind the last, and nothing.
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
    int left_ = 0;                    // of the row below, where all rows are alike
    std::vector<std::uint32_t> row_;  // what was written last
    std::uint32_t level_ = 0;         // how many pixels of it have the colour below
    std::uint32_t levelColour_ = 0;
};
