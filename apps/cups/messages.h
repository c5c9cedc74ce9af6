// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Kinds of lines that the print system reads from a filter's standard error.
enum class LineKind : std::uint8_t {
    kError,    ///< shown to the user
    kWarning,  ///< shown to the user; the job continues
    kState,    ///< adds or removes printer state reasons
    kDebug     ///< only logged
};

/// Writes one line to standard error, with line breaks replaced by spaces. It is truncated, between
/// characters, to the print system's maximum line length.
void Say(LineKind kind, std::string_view text);

/// Converts a message of the command, "orvprint: standard input:3:5: mismatched tag", to one for people who
/// do not know the command: "line 3, column 5: mismatched tag". Advice about options becomes advice about
/// environment variables.
/// @return false if the line is not from the command, but for instance from a library
bool TranslateLine(std::string_view line, std::string& text);
