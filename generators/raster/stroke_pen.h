// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

/// The pen of a stroke. In pen space the pen is round, and dashes are measured there; the linear part of the
/// shape's transformation maps pen space to device space and may distort the pen.
struct StrokePen {
    double halfWidth = 0.5;  ///< in pen space
    ORVPrintStroke::Cap cap = ORVPrintStroke::Cap::kButt;
    ORVPrintStroke::Join join = ORVPrintStroke::Join::kMiter;
    double miterLimit = 4.0;
    ORVMathAffine2D toDevice, fromDevice;  ///< linear parts only
    /// Maximum distance that the stroke extends from its centre line, in pixels.
    double reach = 0.5;
    /// Greatest radius of the pen, in pixels.
    double radius = 0.5;
    /// 1 + cosine of the greatest turn inside curves at which the borders still meet.
    double gentleTurn = 1.9;
    /// Angle between the points of a round cap or join, in radians.
    double roundStep = 1.0;
    /// Length of the dash pattern in pen space; 0 for a solid line.
    double dashPeriod = 0.0;
    /// Phase at which a line begins, less than dashPeriod.
    double dashStart = 0.0;
    bool isExact = false;              ///< ORVPrintStroke::isExact
    bool isFine = false;               ///< the dashes are finer than pixels
    bool hidesGaps = false;            ///< caps cover the gaps between dashes, to pixel accuracy
    std::span<const double> dashEnds;  ///< ends of dashes and gaps, from the start of the pattern

    /// True for a closed contour with that many corners if it is one line, there and back, that is drawn
    /// once.
    bool DrawsOnce(std::size_t corners) const {
        return isExact && corners == 2 && join != ORVPrintStroke::Join::kMiterClip;
    }
    bool IsDashed() const { return dashPeriod > 0.0; }
    /// True if the caps of dashes cover the gaps of any line. A corner in a gap has no join, which shows
    /// unless joins look like the caps.
    bool ShowsAsSolid() const {
        return hidesGaps &&
               (isFine || (cap == ORVPrintStroke::Cap::kRound && join == ORVPrintStroke::Join::kRound));
    }
};

/// Makes a pen. Lines thinner than `thinnest` pixels get that width.
/// @param dashEnds  receives the ends of dashes; must outlive the pen
StrokePen ORVMakePen(const ORVPrintStroke& stroke, const ORVMathAffine2D& toDevice, double thinnest,
                     std::vector<double>& dashEnds);
