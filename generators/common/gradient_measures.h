// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>

#include "platform/print/ORVPrintGenerator.h"

// What generators ask of a gradient before they draw with it.

/// True when the gradient leaves no place of the page without a colour: one circle holds the other, or there
/// are none.
inline bool ORVCoversPage(const ORVPrintGradient& gradient) {
    if (gradient.kind == ORVPrintGradient::Kind::kLinear) return true;
    const double distance = std::hypot(gradient.end.x - gradient.start.x, gradient.end.y - gradient.start.y);
    return distance < std::fabs(gradient.endRadius - gradient.startRadius);
}

/// True when nothing of what lies below a gradient shows.
inline bool ORVIsOpaque(const ORVPrintGradient& gradient) {
    return ORVCoversPage(gradient) &&
           std::all_of(gradient.stops.begin(), gradient.stops.end(),
                       [](const ORVPrintGradientStop& stop) { return stop.colour.opacity == 255; });
}
