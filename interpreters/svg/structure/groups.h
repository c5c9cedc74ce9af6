// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtGroupElt;

/// Fills a group from a "g" element: identity, transform, children. The state leaves as it came, and the
/// definitions made inside end with the group. Both "desc" and "title" become the description.
/// @return kDone, or kUnusable when `group` is null
template <SvgElementAccess Element>
int HandleGroup(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
                ORVPrtGraphicPrimitiveElt& container);

/// The same for an "a" element, with the target of its link: "#id" names an element, anything else is a URL.
template <SvgElementAccess Element>
int HandleLink(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
               ORVPrtGraphicPrimitiveElt& container);

/// Applies "patternTransform" and then "transform": a group carrying both gets both, on purpose.
template <SvgElementAccess Element>
void ApplyGroupTransforms(const SvgDrawState& state, const Element& element,
                          ORVPrtGraphicPrimitiveElt& group);
