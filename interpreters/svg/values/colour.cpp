// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/values/colour.h"

#include <array>
#include <cstdint>
#include <new>
#include <string>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/values/colour_keywords.h"
#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtPrimitiveBudget.h"
#include "platform/system/number_conversion.h"

namespace {

constexpr int kNoColour = -1;

std::uint8_t LowByte(unsigned int value) { return static_cast<std::uint8_t>(value & 0xFFU); }

constexpr std::array<std::int8_t, 256> kHexDigits = [] {
    std::array<std::int8_t, 256> digits{};
    digits.fill(-1);
    for (int i = 0; i < 16; ++i) {
        digits[static_cast<unsigned char>("0123456789abcdef"[i])] = static_cast<std::int8_t>(i);
        digits[static_cast<unsigned char>("0123456789ABCDEF"[i])] = static_cast<std::int8_t>(i);
    }
    return digits;
}();

int HexDigit(char c) { return kHexDigits[static_cast<unsigned char>(c)]; }

// Parses three or six hexadecimal digits.
bool ReadHexadecimal(std::string_view digits, RgbColour& colour) {
    if (digits.size() != 3 && digits.size() != 6) return false;
    const bool isShort = digits.size() == 3;
    std::uint8_t components[3] = {};
    for (std::size_t i = 0; i < 3; ++i) {
        const int high = HexDigit(digits[isShort ? i : 2 * i]);
        const int low = HexDigit(digits[isShort ? i : 2 * i + 1]);
        if (high < 0 || low < 0) return false;
        components[i] = static_cast<std::uint8_t>(high * 16 + low);
    }
    colour = {components[0], components[1], components[2]};
    return true;
}

// Parses three percentages. Any one character after each of the first two "%" is skipped; no ")" is required.
bool ReadPercentages(std::string_view text, RgbColour& colour) {
    std::uint8_t components[3] = {};
    for (std::uint8_t& component : components) {
        const std::size_t percent = text.find('%');
        unsigned int number = 0;
        if (percent == text.npos || ORVConvertToUnsigned(text.substr(0, percent), number) != kRead)
            return false;
        component = LowByte(number * 255U / 100U);
        text.remove_prefix(percent + 1);
        if (!text.empty()) {  // one character, which may be several bytes
            std::size_t next = 1;
            while (next < text.size() && (static_cast<unsigned char>(text[next]) & 0xC0U) == 0x80U) ++next;
            text.remove_prefix(next);
        }
    }
    colour = {components[0], components[1], components[2]};
    return true;
}

bool ReadIntegers(std::string_view text, RgbColour& colour) {
    std::uint8_t components[3] = {};
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t end = text.find(i < 2 ? ',' : ')');
        unsigned int number = 0;
        if (end == text.npos || ORVConvertToUnsigned(text.substr(0, end), number) != kRead) return false;
        components[i] = LowByte(number);
        text.remove_prefix(end + 1);
    }
    colour = {components[0], components[1], components[2]};
    return true;
}

// @param value  without blanks
bool ReadColour(std::string_view value, RgbColour& colour) {
    if (value.starts_with('#')) return ReadHexadecimal(value.substr(1), colour);

    if (value.starts_with("rgb")) value.remove_prefix(3);
    if (!value.starts_with('(')) return FindColourKeyword(value, colour);  // "rgbred" is "red", too
    value.remove_prefix(1);
    const std::size_t percent = value.find('%');
    if (percent != value.npos && percent > 0) return ReadPercentages(value, colour);
    return ReadIntegers(value, colour);
}

}  // namespace

void EnsureColourTable(ORVPrtImageElt& page) {
    if (page.GetColourTable()) return;
    const ORVRef<ORVPrtColourTable> table(new (std::nothrow) ORVPrtColourTable);
    if (!table) {
        if (ORVPrtPrimitiveBudget* const budget = page.GetBudget()) budget->NoteOutOfMemory();
        return;
    }
    unsigned int black = 0;
    table->AddColour(0, 0, 0, black);
    page.SetColourTable(table.get());
}

int ParseColour(const SvgDrawState& state, std::string_view value, unsigned int& index) {
    if (value.empty() || !state.page) return kNoColour;
    EnsureColourTable(*state.page);
    ORVPrtColourTable* table = state.page->GetColourTable();
    if (!table) return kNoColour;

    RgbColour colour;
    bool read = value.front() == '#' && ReadHexadecimal(value.substr(1), colour);  // the most common form
    if (!read && value.find(' ') == value.npos) {
        read = ReadColour(value, colour);
    } else if (!read) {
        std::string packed(value);
        std::erase(packed, ' ');
        read = ReadColour(packed, colour);
    }
    if (!read) return kNoColour;
    index = table->FindOrAddColour({colour.red, colour.green, colour.blue});
    return kRead;
}

bool HasManyColours(const SvgDrawState& state) {
    const ORVPrtColourTable* const table = state.page ? state.page->GetColourTable() : nullptr;
    return table && table->IsLarge();
}

void PrefetchColour(const SvgDrawState& state, std::string_view value) {
    const ORVPrtColourTable* const table = state.page->GetColourTable();
    RgbColour colour;
    if (value.starts_with('#') && ReadHexadecimal(value.substr(1), colour))
        table->Prefetch({colour.red, colour.green, colour.blue});
}
