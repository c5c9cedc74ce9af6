// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "generators/raster/stroke_pen.h"

/// Iterates over the dashes of a pen along a line. Where a dash begins and ends does not depend on where the
/// iteration began: results are identical, bit for bit.
class DashCursor {
public:
    /// Begins at a dash that ends at or before `distance`, or at the first one.
    DashCursor(const StrokePen& pen, double distance);

    // Distances from the start of the line, in pen space.
    double GetBegin() const { return Start() + (entry_ > 0 ? pen_.dashEnds[entry_ - 1] : 0.0); }
    double GetEnd() const { return Start() + pen_.dashEnds[entry_]; }
    bool IsFirst() const { return period_ == 0.0 && entry_ == 0; }
    /// True so far along that doubles can no longer distinguish dashes.
    bool IsLost() const { return Start() + pen_.dashPeriod == Start(); }
    void Advance();
    /// Advances to a dash that ends before `distance`. @return false if there is none ahead
    bool JumpTowards(double distance);

private:
    double Start() const { return period_ * pen_.dashPeriod; }
    void GoBack();

    const StrokePen& pen_;
    double period_ = 0.0;  // an integer
    std::size_t entry_ = 0;
};

/// Finds the last dash of a line. @return true if the line ends inside it
bool ORVFindLastDash(const StrokePen& pen, double length, double& begin, double& end);
