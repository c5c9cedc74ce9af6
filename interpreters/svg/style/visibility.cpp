// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/visibility.h"

#include "interpreters/svg/state/SvgDrawState.h"

template <SvgElementAccess Element>
void ApplyDisplayVisibility(SvgDrawState& state, const Element& element) {
    if (element.Attribute(AttributeName::kDisplay).text == "none") state.drawStyle = kDrawNothing;

    const std::string_view visibility = element.Attribute(AttributeName::kVisibility).text;
    if (visibility == "visible") {
        state.drawStyle = kDrawFillAndStroke;
    } else if (visibility == "hidden" || visibility == "collapse") {
        state.drawStyle = kDrawNothing;
    }
}

template void ApplyDisplayVisibility(SvgDrawState&, const DomElementAccess&);
template void ApplyDisplayVisibility(SvgDrawState&, const LightElementAccess&);
