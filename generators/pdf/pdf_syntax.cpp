// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_syntax.h"

#include <algorithm>

#include "generators/common/number_text.h"
#include "platform/system/ORVUnicodeString.h"

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

/// Removes and returns the first character of `text`; U+FFFD for an invalid byte.
char32_t TakeCharacter(std::string_view& text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length > text.size() || !ORVIsWellFormedUTF8(text.substr(0, length))) {
        text.remove_prefix(1);
        return 0xFFFD;
    }
    char32_t character = length == 1 ? lead : lead & (0xFFU >> (length + 1));
    for (std::size_t i = 1; i < length; ++i)
        character = character << 6U | (static_cast<unsigned char>(text[i]) & 0x3FU);
    text.remove_prefix(length);
    return character;
}

}  // namespace

void AppendPdfMap(std::string& text, const ORVMathAffine2D& map) {
    for (const double factor : {map.m11, map.m21, map.m12, map.m22, map.dx, map.dy}) {
        AppendSignificant(text, factor, kPdfFactorDigits);
        text += ' ';
    }
}

void AppendHexUtf16(std::string& text, std::string_view utf8) {
    const auto unit = [&text](unsigned int value) {
        for (int shift = 12; shift >= 0; shift -= 4)
            text += kHexDigits[value >> static_cast<unsigned>(shift) & 15U];
    };
    while (!utf8.empty()) {
        const char32_t character = TakeCharacter(utf8);
        if (character < 0x10000) {
            unit(character);
        } else {
            unit(0xD800U + ((character - 0x10000U) >> 10U));
            unit(0xDC00U + ((character - 0x10000U) & 0x3FFU));
        }
    }
}

void AppendPdfText(std::string& text, std::string_view utf8) {
    const bool isPlain = std::all_of(utf8.begin(), utf8.end(), [](char c) { return c >= ' ' && c <= '~'; });
    if (isPlain) return AppendPdfBytes(text, utf8);
    text += "<FEFF";
    AppendHexUtf16(text, utf8);
    text += '>';
}

void AppendPdfBytes(std::string& text, std::string_view bytes) {
    text += '(';
    for (const char c : bytes) {
        if (c == '(' || c == ')' || c == '\\') text += '\\';
        if (c == '\r')
            text += "\\r";  // an unescaped carriage return would be read as a line feed
        else
            text += c;
    }
    text += ')';
}

void AppendPdfReference(std::string& text, unsigned int object) {
    text += std::to_string(object);
    text += " 0 R";
}

std::string PdfReference(unsigned int object) {
    std::string text;
    AppendPdfReference(text, object);
    return text;
}
