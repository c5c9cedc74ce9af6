// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// Which marker references a value applies to.
enum class MarkerPlace { kAll, kStart, kMid, kEnd };

/// Applies the value of a marker property: "none " (with the trailing space, on purpose) removes the
/// reference, "inherit" keeps it, and anything else replaces it, without the first "url(#" and the first ")".
void ApplyMarkerReference(SvgDrawState& state, MarkerPlace place, std::string_view value);

/// Applies the attributes "marker", "marker-start", "marker-mid" and "marker-end".
template <SvgElementAccess Element>
void ApplyMarkerProperties(SvgDrawState& state, const Element& element) {
    ApplyMarkerReference(state, MarkerPlace::kAll, element.Attribute(AttributeName::kMarker).text);
    ApplyMarkerReference(state, MarkerPlace::kStart, element.Attribute(AttributeName::kMarkerStart).text);
    ApplyMarkerReference(state, MarkerPlace::kMid, element.Attribute(AttributeName::kMarkerMid).text);
    ApplyMarkerReference(state, MarkerPlace::kEnd, element.Attribute(AttributeName::kMarkerEnd).text);
}
