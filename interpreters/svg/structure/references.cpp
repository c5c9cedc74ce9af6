// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/references.h"

#include <algorithm>

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/geometry/images.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_texts.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/state/tolerance.h"
#include "interpreters/svg/structure/groups.h"
#include "interpreters/svg/structure/walker.h"
#include "interpreters/svg/style/presentation.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/transform_list.h"
#include "interpreters/svg/values/view_box.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtSymbolElt.h"
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"

namespace {

// Position and size of an element's content, in the drawing's own coordinates, y down.
struct Placement {
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0;

    bool HasSize() const { return width > 0.0 && height > 0.0; }
};

template <SvgElementAccess Element>
Placement ReadPlacement(const SvgDrawState& state, const Element& element, double width, double height) {
    Placement placement{0.0, 0.0, width, height};
    ReadHorizontalAttribute(state, element, AttributeName::kX, placement.x);
    ReadVerticalCoordinateAttribute(state, element, AttributeName::kY, placement.y);
    if (state.yFlip == 1) placement.y = state.pageHeight - placement.y;
    ReadHorizontalAttribute(state, element, AttributeName::kWidth, placement.width);
    ParseVerticalLength(state, element.Attribute(AttributeName::kHeight).text, placement.height);
    return placement;
}

// Collects transformations. They are enclosed in two reflections of the page, unless there are none.
class PlacingTransform {
public:
    PlacingTransform(const SvgDrawState& state, ORVPrtGroupElt& group)
        : state_(state), group_(group), transform_(group.GetTransformAttributes()) {}
    PlacingTransform(const PlacingTransform&) = delete;
    PlacingTransform& operator=(const PlacingTransform&) = delete;

    void Translate(double x, double y) {
        if (x == 0.0 && y == 0.0) return;
        Begin();
        transform_.AddTranslation({x, y});
    }
    void ScaleX(double scale) {
        if (scale == 1.0) return;
        Begin();
        transform_.AddScaleX(scale);
    }
    void ScaleY(double scale) {
        if (scale == 1.0) return;
        Begin();
        transform_.AddScaleY(scale);
    }
    // Sets the transform of the group.
    void Apply() {
        if (!begun_) return;
        if (state_.yFlip == 1) AddPageMirror(state_, transform_);
        group_.SetTransformAttributes(transform_);
    }

private:
    void Begin() {
        if (!begun_ && state_.yFlip == 1) AddPageMirror(state_, transform_);
        begun_ = true;
    }

