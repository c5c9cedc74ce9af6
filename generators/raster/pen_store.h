// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <vector>

#include "generators/raster/stroke_pen.h"

/// The pens of a page. Lines that follow each other often share one.
class PenStore {
public:
    /// @param thinnest  lines are at least so wide, in pixels
    /// @return the pen for a line; stays where it is until Clear
    const StrokePen* Find(const ORVPrintStroke& stroke, const ORVMathAffine2D& toDevice, double thinnest);
    void Clear() { pens_.clear(); }

private:
    struct KeptPen {
        ORVPrintStroke stroke;  // its dashes are those below
        std::vector<double> dashes, dashEnds;
        ORVMathAffine2D map;
        StrokePen pen;
    };
    std::deque<KeptPen> pens_;
};
