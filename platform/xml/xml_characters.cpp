// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/xml_characters.h"

#include <cstddef>

#include "platform/system/ORVUnicodeString.h"

bool AreXmlCharacters(std::string_view bytes) {
    const auto isPlain = [](char c) { return static_cast<unsigned char>(c) >= 0x20 || IsXml(c, kXmlSpace); };
    std::uint64_t seen = 0;
    std::size_t i = 0;
    for (; i + 8 <= bytes.size(); i += 8) {
        const std::uint64_t word = LoadXmlWord(bytes.data() + i);
        seen |= word;
        if (ControlXmlBytes(word) == 0) continue;
        for (std::size_t k = i; k < i + 8; ++k)
            if (!isPlain(bytes[k])) return false;
    }
    for (; i < bytes.size(); ++i) {
        seen |= static_cast<unsigned char>(bytes[i]);
        if (!isPlain(bytes[i])) return false;
    }
    if ((seen & kXmlHighBits) == 0) return true;
    if (!ORVIsWellFormedUTF8(bytes)) return false;
    // U+FFFE and U+FFFF are UTF-8, but no characters.
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
