// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/xml_characters.h"

#include <cstddef>

#include "platform/system/ORVUnicodeString.h"

namespace {

/// Properties of a range of bytes, accumulated in a form that the compiler can vectorise.
struct ByteSums {
    std::uint8_t all = 0;      // OR of all bytes
    std::uint8_t refused = 0;  // 1 if there is a control character that is not allowed in documents

    void Add(char c) {
        const auto byte = static_cast<std::uint8_t>(c);
        all |= byte;
        refused |=
            static_cast<std::uint8_t>((byte < 0x20) & (byte != '\t') & (byte != '\n') & (byte != '\r'));
    }
};

}  // namespace

bool AreXmlCharacters(std::string_view bytes) {
    constexpr std::size_t kStretch = 256;
    ByteSums sums;
    std::size_t i = 0;
    for (; i + kStretch <= bytes.size(); i += kStretch) {
        ByteSums own;  // a local copy, which can stay in registers
        for (std::size_t k = 0; k < kStretch; ++k) own.Add(bytes[i + k]);
        if (own.refused != 0) return false;
        sums.all |= own.all;
    }
    for (; i < bytes.size(); ++i) sums.Add(bytes[i]);
    if (sums.refused != 0) return false;
    if (sums.all < 0x80) return true;
    if (!ORVIsWellFormedUTF8(bytes)) return false;
    // U+FFFE and U+FFFF are valid UTF-8 but not allowed.
    return bytes.find("\xEF\xBF\xBE") == bytes.npos && bytes.find("\xEF\xBF\xBF") == bytes.npos;
}

void AppendUtf8(std::string& text, std::uint32_t character) {
    const auto put = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (character < 0x80) {
        put(character);
    } else if (character < 0x800) {
        put(0xC0U | character >> 6U);
        put(0x80U | (character & 0x3FU));
    } else if (character < 0x10000) {
        put(0xE0U | character >> 12U);
        put(0x80U | (character >> 6U & 0x3FU));
        put(0x80U | (character & 0x3FU));
    } else {
        put(0xF0U | character >> 18U);
        put(0x80U | (character >> 12U & 0x3FU));
        put(0x80U | (character >> 6U & 0x3FU));
        put(0x80U | (character & 0x3FU));
    }
}

bool IsXmlCharacter(std::uint32_t c) {
    if (c < 0x20) return c == '\t' || c == '\n' || c == '\r';
    return c < 0xD800 || (c > 0xDFFF && c != 0xFFFE && c != 0xFFFF && c <= 0x10FFFF);
}
