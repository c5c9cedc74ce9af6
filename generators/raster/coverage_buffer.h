// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "generators/common/lanes.h"
#include "generators/common/vector_power.h"
#include "generators/raster/raster_memory.h"

/// A point of the page in 1/256 of a pixel.
struct FixedPoint {
    int x = 0, y = 0;
};

/// A straight edge of an outline.
struct CoverageEdge {
    FixedPoint from, to;
};

/// How the gathered windings become coverage. The hard rules know no levels between nothing and all.
enum class CoverageRule : std::uint8_t { kNonZero, kEvenOdd, kHardNonZero, kHardEvenOdd };

/// Exact area coverage of polygons on a band of pixel rows.
///
/// Edges come in any order. Each adds to the cells of the pixels that it crosses how much its winding changes
/// there, so that a sum along the row gives the coverage. One bit for four pixels tells which cells were
/// touched: what lies between them is a span of one coverage, and costs nothing a pixel. What a band gets
/// from an edge does not depend on where the band begins and ends. Cells are those of a window on the band,
/// so that those of a small shape lie close together.
class CoverageBuffer {
public:
    static constexpr int kOne = 256;  ///< FixedPoint units in a pixel
    /// Farther coordinates (pixels, either way) are pulled in to this.
    static constexpr double kFarthest = 4'000'000.0;

    static FixedPoint ToFixed(double x, double y) { return ToFixed(DoubleLanes{x, y}); }
    /// @param point  x and y
    static FixedPoint ToFixed(const DoubleLanes& point) {
        // So large a number has no room for fractions: its last bits are the whole number next to the value.
        constexpr double kNoFractions = 6755399441055744.0;  // 3 times 2 to the 51st
        const auto lanes = std::bit_cast<Lanes>(Clamped(point, -kFarthest, kFarthest) * kOne + kNoFractions);
        return {static_cast<int>(lanes[0]), static_cast<int>(lanes[2])};
    }

    /// @param power  must not be more than the processor has
    explicit CoverageBuffer(VectorPower power = UsedVectorPower()) : power_(power) {}

    /// Prepares for bands of up to `rows` rows of pages `width` pixels wide.
    void Resize(int width, int rows);
    /// Begins a band, with a window on all of it; the buffer is clean.
    void SetBand(int firstRow, int rowCount);
    /// Looks at these columns and rows of the band only, [left, right) and [top, bottom); the buffer is
    /// clean. What lies left of the window winds around its rows, as what lies left of the page does.
    void SetWindow(int left, int top, int right, int bottom);
    /// Notes work, in the time that a pixel of one colour takes. Edges and sweeps note theirs.
    void AddWork(std::uint64_t pixels) { work_ += pixels; }
    std::uint64_t GetWork() const { return work_; }
    void ForgetWork() { work_ = 0; }
    int GetFirstRow() const { return firstRow_; }
    int GetEndRow() const { return endRow_; }
    int GetPageWidth() const { return pageWidth_; }

    void AddLine(FixedPoint from, FixedPoint to) {
        if (edgeCount_ == kMostEdges) TakeEdges();
        // Level edges leave no trace, and whether an edge is level cannot be foretold.
        edges_[edgeCount_] = {from, to};
        edgeCount_ += from.y != to.y ? 1 : 0;
    }
    /// Gathers the windings of the edges that wait. Sweep does it, too; their work is noted only then.
    void TakeEdges();

    /// Hands the coverage of all rows that have any to `paint`, top down, and clears the buffer.
    /// Paint has BeginRow(row) and EndRow(). BeginRow gives a brush, which has Block(x, alphas), for four
    /// pixels, and Span(xBegin, xEnd, alpha), for a multiple of four, with an alpha of 1 to 255; x ascends.
    /// Both may be called for up to seven pixels right of the page. A brush that is a value of its own can be
    /// kept in registers.
    template <CoverageRule kRule, class Paint>
    void Sweep(Paint& paint) {
        TakeEdges();
#if ORV_HAS_WIDE_VECTORS
        if (power_ == VectorPower::kAvx2)
            SweepWithAvx2<kRule>(paint);
        else if (power_ == VectorPower::kSse41)
            SweepWithSse41<kRule>(paint);
        else
#endif
            SweepRows<kRule>(paint);
        ForgetTouched();
    }

private:
    static constexpr int kBlockShift = 2;  // a bit for four pixels
    static constexpr int kBlock = 1 << kBlockShift;
    static constexpr int kWordShift = 8;       // a word for 256
    static constexpr int kFullArea = 1 << 17;  // of a cell: 256 rows times 2 x 256 columns

    // Work in pixels of one colour.
    static constexpr int kBlockWork = 16, kCellWork = 40;

