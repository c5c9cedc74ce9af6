// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/base64.h"

#include <array>
#include <cstdint>

namespace {

constexpr std::uint8_t kInvalid = 0xFF, kPad = 0xFE, kSkip = 0xFD;

constexpr std::array<std::uint8_t, 256> kSextets = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(kInvalid);
    std::uint8_t value = 0;
    for (const char c : std::string_view("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"))
        table[static_cast<unsigned char>(c)] = value++;
    table['='] = kPad;
    for (const char c : std::string_view("\n\r\t ")) table[static_cast<unsigned char>(c)] = kSkip;
    return table;
}();

// Appends the bytes of a complete group of four sextets.
// @return false if the data end with it
bool AppendGroup(const std::array<std::uint8_t, 4>& group, std::string& bytes, bool& valid) {
    std::uint32_t bits = 0;
    for (std::size_t place = 0; place < 4; ++place) {
        if (group[place] == kInvalid) return valid = false;
        if (group[place] != kPad) {
            bits |= static_cast<std::uint32_t>(group[place]) << (18 - 6 * place);
        } else if (place < 3) {
            if (place == 2) bytes += static_cast<char>(bits >> 16U & 0xFFU);
            return false;
        }
    }
    bytes += static_cast<char>(bits >> 16U & 0xFFU);
    bytes += static_cast<char>(bits >> 8U & 0xFFU);
    bytes += static_cast<char>(bits & 0xFFU);
    return true;
}

}  // namespace

bool DecodeBase64(std::string_view text, std::string& bytes) {
    bytes.clear();
    bytes.reserve(text.size() / 4 * 3);
    std::array<std::uint8_t, 4> group{};
    std::size_t filled = 0;
    bool valid = true;
    for (const char c : text) {
        const std::uint8_t sextet = kSextets[static_cast<unsigned char>(c)];
        if (sextet == kSkip) continue;
        group[filled++] = sextet;
        if (filled < 4) continue;
        filled = 0;
        if (!AppendGroup(group, bytes, valid)) return valid;
    }
    return valid;
}
