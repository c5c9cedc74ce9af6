// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "platform/mathematics/geometry.h"

namespace svg2 {

/// A rectangle by its corner and size, in px or user units.
struct Rectangle {
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0;

    ORVMathBox2D Box() const { return {x, x + width, y, y + height}; }
    friend bool operator==(const Rectangle&, const Rectangle&) = default;
};

/// Reads "x y width height". Empty if these are not four numbers or a size is negative; a size of 0 is
/// accepted.
std::optional<Rectangle> ReadViewBox(std::string_view text);

/// How content is fitted into a viewport with a different aspect ratio.
struct AspectRatio {
    bool isKept = true;   ///< false for "none": each axis is scaled independently
    double x = 0.5;       ///< 0 left, 0.5 middle, 1 right
    double y = 0.5;       ///< 0 top, 0.5 middle, 1 bottom
    bool slices = false;  ///< the content covers the viewport; otherwise it is contained in it
};

/// Reads "[defer] align [meet|slice]"; an invalid value gives the default.
AspectRatio ReadAspectRatio(std::string_view text);

/// The transformation from a viewBox, whose area is not 0, to its viewport.
ORVMathAffine2D FitViewBox(const Rectangle& viewBox, const AspectRatio& ratio, const Rectangle& viewport);

}  // namespace svg2
