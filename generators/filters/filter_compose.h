// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

#include "generators/filters/filter_blur.h"
#include "generators/filters/filter_pixels.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

// If an operation has several inputs, they must have the same colour space (sRGB or linear), which the result
// has too. Each result covers the requested box and is transparent where no input reaches.

/// Fills the box with one colour.
FilterPixels FloodFilterPixels(const FilterColour& colour, FilterColours colours, const FilterBox& box);
/// The input moved by whole pixels to the right and down.
FilterPixels OffsetFilterPixels(const FilterPixels& input, int columns, int rows, const FilterBox& box);
/// The inputs composited in order, the first lowest; transparent without inputs.
FilterPixels MergeFilterPixels(std::span<const FilterPixels* const> inputs, const FilterBox& box);

enum class FilterOperator : std::uint8_t { kOver, kIn, kOut, kAtop, kXor, kLighter, kArithmetic };
/// @param k  for kArithmetic: k[0] a b + k[1] a + k[2] b + k[3] for each premultiplied channel, clamped to
///           0..1 and colours to the opacity; NaN counts as 0
struct FilterComposition {
    FilterOperator kind = FilterOperator::kOver;
    double k[4] = {};
};
/// Composites `input` with `below` by an operator.
FilterPixels ComposeFilterPixels(const FilterPixels& input, const FilterPixels& below,
                                 const FilterComposition& composition, const FilterBox& box);
/// Blends `input` onto `below` with a blend mode.
FilterPixels BlendFilterPixels(const FilterPixels& input, const FilterPixels& below, ORVPrintBlendMode mode,
                               const FilterBox& box);
/// Repeats the part of the input in `tile` over the whole box. Transparent if the tile is empty.
FilterPixels TileFilterPixels(const FilterPixels& input, const FilterBox& tile, const FilterBox& box);
/// Resamples an image under an affine transformation.
/// @param toImage   from pixels of the result to those of `image`, with pixel centres at half-integers. If it
///                  is not finite the result is transparent.
/// @param isSmooth  bilinear, otherwise nearest neighbour
FilterPixels PlaceFilterPixels(const FilterPixels& image, const ORVMathAffine2D& toImage, bool isSmooth,
                               const FilterBox& box);

struct FilterShadow {
    FilterBlur blur;
    int columns = 0, rows = 0;  ///< offset to the right and down, in pixels
    FilterColour colour;
};
/// The input composited over its blurred shadow.
FilterPixels ShadowFilterPixels(const FilterPixels& input, const FilterShadow& shadow, const FilterBox& box);

/// Pixels touched by flood, offset, merge, compose, blend, tile and place, for a number of inputs.
double FilterComposeWork(const FilterBox& box, std::size_t inputs);
