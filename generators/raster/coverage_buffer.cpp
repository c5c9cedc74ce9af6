// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/coverage_buffer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace {

constexpr int kSubpixelMask = CoverageBuffer::kOne - 1;
constexpr unsigned int kSubpixelBits = 8;

std::uint32_t Winding(int value) { return static_cast<std::uint32_t>(value); }

/// Interpolates the other coordinate of a line at `at`, rounded.
int Between(int from, int to, int otherFrom, int otherTo, int at) {
    const double share = static_cast<double>(at - from) / static_cast<double>(to - from);
    const double value = otherFrom + share * (static_cast<double>(otherTo) - otherFrom);
    return static_cast<int>(value + (value < 0.0 ? -0.5 : 0.5));
}

}  // namespace

void CoverageBuffer::Resize(int width, int rows) {
    pageWidth_ = width;
    SetWindowColumns(0, width);
    cells_.Assign(cellStride_ * static_cast<std::size_t>(rows));
    words_.Assign(wordStride_ * static_cast<std::size_t>(rows));
    ForgetTouched();
}

void CoverageBuffer::SetBand(int firstRow, int rowCount) {
    bandFirstRow_ = firstRow;
    bandEndRow_ = firstRow + rowCount;
    SetWindow(0, firstRow, pageWidth_, bandEndRow_);
}

void CoverageBuffer::SetWindow(int left, int top, int right, int bottom) {
    SetWindowColumns(std::clamp(left, 0, pageWidth_), std::clamp(right, 0, pageWidth_));
    firstRow_ = std::clamp(top, bandFirstRow_, bandEndRow_);
    endRow_ = std::clamp(bottom, firstRow_, bandEndRow_);
    top_ = firstRow_ << kSubpixelBits;
    bottom_ = endRow_ << kSubpixelBits;
}

void CoverageBuffer::SetWindowColumns(int left, int right) {
    // Whole blocks. Extra cells on the right receive writes of edges on the border.
    left &= ~(kBlock - 1);
    width_ = std::max(right - left + kBlock - 1, kBlock) & ~(kBlock - 1);
    left_ = left << kSubpixelBits;
    right_ = width_ << kSubpixelBits;
    cellStride_ = static_cast<std::size_t>(width_) + 8;
    wordStride_ = (cellStride_ >> kWordShift) + 1;
}

void CoverageBuffer::ForgetTouched() {
    firstTouched_ = 1 << 30;
    lastTouched_ = -1;
}

void CoverageBuffer::TakeEdges() {
    if (edgeCount_ == 0) return;
    if (keepsEdges_)
        overlaps_.Add({edges_.data(), edgeCount_});
    else if (samplesCentres_)
        for (std::size_t i = 0; i < edgeCount_; ++i) AddEdgeAtCentres(edges_[i].from, edges_[i].to);
    else if (power_ == VectorPower::kAvx2)
        AddEdgesWithAvx2();
    else
        AddEdges();
    edgeCount_ = 0;
}

void CoverageBuffer::ResolveOverlaps(bool evenOdd) {
    constexpr std::uint64_t kStepWork = 20;
    TakeEdges();
    keepsEdges_ = false;
    overlaps_.Begin(top_, bottom_);
    while (overlaps_.GetTop() < bottom_) {
        const int row = overlaps_.GetTop() >> kSubpixelBits;
        for (const auto& [left, right] : overlaps_.TakeRow(evenOdd)) {
            AddUpright(row, left, OverlapResolver::kHeight);
            AddUpright(row, right, -OverlapResolver::kHeight);
        }
    }
    work_ += overlaps_.GetSteps() * kStepWork;
}

// A vertical edge inside a row. The height has the sign of the winding.
void CoverageBuffer::AddUpright(int row, int x, int height) {
    x = std::max(x - left_, 0);
    if (x >= right_) return;
    firstTouched_ = std::min(firstTouched_, row);
    lastTouched_ = std::max(lastTouched_, row);
    const auto index = static_cast<std::size_t>(row - firstRow_);
    const int cell = x >> kSubpixelBits, area = height * 2 * (x & kSubpixelMask);
    std::uint32_t* cells = cells_.GetData() + index * cellStride_ + cell;
    cells[0] += Winding(height * 2 * kOne - area);
    cells[1] += Winding(area);
    Touch(words_.GetData() + index * wordStride_, cell, cell + 1);
}

