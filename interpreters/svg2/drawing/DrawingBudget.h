// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVPrintLimits.h"

namespace svg2 {

/// What one drawing may cost: elements that are visited, those that are drawn again because they are used,
/// and how deep they lie within each other. Boxes that are computed on the way count as well.
class DrawingBudget {
public:
    /// @param distinct  elements of the document
    DrawingBudget(const ORVPrintParameters& parameters, std::uint64_t distinct)
        : drawnLeft_(parameters.GetDrawLimit()),
          visitsLeft_(parameters.GetRepeatLimit() + (1 + kGrowthPerPrimitive) * distinct) {}

    /// Counts one element. @return false when there have been too many
    bool TakeElement() { return Take(drawnLeft_) && Take(visitsLeft_); }
    /// Levels of the stack that one drawing may take.
    static constexpr int kGreatestDepth = 1500;
    /// Clips, masks, markers and patterns within each other.
    static constexpr std::size_t kGreatestNesting = 64;

private:
    static bool Take(std::uint64_t& left) {
        if (left == 0) return false;
        --left;
        return true;
    }

    std::uint64_t drawnLeft_, visitsLeft_;
};

}  // namespace svg2
