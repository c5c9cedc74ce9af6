// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "generators/raster/stroke_pen.h"

/// Walks the dashes of a pen along a line. Where a dash begins and ends depends on the dash alone, and not on
/// where the walk began: whoever asks gets the same numbers, down to the last bit.
class DashCursor {
public:
    /// Begins at a dash that ends at `distance` or before it, or with the first one.
    DashCursor(const StrokePen& pen, double distance);

    // Distances from the line's start, in pen space.
    double GetBegin() const { return Start() + (entry_ > 0 ? pen_.dashEnds[entry_ - 1] : 0.0); }
    double GetEnd() const { return Start() + pen_.dashEnds[entry_]; }
    bool IsFirst() const { return period_ == 0.0 && entry_ == 0; }
    /// True so far out that distances do not tell dashes apart.
    bool IsLost() const { return Start() + pen_.dashPeriod == Start(); }
    void Advance();
    /// Goes on to a dash that ends before `distance`, if that is ahead. @return false where it is not
    bool JumpTowards(double distance);

private:
    double Start() const { return period_ * pen_.dashPeriod; }
    void GoBack();

    const StrokePen& pen_;
    double period_ = 0.0;  // a whole number
    std::size_t entry_ = 0;
};

/// Finds the last dash of a line. @return true when the line ends inside of it
bool ORVFindLastDash(const StrokePen& pen, double length, double& begin, double& end);