void CoverageBuffer::AddEdges() {
    for (std::size_t i = 0; i < edgeCount_; ++i) AddEdge(edges_[i].from, edges_[i].to);
}

void CoverageBuffer::AddEdge(FixedPoint from, FixedPoint to) {
    from.x -= left_;
    to.x -= left_;
    if (from.y < to.y)
        AddDownward(from, to, 1);
    else
        AddDownward(to, from, -1);
}

void CoverageBuffer::AddDownward(FixedPoint from, FixedPoint to, int sign) {
    if (to.y <= top_ || from.y >= bottom_) return;
    const int left = std::min(from.x, to.x), right = std::max(from.x, to.x);
    if (left >= right_) return;
    if (left >= 0 && right <= right_) {
        AddInside(from, to, sign);
    } else if (right <= 0) {
        // Edges left of the page count for the winding of the whole row.
        AddInside({0, from.y}, {0, to.y}, sign);
    } else {
        const int border = left < 0 ? 0 : right_;
        const FixedPoint cut{border, Between(from.x, to.x, from.y, to.y, border)};
        if (cut.y > from.y) AddDownward(from, cut, sign);
        if (to.y > cut.y) AddDownward(cut, to, sign);
    }
}

// An edge within one cell covers the area to its right in that cell, and all of the following cells.

inline void CoverageBuffer::AddSteep(std::uint32_t* cells, std::uint64_t* words, int left, int right,
                                     int height, int sign, double steepness) {
    const int first = left >> kSubpixelBits, border = (first + 1) << kSubpixelBits;
    // Branch-free: whether an edge stays in one cell cannot be predicted.
    const int toBorder =
        static_cast<int>(std::min((border - left) * steepness + 0.5, static_cast<double>(height)));
    const int inFirst = right <= border ? height : toBorder, inSecond = height - inFirst;
    const int firstArea = inFirst * ((left & kSubpixelMask) + std::min(right - border, 0) + kOne);
    const int secondArea = inSecond * std::max(right - border, 0);
    cells[first] += Winding(sign * (inFirst * 2 * kOne - firstArea));
    cells[first + 1] += Winding(sign * (firstArea + inSecond * 2 * kOne - secondArea));
    cells[first + 2] += Winding(sign * secondArea);
    const int firstBlock = first >> kBlockShift,
              lastBlock = (first + (right > border ? 2 : 1)) >> kBlockShift;
    words[firstBlock >> 6] |= std::uint64_t{1} << (static_cast<unsigned int>(firstBlock) & 63U);
    words[lastBlock >> 6] |= std::uint64_t{1} << (static_cast<unsigned int>(lastBlock) & 63U);
}

void CoverageBuffer::AddFlat(std::uint32_t* cells, std::uint64_t* words, int left, int right, int height,
                             int sign, double steepness) {
    const int first = left >> kSubpixelBits, last = right >> kSubpixelBits;
    // The carry to the next cell is kept in a register to avoid waiting for memory.
    std::uint32_t carried = 0;
    const auto add = [&](int cell, int part, int twiceMiddle) {
        const int area = part * twiceMiddle;
        cells[cell] += carried + Winding(sign * (part * 2 * kOne - area));
        carried = Winding(sign * area);
    };
    int done = 0, from = left & kSubpixelMask;
    double across = kOne - from;
    for (int cell = first; cell < last; ++cell, from = 0, across += kOne) {
        const int reached = std::min(static_cast<int>(across * steepness + 0.5), height);
        add(cell, reached - done, from + kOne);
        done = reached;
    }
    add(last, height - done, from + (right & kSubpixelMask));
    cells[last + 1] += carried;
    Touch(words, first, last + 1);
}

