// SPDX-License-Identifier: Apache-2.0

// Adds edges with vector instructions: the same results as in coverage_buffer.cpp, for four edges and four
// rows at a time and nearly without branches. Branches would be unpredictable here, and a misprediction takes
// longer than the cells of an edge.

#include "generators/raster/coverage_buffer.h"

#if ORV_HAS_WIDE_VECTORS

#include <immintrin.h>

#include <algorithm>
#include <array>
#include <bit>

namespace {

constexpr unsigned int kSubpixelBits = 8, kBlockBits = 10;
constexpr int kOne = CoverageBuffer::kOne, kSubpixelMask = kOne - 1, kBlockMask = (1 << kBlockBits) - 1;
// Two blocks of four cells cover the cells of an edge in a row, plus one.
constexpr int kEndOfCells = 7 * kOne;

constexpr std::size_t kLanes = 4;
template <class T>
using PerEdge = std::array<T, kLanes>;

ORV_FOR_AVX2 inline __m128i Load(const void* from) {
    return _mm_loadu_si128(static_cast<const __m128i*>(from));
}
ORV_FOR_AVX2 inline void Store(void* to, __m128i lanes) {
    _mm_storeu_si128(static_cast<__m128i*>(to), lanes);
}
ORV_FOR_AVX2 inline __m128i Choose(__m128i mask, __m128i a, __m128i b) { return _mm_blendv_epi8(b, a, mask); }
ORV_FOR_AVX2 inline __m256d ToDouble(__m128i lanes) { return _mm256_cvtepi32_pd(lanes); }
/// value * factor + term, truncated. Multiplication and addition are rounded separately, as everywhere.
ORV_FOR_AVX2 inline __m128i WholeOf(__m256d value, __m256d factor, __m256d term) {
    return _mm256_cvttpd_epi32(_mm256_add_pd(_mm256_mul_pd(value, factor), term));
}

// Loaded from entry 8 - n on, lanes below n are 0.
alignas(16) constexpr std::array<std::int16_t, 16> kFromLane{
    0, 0, 0, 0, 0, 0, 0, 0, 0x7FFF, 0x7FFF, 0x7FFF, 0x7FFF, 0x7FFF, 0x7FFF, 0x7FFF, 0x7FFF};

}  // namespace

/// Adds edges in two steps: first splits them into rows, then adds the rows to the cells.
class CoverageBuffer::WideEdges {
public:
    explicit WideEdges(CoverageBuffer& buffer)
        : buffer_(buffer),
          cells_(buffer.cells_.data()),
          words_(buffer.words_.data()),
          cellStride_(static_cast<int>(buffer.cellStride_)),
          wordStride_(static_cast<int>(buffer.wordStride_)) {}

    ORV_FOR_AVX2 void AddAll() {
        // Pads to four edges with ones far above everything.
        constexpr FixedPoint kNowhere{0, -(1 << 30)};
        CoverageEdge* edges = buffer_.edges_.data();
        std::fill_n(edges + buffer_.edgeCount_, kLanes - 1, CoverageEdge{kNowhere, kNowhere});
        __m128i first = _mm_set1_epi32(buffer_.firstTouched_), last = _mm_set1_epi32(buffer_.lastTouched_);
        __m128i work = _mm_setzero_si128();
        for (std::size_t i = 0; i < buffer_.edgeCount_; i += kLanes) AddFour(edges + i, first, last, work);
        AddRows();
        PerEdge<int> firsts, lasts;
        PerEdge<std::uint32_t> works;
        Store(firsts.data(), first);
        Store(lasts.data(), last);
        Store(works.data(), work);
        for (std::size_t i = 0; i < kLanes; ++i) {
            buffer_.firstTouched_ = std::min(buffer_.firstTouched_, firsts[i]);
            buffer_.lastTouched_ = std::max(buffer_.lastTouched_, lasts[i]);
            buffer_.work_ += std::uint64_t{works[i]} * kCellWork;
        }
    }

private:
    static constexpr std::size_t kMostRows = 256;
    template <class T>
    using PerRow = std::array<T, kMostRows + 2 * kLanes>;

