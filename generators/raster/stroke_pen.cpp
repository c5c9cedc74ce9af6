// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/stroke_pen.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "generators/common/path_range.h"
#include "generators/raster/coverage_buffer.h"
#include "platform/mathematics/constants.h"

namespace {

// Maximum deviation of a round cap or join from a circle, in pixels. Small because they are small themselves,
// and errors show.
constexpr double kRoundness = 0.015;
// Maximum overshoot of two borders that cross beyond the border of a curve, in pixels, unless the turn is
// gentle.
constexpr double kOvershoot = 0.05;
constexpr double kGentleTurn = 1.9;
// Dashes of a shorter period, in pixels, look like a solid line.
constexpr double kShortestDashPeriod = 0.1;
// Dashes of a shorter period, in pixels, are not distinguishable.
constexpr double kFineDashPeriod = 1.0;
// A notch that round caps leave at the border of a line is invisible up to this depth, in pixels.
constexpr double kShallowest = 1.0 / 256.0;
// Maximum pen width, in pixels; coordinates beyond it are outside any page.
constexpr double kWidestPen = 2'000'000.0;
// Lines thinner than this fraction of the minimum width are taken as hairlines.
constexpr double kNoWidth = 1.0 / 64.0;

/// The semi-axes of the ellipse that a transformation makes of the unit circle.
void FindAxes(const ORVMathAffine2D& map, double& longer, double& shorter) {
    const double sum = std::hypot(map.m11 + map.m22, map.m21 - map.m12);
    const double difference = std::hypot(map.m11 - map.m22, map.m21 + map.m12);
    longer = (sum + difference) / 2.0;
    shorter = std::fabs(sum - difference) / 2.0;
}

/// True if the caps of dashes cover the gaps between them.
/// @param scale  maximum pixels per unit of dash length
bool CapsCoverGaps(const StrokePen& pen, std::span<const double> dashes, double scale) {
    double longest = 0.0;
    for (std::size_t i = 1; i < dashes.size(); i += 2) longest = std::max(longest, dashes[i]);
    switch (pen.cap) {
        case ORVPrintStroke::Cap::kButt: return false;
        case ORVPrintStroke::Cap::kSquare: return longest <= 2.0 * pen.halfWidth;
        // Two circles at this distance intersect this far inside the border.
        case ORVPrintStroke::Cap::kRound:
            return longest * longest * scale <= 8.0 * kShallowest * pen.halfWidth;
    }
    return false;
}

bool HasGaps(std::span<const double> dashes) {
    for (std::size_t i = 1; i < dashes.size(); i += 2)
        if (dashes[i] > 0.0) return true;
    return false;
}

/// @param dashScale  pixels per unit of dash length
/// @param scale      pixels per unit of pen space
void SetDashes(const ORVPrintStroke& stroke, double dashScale, double scale, StrokePen& pen,
               std::vector<double>& dashEnds) {
    const std::span<const double> dashes = stroke.dashes;
    dashEnds.clear();
    double period = 0.0;
    for (const double length : dashes) dashEnds.push_back(period += std::max(length, 0.0));
    if (!std::isfinite(period) || !(period * dashScale > kShortestDashPeriod) || !HasGaps(dashes)) return;
    // Dashes are measured in pen space, which is device space for a flattened pen.
    const double enlargement = dashScale / scale;
    for (double& end : dashEnds) end *= enlargement;
    pen.dashPeriod = period * enlargement;
    pen.dashEnds = dashEnds;
    if (stroke.dashOffset > 0.0) pen.dashStart = std::fmod(stroke.dashOffset, period) * enlargement;
    // Rounding may have made it a full period.
    if (!(pen.dashStart < pen.dashPeriod)) pen.dashStart = 0.0;
    pen.isFine = period * dashScale < kFineDashPeriod;
    pen.hidesGaps = enlargement == 1.0 && dashes.size() % 2 == 0 && CapsCoverGaps(pen, dashes, scale);
}

}  // namespace

StrokePen ORVMakePen(const ORVPrintStroke& stroke, const ORVMathAffine2D& toDevice, double thinnest,
                     std::vector<double>& dashEnds) {
    StrokePen pen;
    pen.cap = stroke.cap;
    pen.join = stroke.join;
    pen.isExact = stroke.isExact;
    pen.miterLimit = stroke.miterLimit >= 1.0 ? std::min(stroke.miterLimit, 1e6) : 1.0;
    pen.toDevice = {toDevice.m11, toDevice.m12, toDevice.m21, toDevice.m22, 0.0, 0.0};
    double longer = 1.0, shorter = 1.0;
    FindAxes(pen.toDevice, longer, shorter);
    // The shorter axis of the transformation determines the line's minimum width. A pen that would vanish
    // there becomes a round pen of minimum width.
    double halfWidth = std::min(stroke.width, 2.0 * kWidestPen / longer) / 2.0;
    if (!(halfWidth > 0.0)) halfWidth = 0.0;
    const double least = thinnest / 2.0;
    const double dashScale = longer;
    if (longer * halfWidth < least) {
        // Widen to the minimum width.
        const bool hasNoWidth = !stroke.isExact && longer * halfWidth < least * kNoWidth;
        const double wanted = hasNoWidth ? std::max(least, 0.5) : least;
        halfWidth = wanted / longer;
    }
    const std::optional<ORVMathAffine2D> fromDevice = pen.toDevice.Inverse();
    if (fromDevice) pen.fromDevice = *fromDevice;
    if (shorter * halfWidth < least * 1e-3 || !fromDevice) {
        // The transformation has flattened the pen.
        halfWidth = std::max(longer * halfWidth, least);
        pen.toDevice = pen.fromDevice = {};
        pen.halfWidth = halfWidth;
        longer = 1.0;
    }
    pen.halfWidth = halfWidth;
    const double radius = halfWidth * longer;
    const bool hasMiters =
        pen.join == ORVPrintStroke::Join::kMiter || pen.join == ORVPrintStroke::Join::kMiterClip;
    // A clipped miter is wider at the cut than it is high.
    double extent = hasMiters ? pen.miterLimit : 1.0;
    if (pen.join == ORVPrintStroke::Join::kMiterClip) extent = std::hypot(extent, extent);
    if (pen.cap == ORVPrintStroke::Cap::kSquare) extent = std::max(extent, 1.5);
    pen.reach = std::min(radius * extent + 1.0, CoverageBuffer::kFarthest);
    pen.radius = radius;
    // Borders cross at 1 / cosine of half the turn from the centre line; 1 + cosine is twice its square.
    const double farthest = 1.0 + kOvershoot / std::max(radius, kOvershoot);
    pen.gentleTurn = std::min(kGentleTurn, 2.0 / (farthest * farthest));
    pen.roundStep = 2.0 * std::acos(std::max(0.0, 1.0 - kRoundness / std::max(radius, kRoundness)));
    pen.roundStep = std::clamp(pen.roundStep, 1e-3, ORVPI / 4.0);

    SetDashes(stroke, dashScale, longer, pen, dashEnds);
    return pen;
}
