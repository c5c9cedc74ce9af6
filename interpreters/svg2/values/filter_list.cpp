// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/values/filter_list.h"

#include <algorithm>
#include <cmath>

#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

using Kind = FilterFunction::Kind;

/// The type of a function's arguments.
enum class Argument : std::uint8_t { kDeviation, kShare, kFactor, kAngle, kShadow };

struct FunctionRow {
    std::string_view name;
    Kind kind;
    Argument argument;
    double byDefault;
};

constexpr FunctionRow kFunctions[] = {
    {"blur", Kind::kBlur, Argument::kDeviation, 0.0},
    {"brightness", Kind::kBrightness, Argument::kFactor, 1.0},
    {"contrast", Kind::kContrast, Argument::kFactor, 1.0},
    {"drop-shadow", Kind::kDropShadow, Argument::kShadow, 0.0},
    {"grayscale", Kind::kGrayscale, Argument::kShare, 1.0},
    {"hue-rotate", Kind::kHueRotate, Argument::kAngle, 0.0},
    {"invert", Kind::kInvert, Argument::kShare, 1.0},
    {"opacity", Kind::kOpacity, Argument::kShare, 1.0},
    {"saturate", Kind::kSaturate, Argument::kFactor, 1.0},
    {"sepia", Kind::kSepia, Argument::kShare, 1.0},
};

/// Reads a non-negative number or percentage.
bool TakeAmount(Scanner& scanner, double& amount) {
    if (!scanner.TakeNumber(amount)) return false;
    if (scanner.Take('%')) amount /= 100.0;
    return amount >= 0.0;
}

/// Reads a length that is not a percentage.
bool TakePixels(Scanner& scanner, const UnitSizes& sizes, double& px) {
    Length length;
    if (!TakeLength(scanner, sizes, length) || length.IsPercentage()) return false;
    px = length.px;
    return true;
}

/// Reads a colour; empty for the current colour.
bool TakeShadowColour(Scanner& scanner, std::optional<Colour>& colour) {
    const std::size_t start = scanner.GetPosition();
    if (EqualsIgnoringCase(scanner.TakeName(), "currentcolor")) {
        colour.reset();
        return true;
    }
    scanner.SetPosition(start);
    Colour read;
    if (!TakeColour(scanner, read)) return false;
    colour = read;
    return true;
}

/// Reads "[colour] dx dy [deviation] [colour]", with at most one colour.
bool TakeShadow(Scanner& scanner, const UnitSizes& sizes, FilterFunction& function) {
    const bool colourIsFirst = TakeShadowColour(scanner, function.colour);
    scanner.SkipSpace();
    if (!TakePixels(scanner, sizes, function.dx)) return false;
    scanner.SkipSpace();
    if (!TakePixels(scanner, sizes, function.dy)) return false;
    scanner.SkipSpace();
    if (TakePixels(scanner, sizes, function.deviation)) scanner.SkipSpace();
    if (!colourIsFirst && !scanner.AtEnd() && !TakeShadowColour(scanner, function.colour)) return false;
    return function.deviation >= 0.0;
}

/// Reads an angle; only 0 may omit the unit.
bool TakeTurn(Scanner& scanner, double& degrees) {
    Scanner number = scanner;
    double value = 0.0;
    const bool hasUnit = number.TakeNumber(value) && !number.TakeName().empty();
    return TakeAngle(scanner, degrees) && (hasUnit || value == 0.0);
}

bool TakeArgument(Scanner& scanner, Argument argument, const UnitSizes& sizes, FilterFunction& function) {
    switch (argument) {
        case Argument::kDeviation:
            return TakePixels(scanner, sizes, function.deviation) && function.deviation >= 0.0;
        case Argument::kFactor: return TakeAmount(scanner, function.amount);
        case Argument::kShare:
            if (!TakeAmount(scanner, function.amount)) return false;
            function.amount = std::min(function.amount, 1.0);
            return true;
        case Argument::kAngle: return TakeTurn(scanner, function.amount);
        case Argument::kShadow: return TakeShadow(scanner, sizes, function);
    }
    return false;
}

bool ReadFunction(std::string_view name, std::string_view inside, const UnitSizes& sizes,
                  FilterFunction& function) {
    const auto* const row =
        std::find_if(std::begin(kFunctions), std::end(kFunctions),
                     [&](const FunctionRow& candidate) { return EqualsIgnoringCase(name, candidate.name); });
    if (row == std::end(kFunctions)) return false;
    function.kind = row->kind;
    function.amount = row->byDefault;
    Scanner scanner(Trim(inside));
    if (scanner.AtEnd()) return row->argument != Argument::kShadow;
    if (!TakeArgument(scanner, row->argument, sizes, function)) return false;
    scanner.SkipSpace();
    return scanner.AtEnd();
}

/// The identifier in the content of "url(...)".
std::string_view ReferenceIn(std::string_view inside) {
    inside = Trim(inside);
    Scanner quoted(inside);
    std::string_view unquoted;
    if (quoted.TakeString(unquoted)) inside = Trim(unquoted);
    return inside.starts_with('#') ? inside.substr(1) : std::string_view();
}

}  // namespace

bool ReadFilterList(std::string_view text, const UnitSizes& sizes, std::vector<FilterFunction>& list) {
    list.clear();
    text = Trim(text);
    if (EqualsIgnoringCase(text, "none")) return true;
    Scanner scanner(text);
    while (!scanner.AtEnd()) {
        const std::string_view name = scanner.TakeName();
        std::string_view inside;
        if (name.empty() || !scanner.TakeParentheses(inside)) return false;
        FilterFunction function;
        if (EqualsIgnoringCase(name, "url"))
            function.reference = ReferenceIn(inside);
        else if (!ReadFunction(name, inside, sizes, function))
            return false;
        list.push_back(function);
        scanner.SkipSpace();
    }
    return !list.empty();
}

}  // namespace svg2
