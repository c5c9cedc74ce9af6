// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/system/ORVRef.h"

struct SvgDrawState;

/// The markers an element refers to, styled for it; null where there is none.
struct ResolvedMarkers {
    ORVRef<ORVPrtGraphicPrimitiveElt> start, mid, end;
};
ResolvedMarkers ResolveMarkers(const SvgDrawState& state);

/// Attaches marker instances for the first, the last and the intermediate vertices to the container. Markers
/// are translated, never rotated.
/// @param vertices  x, y pairs in page coordinates; an unpaired last number is ignored
void PlaceMarkers(const SvgDrawState& state, const ResolvedMarkers& markers, std::span<const double> vertices,
                  ORVPrtGraphicPrimitiveElt& container);
