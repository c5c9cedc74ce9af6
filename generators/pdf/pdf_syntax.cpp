#include "generators/pdf/pdf_syntax.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

#include "platform/system/ORVUnicodeString.h"

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr std::array<double, 7> kPowersOfTen{1.0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6};

/// Takes the character at the start of `text` off; U+FFFD for a byte that begins none.
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

void AppendPdfNumber(std::string& text, double number, int places) {
    // Drawings stay far within this; what does not is cut off before.
    if (!(std::fabs(number) < 1e12)) number = 0.0;
    const double magnitude = std::fabs(number) * kPowersOfTen[static_cast<std::size_t>(places)];
    auto scaled = static_cast<std::uint64_t>(magnitude + 0.5);

    // Digits from the last to the first; noughts at the end of the fraction go unwritten.
    std::array<char, 24> digits;
    char* const end = digits.data() + digits.size();
    char* start = end;
    int left = places;
    for (; left > 0 && scaled % 10 == 0; --left) scaled /= 10;
    if (left > 0) {
        for (; left > 0; --left, scaled /= 10) *--start = static_cast<char>('0' + scaled % 10);
        *--start = '.';
    } else if (scaled == 0) {
        *--start = '0';
        number = 0.0;
    }
    for (; scaled != 0; scaled /= 10) *--start = static_cast<char>('0' + scaled % 10);
    if (number < 0.0) *--start = '-';
    text.append(start, end);
}

void AppendPdfFactor(std::string& text, double number) {
    // The format knows no exponents.
    if (number == 0.0 || !std::isfinite(number)) {
        text += '0';
        return;
    }
    if (number == 1.0 || number == -1.0) {
        text += number < 0.0 ? "-1" : "1";
        return;
    }
    const int places = std::clamp(8 - static_cast<int>(std::floor(std::log10(std::fabs(number)))), 0, 40);
    std::array<char, 400> digits;
    char* start = digits.data();
    char* end =
        std::to_chars(digits.data(), digits.data() + digits.size(), number, std::chars_format::fixed, places)
            .ptr;
    if (places > 0) {
        while (end[-1] == '0') --end;
        if (end[-1] == '.') --end;
    }
    // The nought before the point can go.
    const bool isNegative = *start == '-';
    if (end - start > 2 && start[isNegative ? 1 : 0] == '0' && start[isNegative ? 2 : 1] == '.') {
        ++start;
        if (isNegative) *start = '-';
    }
    text.append(start, end);
}

void AppendPdfMap(std::string& text, const ORVMathAffine2D& map) {
    for (const double factor : {map.m11, map.m21, map.m12, map.m22, map.dx, map.dy}) {
        AppendPdfFactor(text, factor);
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
            text += "\\r";  // a bare one would be read as a line feed
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
