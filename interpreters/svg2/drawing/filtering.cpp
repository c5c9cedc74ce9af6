// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <cstddef>
#include <variant>

#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/tree/page_size.h"
#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/tree/structure.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/print/ORVPrintModelRender.h"

namespace svg2 {
namespace {

bool IsFinite(const ORVMathBox2D& box) { return std::isfinite(box.xMin + box.xMax + box.yMin + box.yMax); }

/// The area around the page whose content a filter may move onto the page.
ORVMathBox2D AroundPage(const ORVMathBox2D& page) {
    const double width = page.xMax - page.xMin, height = page.yMax - page.yMin;
    return {page.xMin - width, page.xMax + width, page.yMin - height, page.yMax + height};
}

/// Cost of a filter's steps, in elements: long lists count as several.
std::size_t WeightOf(const std::vector<ORVPrintFilterStep>& steps) {
    constexpr std::size_t kNumbersOfElement = 4;
    std::size_t numbers = 0;
    for (const ORVPrintFilterStep& step : steps) {
        numbers += step.inputs.size();
        if (const auto* convolution = std::get_if<ORVFilterConvolution>(&step.operation))
            numbers += convolution->kernel.size();
        if (const auto* transfer = std::get_if<ORVFilterTransfer>(&step.operation))
            for (const ORVFilterTransfer::Function& function : transfer->functions)
                numbers += function.values.size();
    }
    return steps.size() + numbers / kNumbersOfElement;
}

}  // namespace

/// False for shapes without an outline: there is nothing to filter.
bool Drawing::IsDrawn(ElementIndex element, const Style& style, const Viewport& viewport) const {
    ORVPrintPath path;
    return !IsShape(scene_.GetDocument()[element].tag) || AddOutline(scene_, element, style, viewport, path);
}

bool Drawing::BeginFiltering(ElementIndex element, const Style& style, const DrawState& outer) {
    DrawState state = outer;
    ORVMathAffine2D toInner;
    if (element == Document::kRoot && !EnterRoot(state, toInner)) return false;
    FilterReader reader(scene_, active_,
                        [&] { return MapBox(toInner, bounds_.Of(element, style, outer.viewport)); });
    FilterDescription description;
    switch (reader.Read(style, state.viewport, description)) {
        case FilterEffect::kNone: return true;
        case FilterEffect::kHides: return false;
        case FilterEffect::kFilters: break;
    }
    if (!IsDrawn(element, style, state.viewport)) return false;
    for (std::size_t weight = WeightOf(description.steps); weight > 0; --weight)
        if (!budget_.TakeElement()) return Do(ORVPrintModelRender::kTooManyRepeats);
    if (pages_.size() >= DrawingBudget::kGreatestNesting || state.depth + 1 >= DrawingBudget::kGreatestDepth)
        return Do(ORVPrintModelRender::kTooManyRepeats);
    const ORVPrintFilter filter{description.steps, description.region, state.toPage,
                                static_cast<unsigned int>(description.images.size())};
    if (!Do(generator_.BeginFilter(filter))) return false;
    ends_.push_back(End::kFilter);
    pages_.push_back(page_);
    page_ = AroundPage(page_);
    if (IsFinite(description.region)) Unite(page_, MapBox(state.toPage, description.region));
    std::size_t entered = 0;
    for (const ElementIndex used : description.filters)
        if (Enter(used)) ++entered;
    for (const FilterImage& image : description.images) {
        const int result = generator_.BeginFilterInput();
        if (result == ORVPrintGenerator::kSkipInput) continue;
        if (!Do(result)) break;
        DrawFilterImage(image, state);
        if (!Do(generator_.EndFilterInput())) break;
    }
    for (; entered > 0; --entered) Leave();
    return !IsStopped();
}

/// The root's filter uses the coordinates of its content.
/// @return false if these do not exist
bool Drawing::EnterRoot(DrawState& state, ORVMathAffine2D& toInner) const {
    const auto root = FindRootViewport(scene_.GetDocument(), state.viewport);
    const auto inverse = root ? root->toOuter.Inverse() : std::nullopt;
    if (!inverse) return false;
    toInner = *inverse;
    state.toPage = state.toPage * root->toOuter;
    state.viewport = root->sizes;
    return true;
}

void Drawing::EndFiltering() {
    Do(generator_.EndFilter());
    page_ = pages_.back();
    pages_.pop_back();
}

/// Draws the content of an "feImage": an element of the document in the filtered element's user space, or an
/// image.
void Drawing::DrawFilterImage(const FilterImage& image, const DrawState& outer) {
    const Document& document = scene_.GetDocument();
    const std::string_view reference = Trim(document.ValueOf(image.element, Name::kHref));
    DrawState state = outer;
    ++state.depth;
    state.context = nullptr;
    if (!reference.starts_with('#')) {
        ImageContent& content = images_.Find(reference);
        const Rectangle& place = image.subregion;
        if ((content.pixels || content.drawing) && place.width > 0.0 && place.height > 0.0)
            PlaceImage(content, place,
                       ReadAspectRatio(document.ValueOf(image.element, Name::kPreserveAspectRatio)), true,
                       scene_.StyleInPlace(image.element).imageRendering, {}, state);
        return;
    }
    const ElementIndex target = document.FindByReference(reference);
    if (target == kNoElement) return;
    state.toPage = state.toPage * ORVMathAffine2D::Translation(image.hasX ? image.subregion.x : 0.0,
                                                               image.hasY ? image.subregion.y : 0.0);
    DrawElement(target, scene_.StyleInPlace(image.element), state);
}

}  // namespace svg2
