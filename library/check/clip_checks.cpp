// SPDX-License-Identifier: Apache-2.0
#include "library/check/clip_checks.h"

#include <algorithm>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/view_box.h"
#include "platform/model/ORVPrtViewBox.h"

namespace {

ORVMathBox2D BoxOf(double x, double y, double width, double height) {
    ORVMathBox2D box;
    box.Add({x, y});
    box.Add({x + width, y + height});
    return box;
}

bool ReachesBeyond(const ORVMathBox2D& region, const ORVMathBox2D& box) {
    // Smaller overlaps are invisible.
    const double slack = 0.01 * std::max(region.xMax - region.xMin, region.yMax - region.yMin);
    return box.xMin < region.xMin - slack || box.yMin < region.yMin - slack ||
           box.xMax > region.xMax + slack || box.yMax > region.yMax + slack;
}

}  // namespace

NestedRegion ReadNestedRegion(const ORVXmlNode& svg, const SvgDrawState& state) {
    double x = 0.0, y = 0.0, width = state.pageWidth, height = state.pageHeight;
    ParseHorizontalLength(state, svg.Value(AttributeName::kX), x);
    ParseVerticalLength(state, svg.Value(AttributeName::kY), y);
    ParseHorizontalLength(state, svg.Value(AttributeName::kWidth), width);
    ParseVerticalLength(state, svg.Value(AttributeName::kHeight), height);
    ORVPrtViewBox box{0.0, 0.0, width, height};
    const bool hasBox = ReadViewBox(svg.Value(AttributeName::kViewBox), box) == kRead;
    if (!hasBox || !(box.width > 0.0) || !(box.height > 0.0))
        return {BoxOf(0.0, 0.0, width, height), ORVMathAffine2D::Translation(x, y)};
    const double scale = std::min(width / box.width, height / box.height);
    if (!(scale > 0.0)) return {BoxOf(0.0, 0.0, 0.0, 0.0), ORVMathAffine2D::Translation(x, y)};
    // The viewBox is centred; the space beside it is part of the region.
    const double spareX = width / scale - box.width, spareY = height / scale - box.height;
    const ORVMathAffine2D map =
        ORVMathAffine2D::Translation(x + spareX * scale / 2.0, y + spareY * scale / 2.0) *
        ORVMathAffine2D::Scaling(scale, scale) * ORVMathAffine2D::Translation(-box.minX, -box.minY);
    return {BoxOf(box.minX - spareX / 2.0, box.minY - spareY / 2.0, box.width + spareX, box.height + spareY),
            map};
}

void NoteDrawn(CheckContext& check, const NumberedElement& element, const ORVMathBox2D& box) {
    DrawnRegion* const region = check.region;
    if (!region || box.IsEmpty()) return;
    const ORVMathAffine2D own = check.values.ReadTransform(element.node->Value(AttributeName::kTransform));
    const ORVMathBox2D drawn = MapBox(check.inForce.toRegion * own, box);
    if (drawn.IsEmpty()) return;
    region->content.Add({drawn.xMin, drawn.yMin});
    region->content.Add({drawn.xMax, drawn.yMax});
    if (!region->cuts || region->isOutside || !ReachesBeyond(region->region, drawn)) return;
    region->isOutside = true;
    if (region->isTold)
        check.findings.Note(FindingCode::kNotClipped, element, {}, {},
                            "extends beyond the svg element that contains it, and is not clipped there");
}

ORVMathBox2D MapBox(const ORVMathAffine2D& map, const ORVMathBox2D& box) {
    ORVMathBox2D mapped;
    if (box.IsEmpty()) return mapped;
    for (const double x : {box.xMin, box.xMax})
        for (const double y : {box.yMin, box.yMax}) mapped.Add(map({x, y}));
    return mapped;
}
