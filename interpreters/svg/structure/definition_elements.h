// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;

/// Handlers of elements that are kept aside for references instead of being drawn.
/// @return kDone, or kNoMemory when a primitive could not be allocated. The state leaves as it came.

/// A "defs" element: its children become those of a holder that stays registered until the enclosing group
/// ends.
template <SvgElementAccess Element>
int HandleDefs(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);

/// Inside "defs" the three below are definitions like any other child. Elsewhere they get a holder of their
/// own, as if a "defs" without attributes stood around them.

/// A "symbol" element; any "viewBox" that is not empty makes it have one.
template <SvgElementAccess Element>
int HandleSymbol(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);

/// A "marker" element: a symbol whose content is fitted to the marker's size and moved by its reference
/// point.
template <SvgElementAccess Element>
int HandleMarker(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);

/// A "pattern" element: what fills take bitmaps from.
template <SvgElementAccess Element>
int HandlePattern(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);
