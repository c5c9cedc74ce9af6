// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/system/ORVRef.h"

struct SvgDrawState;

/// The markers that an element's references resolve to, styled for it; null where there is none.
struct ResolvedMarkers {
    ORVRef<ORVPrtGraphicPrimitiveElt> start, mid, end;
};
ResolvedMarkers ResolveMarkers(const SvgDrawState& state);

/// Attaches a marker instance to the container for the first and the last vertex and for those between.
/// Markers are moved, never turned.
/// @param vertices  x, y pairs in page coordinates; a last odd number is ignored
void PlaceMarkers(const SvgDrawState& state, const ResolvedMarkers& markers, std::span<const double> vertices,
                  ORVPrtGraphicPrimitiveElt& container);
