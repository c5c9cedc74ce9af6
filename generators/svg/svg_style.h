// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/print/ORVPrintGenerator.h"

class ORVFontFace;

// Attributes of painted elements. Each is written with a blank before it, and only when it differs from what
// SVG takes without it.

/// The fill of an element.
/// @param fill     null for none
/// @param pattern  address of the pattern or the gradient, empty for the colour
/// @param plainly  also when it is black: readers exist that look at a stroke only where a fill is stated
void AppendSvgFill(std::string& text, const ORVPrintFill* fill, std::string_view pattern, bool plainly);

/// The stroke of an element.
/// @param scale     factor on its lengths
/// @param gradient  its address, empty for the colour
void AppendSvgStroke(std::string& text, const ORVPrintStroke& stroke, double scale,
                     std::string_view gradient = {});

/// The colour of a gradient's stop.
void AppendSvgStopColour(std::string& text, const ORVPrintColour& colour);

/// The font of a text: family, size (user units an em), weight and slant.
/// @param bold  whatever the weight of the face
/// @param brought  the family of a font that the drawing brings; empty for installed ones
void AppendSvgFont(std::string& text, const ORVFontFace& face, std::string_view brought, double size,
                   bool bold);

/// A blend mode's name.
std::string_view NameOfSvgBlendMode(ORVPrintBlendMode blend);
