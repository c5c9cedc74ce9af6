// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_access.h"

class ORVPrtGraphicPrimitiveElt;
class ORVPrtGroupElt;

/// Fills in a group from a "use" element: adds the restyled definition it refers to, at the element's
/// position and fitted to its size, if any. An unknown reference draws nothing.
/// @return kDone, or kUnusable if `group` is null
template <SvgElementAccess Element>
int HandleUse(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
              ORVPrtGraphicPrimitiveElt& container);

/// Prefetches the definition that an upcoming sibling refers to, if there are so many definitions that each
/// access would miss the cache.
template <SvgElementAccess Element>
void PrefetchReference(const SvgDrawState& state, const Element& element) {
    if (!state.definitions->AreMany()) return;
    Element ahead = element;
    constexpr int kAhead = 3;  // the number of steps of SvgDefinitions::Prefetch
    for (int i = 0; i < kAhead && !ahead.IsNull(); ++i) ahead = ahead.NextSibling();
    if (ahead.IsNull() || ahead.Name() != ElementName::kUse) return;
    const std::string_view reference = ahead.Attribute(AttributeName::kXlinkHref).text;
    if (reference.starts_with('#')) state.definitions->Prefetch(reference.substr(1));
}

/// Fills in a group from a nested "svg" element: its children, moved to its position and fitted to its size
/// if it has a "viewBox". Percentages inside refer to the page. "transform" is ignored.
/// @return kDone, or kUnusable if `group` is null
template <SvgElementAccess Element>
int HandleNestedSvg(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
                    ORVPrtGraphicPrimitiveElt& container);
