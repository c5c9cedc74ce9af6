// SPDX-License-Identifier: Apache-2.0
#include "library/check/visibility.h"

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_access.h"
#include "interpreters/svg/style/presentation.h"

void Visibility::TakeIn(const NumberedElement& element, const SvgDrawState& inherited) {
    const LightElementAccess access(element.node);
    if (element.node->Value(AttributeName::kDisplay) == "none") isRemoved = true;
    const std::string_view visibility = element.node->Value(AttributeName::kVisibility);
    if (visibility == "hidden" || visibility == "collapse") {
        *this = {.isRemoved = isRemoved, .isHidden = true, .shownBy = {}, .drawStyle = 0};
    } else if (visibility == "visible") {
        drawStyle = GetMeantStyle(inherited.drawStyle);
        shownBy = element;
        isHidden = false;
    }
    if (!shownBy.node) return;

    // The element's own paint applies with or without "visible".
    SvgDrawState state = inherited;
    state.drawStyle = drawStyle;
    ApplyPaint(state, access);
    ApplyStyleAttribute(state, access);
    drawStyle = state.drawStyle;
}
