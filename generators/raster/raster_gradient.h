// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

// Gradients as a page keeps them: what paints a pixel is a number of a table of colours.

/// The colours of gradients, kept once for all gradients that have the same.
struct RasterGradientStops {
    struct Stop {
        float offset = 0.0F;  // from 0 to 1, ascending
        ORVPrintColour colour;
    };
    const Stop* stops = nullptr;
    std::uint32_t count = 0;
    std::uint32_t entries = 0;  ///< of the table that is made of them, a power of two
    bool isGrey = false;        ///< nothing but black, white and greys
};

/// A gradient on the page. A place of 0 is that of its first colour, 1 that of its last one.
struct RasterGradient {
    enum class Kind : std::uint8_t {
        kLinear,      ///< the place is the first coordinate that `fromDevice` gives
        kConcentric,  ///< circles around the origin of what `fromDevice` gives
        kTwoCircles,  ///< the first circle lies around the origin, the second one to its right
    };
    const RasterGradientStops* stops = nullptr;
    Kind kind = Kind::kLinear;
    ORVPrintGradient::Spread spread = ORVPrintGradient::Spread::kPad;
    ORVMathAffine2D fromDevice;
    // Of circles: the first radius, by how much the second one is larger, and how far apart they are.
    float startRadius = 0.0F, growth = 0.0F, distance = 0.0F;
    // distance^2 - growth^2, or 0 where the circles touch: then only one circle goes through a point.
    float curvature = 0.0F;

    /// Linear, and alike along rows, or along columns.
    bool IsLevel() const { return kind == Kind::kLinear && fromDevice.m11 == 0.0; }
    bool IsUpright() const { return kind == Kind::kLinear && fromDevice.m12 == 0.0; }
};
