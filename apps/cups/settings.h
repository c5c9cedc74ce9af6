// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// How the filter prints: the options of the job, and the administrator's environment variables.
struct FilterSettings {
    std::string interpreter = "SVG2";  ///< or "SVG", if the job has svg-interpreter=svg
    std::string seconds = "300";       ///< seconds for a drawing; ORVPRINT_CUPS_TIME_LIMIT
    std::string memory;                ///< bytes, empty: the command's default; ORVPRINT_CUPS_MEMORY_LIMIT
    std::vector<std::string> limits;   ///< each "NAME=N", other limits of the command; ORVPRINT_CUPS_LIMITS
};

/// Reads the settings. A value that cannot be read fails the job, so that neither an intended limit nor a
/// requested interpreter is ignored silently.
/// @param jobOptions  the options as filters get them
/// @param error       why the settings cannot be read
/// @return false with an error
bool ReadFilterSettings(const char* jobOptions, FilterSettings& settings, std::string& error);
