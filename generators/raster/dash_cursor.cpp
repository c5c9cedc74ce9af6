// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/dash_cursor.h"

#include <algorithm>
#include <cmath>

DashCursor::DashCursor(const StrokePen& pen, double distance) : pen_(pen) {
    period_ = std::max(std::floor(distance / pen.dashPeriod), 0.0);
    const auto ends = pen.dashEnds;
    const auto found = std::upper_bound(ends.begin(), ends.end(), distance - Start());
    const auto entry = static_cast<std::size_t>(found - ends.begin());
    entry_ = std::min(entry, ends.size() - 1) & ~std::size_t{1};  // even index: a dash, not a gap
    // The quotient is rounded, so this may already be the next dash.
    GoBack();
    GoBack();
}

void DashCursor::GoBack() {
    if (entry_ > 0) {
        entry_ -= 2;
    } else if (period_ > 0.0) {
        period_ -= 1.0;
        entry_ = (pen_.dashEnds.size() - 1) & ~std::size_t{1};
    }
}

void DashCursor::Advance() {
    entry_ += 2;
    if (entry_ < pen_.dashEnds.size()) return;
    entry_ = 0;
    period_ += 1.0;
}

bool DashCursor::JumpTowards(double distance) {
    const double period = std::floor(distance / pen_.dashPeriod) - 1.0;
    if (!(period > period_)) return false;
    period_ = period;
    entry_ = 0;
    return true;
}

bool ORVFindLastDash(const StrokePen& pen, double length, double& begin, double& end) {
    DashCursor cursor(pen, length);
    begin = end = 0.0;
    for (; cursor.GetBegin() <= length && !cursor.IsLost(); cursor.Advance()) {
        begin = cursor.GetBegin();
        end = cursor.GetEnd();
        if (end > length) return true;
    }
    return false;
}
