// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/common/lanes.h"

/// What a blur does along one axis.
struct BlurKernel {
    enum class Kind : std::uint8_t { kNone, kWeights, kBoxes };

    /// @param sigma  standard deviation in pixels, at most kLargestBoxSigma
    explicit BlurKernel(double sigma);

    /// Sums of three boxes over full pixels fit 32 bits up to this standard deviation.
    static constexpr double kLargestBoxSigma = 20.0;

    Kind kind = Kind::kNone;
    int reach = 0;  ///< pixels to either side that count
    /// kWeights: of 2 * reach + 1 pixels and a further one without weight, in parts of 32768.
    std::vector<std::int16_t> weights;
    std::vector<ShortLanes> pairs;  ///< the same, two in all lanes of each
    int box = 1, third = 1;         ///< kBoxes: the width of two boxes and that of the third, both odd
    /// Rows (or pixels) back to the oldest that is needed.
    int Delay() const { return kind == Kind::kBoxes ? 2 * box + third : 2 * reach; }
};

/// Weighs short numbers: each of `out` is the sum of those at the same place of the kernel's rows.
/// @param rows   one for each weight
/// @param count  of numbers; all rows have room for seven more
void WeighRows(const BlurKernel& kernel, const std::uint16_t* const* rows, int count, std::uint16_t* out);

/// Three boxes along a row of pixels of four shorts each.
/// @param row    from `reach` pixels before the first that is asked for to `reach` after the last; preceded
/// by
///               Delay() transparent pixels
/// @param count  of pixels in `out`
void SumBoxesAlong(const BlurKernel& kernel, const std::uint16_t* row, int count, std::uint16_t* out);

/// Three boxes down many columns at a time. Rows come in batches.
class BoxColumns {
public:
    static constexpr int kBatch = 8;

    /// @param count  of columns; all rows have room for seven more
    BoxColumns(const BlurKernel& kernel, int count);
    /// Takes a batch of rows.
    /// @param row  gives the row that is so many rows behind the batch's first; negative: in the batch
    /// @param out  a row for each of the batch: the boxes around the row `reach` before it
    template <class Row>
    void Step(Row row, std::uint16_t* const* out) {
        const int delays[kTaps] = {0,
                                   kernel_.box,
                                   2 * kernel_.box,
                                   kernel_.third,
                                   kernel_.box + kernel_.third,
                                   2 * kernel_.box + kernel_.third};
        const std::uint16_t* taps[kBatch][kTaps];
        for (int k = 0; k < kBatch; ++k)
            for (int t = 0; t < kTaps; ++t) taps[k][t] = row(delays[t] - k);
        kernel_.box == kernel_.third ? Sum<true>(taps, out) : Sum<false>(taps, out);
    }

private:
    static constexpr int kTaps = 6;
    template <bool kEqual>
    void Sum(const std::uint16_t* const (*taps)[kTaps], std::uint16_t* const* out);

    const BlurKernel& kernel_;
    int count_;
    std::vector<std::uint32_t> sums_;
};
