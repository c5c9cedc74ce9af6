// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_access.h"

class ORVPrtGraphicPrimitiveElt;
class ORVPrtGroupElt;

/// Fills a group from a "use" element: adds the definition that it refers to, restyled, and places it at the
/// element's position, fitted to its size where it has one. An unknown reference draws nothing.
/// @return kDone, or kUnusable when `group` is null
template <SvgElementAccess Element>
int HandleUse(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
              ORVPrtGraphicPrimitiveElt& container);

/// Has the definition fetched that one of the next siblings refers to, where there are so many definitions
/// that each would be waited for.
template <SvgElementAccess Element>
void PrefetchReference(const SvgDrawState& state, const Element& element) {
    if (!state.definitions->AreMany()) return;
    Element ahead = element;
    constexpr int kAhead = 3;  // as many as the way to a definition has steps
    for (int i = 0; i < kAhead && !ahead.IsNull(); ++i) ahead = ahead.NextSibling();
    if (ahead.IsNull() || ahead.Name() != ElementName::kUse) return;
    const std::string_view reference = ahead.Attribute(AttributeName::kXlinkHref).text;
    if (reference.starts_with('#')) state.definitions->Prefetch(reference.substr(1));
}

/// Fills a group from an "svg" element inside a drawing: its children, moved to its position and fitted to
/// its size where it has a "viewBox". Percentages inside refer to the page. It reads no "transform".
/// @return kDone, or kUnusable when `group` is null
template <SvgElementAccess Element>
int HandleNestedSvg(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
                    ORVPrtGraphicPrimitiveElt& container);
