// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtGroupElt;

/// Fills in a group from a "path" element. The group carries the identifier and transform, its children the
/// paint.
/// @param state  a copy, so that the element's own style does not affect its siblings
/// @return kDone, or kUnusable if `group` is null
template <SvgElementAccess Element>
int HandlePath(SvgDrawState state, const Element& element, ORVPrtGroupElt* group,
               ORVPrtGraphicPrimitiveElt& container);
