// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// Whether an element leaves a paint as inherited, removes it, or sets it.
enum class PaintMention { kNone = -1, kOff = 0, kOn = 1 };

/// The paints set or removed by one step (presentation attributes or style).
struct PaintMentions {
    PaintMention stroke = PaintMention::kNone;
    PaintMention fill = PaintMention::kNone;
};

/// Applies the value of "fill": "none", "currentColor", "url(#id)" of a pattern with bitmaps, or a colour. An
/// invalid colour counts as set but leaves the colour unchanged; an empty value has no effect.
PaintMention ApplyFillPaint(SvgDrawState& state, std::string_view value);

/// Applies the value of "stroke" like ApplyFillPaint, except that any "url" leaves the colour unchanged:
/// strokes have no patterns.
PaintMention ApplyStrokePaint(SvgDrawState& state, std::string_view value);

/// Rules shared by presentation attributes and style. Unknown keywords and invalid numbers have no effect.
void ApplyFillRule(SvgDrawState& state, std::string_view value);
void ApplyDashArray(SvgDrawState& state, std::string_view value);
void ApplyLineCap(SvgDrawState& state, std::string_view value);
void ApplyLineJoin(SvgDrawState& state, std::string_view value);
void ApplyStrokeWidth(SvgDrawState& state, std::string_view value);

/// Switches stroke and fill on or off in the draw style, stroke first.
void UpdateDrawStyle(SvgDrawState& state, const PaintMentions& mentions);

/// Reads an opacity into `factor` unless it is empty, "inherit" or not a number.
/// @return true if it was read
bool ReadOpacityFactor(std::string_view value, float& factor);

/// Multiplies the opacities of stroke and fill, rounds up and keeps the low byte: not clamped, on purpose.
void MultiplyOpacity(SvgDrawState& state, float strokeFactor, float fillFactor);

/// Applies the attributes "opacity", "stroke-opacity" and "fill-opacity". They multiply the inherited values;
/// the specific ones override "opacity".
template <SvgElementAccess Element>
void ApplyOpacity(SvgDrawState& state, const Element& element);

/// Applies the attribute "color", the value of "currentColor" for the element and its descendants.
template <SvgElementAccess Element>
void ApplyCurrentColour(SvgDrawState& state, const Element& element);

/// Applies the attributes "fill", "fill-rule", "stroke" and other stroke attributes, then updates the draw
/// style. If the back-end reports a missing "fill" as a failure, nothing else is read: kept as it is.
template <SvgElementAccess Element>
void ApplyPaint(SvgDrawState& state, const Element& element);

/// Prefetches the memory that ApplyPaint will need for `element`, which may be null. Has no visible effect.
template <SvgElementAccess Element>
void PrefetchPaint(const SvgDrawState& state, const Element& element);
