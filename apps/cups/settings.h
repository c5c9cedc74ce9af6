// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// Settings of the filter, from the job's options and the administrator's environment variables.
struct FilterSettings {
    std::string interpreter = "SVG2";  ///< or "SVG", if the job's option svg-interpreter is svg
    std::string seconds = "300";       ///< per drawing; ORVPRINT_CUPS_TIME_LIMIT
    /// Bytes; empty for the command's default; ORVPRINT_CUPS_MEMORY_LIMIT.
    std::string memory;
    /// Other limits of the command, NAME=N each; ORVPRINT_CUPS_LIMITS.
    std::vector<std::string> limits;
};

/// Reads the settings. Invalid settings end the job, so that no intended limit or interpreter is silently
/// ignored.
/// @param jobOptions  the options as filters get them
/// @param error       describes an invalid setting
/// @return false with an error
bool ReadFilterSettings(const char* jobOptions, FilterSettings& settings, std::string& error);