    const SvgDrawState& state_;
    ORVPrtGroupElt& group_;
    ORVPrtTransformAttributes transform_;
    bool begun_ = false;
};

// Scales a viewBox uniformly and centres it in the placement.
void FitViewBox(PlacingTransform& transform, const Placement& at, const ORVPrtViewBox& box, double scale) {
    transform.Translate(at.x + (at.width - scale * box.width) / 2.0,
                        at.y + (at.height - scale * box.height) / 2.0);
    transform.ScaleX(scale);
    transform.ScaleY(scale);
    transform.Translate(-box.minX, -box.minY);
}

double FittingScale(const Placement& at, const ORVPrtViewBox& box) {
    return std::min(at.width / box.width, at.height / box.height);
}

bool HasSize(const ORVPrtViewBox& box) { return box.width > 0.0 && box.height > 0.0; }

double ScaleOutsideBand(double scale) { return IsUnitScale(scale) ? 1.0 : scale; }

const ORVPrtViewBox* ViewBoxOf(const ORVPrtGraphicPrimitiveElt* definition) {
    if (!definition || definition->GetKind() != ORVPrtKind::kSymbol) return nullptr;
    return static_cast<const ORVPrtSymbolElt*>(definition)->GetViewBox();
}

// Fits content into the placement, relative to the corner of its bounding box.
void FitContent(PlacingTransform& transform, const Placement& at, const ORVPrtViewBox& content) {
    const double scaleX = ScaleOutsideBand(at.width / content.width);
    const double scaleY = ScaleOutsideBand(at.height / content.height);
    if (scaleX == 1.0 && scaleY == 1.0) return transform.Translate(at.x, at.y);
    transform.Translate(at.x + content.minX, at.y + content.minY);
    transform.ScaleX(scaleX);
    transform.ScaleY(scaleY);
    transform.Translate(-content.minX, -content.minY);
}

// Bounding box of the group's content, in the drawing's own coordinates.
// @return false if its width or height is not positive
bool ContentBox(const SvgDrawState& state, const ORVPrtGroupElt& group, ORVPrtViewBox& box) {
    double xMin = 0.0, xMax = 0.0, yMin = 0.0, yMax = 0.0;
    if (state.boxes->ComputeChildren(group, xMin, xMax, yMin, yMax) != 1) return false;
    box = {xMin, state.yFlip == 1 ? state.pageHeight - yMax : yMin, xMax - xMin, yMax - yMin};
    return HasSize(box);
}

void PlaceDefinition(const SvgDrawState& state, const Placement& at,
                     const ORVPrtGraphicPrimitiveElt* definition, ORVPrtGroupElt& group) {
    PlacingTransform transform(state, group);
    const ORVPrtViewBox* viewBox = ViewBoxOf(definition);
    ORVPrtViewBox content;
    if (viewBox && at.HasSize() && HasSize(*viewBox)) {
        FitViewBox(transform, at, *viewBox, ScaleOutsideBand(FittingScale(at, *viewBox)));
    } else if (at.HasSize() && ContentBox(state, group, content)) {
        FitContent(transform, at, content);
    } else {
        transform.Translate(at.x, at.y);
    }
    transform.Apply();
}

}  // namespace

template <SvgElementAccess Element>
int HandleUse(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
              ORVPrtGraphicPrimitiveElt& /*container*/) {
    if (!group) return kUnusable;
    const SvgInheritedStateGuard guard(state);

    ApplyContainerPresentation(state, element);
    ReadIdentifier(element, *group);
    const ORVPrtGraphicPrimitiveElt* definition =
        AddReferencedDefinition(state, element.Attribute(AttributeName::kXlinkHref).text, *group);
    ApplyGroupTransforms(state, element, *group);
    PlaceDefinition(state, ReadPlacement(state, element, 0.0, 0.0), definition, *group);
    return kDone;
}

template <SvgElementAccess Element>
int HandleNestedSvg(SvgDrawState& state, const Element& element, ORVPrtGroupElt* group,
                    ORVPrtGraphicPrimitiveElt& /*container*/) {
    if (!group) return kUnusable;
    const SvgInheritedStateGuard guard(state);
    const SvgDefinitionScope scope(*state.definitions);

    ApplyContainerPresentation(state, element);
    ReadIdentifier(element, *group);
    const Placement at = ReadPlacement(state, element, state.pageWidth, state.pageHeight);
    ORVPrtViewBox box{0.0, 0.0, state.pageWidth, state.pageHeight};
    const bool hasViewBox = ReadViewBox(element.Attribute(AttributeName::kViewBox).text, box) == kRead;
    PlacingTransform transform(state, *group);
    if (hasViewBox && HasSize(box) && at.HasSize()) {
        FitViewBox(transform, at, box, FittingScale(at, box));
    } else {
        transform.Translate(at.x, at.y);
    }
    transform.Apply();
    WalkChildren(state, element, *group);
    return kDone;
}

#define ORV_INSTANTIATE_REFERENCES(Element)                                                             \
    template int HandleUse(SvgDrawState&, const Element&, ORVPrtGroupElt*, ORVPrtGraphicPrimitiveElt&); \
    template int HandleNestedSvg(SvgDrawState&, const Element&, ORVPrtGroupElt*, ORVPrtGraphicPrimitiveElt&)
ORV_INSTANTIATE_REFERENCES(DomElementAccess);
ORV_INSTANTIATE_REFERENCES(LightElementAccess);
#undef ORV_INSTANTIATE_REFERENCES
