// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtGroupElt;

/// Fills a group with what a "path" element draws. The group has the path's identifier and transform, its
/// children the paint.
/// @param state  a copy: what the element's own style changes reaches no sibling
/// @return kDone, or kUnusable when `group` is null
template <SvgElementAccess Element>
int HandlePath(SvgDrawState state, const Element& element, ORVPrtGroupElt* group,
               ORVPrtGraphicPrimitiveElt& container);
