// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// Whether an element's own paint says anything: it can leave the inherited paint, remove or give one.
enum class PaintMention { kNone = -1, kOff = 0, kOn = 1 };

/// Which paints one step, presentation attributes or style, mentioned.
struct PaintMentions {
    PaintMention stroke = PaintMention::kNone;
    PaintMention fill = PaintMention::kNone;
};

/// Applies the value of "fill": "none", "currentColor", "url(#id)" of a pattern with bitmaps, or a colour.
/// A colour that cannot be read keeps the old one but counts as mentioned; an empty value says nothing.
PaintMention ApplyFillPaint(SvgDrawState& state, std::string_view value);

/// Applies the value of "stroke": as ApplyFillPaint, but any "url" keeps the colour: strokes have no
/// patterns.
PaintMention ApplyStrokePaint(SvgDrawState& state, std::string_view value);

/// Value rules that presentation attributes and style share. Unknown keywords and unreadable numbers change
/// nothing.
void ApplyFillRule(SvgDrawState& state, std::string_view value);
void ApplyDashArray(SvgDrawState& state, std::string_view value);
void ApplyLineCap(SvgDrawState& state, std::string_view value);
void ApplyLineJoin(SvgDrawState& state, std::string_view value);
void ApplyStrokeWidth(SvgDrawState& state, std::string_view value);

/// Turns the draw style's stroke and fill parts on or off, stroke first.
void UpdateDrawStyle(SvgDrawState& state, const PaintMentions& mentions);

/// Reads an opacity into `factor`, unless it is empty, "inherit" or no number. @return true when it was read
bool ReadOpacityFactor(std::string_view value, float& factor);

/// Multiplies the opacities of stroke and fill, rounds up and keeps the low byte: no clamping, on purpose.
void MultiplyOpacity(SvgDrawState& state, float strokeFactor, float fillFactor);

/// Attributes "opacity", "stroke-opacity" and "fill-opacity". They compound with what is inherited; the
/// specific ones replace the general one.
template <SvgElementAccess Element>
void ApplyOpacity(SvgDrawState& state, const Element& element);

/// Attribute "color": what "currentColor" means from here on.
template <SvgElementAccess Element>
void ApplyCurrentColour(SvgDrawState& state, const Element& element);

/// Attributes "fill", "fill-rule", "stroke" and the stroke's others, then the draw style. Where the back-end
/// reports a missing "fill" as a failure, nothing else is read: kept as it is.
template <SvgElementAccess Element>
void ApplyPaint(SvgDrawState& state, const Element& element);

/// Has the memory fetched that ApplyPaint will wait for when it comes to `element`, which may be null.
/// Changes nothing.
template <SvgElementAccess Element>
void PrefetchPaint(const SvgDrawState& state, const Element& element);
