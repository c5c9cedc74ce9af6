// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/Bounds.h"

#include <algorithm>
#include <memory>

#include "interpreters/svg2/text/TextLayout.h"
#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/tree/structure.h"

namespace svg2 {

ORVMathBox2D Bounds::OfChild(ElementIndex child, const Style& parent, const Viewport& viewport,
                             const ORVMathAffine2D& map, int depth) {
    // On the heap, to keep stack frames small for deep documents.
    const auto own = std::make_unique<Style>();
    Style& style = *own;
    scene_.GetCascade().Compute(child, parent, style);
    ORVMathAffine2D transform;
    if (!style.isDisplayed || !PassesConditions(scene_.GetDocument(), child) ||
        !scene_.TransformOf(child, style, viewport, transform))
        return {};
    return OfContent(child, style, viewport, map * transform, depth + 1);
}

ORVMathBox2D Bounds::OfChildren(ElementIndex element, const Style& style, const Viewport& viewport,
                                const ORVMathAffine2D& map, int depth) {
    const Document& document = scene_.GetDocument();
    ORVMathBox2D box;
    for (ElementIndex child = document[element].firstChild; child != kNoElement;
         child = document[child].nextSibling)
        Unite(box, OfChild(child, style, viewport, map, depth));
    return box;
}

ORVMathBox2D Bounds::OfViewport(ElementIndex element, const Style& style, const Viewport& viewport,
                                const ORVMathAffine2D& map, ElementIndex use, const Style* useStyle,
                                int depth) {
    const auto inner = FindInnerViewport(scene_, element, style, viewport, use, useStyle);
    if (!inner) return {};
    return OfChildren(element, style, inner->sizes, map * inner->toOuter, depth);
}

ORVMathBox2D Bounds::OfUse(ElementIndex element, const Style& style, const Viewport& viewport,
                           const ORVMathAffine2D& map, int depth) {
    const Document& document = scene_.GetDocument();
    const ElementIndex target = FindUseTarget(document, element);
    if (target == kNoElement || std::find(uses_.begin(), uses_.end(), target) != uses_.end()) return {};
    Style targetStyle;
    scene_.GetCascade().Compute(target, style, targetStyle);
    ORVMathAffine2D transform;
    if (!IsShownByUse(document, target, targetStyle) ||
        !scene_.TransformOf(target, targetStyle, viewport, transform))
        return {};
    const ORVMathAffine2D place = map * transform;
    uses_.push_back(target);
    const bool makesViewport = document[target].tag == Tag::kSvg || document[target].tag == Tag::kSymbol;
    const ORVMathBox2D box =
        makesViewport ? OfViewport(target, targetStyle, viewport, place, element, &style, depth + 1)
                      : OfContent(target, targetStyle, viewport, place, depth + 1);
    uses_.pop_back();
    return box;
}

ORVMathBox2D Bounds::OfImage(ElementIndex element, const Style& style, const Viewport& viewport,
                             const ORVMathAffine2D& map) {
    PlacedImage placed;
    if (images_ && images_->Place(scene_, element, style, viewport, placed))
        return MapBox(map, placed.place.Box());
    // An image that cannot be read still occupies its area.
    const Rectangle place{scene_.LengthOf(element, Name::kX, style, viewport, Axis::kX),
                          scene_.LengthOf(element, Name::kY, style, viewport, Axis::kY),
                          scene_.LengthOf(element, Name::kWidth, style, viewport, Axis::kX),
                          scene_.LengthOf(element, Name::kHeight, style, viewport, Axis::kY)};
    return place.width > 0.0 && place.height > 0.0 ? MapBox(map, place.Box()) : ORVMathBox2D{};
}

ORVMathBox2D Bounds::OfContent(ElementIndex element, const Style& style, const Viewport& viewport,
                               const ORVMathAffine2D& map, int depth) {
    const Document& document = scene_.GetDocument();
    if (depth > DrawingBudget::kGreatestDepth || !budget_.TakeElement(document[element].payload) ||
        !scene_.GetCascade().IsWithinBudget())
        return {};
    switch (const Tag tag = document[element].tag) {
        case Tag::kG:
        case Tag::kA: return OfChildren(element, style, viewport, map, depth);
        case Tag::kSwitch: {
            const ElementIndex child = ChooseOfSwitch(scene_, element);
            return child == kNoElement ? ORVMathBox2D{} : OfChild(child, style, viewport, map, depth);
        }
        case Tag::kSvg:
            if (element == Document::kRoot) {
                const auto root = FindRootViewport(document, viewport);
                if (!root) return OfChildren(element, style, viewport, map, depth);
                return OfChildren(element, style, root->sizes, map * root->toOuter, depth);
            }
            [[fallthrough]];
        case Tag::kSymbol: {
            const DrawnUse drawn = element == drawn_.target ? drawn_ : DrawnUse{};
            return OfViewport(element, style, viewport, map, drawn.use, drawn.style, depth);
        }
        case Tag::kText: {
            TextLayout text(scene_, fonts_);
            if (!text.LayOut(element, style, viewport)) return {};
            return MapBox(map, text.GetBox());
        }
        case Tag::kUse: return OfUse(element, style, viewport, map, depth);
        case Tag::kImage: return OfImage(element, style, viewport, map);
        default: {
            if (!IsShape(tag)) return {};
            ORVPrintPath path;
            AddOutline(scene_, element, style, viewport, path);
            return svg2::BoxOf(path, map);
        }
    }
}

}  // namespace svg2
