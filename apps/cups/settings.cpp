// SPDX-License-Identifier: Apache-2.0
#include "apps/cups/settings.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <string_view>

#include "apps/cups/job_options.h"

namespace {

std::string_view Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : std::string_view();
}

/// Parses a positive number with an optional unit letter.
bool ReadNumber(std::string_view text, bool takesUnits, std::uint64_t& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || number == 0) return false;
    const std::string_view unit(end, static_cast<std::size_t>(text.data() + text.size() - end));
    if (unit.empty()) return true;
    const unsigned int shift = unit == "K" ? 10 : unit == "M" ? 20 : unit == "G" ? 30 : 0;
    if (!takesUnits || shift == 0 || number > std::numeric_limits<std::uint64_t>::max() >> shift)
        return false;
    number <<= shift;
    return true;
}

bool ReadVariable(const char* name, bool takesUnits, const char* what, std::string& value,
                  std::string& error) {
    const std::string_view text = Variable(name);
    if (text.empty()) return true;
    std::uint64_t number = 0;
    if (!ReadNumber(text, takesUnits, number)) {
        error = std::string(name) + " is '" + std::string(text) + "', but needs " + what;
        return false;
    }
    value = std::to_string(number);
    return true;
}

std::vector<std::string> SplitList(std::string_view text) {
    std::vector<std::string> words;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_of(", ", at), text.size());
        if (end > at) words.emplace_back(text.substr(at, end - at));
        at = end + 1;
    }
    return words;
}

bool ReadInterpreter(const char* jobOptions, std::string& interpreter, std::string& error) {
    std::optional<std::string> given = FindJobOption(jobOptions, "svg-interpreter");
    if (!given) return true;
    std::transform(given->begin(), given->end(), given->begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    if (*given != "SVG" && *given != "SVG2") {
        error = "The option svg-interpreter takes svg or svg2";
        return false;
    }
    interpreter = *given;
    return true;
}

}  // namespace

bool ReadFilterSettings(const char* jobOptions, FilterSettings& settings, std::string& error) {
    settings.limits = SplitList(Variable("ORVPRINT_CUPS_LIMITS"));
    return ReadInterpreter(jobOptions, settings.interpreter, error) &&
           ReadVariable("ORVPRINT_CUPS_TIME_LIMIT", false, "a whole number of seconds", settings.seconds,
                        error) &&
           ReadVariable("ORVPRINT_CUPS_MEMORY_LIMIT", true, "a number of bytes, such as 500M or 2G",
                        settings.memory, error);
}
