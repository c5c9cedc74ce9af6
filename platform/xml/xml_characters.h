// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/// Character classes used by the XML parsers, as bits.
enum XmlCharacterClass : std::uint8_t {
    kXmlNameStart = 1,
    kXmlNameFurther = 2,
    kXmlSpace = 4,
    kXmlEndsText = 8,    // "<", "&", "]" and carriage return
    kXmlEndsValue = 16,  // quotes, "<", "&", and white space that is normalised to a space
    kXmlInPublicId = 32
};

constexpr std::array<std::uint8_t, 256> MakeXmlClasses() {
    std::array<std::uint8_t, 256> classes{};
    const auto add = [&classes](std::string_view characters, int bits) {
        for (const char c : characters) {
            auto& one = classes[static_cast<unsigned char>(c)];
            one = static_cast<std::uint8_t>(one | bits);
        }
    };
    add("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz",
        kXmlNameStart | kXmlNameFurther | kXmlInPublicId);
    add("_:", kXmlNameStart | kXmlNameFurther);
    add("0123456789-.", kXmlNameFurther | kXmlInPublicId);
    add(" \t\r\n", kXmlSpace);
    add("<&]\r", kXmlEndsText);
    add("\"'<&\t\r\n", kXmlEndsValue);
    add(" \r\n'()+,/:=?;!*#@$_%", kXmlInPublicId);
    return classes;
}

inline constexpr std::array<std::uint8_t, 256> kXmlClasses = MakeXmlClasses();

/// Whether a byte belongs to any of these classes. Bytes from 0x80 on belong to none.
inline bool IsXml(char c, int bits) { return (kXmlClasses[static_cast<unsigned char>(c)] & bits) != 0; }

// Scanning of eight bytes at once, the first in the lowest byte. Results mark bytes by their highest bits.
// The lowest mark is exact; higher ones may be false.
inline constexpr bool kReadsXmlWords = std::endian::native == std::endian::little;
inline constexpr std::uint64_t kXmlEveryByte = 0x0101010101010101U, kXmlHighBits = kXmlEveryByte * 0x80;

inline std::uint64_t LoadXmlWord(const char* bytes) {
    std::uint64_t word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}
inline std::uint64_t ZeroXmlBytes(std::uint64_t word) {
    return (word - kXmlEveryByte) & ~word & kXmlHighBits;
}
inline std::uint64_t ControlXmlBytes(std::uint64_t word) {
    return (word - kXmlEveryByte * 0x20) & ~word & kXmlHighBits;
}

/// True when the bytes are valid UTF-8 and all characters are allowed in XML documents.
bool AreXmlCharacters(std::string_view bytes);
/// Whether a character is allowed in XML documents, also as a character reference.
bool IsXmlCharacter(std::uint32_t c);
/// Appends a character in UTF-8.
void AppendUtf8(std::string& text, std::uint32_t character);
