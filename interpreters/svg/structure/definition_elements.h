// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;

/// Handlers of elements that are kept for references instead of being drawn.
/// @return kDone, or kNoMemory if a primitive could not be allocated. The state is restored on return

/// A "defs" element: its children are added to a holder that stays registered until the end of the enclosing
/// group.
template <SvgElementAccess Element>
int HandleDefs(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);

/// Inside "defs", the following three elements are ordinary definitions. Elsewhere they get their own holder,
/// as if enclosed in a "defs" without attributes.

/// A "symbol" element. Any non-empty "viewBox" counts as one.
template <SvgElementAccess Element>
int HandleSymbol(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);

/// A "marker" element: a symbol whose content is fitted to the marker's size and shifted by its reference
/// point.
template <SvgElementAccess Element>
int HandleMarker(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);

/// A "pattern" element, the source of bitmaps for fills.
template <SvgElementAccess Element>
int HandlePattern(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);
