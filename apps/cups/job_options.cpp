// SPDX-License-Identifier: Apache-2.0
#include "apps/cups/job_options.h"

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace {

bool IsSpace(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

/// Removes the first word of the text: up to a space that is neither quoted nor in braces.
std::string TakeWord(std::string_view& text) {
    std::string word;
    char quote = 0;
    int depth = 0;
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        const char c = text[at];
        if (c == '\\' && at + 1 < text.size()) {
            word += text[++at];
        } else if (quote != 0) {
            if (c == quote)
                quote = 0;
            else
                word += c;
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (IsSpace(c) && depth <= 0) {
            break;
        } else {
            depth += c == '{' ? 1 : c == '}' ? -1 : 0;
            word += c;
        }
    }
    text.remove_prefix(at);
    return word;
}

}  // namespace

std::optional<std::string> FindJobOption(std::string_view options, std::string_view name) {
    std::optional<std::string> value;
    while (!options.empty()) {
        if (IsSpace(options.front())) {
            options.remove_prefix(1);
            continue;
        }
        // Only values are quoted, so the first "=" ends the name.
        const std::string word = TakeWord(options);
        const std::size_t sign = std::min(word.find('='), word.size());
        if (word.substr(0, sign) == name) value = word.substr(std::min(sign + 1, word.size()));
    }
    return value;
}
