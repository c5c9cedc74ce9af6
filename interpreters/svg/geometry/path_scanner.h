// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/mathematics/geometry.h"

/// Splits path data into commands and arguments in one forward pass.
///
/// A command letter (M L Z C S H V Q T A in either case) starts a segment wherever it occurs; a ";" ends one.
/// Arguments are separated by blanks, by commas, and before every minus except one that follows an "e" (an
/// exponent). An upper-case "E-" is split, on purpose. Three "e" in a row are read as "e-".
class PathScanner {
public:
    explicit PathScanner(std::string_view text) : text_(text) {}

    /// Advances to the next command.
    /// @return false at the end of the text
    bool NextCommand(char& letter);
    /// Reads the next argument of the current command if it is a plain short number, as nearly all are.
    /// @return false if it is not, in which case NextArgument reads it, or if there is none
    bool NextPlainNumber(double& number);
    /// What follows the pairs that were read.
    enum class Behind { kMore, kOther, kNone };
    /// Reads pairs of plain numbers of the current command, and continues with directly following commands
    /// that have the same letter.
    /// @param letter  of the current command
    /// @param pairs   receives the pairs
    /// @param most    capacity of `pairs`
    /// @param count   receives the number of pairs read
    /// @return kMore if the buffer is full, kOther before an argument of another kind, kNone if the last
    ///         command has no more arguments
    Behind NextPlainPairs(char letter, ORVMathPoint2D* pairs, std::size_t most, std::size_t& count);
    /// Reads the next argument of the current command. The view is valid until the next call.
    /// @return false if the command has no more arguments
    bool NextArgument(std::string_view& argument);
    /// Number of bytes consumed.
    std::size_t GetPosition() const { return position_; }

private:
    const char* GetEnd() const { return text_.data() + text_.size(); }

    std::string_view text_;
    std::size_t position_ = 0;
    std::string rewritten_;  // an argument with normalised letters
};
