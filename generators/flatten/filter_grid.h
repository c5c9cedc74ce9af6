// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/filters/filter_pixels.h"
#include "platform/mathematics/geometry.h"

/// The pixels that a filter is computed on: parallel to the axes of the filter's user space.
struct FilterGrid {
    double xScale = 1.0, yScale = 1.0;  ///< pixels in a user unit, along either axis
    ORVMathAffine2D fromUser;           ///< to pixels; a scaling and a translation
    ORVMathAffine2D toPage;             ///< from pixels
    double pixelsInPx = 1.0;            ///< pixels along a length of 1/96 inch

    /// The grid of the device where the user space is not turned; else one as fine as the device's.
    /// @param scale  pixels of the device in a unit of the page, whose first pixel begins at 0, 0
    static FilterGrid Make(const ORVMathAffine2D& userToPage, double scale);
    /// Whole pixels that hold a box of the user space. Of an infinite one, more than there are anywhere.
    FilterBox PixelsOf(const ORVMathBox2D& box) const;
    ORVMathBox2D FromPage(const ORVMathBox2D& box) const;  ///< in pixels
};
