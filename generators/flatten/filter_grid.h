// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/filters/filter_pixels.h"
#include "platform/mathematics/geometry.h"

/// The pixel grid of a filter, parallel to the axes of the filter's user space.
struct FilterGrid {
    double xScale = 1.0, yScale = 1.0;  ///< pixels per user unit, along each axis
    ORVMathAffine2D fromUser;           ///< to pixels; scales and translates only
    ORVMathAffine2D toPage;             ///< from pixels
    double pixelsInPx = 1.0;            ///< pixels per 1/96 inch

    /// The device grid if the user space is not rotated; otherwise a grid of the same resolution.
    /// @param scale  device pixels per page unit; the first pixel begins at 0, 0
    static FilterGrid Make(const ORVMathAffine2D& userToPage, double scale);
    /// The whole pixels that contain a box of the user space; more than can exist for an infinite one.
    FilterBox PixelsOf(const ORVMathBox2D& box) const;
    ORVMathBox2D FromPage(const ORVMathBox2D& box) const;  ///< in pixels
};
