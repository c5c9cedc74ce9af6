// SPDX-License-Identifier: Apache-2.0
#include "library/check/page_size.h"

#include <cmath>
#include <cstdio>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_access.h"
#include "interpreters/svg/structure/root_svg.h"
#include "interpreters/svg/values/length.h"
#include "platform/model/ORVPrtImageElt.h"

namespace {

using enum FindingCode;

bool IsPercentage(std::string_view value) { return value.find('%') != value.npos; }

bool Differs(double asked, double got) { return asked > 0.0 && std::abs(asked - got) > 0.01 * asked; }

// Converts a length from user units.
std::string InMillimetres(double length) {
    const double tenths = std::round(length * 254.0 / 90.0);
    char text[48];
    std::snprintf(text, sizeof text, "%.1f", tenths / 10.0);
    return text;
}

std::string SizeText(double width, double height) {
    return InMillimetres(width) + " x " + InMillimetres(height) + " mm";
}

}  // namespace

void CheckPageSize(FindingWriter& findings, const NumberedElement& svg, SvgDrawState state) {
    const LightElementAccess element(svg.node);
    ReadLengthAttribute(state, element, AttributeName::kWidth, state.pageWidth);
    ReadLengthAttribute(state, element, AttributeName::kHeight, state.pageHeight);
    const double width = state.pageWidth, height = state.pageHeight;
    SizePage(state, element);

    const std::string_view viewBox = svg.node->Value(AttributeName::kViewBox);
    if (viewBox.empty()) {
        if (svg.node->Value(AttributeName::kWidth).empty() && svg.node->Value(AttributeName::kHeight).empty())
            findings.Note(kPageWithoutSize, svg, {}, {}, "has neither width and height nor a viewBox");
        for (const AttributeName name : {AttributeName::kWidth, AttributeName::kHeight})
            if (IsPercentage(svg.node->Value(name)))
                findings.Note(
                    kPercentageOfNothing, svg, GetNameText(name), svg.node->Value(name),
                    "the percentage of a page refers to nothing: give its size as a length, or a viewBox");
        return;
    }
    // For a percentage, the viewer determines the size.
    if (IsPercentage(svg.node->Value(AttributeName::kWidth)) ||
        IsPercentage(svg.node->Value(AttributeName::kHeight)))
        return;
    double boxWidth = 0.0, boxHeight = 0.0;
    state.page->GetSize(boxWidth, boxHeight);
    if (Differs(width, boxWidth) || Differs(height, boxHeight))
        findings.Note(kViewBoxNotScaled, svg, "viewBox", viewBox,
                      "the page is " + SizeText(boxWidth, boxHeight) + ", not " + SizeText(width, height) +
                          " of width and height");
}