    template <CoverageRule kRule>
    static Lanes Alphas(const Lanes& sums) {
        const Lanes negative = std::bit_cast<Lanes>(std::bit_cast<SignedLanes>(sums) >> 31);
        Lanes areas = (sums ^ negative) - negative;
        constexpr std::uint32_t kFull = kFullArea;
        if constexpr (kRule == CoverageRule::kEvenOdd || kRule == CoverageRule::kHardEvenOdd) {
            areas &= 2 * kFull - 1;
            areas = Choose(std::bit_cast<Lanes>(areas > kFull), 2 * kFull - areas, areas);
        } else {
            areas = Choose(std::bit_cast<Lanes>(areas > kFull), Lanes{} + kFull, areas);
        }
        if constexpr (kRule == CoverageRule::kHardNonZero || kRule == CoverageRule::kHardEvenOdd)
            // A little less than half, so that thin lines hold.
            return std::bit_cast<Lanes>(areas * 16 >= kFull * 7) & 255;
        return (areas * 255 + kFull / 2) >> 17;
    }

    // One source for all: each is compiled with other instructions, and what they call is inlined into them.
    template <CoverageRule kRule, class Paint>
    [[gnu::always_inline]] void SweepRows(Paint& paint) {
        for (int row = firstTouched_; row <= lastTouched_; ++row) {
            auto&& brush = paint.BeginRow(row);
            SweepRow<kRule>(row, brush);
            paint.EndRow();
        }
    }
#if ORV_HAS_WIDE_VECTORS
    template <CoverageRule kRule, class Paint>
    ORV_FOR_AVX2 void SweepWithAvx2(Paint& paint) {
        SweepRows<kRule>(paint);
    }
    template <CoverageRule kRule, class Paint>
    ORV_FOR_SSE41 void SweepWithSse41(Paint& paint) {
        SweepRows<kRule>(paint);
    }
#endif

    template <CoverageRule kRule, class Brush>
    [[gnu::always_inline]] void SweepRow(int row, Brush& brush) {
        const auto index = static_cast<std::size_t>(row - firstRow_);
        std::uint32_t* cells = cells_.GetData() + index * cellStride_;
        std::uint64_t* words = words_.GetData() + index * wordStride_;
        const int firstX = left_ >> 8;
        Lanes sum{};  // of the row so far, in all lanes
        int x = 0, work = 0;
        const auto spanTo = [&](int end) {
            if (sum[0] == 0) return;
            if (const unsigned int alpha = Alphas<kRule>(sum)[0]; alpha != 0) {
                brush.Span(firstX + x, firstX + end, alpha);
                work += end - x;
            }
        };
        for (int word = 0; word < static_cast<int>(wordStride_); ++word) {
            std::uint64_t bits = words[word];
            if (bits == 0) continue;
            words[word] = 0;
            const int wordX = word << kWordShift;
            for (; bits != 0; bits &= bits - 1) {
                const int begin = wordX + (std::countr_zero(bits) << kBlockShift);
                if (begin > x) spanTo(begin);
                sum += RunningSum(LoadLanes<Lanes>(cells + begin));
                StoreLanes(cells + begin, Lanes{});
                brush.Block(firstX + begin, Alphas<kRule>(sum));
                sum = LastOfAll(sum);
                x = begin + kBlock;
                work += kBlockWork;
            }
        }
        if (x < width_) spanTo(width_);
        work_ += static_cast<std::uint64_t>(work);
    }

    // Edges wait until there are some: one after the other they are gathered with all constants at hand.
    static constexpr std::size_t kMostEdges = 128;

    class WideEdges;

    void SetWindowColumns(int left, int right);
    void AddEdges();
    void AddEdgesWithAvx2();
    void AddEdge(FixedPoint from, FixedPoint to);
    void AddDownward(FixedPoint from, FixedPoint to, int sign);
    void AddInside(FixedPoint from, FixedPoint to, int sign);
    /// Adds a piece of an edge that is in one row. Its ends are at most a pixel apart in x.
    static void AddSteep(std::uint32_t* cells, std::uint64_t* words, int left, int right, int height,
                         int sign, double steepness);
    static void AddFlat(std::uint32_t* cells, std::uint64_t* words, int left, int right, int height, int sign,
                        double steepness);
    static void Touch(std::uint64_t* words, int firstCell, int lastCell) {
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
    }
    void ForgetTouched();

    VectorPower power_;
    int pageWidth_ = 0, bandFirstRow_ = 0, bandEndRow_ = 0;
    // The window.
    int width_ = 0, firstRow_ = 0, endRow_ = 0;
    int left_ = 0, right_ = 0, top_ = 0,
        bottom_ = 0;  // FixedPoint units; the right border counted from the left
    std::uint64_t work_ = 0;
    int firstTouched_ = 1 << 30, lastTouched_ = -1;
    std::size_t cellStride_ = 0, wordStride_ = 0;
    // Sums may run over where thousands of windings lie on each other: unsigned, that is defined.
    RasterZeros<std::uint32_t> cells_;
    RasterZeros<std::uint64_t> words_;
    std::size_t edgeCount_ = 0;
    std::vector<CoverageEdge> edges_ = std::vector<CoverageEdge>(kMostEdges + 3);
};
