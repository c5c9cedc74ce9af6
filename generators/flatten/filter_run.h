// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "generators/filters/filter_pixels.h"
#include "generators/flatten/filter_plan.h"
#include "platform/print/ORVPrintFilter.h"

/// Computes a filter step by step. Results are released after their last use.
class FilterRun {
public:
    /// Draws an input of the filter into the pixels of a box. @return 1, or a generator status
    using DrawInput = std::function<int(unsigned int number, const FilterBox& box, FilterPixels& pixels)>;

    /// @param filter, plan  must outlive this object
    FilterRun(const ORVPrintFilter& filter, const FilterPlan& plan, FilterPixels source, DrawInput drawInput)
        : filter_(filter),
          plan_(plan),
          source_(std::move(source)),
          drawInput_(std::move(drawInput)),
          results_(filter.steps.size()) {}

    /// @param result  receives the result of the last step, in sRGB
    /// @return 1, or the result of drawing an input
    int Compute(FilterPixels& result);

private:
    friend class FilterStepRun;

    FilterPixels& Find(int input, std::size_t step);
    bool IsLastUse(int input, std::size_t step) const;

    const ORVPrintFilter& filter_;
    const FilterPlan& plan_;
    FilterPixels source_, sourceAlpha_;
    bool hasSourceAlpha_ = false;
    DrawInput drawInput_;
    std::vector<FilterPixels> results_;
};
