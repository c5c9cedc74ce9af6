// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/print/ORVPrintGenerator.h"

class ORVFontFace;

// Attributes of painted elements. Each is preceded by a space, and omitted if it equals the default of SVG.

/// Appends the fill of an element.
/// @param fill     null for none
/// @param pattern  identifier of the pattern or gradient, empty for the colour
/// @param plainly  writes black too: some readers only honour a stroke if a fill is stated
void AppendSvgFill(std::string& text, const ORVPrintFill* fill, std::string_view pattern, bool plainly);

/// Appends the stroke of an element.
/// @param scale     factor for its lengths
/// @param gradient  identifier of a gradient, empty for the colour
void AppendSvgStroke(std::string& text, const ORVPrintStroke& stroke, double scale,
                     std::string_view gradient = {});

/// Appends the colour of a gradient stop.
void AppendSvgStopColour(std::string& text, const ORVPrintColour& colour);

/// Appends the font of a text: family, size (user units per em), weight and slant.
/// @param brought  family of a font embedded in the drawing; empty for installed fonts
/// @param bold     bold regardless of the weight of the face
void AppendSvgFont(std::string& text, const ORVFontFace& face, std::string_view brought, double size,
                   bool bold);

/// Name of a blend mode.
std::string_view NameOfSvgBlendMode(ORVPrintBlendMode blend);