    /// Data of four edges for their rows.
    struct Edges {
        PerEdge<double> steepness, slope, start, toFirstBorder;
        PerEdge<int> xBegin, xEnd, firstRow, lastRow, firstHeight, lastHeight, sign, endsAtBorder;
    };

    /// @param first, last, work  rows touched, and cells; one lane per edge
    ORV_FOR_AVX2 void AddFour(const CoverageEdge* edges, __m128i& first, __m128i& last, __m128i& work) {
        const __m128i e0 = Load(edges), e1 = Load(edges + 1), e2 = Load(edges + 2), e3 = Load(edges + 3);
        const __m128i from01 = _mm_unpacklo_epi32(e0, e1), from23 = _mm_unpacklo_epi32(e2, e3);
        const __m128i to01 = _mm_unpackhi_epi32(e0, e1), to23 = _mm_unpackhi_epi32(e2, e3);
        const __m128i y0 = _mm_unpackhi_epi64(from01, from23), y1 = _mm_unpackhi_epi64(to01, to23);
        const __m128i left = _mm_set1_epi32(buffer_.left_), right = _mm_set1_epi32(buffer_.right_);
        const __m128i x0 = _mm_sub_epi32(_mm_unpacklo_epi64(from01, from23), left);
        const __m128i x1 = _mm_sub_epi32(_mm_unpacklo_epi64(to01, to23), left);

        const __m128i top = _mm_set1_epi32(buffer_.top_), bottom = _mm_set1_epi32(buffer_.bottom_);
        const __m128i fromY = _mm_min_epi32(y0, y1), toY = _mm_max_epi32(y0, y1);
        const __m128i isInBand = _mm_and_si128(_mm_cmpgt_epi32(toY, top), _mm_cmpgt_epi32(bottom, fromY));
        const __m128i isSeen = _mm_and_si128(isInBand, _mm_cmpgt_epi32(right, _mm_min_epi32(x0, x1)));
        auto seen = static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(isSeen)));
        if (seen == 0) return;
        const __m128i none = _mm_setzero_si128();
        const __m128i isBeyond = _mm_or_si128(_mm_cmpgt_epi32(none, _mm_min_epi32(x0, x1)),
                                              _mm_cmpgt_epi32(_mm_max_epi32(x0, x1), right));
        const __m128i isWhole = _mm_andnot_si128(isBeyond, isSeen);
        if (const auto cut = seen & static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(isBeyond)));
            cut != 0) [[unlikely]] {
            AddCut(edges, cut);
            seen &= ~cut;
        }

        const __m128i isUpward = _mm_cmpgt_epi32(y0, y1);
        const __m128i fromX = Choose(isUpward, x1, x0), toX = Choose(isUpward, x0, x1);
        const __m128i across = _mm_sub_epi32(toX, fromX);
        const __m128i width = _mm_abs_epi32(across), height = _mm_sub_epi32(toY, fromY);
        const __m256d heights = ToDouble(height);
        // More rows per pixel make no difference even in 1/256 of a cell; vertical edges have infinitely
        // many.
        constexpr double kMostSteep = 512.0;
        const __m256d steepness =
            _mm256_min_pd(_mm256_div_pd(heights, ToDouble(width)), _mm256_set1_pd(kMostSteep));
        const __m256d slope = _mm256_div_pd(ToDouble(across), heights);

        const __m128i yBegin = _mm_max_epi32(fromY, top), yEnd = _mm_min_epi32(toY, bottom);
        const __m128i one = _mm_set1_epi32(1);
        const __m128i firstRow = _mm_srai_epi32(yBegin, kSubpixelBits);
        const __m128i lastRow = _mm_srai_epi32(_mm_sub_epi32(yEnd, one), kSubpixelBits);
        const __m128i firstBorder = _mm_slli_epi32(_mm_add_epi32(firstRow, one), kSubpixelBits);
        const __m128i isInRow = _mm_and_si128(_mm_cmpeq_epi32(firstRow, lastRow),
                                              _mm_cmpeq_epi32(_mm_sub_epi32(yEnd, yBegin), height));
        const __m128i isFlat = _mm_cmpgt_epi32(width, Choose(isInRow, _mm_set1_epi32(kOne), height));
        // Positions are never negative.
        const __m256d start = _mm256_add_pd(ToDouble(fromX), _mm256_set1_pd(0.5));
        const __m128i xBegin = WholeOf(ToDouble(_mm_sub_epi32(yBegin, fromY)), slope, start);
        const __m128i xEnd = Choose(_mm_cmpeq_epi32(yEnd, toY), toX,
                                    WholeOf(ToDouble(_mm_sub_epi32(yEnd, fromY)), slope, start));

        first = _mm_min_epi32(first, Choose(isWhole, firstRow, first));
        last = _mm_max_epi32(last, Choose(isWhole, lastRow, last));
        const __m128i cells =
            _mm_add_epi32(_mm_sub_epi32(lastRow, firstRow),
                          _mm_srai_epi32(_mm_abs_epi32(_mm_sub_epi32(xEnd, xBegin)), kSubpixelBits));
        work = _mm_add_epi32(work, _mm_and_si128(isWhole, _mm_add_epi32(cells, one)));

        Edges four;
        _mm256_storeu_pd(four.steepness.data(), steepness);
        _mm256_storeu_pd(four.slope.data(), slope);
        _mm256_storeu_pd(four.start.data(), start);
        _mm256_storeu_pd(four.toFirstBorder.data(), ToDouble(_mm_sub_epi32(firstBorder, fromY)));
        Store(four.xBegin.data(), xBegin);
        Store(four.xEnd.data(), xEnd);
        const __m128i windowTop = _mm_set1_epi32(buffer_.firstRow_);
        Store(four.firstRow.data(), _mm_sub_epi32(firstRow, windowTop));
        Store(four.lastRow.data(), _mm_sub_epi32(lastRow, windowTop));
        const __m128i sign = _mm_or_si128(isUpward, one);
        Store(four.firstHeight.data(),
              _mm_sign_epi32(_mm_sub_epi32(_mm_min_epi32(yEnd, firstBorder), yBegin), sign));
        Store(four.lastHeight.data(),
              _mm_sign_epi32(
                  _mm_sub_epi32(yEnd, _mm_max_epi32(yBegin, _mm_slli_epi32(lastRow, kSubpixelBits))), sign));
        Store(four.sign.data(), sign);
        Store(four.endsAtBorder.data(), _mm_andnot_si128(isFlat, one));
        for (; seen != 0; seen &= seen - 1) NoteRows(four, static_cast<std::size_t>(std::countr_zero(seen)));
    }

    /// Adds edges that the window clips.
    void AddCut(const CoverageEdge* edges, unsigned int cut) {
        for (; cut != 0; cut &= cut - 1) {
            const CoverageEdge& edge = edges[std::countr_zero(cut)];
            buffer_.AddEdge(edge.from, edge.to);
        }
    }

    /// Stores all rows of an edge, four at a time. Few edges have more; excess entries are overwritten.
    ORV_FOR_AVX2 void NoteRows(const Edges& edges, std::size_t k) {
        const __m256d slope = _mm256_set1_pd(edges.slope[k]), start = _mm256_set1_pd(edges.start[k]);
        const __m256d steepness = _mm256_set1_pd(edges.steepness[k]);
        __m256d toBorder = _mm256_add_pd(_mm256_set1_pd(edges.toFirstBorder[k]),
                                         _mm256_setr_pd(0.0, kOne, 2 * kOne, 3 * kOne));
        __m128i row = _mm_add_epi32(_mm_set1_epi32(edges.firstRow[k]), _mm_setr_epi32(0, 1, 2, 3));
        const __m128i height = _mm_set1_epi32(kOne * edges.sign[k]);
        const __m128i endsAtBorder = _mm_set1_epi32(edges.endsAtBorder[k]);
        int left = edges.lastRow[k] - edges.firstRow[k] + 1;
        int x = edges.xBegin[k], firstHeight = edges.firstHeight[k];
        while (true) {
            if (count_ >= kMostRows) [[unlikely]]
                AddRows();
            const std::size_t n = count_;
            const __m128i borders = WholeOf(toBorder, slope, start);
            Store(&xTo_[n], borders);
            Store(&xFrom_[n + 1], borders);
            xFrom_[n] = x;
            Store(&height_[n], height);
            height_[n] = firstHeight;
            Store(&row_[n], row);
            Store(&endsAtBorder_[n], endsAtBorder);
            _mm256_storeu_pd(&steepness_[n], steepness);
            if (left <= static_cast<int>(kLanes)) [[likely]]
                break;
            count_ += kLanes;
            left -= static_cast<int>(kLanes);
            x = _mm_extract_epi32(borders, 3);
            firstHeight = kOne * edges.sign[k];
            row = _mm_add_epi32(row, _mm_set1_epi32(kLanes));
            toBorder = _mm256_add_pd(toBorder, _mm256_set1_pd(kLanes * kOne));
        }
        count_ += static_cast<std::size_t>(left);
        xTo_[count_ - 1] = edges.xEnd[k];
        height_[count_ - 1] = edges.lastHeight[k];
    }

    /// Adds the stored rows to the cells.
    ORV_FOR_AVX2 void AddRows() {
        if (count_ == 0) return;
        // Pads to four rows with copies of the last one, without height.
        Store(&xTo_[count_], _mm_set1_epi32(xTo_[count_ - 1]));
        Store(&xFrom_[count_], _mm_set1_epi32(xFrom_[count_ - 1]));
        Store(&row_[count_], _mm_set1_epi32(row_[count_ - 1]));
        Store(&endsAtBorder_[count_], _mm_set1_epi32(endsAtBorder_[count_ - 1]));
        Store(&height_[count_], _mm_setzero_si128());
        _mm256_storeu_pd(&steepness_[count_], _mm256_set1_pd(0.0));
        for (std::size_t i = 0; i < count_; i += kLanes) {
            unsigned int wide = AddFourRows(i);
            for (; wide != 0; wide &= wide - 1)
                AddWideRow(i + static_cast<std::size_t>(std::countr_zero(wide)));
        }
        count_ = 0;
    }

    /// Adds four rows of edges. Most touch at most three cells.
    /// @return a bit for each row that touches more
    ORV_FOR_AVX2 unsigned int AddFourRows(std::size_t i) {
        const __m128i a = Load(&xFrom_[i]), b = Load(&xTo_[i]);
        const __m128i left = _mm_min_epi32(a, b), right = _mm_max_epi32(a, b);
        const __m128i begin = _mm_and_si128(left, _mm_set1_epi32(kSubpixelMask));
        const __m128i cell = _mm_srai_epi32(left, kSubpixelBits);
        const __m128i full = _mm_set1_epi32(kOne), none = _mm_setzero_si128();
        const __m128i toBorder = _mm_sub_epi32(full, begin);
        // Part beyond the border of the first cell.
        const __m128i beyond = _mm_sub_epi32(_mm_sub_epi32(right, left), toBorder);
        const __m128i beyondTouched = _mm_sub_epi32(beyond, Load(&endsAtBorder_[i]));
        const __m128i isInside = _mm_srai_epi32(beyondTouched, 31);
        const __m128i isWide = _mm_cmpgt_epi32(beyondTouched, _mm_set1_epi32(kOne - 1));

        const __m128i signedHeight = Load(&height_[i]);
        const __m128i height = _mm_abs_epi32(signedHeight);
        const __m128i reached = _mm_min_epi32(
            WholeOf(ToDouble(toBorder), _mm256_loadu_pd(&steepness_[i]), _mm256_set1_pd(0.5)), height);
        __m128i first = Choose(isInside, height, reached);
        __m128i second = _mm_sub_epi32(height, first);
        first = _mm_andnot_si128(isWide, _mm_sign_epi32(first, signedHeight));
        second = _mm_andnot_si128(isWide, _mm_sign_epi32(second, signedHeight));
        // Each part covers the area to its right in its cell, and all of the following cells. Both factors
        // fit 16 bits.
        const __m128i firstArea =
            _mm_madd_epi16(first, _mm_add_epi32(_mm_add_epi32(begin, full), _mm_min_epi32(beyond, none)));
        const __m128i secondArea = _mm_madd_epi16(second, _mm_max_epi32(beyond, none));
        const __m128i inFirst = _mm_sub_epi32(_mm_slli_epi32(first, kSubpixelBits + 1), firstArea);
        const __m128i inSecond =
            _mm_sub_epi32(_mm_add_epi32(firstArea, _mm_slli_epi32(second, kSubpixelBits + 1)), secondArea);

        const __m128i row = Load(&row_[i]);
        const __m128i place = _mm_add_epi32(_mm_mullo_epi32(row, _mm_set1_epi32(cellStride_)), cell);
        // One or two more cells are touched.
        const __m128i block = _mm_srai_epi32(cell, 2);
        const __m128i reachesNext = _mm_cmpgt_epi32(
            _mm_add_epi32(_mm_and_si128(cell, _mm_set1_epi32(3)), isInside), _mm_set1_epi32(1));
        const __m128i bits =
            _mm_andnot_si128(isWide, _mm_sub_epi32(_mm_set1_epi32(1), _mm_slli_epi32(reachesNext, 1)));
        const __m128i shift = _mm_and_si128(block, _mm_set1_epi32(63));
        const __m256i touched = _mm256_sllv_epi64(_mm256_cvtepu32_epi64(bits), _mm256_cvtepu32_epi64(shift));
        const __m128i word =
            _mm_add_epi32(_mm_mullo_epi32(row, _mm_set1_epi32(wordStride_)), _mm_srai_epi32(cell, 8));

        PerEdge<std::int32_t> places, wordPlaces;
        PerEdge<std::uint32_t> firsts, seconds, thirds;
        PerEdge<std::uint64_t> touches;
        Store(places.data(), place);
        Store(wordPlaces.data(), word);
        Store(firsts.data(), inFirst);
        Store(seconds.data(), inSecond);
        Store(thirds.data(), secondArea);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(touches.data()), touched);
        for (std::size_t k = 0; k < kLanes; ++k) {
            std::uint32_t* to = cells_ + places[k];
            to[0] += firsts[k];
            to[1] += seconds[k];
            to[2] += thirds[k];
            words_[wordPlaces[k]] |= touches[k];
        }
        // Pairs of blocks in different words.
        const __m128i isDivided =
            _mm_andnot_si128(isWide, _mm_and_si128(reachesNext, _mm_cmpeq_epi32(shift, _mm_set1_epi32(63))));
        auto divided = static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(isDivided)));
        for (; divided != 0; divided &= divided - 1)
            words_[wordPlaces[static_cast<std::size_t>(std::countr_zero(divided))] + 1] |= 1;
        return static_cast<unsigned int>(_mm_movemask_ps(_mm_castsi128_ps(isWide)));
    }

    /// Adds a row of an edge that touches many cells, eight at a time.
    ORV_FOR_AVX2 void AddWideRow(std::size_t i) {
        const int left = std::min(xFrom_[i], xTo_[i]), right = std::max(xFrom_[i], xTo_[i]);
        const int sign = height_[i] < 0 ? -1 : 1, height = height_[i] * sign;
        std::uint32_t* cells =
            cells_ + static_cast<std::size_t>(row_[i]) * static_cast<std::size_t>(cellStride_);
        std::uint64_t* words =
            words_ + static_cast<std::size_t>(row_[i]) * static_cast<std::size_t>(wordStride_);
        const int block = left >> kBlockBits, begin = left & kBlockMask, end = begin + (right - left);
        if (end >= kEndOfCells) {
            AddFlat(cells, words, left, right, height, sign, steepness_[i]);
            return;
        }
        const int last = (end - endsAtBorder_[i]) >> kSubpixelBits;

        // Height reached at the right border of each cell; the full height from the last cell on.
        const __m256d begins = _mm256_set1_pd(begin), half = _mm256_set1_pd(0.5);
        const __m256d steepness = _mm256_set1_pd(steepness_[i]);
        const __m256d firstBorders = _mm256_setr_pd(kOne, 2 * kOne, 3 * kOne, 4 * kOne);
        const __m256d nextBorders = _mm256_setr_pd(5 * kOne, 6 * kOne, 7 * kOne, 8 * kOne);
        const __m128i none = _mm_setzero_si128();
        __m128i done = _mm_packs_epi32(WholeOf(_mm256_sub_pd(firstBorders, begins), steepness, half),
                                       WholeOf(_mm256_sub_pd(nextBorders, begins), steepness, half));
        done = _mm_or_si128(_mm_max_epi16(done, none), Load(kFromLane.data() + (8 - last)));
        done = _mm_min_epi16(done, _mm_set1_epi16(static_cast<short>(height)));
        const __m128i parts = _mm_sign_epi16(_mm_sub_epi16(done, _mm_slli_si128(done, 2)),
                                             _mm_set1_epi16(static_cast<short>(sign)));

        // Twice the centre of the edge inside each cell: entry plus exit.
        const __m128i lanes =
            _mm_setr_epi16(0, kOne, 2 * kOne, 3 * kOne, 4 * kOne, 5 * kOne, 6 * kOne, 7 * kOne);
        const __m128i enters =
            _mm_max_epi16(_mm_sub_epi16(_mm_set1_epi16(static_cast<short>(begin)), lanes), none);
        const __m128i leaves = _mm_min_epi16(_mm_sub_epi16(_mm_set1_epi16(static_cast<short>(end)), lanes),
                                             _mm_set1_epi16(kOne));
        const __m128i middles = _mm_add_epi16(enters, leaves);
        const __m128i rest = _mm_sub_epi16(_mm_set1_epi16(2 * kOne), middles);
        const __m128i partsBefore = _mm_slli_si128(parts, 2), middlesBefore = _mm_slli_si128(middles, 2);
        std::uint32_t* to = cells + static_cast<std::size_t>(block) * 4;
        Store(to, _mm_add_epi32(Load(to), _mm_madd_epi16(_mm_unpacklo_epi16(parts, partsBefore),
                                                         _mm_unpacklo_epi16(rest, middlesBefore))));
        Store(to + 4, _mm_add_epi32(Load(to + 4), _mm_madd_epi16(_mm_unpackhi_epi16(parts, partsBefore),
                                                                 _mm_unpackhi_epi16(rest, middlesBefore))));
        Touch(words, left >> kSubpixelBits, block * 4 + last + 1);
    }

    CoverageBuffer& buffer_;
    std::uint32_t* const cells_;
    std::uint64_t* const words_;
    const int cellStride_, wordStride_;

    // Rows of edges. The height has the sign of the winding.
    std::size_t count_ = 0;
    PerRow<int> xFrom_, xTo_, height_, row_, endsAtBorder_;
    PerRow<double> steepness_;
};

void CoverageBuffer::AddEdgesWithAvx2() { WideEdges(*this).AddAll(); }

#else

void CoverageBuffer::AddEdgesWithAvx2() { AddEdges(); }

#endif
