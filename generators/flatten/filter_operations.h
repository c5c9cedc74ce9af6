// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/filters/filter_blur.h"
#include "generators/filters/filter_colour.h"
#include "generators/filters/filter_compose.h"
#include "generators/filters/filter_displacement.h"
#include "generators/filters/filter_lighting.h"
#include "generators/filters/filter_neighbours.h"
#include "generators/filters/filter_turbulence.h"
#include "generators/flatten/filter_grid.h"
#include "platform/print/ORVPrintFilter.h"

// Steps of a filter converted to the pixels of its grid.

/// A shift by whole pixels.
struct FilterShift {
    int columns = 0, rows = 0;
};

FilterBlur InPixels(const ORVFilterBlur& blur, const FilterGrid& grid);
FilterShift InPixels(const ORVFilterOffset& offset, const FilterGrid& grid);
FilterShadow InPixels(const ORVFilterShadow& shadow, const FilterGrid& grid);
FilterMorphology InPixels(const ORVFilterMorphology& morphology, const FilterGrid& grid);
FilterDisplacement InPixels(const ORVFilterDisplacement& displacement, const FilterGrid& grid);
/// @param tile  the subregion, in user units
FilterTurbulence InPixels(const ORVFilterTurbulence& turbulence, const FilterGrid& grid,
                          const ORVMathBox2D& tile);
/// @param area  the input's subregion
FilterConvolution InPixels(const ORVFilterConvolution& convolution, const FilterBox& area);
/// @param area  the input's subregion
FilterLighting InPixels(const ORVFilterLighting& lighting, const FilterGrid& grid, const FilterBox& area);
FilterColour ColourOf(const ORVPrintColour& colour);
