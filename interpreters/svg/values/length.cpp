// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/values/length.h"

#include <array>
#include <cmath>
#include <string>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/system/number_conversion.h"
#include "platform/system/short_number.h"

namespace {

struct LengthUnit {
    std::string_view text;
    double (*toUserUnits)(double number, const SvgDrawState& state);
};

double MeanDiagonal(const SvgDrawState& state) {
    const double w = state.pageWidth, h = state.pageHeight;
    return std::sqrt((w * w + h * h) * 0.5);
}

// The first unit found at any position decides, so the order of the rows matters. Rows hold formulas instead
// of factors, because constant folding would change the last bit.
constexpr std::array kLengthUnits{
    LengthUnit{"pt", [](double v, const SvgDrawState&) { return v / 72.0 * 25.4 * kUserUnitsPerMillimetre; }},
    LengthUnit{"pc", [](double v,
                        const SvgDrawState&) { return (v * 12.0) / 72.0 * 25.4 * kUserUnitsPerMillimetre; }},
    LengthUnit{"cm", [](double v, const SvgDrawState&) { return v * 10.0 * kUserUnitsPerMillimetre; }},
    LengthUnit{"mm", [](double v, const SvgDrawState&) { return v * kUserUnitsPerMillimetre; }},
    LengthUnit{"in", [](double v, const SvgDrawState&) { return v * 25.4 * kUserUnitsPerMillimetre; }},
    LengthUnit{"%", [](double v, const SvgDrawState& state) { return MeanDiagonal(state) * v / 100.0; }},
};

// Every unit contains one of these characters; most lengths contain none.
bool MayHoldUnit(std::string_view text) {
    for (const char c : text)
        if (c == '%' || c == 'p' || c == 'm' || c == 'n') return true;
    return false;
}

const LengthUnit* FindUnit(std::string_view text) {
    if (!MayHoldUnit(text)) return nullptr;
    for (const LengthUnit& unit : kLengthUnits)
        if (text.find(unit.text) != text.npos) return &unit;
    return nullptr;
}

bool MayContinueNumber(char c) {
    return (c >= '0' && c <= '9') || c == '.' || c == '+' || c == '-' || c == 'e' || c == 'E';
}

std::string Without(std::string_view removed, std::string_view text) {
    std::string rest;
    for (std::size_t found = text.find(removed); found != text.npos; found = text.find(removed)) {
        rest.append(text.substr(0, found));
        text.remove_prefix(found + removed.size());
    }
    return rest.append(text);
}

// Reads the number at the start of `text` after removing every occurrence of `unit`.
int ReadNumberWithout(std::string_view unit, std::string_view text, double& number) {
    const std::size_t found = text.find(unit);
    const std::string_view before = text.substr(0, found), after = text.substr(found + unit.size());
    const bool numberEndsBefore =
        before.find_first_not_of(" \t\n\v\f\r") != before.npos &&
        (after.empty() || (!MayContinueNumber(after[0]) && !after.starts_with(unit)));
    if (after.empty() || numberEndsBefore) return ORVConvertToDouble(before, number);
    return ORVConvertToDouble(Without(unit, text), number);  // "pt5", "1mm2": rare
}

// A length whose percentage refers to one side of the page.
int ParseSideLength(const SvgDrawState& state, std::string_view value, double side, double& out) {
    if (ORVReadWholeNumber(value, out)) return kRead;
    if (value.empty()) return kEmpty;
    if (value.find('%') == value.npos) return ParseLength(state, value, out);

    double number = 0.0;
    if (ReadNumberWithout("%", value, number) == kRead) {
        out = number * side / 100.0;
        return kRead;
    }
    return ParseLength(state, Without("%", value), out);
}

}  // namespace

int ParseLength(const SvgDrawState& state, std::string_view value, double& out) {
    if (ORVReadWholeNumber(value, out)) return kRead;  // the most common form
    if (value.empty()) return kEmpty;

    const LengthUnit* unit = FindUnit(value);
    double number = 0.0;
    const int status =
        unit ? ReadNumberWithout(unit->text, value, number) : ORVConvertToDouble(value, number);
    if (status != kRead) return status;
    out = unit ? unit->toUserUnits(number, state) : number;
    return kRead;
}

int ParseHorizontalLength(const SvgDrawState& state, std::string_view value, double& out) {
    return ParseSideLength(state, value, state.pageWidth, out);
}

int ParseVerticalLength(const SvgDrawState& state, std::string_view value, double& out) {
    return ParseSideLength(state, value, state.pageHeight, out);
}

int ParseVerticalCoordinate(const SvgDrawState& state, std::string_view value, double& out) {
    const int status = ParseVerticalLength(state, value, out);
    if (state.yFlip == 1) out = state.pageHeight - out;  // even if nothing was read, on purpose
    return status;
}
