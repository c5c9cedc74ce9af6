#pragma once

#include "plugin/interpreter/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtGroupElt;

/// Fills a group from a "use" element: adds the definition that it refers to, restyled, and places it at the
/// element's position, fitted to its size where it has one. An unknown reference draws nothing.
/// @return kDone, or kUnusable when `group` is null
template <SvgElementAccess Element>
int HandleUse(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
              ORVPrtGraphicPrimitiveElt& container);

/// Fills a group from an "svg" element inside a drawing: its children, moved to its position and fitted to
/// its size where it has a "viewBox". Percentages inside refer to the page. It reads no "transform".
/// @return kDone, or kUnusable when `group` is null
template <SvgElementAccess Element>
int HandleNestedSvg(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
                    ORVPrtGraphicPrimitiveElt& container);
