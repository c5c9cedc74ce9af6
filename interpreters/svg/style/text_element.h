// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtTextElt;

/// Fills in a text primitive from a "text" element, using only its own character data, not that of
/// descendants.
/// @param state  a copy, so that the element's own style does not affect its siblings
/// @return kUnusable if `text` is null, else kTextDone. Anything but kDone ends the chain of handlers
inline constexpr int kTextDone = 0;
template <SvgElementAccess Element>
int BuildText(SvgDrawState state, const Element& element, ORVPrtTextElt* text,
              ORVPrtGraphicPrimitiveElt& container);
