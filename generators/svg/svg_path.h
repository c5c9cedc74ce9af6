// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/print/ORVPrintPath.h"

/// What a path is, written as briefly as SVG allows.
struct SvgOutline {
    enum class Kind { kPath, kRectangle, kCircle, kEllipse };
    Kind kind = Kind::kPath;
    /// Upper left corner and size of the rectangle; centre and radii of the ellipse.
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0;
};

/// Tells whether a path is a rectangle along the axes, a circle or an ellipse once it is mapped.
/// @param places  digits after the period that will be written
SvgOutline RecogniseOutline(const ORVPrintPath& path, const ORVMathAffine2D& map, int places);

/// Appends a path as path data, mapped. Every command is written in the shorter of its two forms; rounding
/// does not add up along relative ones.
/// @param places  digits after the period, 0 to 9
void AppendSvgPath(std::string& text, const ORVPrintPath& path, const ORVMathAffine2D& map, int places);
