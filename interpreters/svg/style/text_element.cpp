// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/text_element.h"

#include <string>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_texts.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/style/presentation.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/text_scan.h"
#include "interpreters/svg/values/transform_list.h"
#include "interpreters/svg/values/view_box.h"
#include "platform/model/ORVPrtTextElt.h"
#include "platform/model/ORVPrtViewBox.h"

namespace {

// Removes line breaks and tabs without replacement, and trims blanks at both ends.
ORVUnicodeString PackedText(std::string_view text) {
    std::string packed(text);
    std::erase_if(packed, [](char c) { return c == '\n' || c == '\r' || c == '\t'; });
    return TrimBlanks(packed);
}

template <SvgElementAccess Element>
ORVMathPoint2D ReadPosition(const SvgDrawState& state, const Element& element) {
    double x = 0.0, y = 0.0, dx = 0.0, dy = 0.0;
    ReadHorizontalAttribute(state, element, AttributeName::kX, x);
    ReadVerticalCoordinateAttribute(state, element, AttributeName::kY, y);
    ReadHorizontalAttribute(state, element, AttributeName::kDx, dx);
    ParseVerticalLength(state, element.Attribute(AttributeName::kDy).text, dy);
    return {x + dx, y + dy};  // dy is added to the mirrored y with unchanged sign, on purpose
}

}  // namespace

template <SvgElementAccess Element>
int BuildText(SvgDrawState state, const Element& element, ORVPrtTextElt* text,
              ORVPrtGraphicPrimitiveElt& /*container*/) {
    if (!text) return kUnusable;

    ApplyTextPresentation(state, element);
    text->SetDrawStyle(state.drawStyle);
    text->SetStrokeAttributes(state.stroke);
    text->SetFillAttributes(state.fill);
    ReadIdentifier(element, *text);
    ApplyTextLayout(state, element);
    ApplyFont(state, element);
    text->SetTextAttributes(state.text);
    const std::string_view transform = element.Attribute(AttributeName::kTransform).text;
    if (!transform.empty()) ApplyTransformList(state, transform, text);
    text->SetPosition(ReadPosition(state, element));
    // "rotate" and "textLength" have no effect: the text attributes are set before these are read.

    const std::string_view clip = element.Attribute(AttributeName::kViewBox).text;
    if (!clip.empty()) {
        ORVPrtViewBox box{0.0, 0.0, state.pageWidth, state.pageHeight};
        ReadViewBox(clip, box);
        text->SetClippingBox(box.minX, box.minY, box.width, box.height);
    }
    if (!element.Text().empty()) text->SetText(PackedText(element.Text()));
    ReadDescriptions(element, *text);
    return kTextDone;
}

template int BuildText(SvgDrawState, const DomElementAccess&, ORVPrtTextElt*, ORVPrtGraphicPrimitiveElt&);
template int BuildText(SvgDrawState, const LightElementAccess&, ORVPrtTextElt*, ORVPrtGraphicPrimitiveElt&);
