// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtRectangleElt;
class ORVPrtCircleElt;
class ORVPrtEllipseElt;
class ORVPrtLineElt;
class ORVPrtPolylineElt;
class ORVPrtPolygonElt;

/// Handlers of the basic shapes. Each fills in the primitive that the walker has created and attached.
/// @param state      a copy, so that the element's own style does not affect its siblings
/// @param container  parent of the shape; markers are attached to it
/// @return kDone, or kUnusable if the primitive is null. A missing or invalid coordinate counts as 0 in the
///         drawing's own coordinates (y down); sizes are not checked

/// Corners are always square: "rx" and "ry" are read but ignored.
template <SvgElementAccess Element>
int HandleRect(SvgDrawState state, const Element& element, ORVPrtRectangleElt* rectangle,
               ORVPrtGraphicPrimitiveElt& container);
template <SvgElementAccess Element>
int HandleCircle(SvgDrawState state, const Element& element, ORVPrtCircleElt* circle,
                 ORVPrtGraphicPrimitiveElt& container);
template <SvgElementAccess Element>
int HandleEllipse(SvgDrawState state, const Element& element, ORVPrtEllipseElt* ellipse,
                  ORVPrtGraphicPrimitiveElt& container);
/// A line has a start and an end marker; a mid marker is resolved but never placed.
template <SvgElementAccess Element>
int HandleLine(SvgDrawState state, const Element& element, ORVPrtLineElt* line,
               ORVPrtGraphicPrimitiveElt& container);
template <SvgElementAccess Element>
int HandlePolyline(SvgDrawState state, const Element& element, ORVPrtPolylineElt* polyline,
                   ORVPrtGraphicPrimitiveElt& container);
/// The end marker is placed on the last listed point, not on the closing point.
template <SvgElementAccess Element>
int HandlePolygon(SvgDrawState state, const Element& element, ORVPrtPolygonElt* polygon,
                  ORVPrtGraphicPrimitiveElt& container);
