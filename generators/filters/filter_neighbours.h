// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/filters/filter_pixels.h"

enum class FilterEdge : std::uint8_t { kDuplicate, kWrap, kNone };

struct FilterConvolution {
    int columns = 3, rows = 3;
    std::vector<double> kernel;  ///< rows of `columns` numbers in document order: rotated by 180 degrees here
    double divisor = 0.0;        ///< 0: the sum of the kernel, or 1 if that is 0
    double bias = 0.0;           ///< scaled by the opacity of the pixel
    int targetColumn = 1, targetRow = 1;  ///< kernel element placed on the pixel
    FilterEdge edge = FilterEdge::kDuplicate;
    FilterBox area;               ///< the input's subregion, to whose edges `edge` applies
    bool preservesAlpha = false;  ///< true: opacity is kept, and colours are convolved without it
};
/// The result is transparent if the kernel does not have columns * rows elements, if one is not finite, or if
/// the target is outside the kernel.
FilterPixels ConvolveFilterPixels(const FilterPixels& input, const FilterConvolution& convolution,
                                  const FilterBox& box);
double FilterConvolutionWork(const FilterConvolution& convolution, const FilterBox& box);

struct FilterMorphology {
    bool isDilation = false;  ///< maximum of the neighbours, otherwise minimum
    int radiusX = 0,
        radiusY = 0;  ///< pixels to either side; below 0 counts as 0, which leaves the axis as it is
};
/// Applies to each premultiplied channel; outside the input is transparent. The time does not depend on the
/// radius.
FilterPixels MorphFilterPixels(const FilterPixels& input, const FilterMorphology& morphology,
                               const FilterBox& box);
double FilterMorphologyWork(const FilterBox& input, const FilterMorphology& morphology, const FilterBox& box);
