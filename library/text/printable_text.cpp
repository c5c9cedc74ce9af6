// SPDX-License-Identifier: Apache-2.0
#include "library/text/printable_text.h"

#include <algorithm>
#include <cstring>

#include "platform/system/ORVUnicodeString.h"

namespace {

struct Range {
    char32_t first, last;
};

constexpr std::array kNotPrintable{
    Range{0x00, 0x1F},        // controls: escape sequences, line breaks
    Range{0x7F, 0x9F},        // delete and the C1 controls, which start escape sequences in one byte
    Range{0x061C, 0x061C},    // directional mark
    Range{0x200E, 0x200F},    // directional marks
    Range{0x2028, 0x202E},    // line and paragraph separators, directional embeddings and overrides
    Range{0x2066, 0x2069},    // directional isolates
    Range{0xFEFF, 0xFEFF},    // byte order mark, invisible
    Range{0xFFF9, 0xFFFB},    // annotations
    Range{0xE0000, 0xE007F},  // tags, invisible
};

/// Printable ASCII, which nearly all texts consist of.
bool IsPlainByte(char c) { return c >= 0x20 && c < 0x7F; }

constexpr char kDigits[] = "0123456789abcdef";

/// Formats "\x1b", "\u202e" or "\U000e0041": a letter and a fixed number of digits.
std::string_view Escape(char letter, unsigned int digits, char32_t number, std::array<char, 12>& room) {
    room[0] = '\\';
    room[1] = letter;
    for (unsigned int i = 0; i < digits; ++i) room[2 + i] = kDigits[(number >> (4 * (digits - 1 - i))) & 15U];
    return {room.data(), 2 + digits};
}

std::string_view EscapeCharacter(char32_t character, std::array<char, 12>& room) {
    switch (character) {
        case '\n': return "\\n";
        case '\r': return "\\r";
        case '\t': return "\\t";
        default: break;
    }
    if (character < 0x80) return Escape('x', 2, character, room);
    return character < 0x10000 ? Escape('u', 4, character, room) : Escape('U', 8, character, room);
}

}  // namespace

bool FirstCharacter(std::string_view text, char32_t& character, std::size_t& length) {
    const auto lead = static_cast<unsigned char>(text.front());
    length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    character = lead;
    if (length == 1) return true;
    if (length > text.size() || !ORVIsWellFormedUTF8(text.substr(0, length))) {
        length = 1;
        return false;
    }
    character = lead & (0x7FU >> length);
    for (std::size_t i = 1; i < length; ++i)
        character = character << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    return true;
}

bool IsPrintable(char32_t character) {
    return std::none_of(kNotPrintable.begin(), kNotPrintable.end(), [character](const Range& range) {
        return character >= range.first && character <= range.last;
    });
}

bool PrintablePieces::Next(std::string_view& piece) {
    if (rest_.empty()) return false;
    std::size_t plain = 0;
    while (plain < rest_.size()) {
        if (IsPlainByte(rest_[plain])) {
            ++plain;
            continue;
        }
        char32_t character = 0;
        std::size_t length = 0;
        const bool isCharacter = FirstCharacter(rest_.substr(plain), character, length);
        if (isCharacter && IsPrintable(character)) {
            plain += length;
            continue;
        }
        if (plain > 0) break;  // the escape comes as the next piece
        piece = isCharacter ? EscapeCharacter(character, escape_) : Escape('x', 2, character, escape_);
        rest_.remove_prefix(length);
        return true;
    }
    piece = rest_.substr(0, plain);
    rest_.remove_prefix(plain);
    return true;
}

TextLine& TextLine::Put(std::string_view text) {
    PrintablePieces pieces(text);
    for (std::string_view piece; pieces.Next(piece);) PutBytes(piece);
    return *this;
}

TextLine& TextLine::End() {
    PutBytes("\n");
    return *this;
}

void TextLine::PutBytes(std::string_view bytes) {
    while (!bytes.empty()) {
        if (size_ == bytes_.size()) Flush();
        const std::size_t count = std::min(bytes.size(), bytes_.size() - size_);
        std::memcpy(bytes_.data() + size_, bytes.data(), count);
        size_ += count;
        bytes.remove_prefix(count);
    }
}

void TextLine::Flush() {
    std::fwrite(bytes_.data(), 1, size_, file_);
    size_ = 0;
}
