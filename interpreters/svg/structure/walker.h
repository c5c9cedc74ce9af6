// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;

/// Whether elements of this name have a handler. All others are ignored except "desc" and "title".
bool HasHandler(ElementName name);

/// Passes an element to the handler of its name, which adds primitives to the container. Unknown names are
/// ignored.
/// @return the handler's result; kDone for an unknown name, kUnusable for a null container
template <SvgElementAccess Element>
int HandleChild(SvgDrawState& state, const Element& child, ORVPrtGraphicPrimitiveElt* container);

/// Walks the children of a group-like element in document order: descriptions are set on the container,
/// everything else is passed to its handler. Failures of children are ignored.
template <SvgElementAccess Element>
void WalkChildren(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);
