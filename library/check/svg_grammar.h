// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

// The syntax of values in SVG. The interpreter's parsers accept more than that; other programs do not, so
// such values take effect only here.

/// Whether a text is exactly one number, with optional sign and exponent; a decimal point must be followed by
/// digits.
bool IsSvgNumber(std::string_view text);
/// Like IsSvgNumber, for path data, which also allow numbers such as "1.".
bool IsPathNumber(std::string_view text);

/// Whether a text is an SVG 1.1 colour: "#rgb", "#rrggbb", "rgb(...)" with three numbers or percentages, or a
/// word. The word need not be a known colour name.
bool IsSvgColour(std::string_view text);

/// Whether a text is a list of transforms.
bool IsSvgTransformList(std::string_view text);

/// One path segment as written: a command letter and its numbers. Extra coordinate pairs after a move become
/// lines.
struct PathSegment {
    char letter = 'M';
    std::array<double, 7> numbers{};
};

/// Splits path data into segments by the SVG grammar.
class SvgPathReader {
public:
    explicit SvgPathReader(std::string_view data) : rest_(data), size_(data.size()) {}

    /// @return false at the end, and before invalid data
    bool Next(PathSegment& segment);

    /// Number of bytes consumed; anything after them is not valid path data.
    std::size_t GetPosition() const { return size_ - rest_.size(); }
    /// Whether only white space and commas are left, which draw nothing.
    bool IsAtEnd() const;

private:
    std::string_view rest_;
    std::size_t size_;
    char letter_ = 0;  // current command, to which further numbers belong; 0 before the first
};
