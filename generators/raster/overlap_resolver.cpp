// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/overlap_resolver.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int kHeightBits = 4, kHalf = OverlapResolver::kHeight / 2;
static_assert(1 << kHeightBits == OverlapResolver::kHeight);

/// The first row of samples at or below a coordinate, which is far from the limits of int.
int RowFrom(int y) { return (y + OverlapResolver::kHeight - 1 - kHalf) >> kHeightBits; }

}  // namespace

void OverlapResolver::Begin(int top, int bottom) {
    top_ = top;
    bottom_ = bottom;
    steps_ = 0;
    next_ = 0;
    active_.clear();
    courses_.clear();
    const int first = top / kHeight, end = bottom / kHeight;
    for (const CoverageEdge& edge : edges_) {
        const bool isDownward = edge.from.y < edge.to.y;
        const FixedPoint &upper = isDownward ? edge.from : edge.to, &lower = isDownward ? edge.to : edge.from;
        const int firstRow = std::max(RowFrom(upper.y), first), endRow = std::min(RowFrom(lower.y), end);
        if (firstRow >= endRow) continue;
        const double slope = static_cast<double>(lower.x - upper.x) / static_cast<double>(lower.y - upper.y);
        courses_.push_back({firstRow, endRow, upper.x, upper.y, slope, isDownward ? 1 : -1});
    }
    edges_.clear();
    std::sort(courses_.begin(), courses_.end(),
              [](const Course& a, const Course& b) { return a.firstRow < b.firstRow; });
    Skip();
}

void OverlapResolver::Skip() {
    if (!active_.empty()) return;
    top_ = next_ < courses_.size() ? courses_[next_].firstRow * kHeight : bottom_;
}

void OverlapResolver::SortActive() {
    // Few change places from one row to the next, except where many begin or cross.
    constexpr std::size_t kMostExchanges = 8;
    std::size_t exchanges = 0;
    for (std::size_t i = 1; i < active_.size() && exchanges <= kMostExchanges * active_.size(); ++i)
        for (std::size_t k = i; k > 0 && active_[k].x < active_[k - 1].x; --k, ++exchanges)
            std::swap(active_[k], active_[k - 1]);
    steps_ += exchanges;
    if (exchanges > kMostExchanges * active_.size())
        std::sort(active_.begin(), active_.end(),
                  [](const Crossing& a, const Crossing& b) { return a.x < b.x; });
}

std::span<const OverlapResolver::Inside> OverlapResolver::TakeRow(bool evenOdd) {
    const int row = top_ / kHeight, middle = top_ + kHalf;
    for (; next_ < courses_.size() && courses_[next_].firstRow == row; ++next_)
        active_.push_back({0, static_cast<std::uint32_t>(next_)});
    for (Crossing& crossing : active_) {
        const Course& course = courses_[crossing.course];
        crossing.x = course.x + static_cast<int>(std::floor((middle - course.y) * course.slope + 0.5));
    }
    steps_ += active_.size();
    SortActive();

    inside_.clear();
    int winding = 0, left = 0;
    const auto isInside = [&] { return evenOdd ? (winding & 1) != 0 : winding != 0; };
    for (const Crossing& crossing : active_) {
        const bool wasInside = isInside();
        winding += courses_[crossing.course].sign;
        if (wasInside == isInside()) continue;
        if (!wasInside)
            left = crossing.x;
        else if (!inside_.empty() && inside_.back().right == left)
            inside_.back().right = crossing.x;
        else if (left < crossing.x)
            inside_.push_back({left, crossing.x});
    }
    top_ += kHeight;
    std::erase_if(active_,
                  [&](const Crossing& crossing) { return courses_[crossing.course].endRow <= row + 1; });
    Skip();
    return inside_;
}
