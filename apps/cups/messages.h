// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Prefixes that the print system recognises on a filter's standard error.
enum class LineKind : std::uint8_t {
    kError,    ///< shown to the user
    kWarning,  ///< shown to the user; the job continues
    kState,    ///< adds or removes printer-state-reasons
    kDebug     ///< for the log only
};

/// Writes one line to standard error. Line breaks in it become spaces; what exceeds the print system's limit
/// is cut off between characters.
void Say(LineKind kind, std::string_view text);

/// Waits until the print system has read all lines, for at most ten seconds. It may replace the reason of a
/// failure by "Filter failed" if it notices the end of the filter first. Does nothing unless standard error
/// is a pipe.
void WaitUntilLinesAreRead();

/// Turns a message of the command, such as "orvprint: standard input:3:5: mismatched tag", into one for users
/// who know neither the command nor its options: "line 3, column 5: mismatched tag". Advice about options
/// becomes advice about environment variables.
/// @return false if the line is not a message of the command, but of a library, for example
bool TranslateLine(std::string_view line, std::string& text);
