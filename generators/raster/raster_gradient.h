// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

// Gradients in a display list. Each pixel's colour is an entry in a table of colours.

/// Colour stops, shared by all gradients with the same stops.
struct RasterGradientStops {
    struct Stop {
        float offset = 0.0F;  // from 0 to 1, ascending
        ORVPrintColour colour;
    };
    const Stop* stops = nullptr;
    std::uint32_t count = 0;
    std::uint32_t entries = 0;  ///< size of the colour table, a power of two
    bool isGrey = false;        ///< only black, white and greys
};

/// A gradient in device space. Parameter 0 is at its first colour, 1 at its last.
struct RasterGradient {
    enum class Kind : std::uint8_t {
        kLinear,      ///< the parameter is the x coordinate after `fromDevice`
        kConcentric,  ///< circles around the origin after `fromDevice`
        kTwoCircles,  ///< the first circle is around the origin, the second to its right
    };
    const RasterGradientStops* stops = nullptr;
    Kind kind = Kind::kLinear;
    ORVPrintGradient::Spread spread = ORVPrintGradient::Spread::kPad;
    ORVMathAffine2D fromDevice;
    // For circles: the first radius, the increase to the second, and the distance of the centres.
    float startRadius = 0.0F, growth = 0.0F, distance = 0.0F;
    // distance^2 - growth^2; 0 if the circles touch, when only one circle passes through each point.
    float curvature = 0.0F;

    /// Linear, and constant along rows (IsLevel) or columns (IsUpright).
    bool IsLevel() const { return kind == Kind::kLinear && fromDevice.m11 == 0.0; }
    bool IsUpright() const { return kind == Kind::kLinear && fromDevice.m12 == 0.0; }
};
