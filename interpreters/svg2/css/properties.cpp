// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/properties.h"

#include <algorithm>
#include <array>

#include "interpreters/svg2/css/property_rows.h"
#include "platform/print/ORVPrintPreferences.h"

namespace svg2 {
namespace {

using Text = std::string_view;
using Context = PropertyContext;

constexpr std::size_t kPropertyCount = static_cast<std::size_t>(kLastProperty) + 1;

/// Rows indexed by name; null for properties that are read elsewhere or not supported.
const PropertyRow* RowOf(Name name) {
    static const auto kByName = [] {
        std::array<const PropertyRow*, kPropertyCount> rows{};
        for (const auto& group : {PaintProperties(), EffectProperties(), TextProperties()})
            for (const PropertyRow& row : group) rows[static_cast<std::size_t>(row.name)] = &row;
        return rows;
    }();
    return IsProperty(name) ? kByName[static_cast<std::size_t>(name)] : nullptr;
}

/// Applies the CSS-wide keywords.
/// @return false if the value is none of them
bool SetByGeneralKeyword(const PropertyRow& row, Text value, const Context& context, Style& style) {
    static const Style kInitial;
    const auto copyInitial = [&] {
        row.copy(kInitial, style);
        if (DecidesFontSize(row.name)) style.fontSize = ORVPrintPreferences::Get().fontSize;
    };
    if (Is(value, "inherit"))
        row.copy(context.parent, style);
    else if (Is(value, "initial"))
        copyInitial();
    else if (Is(value, "unset") || Is(value, "revert") || Is(value, "revert-layer"))
        row.isInherited ? row.copy(context.parent, style) : copyInitial();
    else
        return false;
    return true;
}

bool MayBeGeneralKeyword(Text value) {
    const char first = value.empty() ? '\0' : ToLower(value.front());
    return first == 'i' || first == 'u' || first == 'r';
}

}  // namespace

bool ReadOpacity(Text text, double& opacity) {
    Scanner scanner(text);
    double value = 0.0;
    if (!scanner.TakeNumber(value)) return false;
    if (scanner.Take('%')) value /= 100.0;
    if (!scanner.AtEnd()) return false;
    opacity = std::clamp(value, 0.0, 1.0);
    return true;
}

bool ReadColourValue(Text text, ColourValue& value) {
    if (Is(text, "currentcolor")) {
        value = {{}, true};
        return true;
    }
    Colour colour;
    if (!ReadColour(text, colour)) return false;
    value = {colour, false};
    return true;
}

bool ReadEvenOdd(Text text, bool& isEvenOdd) {
    constexpr Keyword<bool> kRules[] = {{"nonzero", false}, {"evenodd", true}};
    return ReadKeyword(kRules, text, isEvenOdd);
}

bool ReadInterpolation(Text text, bool& isLinear, bool byDefault) {
    const Keyword<bool> values[] = {{"srgb", false}, {"linearrgb", true}, {"auto", byDefault}};
    return ReadKeyword(values, text, isLinear);
}

bool SetProperty(Name name, Text value, const Context& context, Style& style) {
    const PropertyRow* row = RowOf(name);
    if (!row) return false;
    value = Trim(value);
    if (MayBeGeneralKeyword(value) && SetByGeneralKeyword(*row, value, context, style)) return true;
    return row->read(value, context, style);
}

void CopyProperty(Name name, const Style& from, Style& to) {
    if (const PropertyRow* row = RowOf(name)) row->copy(from, to);
}

bool IsInherited(Name name) {
    const PropertyRow* row = RowOf(name);
    return row && row->isInherited;
}

bool DecidesFontSize(Name name) { return name == Name::kFont || name == Name::kFontSize; }

bool TakeReference(Text text, Text& id, Text& rest) {
    if (!EqualsIgnoringCase(text.substr(0, 4), "url(")) return false;
    Scanner scanner(text);
    scanner.Advance(3);
    Text inside;
    if (!scanner.TakeParenthesesOrRest(inside)) return false;
    inside = Trim(inside);
    Scanner quoted(inside);
    Text unquoted;
    if (quoted.TakeString(unquoted)) inside = Trim(unquoted);
    id = inside.starts_with('#') ? inside.substr(1) : Text();
    rest = scanner.Rest();
    return true;
}

}  // namespace svg2
