// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/filters/filter_pixels.h"

enum class FilterEdge : std::uint8_t { kDuplicate, kWrap, kNone };

struct FilterConvolution {
    int columns = 3, rows = 3;
    std::vector<double> kernel;  ///< rows of `columns` numbers, as written: it is turned by 180 degrees here
    double divisor = 0.0;        ///< 0: the sum of the kernel, or 1 if that is 0
    double bias = 0.0;           ///< counts as much as a pixel is opaque
    int targetColumn = 1, targetRow = 1;  ///< which place of the kernel lies on the pixel
    FilterEdge edge = FilterEdge::kDuplicate;
    FilterBox area;               ///< whose edges `edge` means: the input's subregion
    bool preservesAlpha = false;  ///< true: opacity stays, colours are convolved without it
};
/// Transparent when the kernel's size is not columns * rows or a number of it is not finite, or when the
/// target is outside the kernel.
FilterPixels ConvolveFilterPixels(const FilterPixels& input, const FilterConvolution& convolution,
                                  const FilterBox& box);
double FilterConvolutionWork(const FilterConvolution& convolution, const FilterBox& box);

struct FilterMorphology {
    bool isDilation = false;  ///< the greatest of the neighbours, else the least
    int radiusX = 0,
        radiusY = 0;  ///< pixels to either side; below 0 counts as 0, which leaves the axis as it is
};
/// For each premultiplied channel; what lies outside the input is transparent. The radius costs no time.
FilterPixels MorphFilterPixels(const FilterPixels& input, const FilterMorphology& morphology,
                               const FilterBox& box);
double FilterMorphologyWork(const FilterBox& input, const FilterMorphology& morphology, const FilterBox& box);
