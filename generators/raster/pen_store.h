// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <deque>
#include <vector>

#include "generators/raster/stroke_pen.h"

/// Caches the pens of a page. Consecutive lines often share a pen.
class PenStore {
public:
    /// @param thinnest  minimum line width, in pixels
    /// @return the pen for a line; the pointer is valid until Clear
    const StrokePen* Find(const ORVPrintStroke& stroke, const ORVMathAffine2D& toDevice, double thinnest);
    void Clear() { pens_.clear(); }

private:
    struct KeptPen {
        ORVPrintStroke stroke;  // refers to the dashes below
        std::vector<double> dashes, dashEnds;
        ORVMathAffine2D map;
        StrokePen pen;
    };
    std::deque<KeptPen> pens_;
};
