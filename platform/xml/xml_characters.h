// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

/// What a byte is good for where documents are scanned, as bits.
enum XmlCharacterClass : std::uint8_t {
    kXmlNameStart = 1,
    kXmlNameFurther = 2,
    kXmlSpace = 4,
    kXmlEndsText = 8,    // "<", "&", "]" and carriage returns
    kXmlEndsValue = 16,  // quotes, "<", "&" and white space that becomes a space
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

/// Whether a byte is of any of these classes. Bytes of 0x80 and more are of none.
inline bool IsXml(char c, int bits) { return (kXmlClasses[static_cast<unsigned char>(c)] & bits) != 0; }

// Eight bytes at a time, the first one lowest. The marks are the highest bits of bytes; the lowest of them is
// where it should be, those above it may be wrong.
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

/// True when the bytes are UTF-8 of characters that documents may hold.
bool AreXmlCharacters(std::string_view bytes);
/// Whether a document may hold a character, as by a reference to its number.
bool IsXmlCharacter(std::uint32_t c);
/// Appends a character as UTF-8.
void AppendUtf8(std::string& text, std::uint32_t character);
