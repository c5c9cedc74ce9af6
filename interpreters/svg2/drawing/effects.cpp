// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>

#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/drawing/TextDrawing.h"
#include "interpreters/svg2/paint/basic_shapes.h"
#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/tree/structure.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/print/ORVPrintModelRender.h"

namespace svg2 {
namespace {

bool IsAxisParallel(const ORVMathAffine2D& map) {
    return (map.m12 == 0.0 && map.m21 == 0.0) || (map.m11 == 0.0 && map.m22 == 0.0);
}

bool Contains(const std::vector<ElementIndex>& elements, ElementIndex element) {
    return std::find(elements.begin(), elements.end(), element) != elements.end();
}

bool Overlap(const ORVMathBox2D& a, const ORVMathBox2D& b) {
    return a.xMin < b.xMax && b.xMin < a.xMax && a.yMin < b.yMax && b.yMin < a.yMax;
}

/// The transformation from fractions of a bounding box to user units.
ORVMathAffine2D OfBox(const ORVMathBox2D& box) {
    return {box.xMax - box.xMin, 0.0, 0.0, box.yMax - box.yMin, box.xMin, box.yMin};
}

bool HasArea(const ORVMathBox2D& box) { return box.xMax > box.xMin && box.yMax > box.yMin; }

}  // namespace

void Drawing::EndBack(std::size_t mark) {
    while (ends_.size() > mark) {
        const End end = ends_.back();
        ends_.pop_back();
        if (IsStopped()) continue;
        switch (end) {
            case End::kGroup: Do(generator_.EndGroup()); break;
            case End::kLayer: Do(generator_.EndLayer()); break;
            case End::kClip: Do(generator_.EndClip()); break;
            case End::kClipPath: Do(generator_.EndClipPath()); break;
            case End::kFilter: EndFiltering(); break;
        }
    }
}

void Drawing::BeginRectangle(const Rectangle& rectangle, const ORVMathAffine2D& toPage) {
    if (IsAxisParallel(toPage)) {
        if (Do(generator_.BeginClip(MapBox(toPage, rectangle.Box())))) ends_.push_back(End::kClip);
        return;
    }
    ORVPrintPath path;
    AddRectangle(path, rectangle);
    BeginOutline(path, toPage, false);
}

void Drawing::BeginOutline(const ORVPrintPath& path, const ORVMathAffine2D& toPage, bool isEvenOdd) {
    if (Do(generator_.BeginClipPath({path, toPage, isEvenOdd}))) ends_.push_back(End::kClipPath);
}

// For a single fill or stroke, the opacity of the paint is equivalent to group opacity.
double Drawing::PaintOpacity(ElementIndex element, const Style& style) const {
    return NeedsLayer(element, style) ? 1.0 : style.opacity;
}

bool Drawing::NeedsLayer(ElementIndex element, const Style& style) const {
    if (style.blend != ORVPrintBlendMode::kNormal || style.isIsolated) return true;
    if (style.opacity >= 1.0) return false;
    if (ElementIndex mask = kNoElement; !style.filter.empty() || FindMask(style, mask)) return true;
    const bool isShape = IsShape(scene_.GetDocument()[element].tag);
    const bool hasOnePaint = style.fill.kind == Paint::Kind::kNone || style.stroke.kind == Paint::Kind::kNone;
    return !(isShape && hasOnePaint && !HasMarkers(element, style));
}

bool Drawing::FindMask(const Style& style, ElementIndex& mask) const {
    std::string_view id, rest;
    if (style.mask.empty() || !TakeReference(style.mask, id, rest)) return false;
    mask = scene_.GetDocument().FindById(id);
    return mask != kNoElement && scene_.GetDocument()[mask].tag == Tag::kMask && !Contains(active_, mask);
}

bool Drawing::BeginEffects(ElementIndex element, const Style& style, const DrawState& state) {
    // In clip paths, only the areas of shapes matter.
    if (state.isWithinClip)
        return style.clipPath.empty() || BeginClipping(style.clipPath, element, style, state);
    if (style.opacity <= 0.0) return false;
    ElementIndex mask = kNoElement;
    const bool hasMask = FindMask(style, mask);
    if (hasMask || NeedsLayer(element, style)) {
        ORVPrintLayer layer;
        layer.opacity = style.opacity;
        layer.blend = style.blend;
        layer.hasMask = hasMask;
        layer.box = page_;
        if (!Do(generator_.BeginLayer(layer))) return false;
        ends_.push_back(End::kLayer);
        if (hasMask) {
            const std::uint64_t payload = IsRepeated() ? DrawingBudget::kMaskPayload : 0;
            if (!budget_.TakeElement(payload)) return Do(ORVPrintModelRender::kTooManyRepeats);
            if (!Enter(mask)) return false;
            const bool shows = BeginMasking(element, style, state);
            Leave();
            if (!shows) return false;
        }
    }
    if (!style.clipPath.empty() && !BeginClipping(style.clipPath, element, style, state)) return false;
    return style.filter.empty() || BeginFiltering(element, style, state);
}

/// Draws the mask of the layer that has just been opened.
bool Drawing::BeginMasking(ElementIndex element, const Style& style, const DrawState& state) {
    const ElementIndex mask = active_.back();
    const Style& maskStyle = scene_.StyleInPlace(mask);
    const Units units = scene_.UnitsOf(mask, Name::kMaskUnits, Units::kBoundingBox);
    const Units contentUnits = scene_.UnitsOf(mask, Name::kMaskContentUnits, Units::kUserSpace);
    ORVMathBox2D box;
    if (units == Units::kBoundingBox || contentUnits == Units::kBoundingBox) {
        box = bounds_.Of(element, style, state.viewport);
        if (!HasArea(box)) return false;
    }
    const Viewport unit{1.0, 1.0};
    const Viewport& sizes = units == Units::kBoundingBox ? unit : state.viewport;
    const auto lengthOf = [&](Name name, Axis axis, double share) {
        return scene_.LengthOf(mask, name, maskStyle, sizes, axis, share * Scene::BaseOf(sizes, axis));
    };
    constexpr double kMargin = -0.1, kSize = 1.2;  // the default region
    const Rectangle region{lengthOf(Name::kX, Axis::kX, kMargin), lengthOf(Name::kY, Axis::kY, kMargin),
                           lengthOf(Name::kWidth, Axis::kX, kSize), lengthOf(Name::kHeight, Axis::kY, kSize)};
    if (!(region.width > 0.0) || !(region.height > 0.0)) return false;
    const ORVMathAffine2D regionToPage =
        units == Units::kBoundingBox ? state.toPage * OfBox(box) : state.toPage;

    ORVPrintMask drawn;
    drawn.kind = maskStyle.isOpacityMask        ? ORVPrintMask::Kind::kOpacity
                 : maskStyle.interpolatesLinear ? ORVPrintMask::Kind::kLinearLuminance
                                                : ORVPrintMask::Kind::kLuminance;
    drawn.box = MapBox(regionToPage, region.Box());
    const int result = generator_.BeginMask(drawn);
    if (result == ORVPrintGenerator::kSkipMask) return true;
    if (!Do(result)) return false;
    DrawState inner = state;
    inner.context = nullptr;
    ++inner.depth;
    if (contentUnits == Units::kBoundingBox) inner.toPage = state.toPage * OfBox(box);
    const std::size_t mark = ends_.size();
    if (!IsAxisParallel(regionToPage)) BeginRectangle(region, regionToPage);
    // A mask may have its own mask and clip path.
    ElementIndex outerMask = kNoElement;
    bool shows = true;
    if (FindMask(maskStyle, outerMask)) {
        ORVPrintLayer layer;
        layer.hasMask = true;
        layer.box = page_;
        if (Do(generator_.BeginLayer(layer))) {
            ends_.push_back(End::kLayer);
            if (Enter(outerMask)) {
                shows = BeginMasking(element, style, state);
                Leave();
            }
        }
    }
    if (shows && !maskStyle.clipPath.empty())
        shows = BeginClipping(maskStyle.clipPath, mask, maskStyle, inner);
    if (shows) DrawChildren(mask, maskStyle, inner);
    EndBack(mark);
    return Do(generator_.EndMask());
}

bool Drawing::BeginClipping(std::string_view clipPath, ElementIndex element, const Style& style,
                            const DrawState& state) {
    std::string_view id, rest;
    if (TakeReference(clipPath, id, rest)) {
        const ElementIndex clip = scene_.GetDocument().FindById(id);
        const bool isUsable = clip != kNoElement && scene_.GetDocument()[clip].tag == Tag::kClipPath &&
                              !Contains(active_, clip);
        return !isUsable || BeginReferencedClip(clip, element, style, state);
    }
    ORVPrintPath path;
    bool isEvenOdd = false;
    const auto box = [&](ShapeBox kind) -> ORVMathBox2D {
        if (kind == ShapeBox::kView) return {0.0, state.viewport.width, 0.0, state.viewport.height};
        ORVMathBox2D fill = bounds_.Of(element, style, state.viewport);
        if (kind == ShapeBox::kStroke && style.stroke.kind != Paint::Kind::kNone && !fill.IsEmpty()) {
            const double reach = style.strokeWidth.Resolve(state.viewport.Diagonal()) / 2.0;
            fill = {fill.xMin - reach, fill.xMax + reach, fill.yMin - reach, fill.yMax + reach};
        }
        return fill;
    };
    if (!AddBasicShape(clipPath, scene_.GetCascade().SizesOf(style), box, path, isEvenOdd)) return true;
    BeginOutline(path, state.toPage, isEvenOdd);
    return true;
}

namespace {

/// A child of a clip path, as an outline.
struct ClipOutline {
    ORVPrintPath path;
    ORVMathBox2D box;
    bool isEvenOdd = false;
};

}  // namespace

bool Drawing::BeginReferencedClip(ElementIndex clip, ElementIndex element, const Style& style,
                                  const DrawState& state) {
    const Document& document = scene_.GetDocument();
    const Style& clipStyle = scene_.StyleInPlace(clip);
    DrawState inner = state;
    inner.isWithinClip = true;
    inner.context = nullptr;
    ++inner.depth;
    if (inner.depth >= DrawingBudget::kGreatestDepth) return Do(ORVPrintModelRender::kTooManyRepeats);
    if (scene_.UnitsOf(clip, Name::kClipPathUnits, Units::kUserSpace) == Units::kBoundingBox) {
        const ORVMathBox2D box = bounds_.Of(element, style, state.viewport);
        if (!HasArea(box)) return false;
        inner.toPage = state.toPage * OfBox(box);
    }
    ORVMathAffine2D transform;
    if (!scene_.TransformOf(clip, clipStyle, inner.viewport, transform)) return false;
    inner.toPage = inner.toPage * transform;
    if (!IsInvertible(inner.toPage)) return false;

    if (!Enter(clip)) return false;
    bool shows = true;
    // A clip path's own clip-path uses the element's user units and bounding box, whatever clipPathUnits
    // says.
    if (!clipStyle.clipPath.empty()) {
        DrawState outer = inner;
        outer.toPage = state.toPage;
        shows = BeginClipping(clipStyle.clipPath, element, style, outer);
    }

    // Shapes that do not overlap are combined into one outline; otherwise the clip is drawn as a mask.
    std::vector<ClipOutline> outlines;
    bool isSimple = true;
    for (ElementIndex child = document[clip].firstChild; shows && child != kNoElement;
         child = document[child].nextSibling) {
        // Other content is checked when the mask is drawn.
        if (!isSimple) break;
        const ElementIndex shape = child;
        if (!TakeElement(child)) {
            shows = false;
            break;
        }
        if (!IsShape(document[shape].tag) && document[shape].tag != Tag::kUse &&
            document[shape].tag != Tag::kText)
            continue;
        Style childStyle;
        scene_.GetCascade().Compute(child, clipStyle, childStyle);
        if (!childStyle.isDisplayed || !PassesConditions(document, child)) continue;
        if (!IsShape(document[shape].tag) || !childStyle.clipPath.empty()) {
            isSimple = false;
            continue;
        }
        if (childStyle.visibility != Visibility::kVisible) continue;
        ORVMathAffine2D childTransform;
        ClipOutline outline;
        if (!scene_.TransformOf(child, childStyle, inner.viewport, childTransform)) continue;
        if (!AddOutline(scene_, child, childStyle, inner.viewport, outline.path)) continue;
        for (ORVMathPoint2D& point : outline.path.points) point = childTransform(point);
        outline.box = BoxOf(outline.path);
        outline.isEvenOdd = childStyle.clipIsEvenOdd;
        for (const ClipOutline& other : outlines)
            if (Overlap(other.box, outline.box) || other.isEvenOdd != outline.isEvenOdd) isSimple = false;
        outlines.push_back(std::move(outline));
        constexpr std::size_t kMostCompared = 64;
        if (outlines.size() > kMostCompared) isSimple = false;
    }
    if (shows && isSimple) {
        ORVPrintPath all;
        bool isEvenOdd = false;
        for (const ClipOutline& outline : outlines) {
            all.verbs.insert(all.verbs.end(), outline.path.verbs.begin(), outline.path.verbs.end());
            all.points.insert(all.points.end(), outline.path.points.begin(), outline.path.points.end());
            isEvenOdd = outline.isEvenOdd;
        }
        // An empty clip path hides everything.
        shows = !all.IsEmpty();
        if (shows) BeginOutline(all, inner.toPage, isEvenOdd);
    } else if (shows) {
        ORVPrintLayer layer;
        layer.hasMask = true;
        layer.box = page_;
        if (Do(generator_.BeginLayer(layer))) {
            ends_.push_back(End::kLayer);
            ORVPrintMask mask;
            mask.kind = ORVPrintMask::Kind::kOpacity;
            mask.box = page_;
            const int result = generator_.BeginMask(mask);
            if (result != ORVPrintGenerator::kSkipMask && Do(result)) {
                DrawClipContent(clip, inner);
                Do(generator_.EndMask());
            }
        }
    }
    Leave();
    return shows && !IsStopped();
}

void Drawing::DrawClipContent(ElementIndex clip, const DrawState& state) {
    const Document& document = scene_.GetDocument();
    const Style& clipStyle = scene_.StyleInPlace(clip);
    for (ElementIndex child = document[clip].firstChild; child != kNoElement && !IsStopped();
         child = document[child].nextSibling) {
        const Tag tag = document[child].tag;
        if (!IsShape(tag) && tag != Tag::kText && tag != Tag::kUse) continue;
        if (tag == Tag::kUse) {
            const ElementIndex target = FindUseTarget(document, child);
            if (target == kNoElement) continue;
            const Tag used = document[target].tag;
            if (!IsShape(used) && used != Tag::kText) continue;
        }
        DrawElement(child, clipStyle, state);
    }
}

}  // namespace svg2
