// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "generators/flatten/filter_grid.h"
#include "platform/print/ORVPrintFilter.h"

/// The pixels that each step of a filter has to compute for the visible part of its result.
struct FilterPlan {
    FilterGrid grid;
    /// Required part of the content.
    FilterBox source;
    /// Result of each step; empty if it shows nothing or is not needed.
    std::vector<FilterBox> results;
    /// Complete subregion of each step.
    std::vector<FilterBox> subregions;
    /// For each step, the last step that uses it as input.
    std::vector<std::size_t> lastUses;
    /// The last step that uses the content or its opacity.
    std::size_t lastUseOfSource = 0;
    /// Maximum number of pixels in memory at the same time.
    double pixels = 0.0;
    /// Total number of pixels touched.
    double work = 0.0;

    /// @param visible  visible area of the result, on the page
    /// @param content  bounding box of the content, on the page
    static FilterPlan Make(const ORVPrintFilter& filter, const FilterGrid& grid, const ORVMathBox2D& visible,
                           const ORVMathBox2D& content);
};
