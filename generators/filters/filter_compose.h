// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

#include "generators/filters/filter_blur.h"
#include "generators/filters/filter_pixels.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

// Where there are several inputs, their colours (sRGB or linear) must be the same; the result has those, too.
// Each result has the box that is asked for, and is transparent where no input reaches.

/// Every pixel of the box in one colour.
FilterPixels FloodFilterPixels(const FilterColour& colour, FilterColours colours, const FilterBox& box);
/// The input moved by whole pixels: those to the right and down.
FilterPixels OffsetFilterPixels(const FilterPixels& input, int columns, int rows, const FilterBox& box);
/// The inputs one over another, the first lowest; without inputs, transparent.
FilterPixels MergeFilterPixels(std::span<const FilterPixels* const> inputs, const FilterBox& box);

enum class FilterOperator : std::uint8_t { kOver, kIn, kOut, kAtop, kXor, kLighter, kArithmetic };
/// @param k  of kArithmetic: k[0] a b + k[1] a + k[2] b + k[3] for each premultiplied channel, cut to 0..1
/// and
///           colours to opacity; what is no number counts as 0
struct FilterComposition {
    FilterOperator kind = FilterOperator::kOver;
    double k[4] = {};
};
/// Puts `input` over, in, ... `below`.
FilterPixels ComposeFilterPixels(const FilterPixels& input, const FilterPixels& below,
                                 const FilterComposition& composition, const FilterBox& box);
/// Lays `input` over `below` with a blend mode.
FilterPixels BlendFilterPixels(const FilterPixels& input, const FilterPixels& below, ORVPrintBlendMode mode,
                               const FilterBox& box);
/// Repeats what of the input lies in `tile` over the whole box. An empty tile gives transparency.
FilterPixels TileFilterPixels(const FilterPixels& input, const FilterBox& tile, const FilterBox& box);
/// Places an image under an affine map: each pixel of the box shows what of `image` its centre goes to.
/// @param toImage   from pixels of the result to those of `image`; a pixel's centre is at half numbers. If it
/// is
///                  not finite the result is transparent.
/// @param isSmooth  mixes the four nearest pixels, else takes the nearest
FilterPixels PlaceFilterPixels(const FilterPixels& image, const ORVMathAffine2D& toImage, bool isSmooth,
                               const FilterBox& box);

struct FilterShadow {
    FilterBlur blur;
    int columns = 0, rows = 0;  ///< by which it lies to the right and down, in pixels
    FilterColour colour;
};
/// The input over its blurred shadow.
FilterPixels ShadowFilterPixels(const FilterPixels& input, const FilterShadow& shadow, const FilterBox& box);

/// Pixels that flood, offset, merge, compose, blend, tile and place touch, for so many inputs.
double FilterComposeWork(const FilterBox& box, std::size_t inputs);
