// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cmath>

#include "platform/print/ORVPrintGenerator.h"

// Properties of gradients that generators check before drawing.

/// True if the gradient paints every point of the page: it is linear, or one circle contains the other.
inline bool ORVCoversPage(const ORVPrintGradient& gradient) {
    if (gradient.kind == ORVPrintGradient::Kind::kLinear) return true;
    const double distance = std::hypot(gradient.end.x - gradient.start.x, gradient.end.y - gradient.start.y);
    return distance < std::fabs(gradient.endRadius - gradient.startRadius);
}

/// True if the gradient hides everything below it.
inline bool ORVIsOpaque(const ORVPrintGradient& gradient) {
    return ORVCoversPage(gradient) &&
           std::all_of(gradient.stops.begin(), gradient.stops.end(),
                       [](const ORVPrintGradientStop& stop) { return stop.colour.opacity == 255; });
}
