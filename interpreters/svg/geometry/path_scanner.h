// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/mathematics/geometry.h"

/// Splits path data into commands and arguments, in one forward pass.
///
/// A command letter (M L Z C S H V Q T A in either case) begins a segment, wherever it stands; a ";" ends
/// one. Arguments are separated by blanks, commas, and in front of every minus, but for one that follows an
/// "e" (an exponent). An upper-case "E-" is split: kept on purpose. Three "e" in a row read as "e-".
class PathScanner {
public:
    explicit PathScanner(std::string_view text) : text_(text) {}

    /// Moves to the next command. @return false at the end of the text
    bool NextCommand(char& letter);
    /// The next argument of the current command, if it is nothing but a short number, as nearly all are.
    /// @return false when it is another argument, which NextArgument then gives, or when there is none
    bool NextPlainNumber(double& number);
    /// What stands behind the pairs that were taken.
    enum class Behind { kMore, kOther, kNone };
    /// Takes arguments of the current command two by two, as long as both are such numbers, and goes on with
    /// those of commands behind it that have the same letter and follow without anything between.
    /// @param letter  of the current command
    /// @param pairs   receives their numbers
    /// @param most    as many as there is room for
    /// @param count   receives how many were taken
    /// @return kMore when the room is full, kOther before an argument of another kind, kNone when the
    ///         command that was reached has no more arguments
    Behind NextPlainPairs(char letter, ORVMathPoint2D* pairs, std::size_t most, std::size_t& count);
    /// The next argument of the current command. The view is valid until the next call.
    /// @return false when the command has no more arguments
    bool NextArgument(std::string_view& argument);
    /// Bytes of the text that have been looked at.
    std::size_t GetPosition() const { return position_; }

private:
    const char* GetEnd() const { return text_.data() + text_.size(); }

    std::string_view text_;
    std::size_t position_ = 0;
    std::string rewritten_;  // an argument whose letters had to be changed
};
