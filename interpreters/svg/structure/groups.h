// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtGroupElt;

/// Fills in a group from a "g" element: identifier, transform, children. The state is restored on return, and
/// definitions inside the group end with it. Both "desc" and "title" become the description.
/// @return kDone, or kUnusable if `group` is null
template <SvgElementAccess Element>
int HandleGroup(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
                ORVPrtGraphicPrimitiveElt& container);

/// Like HandleGroup, for an "a" element with its link target: "#id" names an element, anything else is a URL.
template <SvgElementAccess Element>
int HandleLink(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
               ORVPrtGraphicPrimitiveElt& container);

/// Applies "patternTransform" and then "transform": a group with both gets both, on purpose.
template <SvgElementAccess Element>
void ApplyGroupTransforms(const SvgDrawState& state, const Element& element,
                          ORVPrtGraphicPrimitiveElt& group);
