// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numeric>
#include <utility>

#include "generators/filters/filter_neighbours.h"
#include "generators/filters/pixel_steps.h"

namespace {

constexpr auto kFullChannel = static_cast<float>(kFilterFull);
constexpr int kNowhere = std::numeric_limits<int>::min();

/// Maps a position outside an area to the one that represents it, by edge mode.
int PlaceWithin(std::int64_t place, int begin, int size, FilterEdge edge) {
    if (place >= begin && place < std::int64_t{begin} + size) return static_cast<int>(place);
    if (edge == FilterEdge::kNone) return kNowhere;
    if (edge == FilterEdge::kDuplicate) return place < begin ? begin : begin + size - 1;
    const std::int64_t behind = (place - begin) % size;
    return static_cast<int>(begin + (behind < 0 ? behind + size : behind));
}

/// Positions outside the input are transparent.
int PlaceIn(std::int64_t place, int begin, int size, FilterEdge edge, int inputBegin, int inputEnd) {
    const int within = PlaceWithin(place, begin, size, edge);
    return within >= inputBegin && within < inputEnd ? within : kNowhere;
}

bool IsUsable(const FilterConvolution& convolution) {
    const auto columns = convolution.columns, rows = convolution.rows;
    if (columns < 1 || rows < 1 || convolution.area.IsEmpty()) return false;
    if (convolution.kernel.size() != static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows))
        return false;
    const bool isIn = convolution.targetColumn >= 0 && convolution.targetColumn < columns &&
                      convolution.targetRow >= 0 && convolution.targetRow < rows;
    return isIn && std::all_of(convolution.kernel.begin(), convolution.kernel.end(),
                               [](double weight) { return std::isfinite(weight); });
}

double DivisorOf(const FilterConvolution& convolution) {
    if (convolution.divisor != 0.0 && std::isfinite(convolution.divisor)) return convolution.divisor;
    const double sum = std::accumulate(convolution.kernel.begin(), convolution.kernel.end(), 0.0);
    return sum != 0.0 && std::isfinite(sum) ? sum : 1.0;
}

/// A weight and its offset to the right and down, from the top left corner of the kernel.
struct Weight {
    float weight = 0.0F;
    int column = 0, row = 0;
};

/// Weights other than 0, rotated by 180 degrees and divided.
std::vector<Weight> WeightsOf(const FilterConvolution& convolution) {
    const double divisor = DivisorOf(convolution);
    std::vector<Weight> weights;
    for (int row = 0; row < convolution.rows; ++row)
        for (int column = 0; column < convolution.columns; ++column) {
            const std::size_t turned =
                convolution.kernel.size() - 1 -
                (static_cast<std::size_t>(row) * static_cast<std::size_t>(convolution.columns) +
                 static_cast<std::size_t>(column));
            const auto weight = static_cast<float>(UsableNumber(convolution.kernel[turned] / divisor));
            if (weight != 0.0F) weights.push_back({weight, column, row});
        }
    return weights;
}

/// Unpremultiplied colours from 0 to 65535, with the opacity unchanged.
FilterPixels Straightened(const FilterPixels& input) {
    FilterPixels straight = input.Copy();
    ForEachPixel(straight, [](std::uint16_t* pixel) {
        if (pixel[3] == 0 || pixel[3] == kFilterFull) return;
        for (int i = 0; i < 3; ++i) pixel[i] = ChannelOf(static_cast<double>(pixel[i]) / pixel[3]);
    });
    return straight;
}

class Convolver {
public:
    Convolver(const FilterPixels& input, const FilterConvolution& convolution, const FilterBox& box)
        : input_(input),
          convolution_(convolution),
          box_(box),
          weights_(WeightsOf(convolution)),
          columns_(static_cast<std::size_t>(box.width) + static_cast<std::size_t>(convolution.columns)),
          rows_(static_cast<std::size_t>(convolution.rows)) {
        const FilterBox from = input.GetBox(), area = convolution.area;
        for (std::size_t i = 0; i < columns_.size(); ++i)
            columns_[i] =
                PlaceIn(std::int64_t{box.left} - convolution.targetColumn + static_cast<std::int64_t>(i),
                        area.left, area.width, convolution.edge, from.left, from.Right());
    }
    void BeginRow(int y) {
        const FilterBox from = input_.GetBox(), area = convolution_.area;
        for (std::size_t i = 0; i < rows_.size(); ++i)
            rows_[i] = PlaceIn(std::int64_t{y} - convolution_.targetRow + static_cast<std::int64_t>(i),
                               area.top, area.height, convolution_.edge, from.top, from.Bottom());
    }
    FloatLanes SumAt(int x) const {
        const int* columns = columns_.data() + (x - box_.left);
        FloatLanes sum{};
        for (const Weight& weight : weights_) {
            const int row = rows_[static_cast<std::size_t>(weight.row)], column = columns[weight.column];
            if (row != kNowhere && column != kNowhere)
                sum += LoadPixel(input_.At(column, row)) * weight.weight;
        }
        return sum;
    }

private:
    const FilterPixels& input_;
    const FilterConvolution& convolution_;
    FilterBox box_;
    std::vector<Weight> weights_;
    std::vector<int> columns_, rows_;
};

/// Premultiplies and clamps, for preserved opacity.
FloatLanes WithOpacity(const FloatLanes& straight, float opacity) {
    const FloatLanes inside =
        blending::Least(blending::Most(straight, FloatLanes{}), blending::All(kFullChannel));
    FloatLanes pixel = inside * (opacity / kFullChannel);
    pixel[3] = opacity;
    return pixel;
}

FloatLanes Inside(const FloatLanes& pixel) {
    const FloatLanes positive = blending::Most(pixel, FloatLanes{});
    return blending::Least(positive, blending::Least(Opacity(positive), blending::All(kFullChannel)));
}

}  // namespace

FilterPixels ConvolveFilterPixels(const FilterPixels& input, const FilterConvolution& convolution,
                                  const FilterBox& box) {
    FilterPixels out(box, input.GetColours());
    const FilterBox made = out.GetBox();
    if (made.IsEmpty() || !IsUsable(convolution)) return out;
    const bool preserves = convolution.preservesAlpha;
    const FilterPixels straight = preserves ? Straightened(input) : FilterPixels();
    Convolver convolver(preserves ? straight : input, convolution, made);
    const auto bias = static_cast<float>(UsableNumber(convolution.bias));
    FilterRows middle(input, made);
    for (int y = made.top; y < made.Bottom(); ++y) {
        convolver.BeginRow(y);
        const std::uint16_t* from = middle(y);
        std::uint16_t* to = out.Row(y);
        for (int x = made.left; x < made.Right(); ++x, from += kFilterChannels, to += kFilterChannels) {
            const auto opacity = static_cast<float>(from[3]);
            const FloatLanes sum = convolver.SumAt(x) + bias * opacity;
            StorePixel(preserves ? WithOpacity(sum, opacity) : Inside(sum), to);
        }
    }
    out.SetAlphaOnly(input.IsAlphaOnly() && bias == 0.0F);
    return out;
}

double FilterConvolutionWork(const FilterConvolution& convolution, const FilterBox& box) {
    return box.Area() * (2.0 + static_cast<double>(convolution.kernel.size()));
}
