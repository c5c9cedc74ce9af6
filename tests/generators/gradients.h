// SPDX-License-Identifier: Apache-2.0
#pragma once

// Gradients for tests, in the coordinates of the filled area.

#include <span>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"

using GradientStops = std::vector<ORVPrintGradientStop>;

inline ORVPrintGradient LinearGradient(std::span<const ORVPrintGradientStop> stops,
                                       const ORVMathPoint2D& start, const ORVMathPoint2D& end,
                                       ORVPrintGradient::Spread spread = ORVPrintGradient::Spread::kPad) {
    ORVPrintGradient gradient;
    gradient.spread = spread;
    gradient.start = start;
    gradient.end = end;
    gradient.stops = stops;
    return gradient;
}

inline ORVPrintGradient RadialGradient(std::span<const ORVPrintGradientStop> stops,
                                       const ORVMathPoint2D& start, double startRadius,
                                       const ORVMathPoint2D& end, double endRadius,
                                       ORVPrintGradient::Spread spread = ORVPrintGradient::Spread::kPad) {
    ORVPrintGradient gradient = LinearGradient(stops, start, end, spread);
    gradient.kind = ORVPrintGradient::Kind::kRadial;
    gradient.startRadius = startRadius;
    gradient.endRadius = endRadius;
    return gradient;
}
