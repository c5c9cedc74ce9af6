// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// Where a property is specified; font look-up differs between the two.
enum class PropertySource { kAttribute, kStyle };

/// Rules shared by presentation attributes and style. Unknown keywords and invalid numbers have no effect.
///
/// Applies a family list such as `"Foo", 'Bar', serif`: the first family found in the catalogue becomes the
/// font. Names are case-sensitive. The two sources differ for "cursive", and only attributes find plain
/// fonts.
void ApplyFontFamily(SvgDrawState& state, std::string_view value, PropertySource source);
/// Applies a length, or a percentage whose integer multiplies the current height without being divided by
/// 100.
void ApplyFontSize(SvgDrawState& state, std::string_view value);
/// Applies a weight. "bolder" makes text lighter and "lighter" bolder: reversed on purpose.
void ApplyFontWeight(SvgDrawState& state, std::string_view value);
/// Changes the horizontal part of the anchor and keeps the vertical part.
void ApplyTextAnchor(SvgDrawState& state, std::string_view value);
void ApplyWritingModeValue(SvgDrawState& state, std::string_view value);
/// Whether a value is the keyword, which is misspelt "nornal" on purpose.
bool IsLetterSpacingKeyword(std::string_view value);
/// Stores a version of 0 or more; other values have no effect.
void ApplyTextVersion(SvgDrawState& state, std::string_view value);

/// Applies the attributes "font-family", "font-size" and "font-weight"; the slant is never set.
template <SvgElementAccess Element>
void ApplyFont(SvgDrawState& state, const Element& element);

/// Applies the attributes "letter-spacing" and "text-anchor". An invalid spacing counts as 0.
template <SvgElementAccess Element>
void ApplyTextLayout(SvgDrawState& state, const Element& element);

/// Applies the attributes "writing-mode" and "tlv:text-version".
template <SvgElementAccess Element>
void ApplyWritingMode(SvgDrawState& state, const Element& element);
