// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/system/ORVPrintLimits.h"

namespace svg2 {

/// What finding out styles and following references may cost in one drawing, in steps of some ten
/// nanoseconds: elements that selectors look at, declarations that are applied, text that variables become,
/// definitions that borrow from each other. Grows with the limit of repeats, and with the document.
class StyleWork {
public:
    /// @param elements  of the document
    explicit StyleWork(std::uint64_t elements) {
        constexpr std::uint64_t kMostRepeats = std::uint64_t{1} << 50U;
        const std::uint64_t repeats = std::min(ORVPrintLimits::Get(ORVPrintLimit::kRepeats), kMostRepeats);
        left_ = kStepsPerRepeat * repeats + kStepsPerElement * elements;
    }

    /// Counts steps.
    void Take(std::uint64_t steps = 1) { left_ = steps < left_ ? left_ - steps : 0; }
    /// Counts work on so many bytes of text.
    void TakeText(std::size_t bytes) { Take(1 + bytes / kBytesPerStep); }
    /// Counts bytes of text that have been made and stay.
    void TakeKept(std::size_t bytes) { keptLeft_ = bytes < keptLeft_ ? keptLeft_ - bytes : 0; }
    /// True once there have been too many; results are no longer to be relied on.
    bool IsSpent() const { return left_ == 0 || keptLeft_ == 0; }

private:
    // Twenty million steps with the command's own limit; two hundred for each element, for large drawings
    // with many rules.
    static constexpr std::uint64_t kStepsPerRepeat = 20, kStepsPerElement = 200;
    static constexpr std::size_t kBytesPerStep = 16;

    std::uint64_t left_;
    std::size_t keptLeft_ = std::size_t{64} << 20U;
};

}  // namespace svg2
