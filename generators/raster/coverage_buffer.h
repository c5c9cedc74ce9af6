// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "generators/common/lanes.h"
#include "generators/common/vector_power.h"
#include "generators/raster/overlap_resolver.h"
#include "generators/raster/raster_memory.h"

/// How winding numbers become coverage. The hard rules yield only 0 or full coverage.
enum class CoverageRule : std::uint8_t { kNonZero, kEvenOdd, kHardNonZero, kHardEvenOdd };

/// Computes the exact area coverage of polygons on a band of pixel rows.
///
/// Edges may be added in any order. Each adds its change of winding to the cells of the pixels it crosses, so
/// that a prefix sum along the row yields the coverage. One bit per four pixels marks touched cells; between
/// them coverage is constant, and such spans cost nothing per pixel. The coverage from an edge does not
/// depend on where the band begins and ends. Cells cover only a window of the band, which keeps those of a
/// small shape close together in memory.
class CoverageBuffer {
public:
    static constexpr int kOne = 256;  ///< FixedPoint units in a pixel
    /// Coordinates beyond this (pixels, in either direction) are clamped to it.
    static constexpr double kFarthest = 4'000'000.0;

    static FixedPoint ToFixed(double x, double y) { return ToFixed(DoubleLanes{x, y}); }
    /// @param point  x and y
    static FixedPoint ToFixed(const DoubleLanes& point) {
        // Adding this number leaves no bits for a fraction: the low bits are the value rounded to an integer.
        constexpr double kNoFractions = 6755399441055744.0;  // 3 times 2 to the 51st
        const auto lanes = std::bit_cast<Lanes>(Clamped(point, -kFarthest, kFarthest) * kOne + kNoFractions);
        return {static_cast<int>(lanes[0]), static_cast<int>(lanes[2])};
    }

    /// @param power  must be supported by the processor
    explicit CoverageBuffer(VectorPower power = UsedVectorPower()) : power_(power) {}

    /// Prepares for bands of up to `rows` rows of pages `width` pixels wide.
    void Resize(int width, int rows);
    /// Begins a band with a window on all of it. The buffer must have been swept.
    void SetBand(int firstRow, int rowCount);
    /// Restricts the window to the columns [left, right) and rows [top, bottom) of the band. The buffer must
    /// be new or swept. Edges left of the window still count for the winding of its rows.
    void SetWindow(int left, int top, int right, int bottom);
    /// Adds work, measured in pixels filled with one colour. Edges and sweeps add their own.
    void AddWork(std::uint64_t pixels) { work_ += pixels; }
    std::uint64_t GetWork() const { return work_; }
    void ForgetWork() { work_ = 0; }
    /// Sets whether the edges added from here on cover whole pixels: those whose centres are inside. A centre
    /// on an edge is on the edge's left or upper side, as in common renderers. No edges may be queued.
    void SampleCentres(bool samplesCentres) { samplesCentres_ = samplesCentres; }
    /// Keeps the edges added from here on until ResolveOverlaps. No edges may be queued.
    void KeepOverlaps() { keepsEdges_ = true; }
    /// Adds the inside of the kept edges, counting each part once. A sum of windings cannot tell parts that
    /// overlap within a pixel from parts beside each other. Takes more than ten times as long as TakeEdges.
    void ResolveOverlaps(bool evenOdd);
    int GetFirstRow() const { return firstRow_; }
    int GetEndRow() const { return endRow_; }
    int GetPageWidth() const { return pageWidth_; }

    void AddLine(FixedPoint from, FixedPoint to) {
        if (edgeCount_ == kMostEdges) TakeEdges();
        // Horizontal edges have no effect. Branching on this would often be mispredicted.
        edges_[edgeCount_] = {from, to};
        edgeCount_ += from.y != to.y ? 1 : 0;
    }
    /// Adds the windings of the queued edges. Sweep does so too; only then is their work counted.
    void TakeEdges();

    /// Passes the coverage of all rows that have any to `paint`, top down, and clears the buffer. Paint has
    /// BeginRow(row) and EndRow(). BeginRow returns a brush with Block(x, alphas), for four pixels, and
    /// Span(xBegin, xEnd, alpha), for a multiple of four pixels with an alpha of 1 to 255; x ascends. Both
    /// may be called for up to seven pixels past the right edge of the page. A brush returned by value can
    /// stay in registers.
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
    static constexpr int kBlockShift = 2;  // one bit per four pixels
    static constexpr int kBlock = 1 << kBlockShift;
    static constexpr int kWordShift = 8;       // one word per 256 pixels
    static constexpr int kFullArea = 1 << 17;  // area of a fully covered cell: 256 rows times 2 x 256 columns

    // Work, in pixels filled with one colour.
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
            // Slightly less than half, so that thin lines do not break up.
            return std::bit_cast<Lanes>(areas * 16 >= kFull * 7) & 255;
        return (areas * 255 + kFull / 2) >> 17;
    }

    // Shared source: each caller compiles it, inlined with all it calls, for another instruction set.
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
        Lanes sum{};  // running sum of the row, in all lanes
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

    // Edges are queued and added in batches, so that constants stay in registers.
    static constexpr std::size_t kMostEdges = 128;

    class WideEdges;

    void SetWindowColumns(int left, int right);
    void AddEdges();
    void AddEdgeAtCentres(FixedPoint from, FixedPoint to);
    void AddUpright(int row, int x, int height);
    void AddEdgesWithAvx2();
    void AddEdge(FixedPoint from, FixedPoint to);
    void AddDownward(FixedPoint from, FixedPoint to, int sign);
    void AddInside(FixedPoint from, FixedPoint to, int sign);
    /// Adds the part of an edge inside one row. Its ends are at most one pixel apart in x.
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
    bool samplesCentres_ = false, keepsEdges_ = false;
    OverlapResolver overlaps_;
    int pageWidth_ = 0, bandFirstRow_ = 0, bandEndRow_ = 0;
    // The window.
    int width_ = 0, firstRow_ = 0, endRow_ = 0;
    int left_ = 0, right_ = 0, top_ = 0,
        bottom_ = 0;  // in FixedPoint units; the right border is relative to the left one
    std::uint64_t work_ = 0;
    int firstTouched_ = 1 << 30, lastTouched_ = -1;
    std::size_t cellStride_ = 0, wordStride_ = 0;
    // Sums may overflow where thousands of windings overlap: this is well defined for unsigned integers.
    RasterZeros<std::uint32_t> cells_;
    RasterZeros<std::uint64_t> words_;
    std::size_t edgeCount_ = 0;
    std::vector<CoverageEdge> edges_ = std::vector<CoverageEdge>(kMostEdges + 3);
};
