// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

// The syntax of values as SVG has it. The interpreter's readers take more than that, and other programs do
// not: what they leave out here shows on our page only.

/// Whether a text is a number, with an optional sign and exponent and nothing around it; digits follow its
/// point.
bool IsSvgNumber(std::string_view text);
/// The same in path data, which also have numbers such as "1.".
bool IsPathNumber(std::string_view text);

/// Whether a text is a colour of SVG 1.1: "#rgb", "#rrggbb", "rgb(...)" of three numbers or percentages, or a
/// word. Whether there is a colour of that name is not looked at.
bool IsSvgColour(std::string_view text);

/// Whether a text is a list of transforms.
bool IsSvgTransformList(std::string_view text);

/// One segment of path data as it is written: a letter and its numbers. A pair behind those of a move is a
/// line.
struct PathSegment {
    char letter = 'M';
    std::array<double, 7> numbers{};
};

/// Takes path data apart as SVG has them.
class SvgPathReader {
public:
    explicit SvgPathReader(std::string_view data) : rest_(data), size_(data.size()) {}

    /// @return false at the end, and in front of what SVG does not take
    bool Next(PathSegment& segment);

    /// How many bytes were taken; what is behind them is no path data.
    std::size_t GetPosition() const { return size_ - rest_.size(); }
    /// Whether all that is left is blanks and commas, which draw nothing.
    bool IsAtEnd() const;

private:
    std::string_view rest_;
    std::size_t size_;
    char letter_ = 0;  // of the command that numbers belong to; none in front of the first
};
