// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/common/lanes.h"

/// A blur along one axis.
struct BlurKernel {
    enum class Kind : std::uint8_t { kNone, kWeights, kBoxes };

    /// @param sigma  standard deviation in pixels, at most kLargestBoxSigma
    explicit BlurKernel(double sigma);

    /// Up to this standard deviation, sums of three boxes over full pixels fit 32 bits.
    static constexpr double kLargestBoxSigma = 20.0;

    Kind kind = Kind::kNone;
    int reach = 0;  ///< number of contributing pixels on either side
    /// kWeights: weights of 2 * reach + 1 pixels and one zero weight, in units of 1/32768.
    std::vector<std::int16_t> weights;
    /// The same weights in pairs, each pair in all lanes of a vector.
    std::vector<ShortLanes> pairs;
    /// kBoxes: the width of two boxes and that of the third, both odd.
    int box = 1, third = 1;
    /// Rows (or pixels) from the current one back to the oldest one needed.
    int Delay() const { return kind == Kind::kBoxes ? 2 * box + third : 2 * reach; }
};

/// Weighted sums: each element of `out` is the sum of the elements at its index in all rows.
/// @param rows   one per weight
/// @param count  number of elements; all rows have room for seven more
void WeighRows(const BlurKernel& kernel, const std::uint16_t* const* rows, int count, std::uint16_t* out);

/// Applies three boxes along a row of pixels of four shorts each.
/// @param row    pixels from `reach` before the first result to `reach` after the last, preceded by Delay()
///               transparent pixels
/// @param count  number of pixels in `out`
void SumBoxesAlong(const BlurKernel& kernel, const std::uint16_t* row, int count, std::uint16_t* out);

/// Applies three boxes down many columns at once. Rows come in batches.
class BoxColumns {
public:
    static constexpr int kBatch = 8;

    /// @param count  number of columns; all rows have room for seven more
    BoxColumns(const BlurKernel& kernel, int count);
    /// Processes a batch of rows.
    /// @param row  returns the row at this distance behind the first of the batch; negative: in the batch
    /// @param out  a row for each of the batch: the boxes centred `reach` rows before it
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
