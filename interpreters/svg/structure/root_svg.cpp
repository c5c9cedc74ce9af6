// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/root_svg.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_texts.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/structure/child_loop.h"
#include "interpreters/svg/structure/walker.h"
#include "interpreters/svg/style/paint.h"
#include "interpreters/svg/style/presentation.h"
#include "interpreters/svg/values/colour.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/view_box.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/ORVPrtViewBox.h"
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"

namespace {

// Each dimension is divided by itself, so a viewBox never scales; but the quotient is NaN if a dimension is 0
// or infinite. Kept on purpose.
double PageScale(const ORVPrtViewBox& box) {
    const auto isDivisible = [](double dimension) { return dimension != 0.0 && std::isfinite(dimension); };
    if (isDivisible(box.height) && isDivisible(box.width)) return 1.0;
    return std::numeric_limits<double>::quiet_NaN();
}

void ApplyPageViewBox(SvgDrawState& state, const ORVPrtViewBox& box) {
    ORVPrtImageElt& page = *state.page;
    double originY = state.yFlip == 1 ? -box.minY : box.minY;
    if (state.embeddedFragment == 1) originY = -(box.height + box.minY);
    page.SetOrigin({box.minX, originY});
    page.SetSize(box.width, box.height);
    state.pageWidth = box.width;
    state.pageHeight = state.embeddedFragment == 1 ? 0.0 : box.height;
    const double scale = PageScale(box);
    page.SetMatrix({scale, 0.0, 0.0, scale});
}

template <SvgElementAccess Element>
int WalkPage(SvgDrawState& state, const Element& element) {
    int result = 0;
    ForEachChild(state, element, [&](const Element& child) {
        if (child.Name() == ElementName::kTitle) {
            if (!child.Text().empty()) state.page->SetTitle(ORVUnicodeString(child.Text()));
        } else if (!ReadDescription(child, *state.page)) {
            result = HandleChild(state, child, state.page);
        }
    });
    return result;
}

// A page without a size gets that of its content's bounding box.
void SizePageByContent(const SvgDrawState& state) {
    if (state.pageWidth > 0.0 || state.pageHeight > 0.0) return;
    double xMin = 0.0, xMax = 0.0, yMin = 0.0, yMax = 0.0;
    if (state.boxes->Compute(*state.page, xMin, xMax, yMin, yMax) != 1) return;
    state.page->SetOrigin({xMin, yMin});
    state.page->SetSize(xMax - xMin, yMax - yMin);
}

}  // namespace

template <SvgElementAccess Element>
void SizePage(SvgDrawState& state, const Element& element) {
    ReadLengthAttribute(state, element, AttributeName::kWidth, state.pageWidth);
    ReadLengthAttribute(state, element, AttributeName::kHeight, state.pageHeight);
    state.page->SetSize(state.pageWidth, state.pageHeight);
    state.page->SetUnits(kUnitNinetiethInch);

    ORVPrtViewBox box{0.0, 0.0, state.pageWidth, state.pageHeight};
    if (ReadViewBox(element.Attribute(AttributeName::kViewBox).text, box) == kRead) {
        ApplyPageViewBox(state, box);
    } else if (state.embeddedFragment == 1) {
        state.page->SetOrigin({0.0, -state.pageHeight});
        state.pageHeight = 0.0;
    }
    state.page->SetMirrorHeight(state.pageHeight);
}

template <SvgElementAccess Element>
int BuildPage(const SvgPageSource& source, const Element& element, ORVPrtModel& model) {
    const ORVRef<ORVPrtImageElt> page(model.Create<ORVPrtImageElt>());
    if (!page) return kNoMemory;
    model.AddImage(page.get());
    EnsureColourTable(*page);

    SvgDefinitions definitions(&model.GetBudget());
    ORVPrintModelBoundingBoxComputer boxes(model.GetBudget());
    SvgDrawState state;
    state.model = &model;
    state.page = page.get();
    state.definitions = &definitions;
    state.boxes = &boxes;
    state.currentPath = &source.currentPath;
    state.yFlip = source.yFlip;
    state.embeddedFragment = source.embeddedFragment;

    ApplyContainerPresentation(state, element);
    ReadIdentifier(element, *page);
    SizePage(state, element);
    const int result = WalkPage(state, element);
    SizePageByContent(state);
    return result;
}

template void SizePage(SvgDrawState&, const DomElementAccess&);
template void SizePage(SvgDrawState&, const LightElementAccess&);
template int BuildPage(const SvgPageSource&, const DomElementAccess&, ORVPrtModel&);
template int BuildPage(const SvgPageSource&, const LightElementAccess&, ORVPrtModel&);
