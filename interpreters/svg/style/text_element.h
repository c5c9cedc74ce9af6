// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtTextElt;

/// Fills a text primitive from a "text" element: its own character data only, nothing of its descendants.
/// @param state  a copy: what the element's own style changes reaches no sibling
/// @return kUnusable when `text` is null, else kTextDone. Anything but kDone ends the chain of handlers.
inline constexpr int kTextDone = 0;
template <SvgElementAccess Element>
int BuildText(SvgDrawState state, const Element& element, ORVPrtTextElt* text,
              ORVPrtGraphicPrimitiveElt& container);