void CoverageBuffer::AddInside(FixedPoint from, FixedPoint to, int sign) {
    const int yBegin = std::max(from.y, top_), yEnd = std::min(to.y, bottom_);
    const int firstRow = yBegin >> kSubpixelBits, lastRow = (yEnd - 1) >> kSubpixelBits;
    firstTouched_ = std::min(firstTouched_, firstRow);
    lastTouched_ = std::max(lastTouched_, lastRow);
    const auto index = static_cast<std::size_t>(firstRow - firstRow_);
    std::uint32_t* cells = cells_.GetData() + index * cellStride_;
    std::uint64_t* words = words_.GetData() + index * wordStride_;
    const int width = std::abs(to.x - from.x), height = to.y - from.y;
    // Always computed from the end points of the whole edge, so that all bands get the same positions.
    const double steepness = width == 0 ? 0.0 : static_cast<double>(height) / width;
    work_ += static_cast<std::uint64_t>(kCellWork * (lastRow - firstRow + 1));
    if (firstRow == lastRow && yEnd - yBegin == height) {
        work_ += static_cast<std::uint64_t>(kCellWork * (width >> kSubpixelBits));
        const int left = std::min(from.x, to.x);
        if (width <= kOne)
            AddSteep(cells, words, left, left + width, height, sign, steepness);
        else
            AddFlat(cells, words, left, left + width, height, sign, steepness);
        return;
    }
    const double slope = static_cast<double>(to.x - from.x) / height;
    // Positions are never negative.
    const double start = from.x + 0.5;
    const auto placeAt = [&](int y) {
        return y == to.y ? to.x : static_cast<int>(start + (y - from.y) * slope);
    };
    const auto addRows = [&](auto add) {
        int x = placeAt(yBegin), y = yBegin;
        work_ += static_cast<std::uint64_t>(kCellWork * (std::abs(placeAt(yEnd) - x) >> kSubpixelBits));
        for (int row = firstRow; row <= lastRow; ++row, cells += cellStride_, words += wordStride_) {
            const int yNext = std::min(yEnd, (row + 1) << kSubpixelBits);
            const int xNext = placeAt(yNext);
            add(std::min(x, xNext), std::max(x, xNext), yNext - y);
            x = xNext;
            y = yNext;
        }
    };
    if (width <= height)
        addRows([&](int left, int right, int part) {
            AddSteep(cells, words, left, right, part, sign, steepness);
        });
    else
        addRows([&](int left, int right, int part) {
            AddFlat(cells, words, left, right, part, sign, steepness);
        });
}

// In each row, the edge counts as a vertical edge between two pixels: the pixel on its right is the first
// whose centre is on the right of the actual edge.
void CoverageBuffer::AddEdgeAtCentres(FixedPoint from, FixedPoint to) {
    constexpr int kHalf = kOne / 2;
    const int sign = from.y < to.y ? 1 : -1;
    if (sign < 0) std::swap(from, to);
    const int firstRow = std::max(from.y + kHalf, top_) >> kSubpixelBits;
    const int endRow = std::min((to.y + kHalf) >> kSubpixelBits, endRow_);
    if (firstRow >= endRow) return;
    firstTouched_ = std::min(firstTouched_, firstRow);
    lastTouched_ = std::max(lastTouched_, endRow - 1);
    work_ += static_cast<std::uint64_t>(kCellWork * (endRow - firstRow));
    // Computed from the end points of the whole edge, so that all bands get the same positions.
    const double slope = static_cast<double>(to.x - from.x) / (to.y - from.y);
    for (int row = firstRow; row < endRow; ++row) {
        const int centre = (row << kSubpixelBits) + kHalf;
        const double x = from.x + (centre - from.y) * slope - left_;
        if (x > right_) continue;
        const int cell = std::max(static_cast<int>(std::floor((x + kHalf) / kOne)), 0);
        if (cell >= width_) continue;
        const auto index = static_cast<std::size_t>(row - firstRow_);
        cells_.GetData()[index * cellStride_ + static_cast<std::size_t>(cell)] += Winding(sign * kFullArea);
        Touch(words_.GetData() + index * wordStride_, cell, cell);
    }
}
