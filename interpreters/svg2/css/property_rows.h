// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>
#include <string_view>

#include "interpreters/svg2/css/properties.h"
#include "interpreters/svg2/css/selectors.h"
#include "interpreters/svg2/values/scanner.h"

// Building blocks for the tables of properties; for the sources of properties only.

namespace svg2 {

/// A property: how it is parsed and how it is copied.
struct PropertyRow {
    Name name;
    bool isInherited;
    bool (*read)(std::string_view text, const PropertyContext& context, Style& style);
    void (*copy)(const Style& from, Style& to);
};

/// Colours, fills, strokes and markers.
std::span<const PropertyRow> PaintProperties();
/// Effects on whole elements: visibility, clips, masks, filters, opacity.
std::span<const PropertyRow> EffectProperties();
/// Fonts and text.
std::span<const PropertyRow> TextProperties();

template <class Value>
struct Keyword {
    std::string_view text;
    Value value;
};

/// Finds a keyword in a table, ignoring case.
/// @return false if it is not there
template <class Value, std::size_t kCount>
bool ReadKeyword(const Keyword<Value> (&rows)[kCount], std::string_view text, Value& value) {
    for (const Keyword<Value>& row : rows) {
        if (!EqualsIgnoringCase(text, row.text)) continue;
        value = row.value;
        return true;
    }
    return false;
}

inline bool Is(std::string_view text, std::string_view lower) { return EqualsIgnoringCase(text, lower); }

template <auto kMember>
void Copy(const Style& from, Style& to) {
    to.*kMember = from.*kMember;
}

/// A number or percentage, clamped to 0..1.
bool ReadOpacity(std::string_view text, double& opacity);
bool ReadColourValue(std::string_view text, ColourValue& value);
/// "nonzero" or "evenodd".
bool ReadEvenOdd(std::string_view text, bool& isEvenOdd);
/// The colour space for interpolation: sRGB or linear.
/// @param byDefault  the meaning of "auto"
bool ReadInterpolation(std::string_view text, bool& isLinear, bool byDefault);

/// "normal", "italic" or "oblique", optionally with an angle.
bool ReadFontStyle(std::string_view text, bool& isItalic);
/// A keyword or percentage.
bool ReadFontStretch(std::string_view text, double& percent);

// The reader of a row, with text t, context c and style s.
#define ORV_READ(expression) \
    [](std::string_view t, [[maybe_unused]] const PropertyContext& c, Style& s) -> bool { return expression; }

}  // namespace svg2
