// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/serve/percent_codes.h"

#include <charconv>

std::string EncodePercent(std::string_view text, bool (*isPlain)(char c)) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        if (c != '%' && isPlain(c)) {
            encoded += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        encoded.append({'%', kDigits[byte >> 4U], kDigits[byte & 15U]});
    }
    return encoded;
}

std::string DecodePercent(std::string_view text) {
    std::string decoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        unsigned int byte = 0;
        const char* const digits = text.data() + i + 1;
        const bool isCode = text[i] == '%' && i + 2 < text.size() &&
                            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2;
        decoded += isCode ? static_cast<char>(byte) : text[i];
        if (isCode) i += 2;
    }
    return decoded;
}
