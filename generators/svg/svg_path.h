// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/print/ORVPrintPath.h"

/// A path as the shortest SVG element for it.
struct SvgOutline {
    enum class Kind { kPath, kRectangle, kCircle, kEllipse };
    Kind kind = Kind::kPath;
    /// Top left corner and size of the rectangle; centre and radii of the ellipse.
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0;
};

/// Detects whether a transformed path is an axis-parallel rectangle, a circle or an ellipse.
/// @param places  decimal places that will be written
SvgOutline RecogniseOutline(const ORVPrintPath& path, const ORVMathAffine2D& map, int places);

/// Appends a transformed path as path data. Each command uses the shorter of its absolute and relative forms;
/// rounding errors of relative ones do not accumulate.
/// @param places  decimal places, 0 to 9
void AppendSvgPath(std::string& text, const ORVPrintPath& path, const ORVMathAffine2D& map, int places);
