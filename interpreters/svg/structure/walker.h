// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;

/// Whether elements of this name have a handler; all others are ignored, but for "desc" and "title".
bool HasHandler(ElementName name);

/// Offers one element to the handler of its name, which builds its primitives into the container. An
/// unknown name is ignored.
/// @return the handler's result; kDone for an unknown name, kUnusable for a null container
template <SvgElementAccess Element>
int HandleChild(SvgDrawState& state, const Element& child, ORVPrtGraphicPrimitiveElt* container);

/// Walks the children of a group-like element, in document order: descriptions go to the container,
/// everything else to its handler. What a child cannot do is skipped.
template <SvgElementAccess Element>
void WalkChildren(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);
