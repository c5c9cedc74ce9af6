// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

/// A point of the page in units of 1/256 pixel.
struct FixedPoint {
    int x = 0, y = 0;
};

/// A straight edge of an outline.
struct CoverageEdge {
    FixedPoint from, to;
};

/// Finds the inside of outlines whose parts overlap, counting each part once. A sum of winding numbers over a
/// pixel cannot tell two parts on top of each other from two beside each other, so this takes rows of
/// samples, sixteen in a pixel, and walks each from crossing to crossing. The result for a row does not
/// depend on other rows.
class OverlapResolver {
public:
    /// Height of a row of samples in FixedPoint units. The samples are in its middle.
    static constexpr int kHeight = 16;

    /// A part of a row of samples that is inside, in FixedPoint units.
    struct Inside {
        int left = 0, right = 0;
        friend bool operator==(const Inside&, const Inside&) = default;
    };

    /// Adds edges, in any order.
    void Add(std::span<const CoverageEdge> edges) { edges_.insert(edges_.end(), edges.begin(), edges.end()); }
    /// Takes over the edges added so far, and begins with the rows of samples of [top, bottom) in FixedPoint
    /// units, multiples of kHeight.
    void Begin(int top, int bottom);
    /// Top of the next row of samples that has edges, and the end if none has.
    int GetTop() const { return top_; }
    /// Returns what is inside in the row at GetTop(), from left to right, and goes to the next row. Valid
    /// until the next call.
    std::span<const Inside> TakeRow(bool evenOdd);
    /// Number of steps taken since Begin: edges in rows, and their exchanges when sorted.
    std::uint64_t GetSteps() const { return steps_; }

private:
    /// An edge, downwards.
    struct Course {
        int firstRow = 0, endRow = 0;  // rows of samples that it crosses
        int x = 0, y = 0;              // its upper end
        double slope = 0.0;
        int sign = 0;
    };
    struct Crossing {
        int x = 0;
        std::uint32_t course = 0;
    };

    void SortActive();
    /// Goes to the next row with edges.
    void Skip();

    std::vector<CoverageEdge> edges_;
    std::vector<Course> courses_;  // by first row
    std::size_t next_ = 0;         // the first one that is not active yet
    std::vector<Crossing> active_;
    std::vector<Inside> inside_;
    int top_ = 0, bottom_ = 0;
    std::uint64_t steps_ = 0;
};
