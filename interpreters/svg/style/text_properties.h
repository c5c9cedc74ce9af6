// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// Where a property comes from; fonts are looked up differently for the two.
enum class PropertySource { kAttribute, kStyle };

/// Value rules that presentation attributes and style share. Unknown keywords and unreadable numbers change
/// nothing.
///
/// A family list such as `"Foo", 'Bar', serif`: the first family that the catalogue has becomes the font.
/// Names match exactly. The two sources differ in "cursive", and only attributes find plain fonts.
void ApplyFontFamily(SvgDrawState& state, std::string_view value, PropertySource source);
/// A length, or a percentage whose integer multiplies the current height without being divided by 100.
void ApplyFontSize(SvgDrawState& state, std::string_view value);
/// "bolder" steps towards light and "lighter" towards heavy: reversed on purpose.
void ApplyFontWeight(SvgDrawState& state, std::string_view value);
/// Changes the horizontal part of the anchor and keeps the vertical one.
void ApplyTextAnchor(SvgDrawState& state, std::string_view value);
void ApplyWritingModeValue(SvgDrawState& state, std::string_view value);
/// "nornal" is the keyword that is recognised: misspelt on purpose.
bool IsLetterSpacingKeyword(std::string_view value);
/// Stores a version of 0 or more; anything else changes nothing.
void ApplyTextVersion(SvgDrawState& state, std::string_view value);

/// Attributes "font-family", "font-size" and "font-weight"; the slant is never set.
template <SvgElementAccess Element>
void ApplyFont(SvgDrawState& state, const Element& element);

/// Attributes "letter-spacing" and "text-anchor". A spacing that cannot be read is 0.
template <SvgElementAccess Element>
void ApplyTextLayout(SvgDrawState& state, const Element& element);

/// Attributes "writing-mode" and "tlv:text-version".
template <SvgElementAccess Element>
void ApplyWritingMode(SvgDrawState& state, const Element& element);
