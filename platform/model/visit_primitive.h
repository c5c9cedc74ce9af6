// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/model/ORVPrtBitmapImageElt.h"
#include "platform/model/ORVPrtCircleElt.h"
#include "platform/model/ORVPrtClosedFigureElt.h"
#include "platform/model/ORVPrtClosedFigureRegionElt.h"
#include "platform/model/ORVPrtEllipseElt.h"
#include "platform/model/ORVPrtEllipticalArcElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtLineElt.h"
#include "platform/model/ORVPrtPatternElt.h"
#include "platform/model/ORVPrtPolyCubicBezierElt.h"
#include "platform/model/ORVPrtPolyQuadraticBezierElt.h"
#include "platform/model/ORVPrtPolygonElt.h"
#include "platform/model/ORVPrtPolylineElt.h"
#include "platform/model/ORVPrtRectangleElt.h"
#include "platform/model/ORVPrtSymbolElt.h"
#include "platform/model/ORVPrtTextElt.h"
#include "platform/system/namespace.h"

namespace orvprint {

/// Calls `visit` with the primitive cast to its own class; does nothing for classes of other modules. Include
/// in sources only, because it depends on every class.
template <class Visitor>
void VisitPrimitive(ORVPrtGraphicPrimitiveElt& primitive, Visitor&& visit) {
    switch (primitive.GetKind()) {
        case ORVPrtKind::kOther: return;
        case ORVPrtKind::kImage: return visit(static_cast<ORVPrtImageElt&>(primitive));
        case ORVPrtKind::kGroup: return visit(static_cast<ORVPrtGroupElt&>(primitive));
        case ORVPrtKind::kSymbol: return visit(static_cast<ORVPrtSymbolElt&>(primitive));
        case ORVPrtKind::kPattern: return visit(static_cast<ORVPrtPatternElt&>(primitive));
        case ORVPrtKind::kClosedFigure: return visit(static_cast<ORVPrtClosedFigureElt&>(primitive));
        case ORVPrtKind::kRegion: return visit(static_cast<ORVPrtClosedFigureRegionElt&>(primitive));
        case ORVPrtKind::kRectangle: return visit(static_cast<ORVPrtRectangleElt&>(primitive));
        case ORVPrtKind::kCircle: return visit(static_cast<ORVPrtCircleElt&>(primitive));
        case ORVPrtKind::kEllipse: return visit(static_cast<ORVPrtEllipseElt&>(primitive));
        case ORVPrtKind::kEllipticalArc: return visit(static_cast<ORVPrtEllipticalArcElt&>(primitive));
        case ORVPrtKind::kLine: return visit(static_cast<ORVPrtLineElt&>(primitive));
        case ORVPrtKind::kPolyline: return visit(static_cast<ORVPrtPolylineElt&>(primitive));
        case ORVPrtKind::kPolygon: return visit(static_cast<ORVPrtPolygonElt&>(primitive));
        case ORVPrtKind::kPolyCubicBezier: return visit(static_cast<ORVPrtPolyCubicBezierElt&>(primitive));
        case ORVPrtKind::kPolyQuadraticBezier:
            return visit(static_cast<ORVPrtPolyQuadraticBezierElt&>(primitive));
        case ORVPrtKind::kText: return visit(static_cast<ORVPrtTextElt&>(primitive));
        case ORVPrtKind::kBitmapImage: return visit(static_cast<ORVPrtBitmapImageElt&>(primitive));
    }
}

/// Overload for const primitives.
template <class Visitor>
void VisitPrimitive(const ORVPrtGraphicPrimitiveElt& primitive, Visitor&& visit) {
    VisitPrimitive(const_cast<ORVPrtGraphicPrimitiveElt&>(primitive),
                   [&visit](const auto& one) { visit(one); });
}

}  // namespace orvprint
