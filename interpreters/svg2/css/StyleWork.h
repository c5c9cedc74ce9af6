// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/system/ORVPrintLimits.h"

namespace svg2 {

/// Budget for computing styles and resolving references in one drawing, in steps of about ten nanoseconds:
/// elements tested against selectors, declarations applied, text substituted for variables, definitions that
/// inherit from each other. It grows with the limit `repeats` and with the size of the document.
class StyleWork {
public:
    /// @param elements  number of elements in the document
    explicit StyleWork(std::uint64_t elements) {
        constexpr std::uint64_t kMostRepeats = std::uint64_t{1} << 50U;
        const std::uint64_t repeats = std::min(ORVPrintLimits::Get(ORVPrintLimit::kRepeats), kMostRepeats);
        left_ = kStepsPerRepeat * repeats + kStepsPerElement * elements;
    }

    /// Adds steps.
    void Take(std::uint64_t steps = 1) { left_ = steps < left_ ? left_ - steps : 0; }
    /// Adds the cost of processing so many bytes of text.
    void TakeText(std::size_t bytes) { Take(1 + bytes / kBytesPerStep); }
    /// Adds bytes of text that stay allocated.
    void TakeKept(std::size_t bytes) { keptLeft_ = bytes < keptLeft_ ? keptLeft_ - bytes : 0; }
    /// True once the budget is exceeded; results are then incomplete.
    bool IsSpent() const { return left_ == 0 || keptLeft_ == 0; }

private:
    // Twenty million steps with the command's default limit, plus two hundred per element for large drawings
    // with many rules.
    static constexpr std::uint64_t kStepsPerRepeat = 20, kStepsPerElement = 200;
    static constexpr std::size_t kBytesPerStep = 16;

    std::uint64_t left_;
    std::size_t keptLeft_ = std::size_t{64} << 20U;
};

}  // namespace svg2
