// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"

/// What a line is drawn with. In pen space the pen is round and dashes are measured; the linear part of the
/// shape's map takes pen space to the device, and may squeeze or slant the pen.
struct StrokePen {
    double halfWidth = 0.5;  ///< pen space
    ORVPrintStroke::Cap cap = ORVPrintStroke::Cap::kButt;
    ORVPrintStroke::Join join = ORVPrintStroke::Join::kMiter;
    double miterLimit = 4.0;
    ORVMathAffine2D toDevice, fromDevice;  ///< linear
    double reach = 0.5;                    ///< pixels that the line may extend from its course
    double radius = 0.5;                   ///< pixels, of the pen where it is widest
    double gentleTurn = 1.9;               ///< 1 + the cosine of the turns in curves whose borders just meet
    double roundStep = 1.0;                ///< radians between the points of a round cap or join
    double dashPeriod = 0.0;               ///< pen space, 0 for a solid line
    double dashStart = 0.0;                ///< where in the period a line begins, below its end
    bool isFine = false;                   ///< the dashes are finer than pixels
    bool hidesGaps = false;                ///< caps cover the gaps of dashes, as far as pixels can show
    std::span<const double> dashEnds;      ///< where dashes and gaps end, counted from the period's start

    bool IsDashed() const { return dashPeriod > 0.0; }
    /// True when the caps of dashes cover the gaps of any line. A corner in a gap has no join, which shows
    /// unless the join is like the caps.
    bool ShowsAsSolid() const {
        return hidesGaps &&
               (isFine || (cap == ORVPrintStroke::Cap::kRound && join == ORVPrintStroke::Join::kRound));
    }
};

/// Makes a pen. Lines thinner than `thinnest` pixels get that width.
/// @param dashEnds  receives the ends of dashes; must outlive the pen
StrokePen ORVMakePen(const ORVPrintStroke& stroke, const ORVMathAffine2D& toDevice, double thinnest,
                     std::vector<double>& dashEnds);
