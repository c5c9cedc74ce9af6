// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Kinds of lines that the print system reads from a filter's standard error.
enum class LineKind : std::uint8_t {
    kError,    ///< shown to who printed
    kWarning,  ///< the same; the job goes on
    kState,    ///< adds or removes reasons of the printer's state
    kDebug     ///< for the log only
};

/// Writes one line to standard error, as long as the print system takes it; what is longer is cut between
/// characters. Line breaks within it become spaces.
void Say(LineKind kind, std::string_view text);

/// Turns a line of the command, "orvprint: standard input:3:5: mismatched tag", into one for people who know
/// neither the command nor its options: "line 3, column 5: mismatched tag". Advice about options becomes
/// advice about variables of the environment.
/// @return false when the line is not the command's: libraries write, too
bool TranslateLine(std::string_view line, std::string& text);
