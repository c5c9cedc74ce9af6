// SPDX-License-Identifier: Apache-2.0

// Base64: compares the decoder with a plain transcription.

#include <cstdint>
#include <string>

#include "fuzz/support/FuzzTarget.h"
#include "interpreters/svg/geometry/base64.h"
#include "tests/support/sample_images.h"

namespace {

// Drops white space, then decodes groups of four characters into 24 bits.
bool DecodePlainly(const std::string& text, std::string& bytes) {
    static const std::string kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string solid;
    for (const char c : text)
        if (c != ' ' && c != '\t' && c != '\r' && c != '\n') solid += c;
    for (std::size_t group = 0; group + 4 <= solid.size(); group += 4) {
        std::uint32_t bits = 0;
        std::size_t count = 0;
        for (; count < 4; ++count) {
            const char c = solid[group + count];
            if (c == '=' && count < 3) break;
            const std::size_t digit = c == '=' ? 0 : kAlphabet.find(c);
            if (digit == std::string::npos) return false;
            bits += static_cast<std::uint32_t>(digit) << (18 - 6 * count);
        }
        // Two characters hold a whole byte; one does not.
        const std::size_t whole = count == 4 ? 3 : count == 2 ? 1 : 0;
        for (std::size_t i = 0; i < whole; ++i) bytes += static_cast<char>(bits >> (16 - 8 * i) & 0xFFU);
        if (count < 4) return true;
    }
    return true;
}

const FuzzTarget kTarget("base64", [](std::string_view text) {
    std::string actual, expected;
    Require(DecodeBase64(text, actual) == DecodePlainly(std::string(text), expected));
    Require(actual == expected);

    // Decoding encoded text restores it, possibly with a zero byte appended.
    std::string back;
    Require(DecodeBase64(ToBase64(text), back));
    Require(back.starts_with(text) && back.size() <= text.size() + 1);
});

}  // namespace
