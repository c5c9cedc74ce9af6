#include "generators/raster/coverage_buffer.h"

#include <utility>

namespace {

constexpr int kSubpixelMask = CoverageBuffer::kOne - 1;
constexpr unsigned int kSubpixelBits = 8;

std::uint32_t Winding(int value) { return static_cast<std::uint32_t>(value); }

/// Where the line through two points has the other coordinate, for `at` between theirs; rounded.
int Between(int from, int to, int otherFrom, int otherTo, int at) {
    const double share = static_cast<double>(at - from) / static_cast<double>(to - from);
    const double value = otherFrom + share * (static_cast<double>(otherTo) - otherFrom);
    return static_cast<int>(value + (value < 0.0 ? -0.5 : 0.5));
}

}  // namespace

void CoverageBuffer::Resize(int width, int rows) {
    width_ = width;
    right_ = width << kSubpixelBits;
    // Cells to the right of the page take what edges on its border leave there.
    cellStride_ = static_cast<std::size_t>(width) + 8;
    wordStride_ = (cellStride_ >> kWordShift) + 1;
    cells_.assign(cellStride_ * static_cast<std::size_t>(rows), 0);
    words_.assign(wordStride_ * static_cast<std::size_t>(rows), 0);
    rows_.assign(static_cast<std::size_t>(rows), RowState());
    ForgetTouched();
}

void CoverageBuffer::SetBand(int firstRow, int rowCount) {
    firstRow_ = firstRow;
    endRow_ = firstRow + rowCount;
    top_ = firstRow << kSubpixelBits;
    bottom_ = endRow_ << kSubpixelBits;
}

void CoverageBuffer::ForgetTouched() {
    firstTouched_ = 1 << 30;
    lastTouched_ = -1;
}

void CoverageBuffer::AddDownward(FixedPoint from, FixedPoint to, int sign) {
    if (to.y <= top_ || from.y >= bottom_) return;
    const int left = std::min(from.x, to.x), right = std::max(from.x, to.x);
    if (left >= right_) return;
    if (left >= 0 && right <= right_) {
        AddInside(from, to, sign);
    } else if (right <= 0) {
        // What lies left of the page winds around all of the row.
        AddInside({0, from.y}, {0, to.y}, sign);
    } else {
        const int border = left < 0 ? 0 : right_;
        const FixedPoint cut{border, Between(from.x, to.x, from.y, to.y, border)};
        if (cut.y > from.y) AddDownward(from, cut, sign);
        if (to.y > cut.y) AddDownward(cut, to, sign);
    }
}

void CoverageBuffer::AddInside(FixedPoint from, FixedPoint to, int sign) {
    const int yBegin = std::max(from.y, top_), yEnd = std::min(to.y, bottom_);
    const int firstRow = yBegin >> kSubpixelBits, lastRow = (yEnd - 1) >> kSubpixelBits;
    firstTouched_ = std::min(firstTouched_, firstRow);
    lastTouched_ = std::max(lastTouched_, lastRow);
    if (firstRow == lastRow && yBegin == from.y && yEnd == to.y) {
        AddInRow(firstRow, from.x, to.x, sign * (to.y - from.y));
        return;
    }
    const double slope = static_cast<double>(to.x - from.x) / static_cast<double>(to.y - from.y);
    // Always from the edge's own start, so that all bands find the same places. They are never negative.
    const double start = from.x + 0.5;
    const auto placeAt = [&](int y) {
        return y == to.y ? to.x : static_cast<int>(start + (y - from.y) * slope);
    };
    int x = placeAt(yBegin), y = yBegin;
    for (int row = firstRow; row <= lastRow; ++row) {
        const int yNext = std::min(yEnd, (row + 1) << kSubpixelBits);
        const int xNext = placeAt(yNext);
        AddInRow(row, x, xNext, sign * (yNext - y));
        x = xNext;
        y = yNext;
    }
}

void CoverageBuffer::AddInRow(int row, int x0, int x1, int height) {
    if (x0 > x1) std::swap(x0, x1);
    const int first = x0 >> kSubpixelBits, last = x1 >> kSubpixelBits;
    std::uint32_t* cells = cells_.data() + static_cast<std::size_t>(row - firstRow_) * cellStride_;
    // A piece of an edge inside one cell covers what lies right of it there, and all of the next cells.
    const auto add = [cells](int cell, int part, int twiceMiddle) {
        const int area = part * twiceMiddle;
        cells[cell] += Winding(part * 2 * kOne - area);
        cells[cell + 1] += Winding(area);
    };
    if (first == last) {
        add(first, height, (x0 & kSubpixelMask) + (x1 & kSubpixelMask));
    } else {
        const double slope = static_cast<double>(height) / (x1 - x0);
        const double rounding = height < 0 ? -0.5 : 0.5;
        int done = 0;
        int from = x0 & kSubpixelMask;
        for (int cell = first; cell < last; ++cell, from = 0) {
            const int reached = static_cast<int>((((cell + 1) << kSubpixelBits) - x0) * slope + rounding);
            add(cell, reached - done, from + kOne);
            done = reached;
        }
        add(last, height - done, x1 & kSubpixelMask);
    }
    Touch(row, first, last + 1);
}

void CoverageBuffer::Touch(int row, int firstCell, int lastCell) {
    const auto index = static_cast<std::size_t>(row - firstRow_);
    std::uint64_t* words = words_.data() + index * wordStride_;
    const int firstWord = firstCell >> kWordShift, lastWord = lastCell >> kWordShift;
    const auto firstBit = static_cast<unsigned int>(firstCell >> kBlockShift) & 63U;
    const auto lastBit = static_cast<unsigned int>(lastCell >> kBlockShift) & 63U;
    const std::uint64_t fromFirst = ~std::uint64_t{0} << firstBit;
    const std::uint64_t toLast = ~std::uint64_t{0} >> (63U - lastBit);
    if (firstWord == lastWord) {
        words[firstWord] |= fromFirst & toLast;
    } else {
        words[firstWord] |= fromFirst;
        for (int word = firstWord + 1; word < lastWord; ++word) words[word] = ~std::uint64_t{0};
        words[lastWord] |= toLast;
    }
    RowState& state = rows_[index];
    state.firstWord = std::min(state.firstWord, firstWord);
    state.lastWord = std::max(state.lastWord, lastWord);
}
