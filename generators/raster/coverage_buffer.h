#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <vector>

/// A point of the page in 1/256 of a pixel.
struct FixedPoint {
    int x = 0, y = 0;
};

/// How the gathered windings become coverage. The hard rules know no levels between nothing and all.
enum class CoverageRule : std::uint8_t { kNonZero, kEvenOdd, kHardNonZero, kHardEvenOdd };

/// Exact area coverage of polygons on a band of pixel rows.
///
/// Edges come in any order. Each adds to the cells of the pixels that it crosses how much its winding changes
/// there, so that a sum along the row gives the coverage. One bit for four pixels tells which cells were
/// touched: what lies between them is a span of one coverage, and costs nothing a pixel. What a band gets
/// from an edge does not depend on where the band begins and ends.
class CoverageBuffer {
public:
    static constexpr int kOne = 256;  ///< FixedPoint units in a pixel
    /// Farther coordinates (pixels, either way) are pulled in to this.
    static constexpr double kFarthest = 4'000'000.0;

    static FixedPoint ToFixed(double x, double y) { return {ToFixed(x), ToFixed(y)}; }

    /// Prepares for bands of up to `rows` rows of pages `width` pixels wide.
    void Resize(int width, int rows);
    /// Begins a band; the buffer is clean.
    void SetBand(int firstRow, int rowCount);
    int GetFirstRow() const { return firstRow_; }
    int GetEndRow() const { return endRow_; }
    int GetWidth() const { return width_; }

    void AddLine(FixedPoint from, FixedPoint to) {
        if (from.y == to.y) return;
        if (from.y < to.y)
            AddDownward(from, to, 1);
        else
            AddDownward(to, from, -1);
    }

    /// Hands the coverage of all rows that have any to `paint`, top down, and clears the buffer.
    /// Paint has BeginRow(row) and EndRow(). BeginRow gives a brush, which has Pixel(x, alpha) and
    /// Span(xBegin, xEnd, alpha); alphas are 1 to 255, x ascends. Pixel may be called for up to seven pixels
    /// right of the page. A brush that is a value of its own can be kept in registers.
    template <CoverageRule kRule, class Paint>
    void Sweep(Paint& paint) {
        for (int row = firstTouched_; row <= lastTouched_; ++row) {
            RowState& state = rows_[static_cast<std::size_t>(row - firstRow_)];
            if (state.firstWord > state.lastWord) continue;
            auto&& brush = paint.BeginRow(row);
            SweepRow<kRule>(row, state, brush);
            paint.EndRow();
            state = RowState();
        }
        ForgetTouched();
    }

private:
    static constexpr int kBlockShift = 2;      // a bit for four pixels
    static constexpr int kWordShift = 8;       // a word for 256
    static constexpr int kFullArea = 1 << 17;  // of a cell: 256 rows times 2 x 256 columns

    struct RowState {
        int firstWord = 1 << 30, lastWord = -1;
    };

    static int ToFixed(double value) {
        // The comparison is written so that what is no number becomes one.
        const double pulled = value > -kFarthest ? std::min(value, kFarthest) : -kFarthest;
        const double scaled = pulled * kOne;
        return static_cast<int>(scaled + (scaled < 0.0 ? -0.5 : 0.5));
    }

    template <CoverageRule kRule>
    static unsigned int Alpha(std::uint32_t sum) {
        const auto winding = static_cast<std::int32_t>(sum);
        std::uint32_t area = winding < 0 ? 0U - sum : sum;
        constexpr std::uint32_t kFull = kFullArea;
        if constexpr (kRule == CoverageRule::kEvenOdd || kRule == CoverageRule::kHardEvenOdd) {
            area &= 2 * kFull - 1;
            if (area > kFull) area = 2 * kFull - area;
        } else {
            area = std::min(area, kFull);
        }
        if constexpr (kRule == CoverageRule::kHardNonZero || kRule == CoverageRule::kHardEvenOdd)
            return area * 16 >= kFull * 7 ? 255 : 0;  // a little less than half, so that thin lines hold
        return (area * 255 + kFull / 2) >> 17U;
    }

    template <CoverageRule kRule, class Brush>
    void SweepRow(int row, const RowState& state, Brush& brush) {
        const auto index = static_cast<std::size_t>(row - firstRow_);
        std::uint32_t* cells = cells_.data() + index * cellStride_;
        std::uint64_t* words = words_.data() + index * wordStride_;
        std::uint32_t sum = 0;
        unsigned int alpha = 0;
        int x = 0;
        for (int word = state.firstWord; word <= state.lastWord; ++word) {
            std::uint64_t bits = words[word];
            if (bits == 0) continue;
            words[word] = 0;
            int blockX = word << kWordShift;
            while (bits != 0) {
                const int gap = std::countr_zero(bits);
                const int length = std::countr_one(bits >> static_cast<unsigned int>(gap));
                const int begin = blockX + (gap << kBlockShift), end = begin + (length << kBlockShift);
                if (alpha != 0 && begin > x) brush.Span(x, begin, alpha);
                for (int i = begin; i < end; ++i) {
                    sum += cells[i];
                    cells[i] = 0;
                    if (const unsigned int here = Alpha<kRule>(sum); here != 0) brush.Pixel(i, here);
                }
                x = end;
                alpha = Alpha<kRule>(sum);
                if (gap + length == 64) break;
                bits = bits >> static_cast<unsigned int>(gap + length)
                                   << static_cast<unsigned int>(gap + length);
            }
        }
        if (alpha != 0 && x < width_) brush.Span(x, width_, alpha);
    }

    void AddDownward(FixedPoint from, FixedPoint to, int sign);
    void AddInside(FixedPoint from, FixedPoint to, int sign);
    void AddInRow(int row, int x0, int x1, int height);
    void Touch(int row, int firstCell, int lastCell);
    void ForgetTouched();

    int width_ = 0, right_ = 0;
    int firstRow_ = 0, endRow_ = 0;
    int top_ = 0, bottom_ = 0;  // of the band, FixedPoint units
    int firstTouched_ = 1 << 30, lastTouched_ = -1;
    std::size_t cellStride_ = 0, wordStride_ = 0;
    // Sums may run over where thousands of windings lie on each other: unsigned, that is defined.
    std::vector<std::uint32_t> cells_;
    std::vector<std::uint64_t> words_;
    std::vector<RowState> rows_;
};
