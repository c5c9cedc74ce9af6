// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/style/marker_properties.h"
#include "interpreters/svg/style/paint.h"
#include "interpreters/svg/style/style_attribute.h"
#include "interpreters/svg/style/text_properties.h"
#include "interpreters/svg/style/visibility.h"

/// The presentation steps of each kind of element, in order of increasing precedence: later steps override
/// earlier ones.

/// Containers: groups, links, definitions, references, nested and root drawings.
template <SvgElementAccess Element>
void ApplyContainerPresentation(SvgDrawState& state, const Element& element) {
    ApplyOpacity(state, element);
    ApplyCurrentColour(state, element);
    ApplyDisplayVisibility(state, element);
    ApplyPaint(state, element);
    ApplyWritingMode(state, element);
    ApplyTextLayout(state, element);
    ApplyFont(state, element);
    ApplyMarkerProperties(state, element);
    ApplyStyleAttribute(state, element);
}

enum class Vertices { kWithoutMarkers, kWithMarkers };

/// Basic shapes and paths; those with vertices have markers.
template <SvgElementAccess Element>
void ApplyShapePresentation(SvgDrawState& state, const Element& element, Vertices vertices) {
    ApplyDisplayVisibility(state, element);
    ApplyOpacity(state, element);
    ApplyCurrentColour(state, element);
    ApplyPaint(state, element);
    if (vertices == Vertices::kWithMarkers) ApplyMarkerProperties(state, element);
    ApplyStyleAttribute(state, element);
}

/// Images: neither paint nor markers.
template <SvgElementAccess Element>
void ApplyImagePresentation(SvgDrawState& state, const Element& element) {
    ApplyDisplayVisibility(state, element);
    ApplyOpacity(state, element);
    ApplyCurrentColour(state, element);
    ApplyStyleAttribute(state, element);
}

/// First steps of texts. ApplyTextLayout and ApplyFont follow and so override the style; this reversed
/// precedence is kept on purpose.
template <SvgElementAccess Element>
void ApplyTextPresentation(SvgDrawState& state, const Element& element) {
    ApplyDisplayVisibility(state, element);
    ApplyOpacity(state, element);
    ApplyCurrentColour(state, element);
    ApplyPaint(state, element);
    ApplyWritingMode(state, element);
    ApplyStyleAttribute(state, element);
}
