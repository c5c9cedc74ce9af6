// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "generators/flatten/filter_grid.h"
#include "platform/print/ORVPrintFilter.h"

/// Which pixels the steps of a filter have to compute so that a part of its result can be seen.
struct FilterPlan {
    FilterGrid grid;
    FilterBox source;                   ///< what is needed of the content
    std::vector<FilterBox> results;     ///< of each step; empty for what shows nothing or is not needed
    std::vector<FilterBox> subregions;  ///< of each step, whole
    std::vector<std::size_t> lastUses;  ///< of each step, the last one that it is an input of
    std::size_t lastUseOfSource = 0;    ///< the last step that takes the content, or its opacity
    double pixels = 0.0;                ///< that are in memory at the same time, at most
    double work = 0.0;                  ///< pixels that are touched

    /// @param visible  what of the page can be seen of the result
    /// @param content  what of the page the content shows anything on
    static FilterPlan Make(const ORVPrintFilter& filter, const FilterGrid& grid, const ORVMathBox2D& visible,
                           const ORVMathBox2D& content);
};
