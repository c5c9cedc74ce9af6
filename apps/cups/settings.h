// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// How the filter has drawings printed: what the job says, and what the administrator says in the
/// environment.
struct FilterSettings {
    std::string interpreter = "SVG2";  ///< or "SVG", if the job's option svg-interpreter is svg
    std::string seconds = "300";       ///< for a drawing; ORVPRINT_CUPS_TIME_LIMIT
    std::string memory;  ///< bytes, empty for the command's own limit; ORVPRINT_CUPS_MEMORY_LIMIT
    std::vector<std::string> limits;  ///< NAME=N each, others of the command's; ORVPRINT_CUPS_LIMITS
};

/// Reads the settings. Nothing is guessed: what cannot be read ends the job, so that neither a limit that
/// was meant nor an interpreter that was asked for is missed in silence.
/// @param jobOptions  the options as filters get them
/// @param error       why the settings cannot be read
/// @return false with an error
bool ReadFilterSettings(const char* jobOptions, FilterSettings& settings, std::string& error);
