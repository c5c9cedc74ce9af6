// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/definition_elements.h"

#include "interpreters/svg/definitions/ORVPrtDefsElt.h"
#include "interpreters/svg/definitions/attach.h"
#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_texts.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/state/tolerance.h"
#include "interpreters/svg/structure/walker.h"
#include "interpreters/svg/style/presentation.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/transform_list.h"
#include "interpreters/svg/values/view_box.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/ORVPrtPatternElt.h"
#include "platform/model/ORVPrtSymbolElt.h"
#include "platform/print/ORVPrintModelBoundingBoxComputer.h"

namespace {

// Builds one definition into its container, or into a new holder if the container is not one.
template <class Build>
int BuildDefinition(SvgDrawState& state, ORVPrtGraphicPrimitiveElt& container, Build build) {
    if (AsDefinitionHolder(container)) return build(container);

    const ORVRef<ORVPrtDefsElt> holder(state.model->Create<ORVPrtDefsElt>());
    if (!holder) return kNoMemory;
    const std::size_t place = state.definitions->Register(*holder);
    const SvgInheritedStateGuard guard(state);
    MoveSetsTo(*holder, state);
    const int result = build(*holder);
    state.definitions->IndexNewChildren(place);
    return result;
}

// Builds a definition of one class. `read` reads the element's specific attributes and walks its children.
template <class Primitive, SvgElementAccess Element, class Read>
int BuildDefinitionOf(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container,
                      Read read) {
    return BuildDefinition(state, container, [&](ORVPrtGraphicPrimitiveElt& holder) {
        const ORVRef<Primitive> primitive(state.model->Create<Primitive>());
        if (!primitive) return kNoMemory;
        AttachToContainer(holder, *primitive);
        const SvgInheritedStateGuard guard(state);
        const SvgDefinitionScope scope(*state.definitions);
        ApplyContainerPresentation(state, element);
        ReadIdentifier(element, *primitive);
        read(*primitive);
        return kDone;
    });
}

template <SvgElementAccess Element>
bool ReadOptionalViewBox(const SvgDrawState& state, const Element& element, ORVPrtViewBox& box) {
    const std::string_view value = element.Attribute(AttributeName::kViewBox).text;
    box = {0.0, 0.0, state.pageWidth, state.pageHeight};
    return ReadViewBox(value, box) == kRead;
}

struct MarkerGeometry {
    double refX = 0.0, refY = 0.0;  // in page coordinates
    double width = 0.0, height = 0.0;
};

template <SvgElementAccess Element>
MarkerGeometry ReadMarkerGeometry(const SvgDrawState& state, const Element& element) {
    MarkerGeometry geometry;
    ReadHorizontalAttribute(state, element, AttributeName::kRefX, geometry.refX);
    ReadVerticalCoordinateAttribute(state, element, AttributeName::kRefY, geometry.refY);
    ReadHorizontalAttribute(state, element, AttributeName::kMarkerWidth, geometry.width);
    ParseVerticalLength(state, element.Attribute(AttributeName::kMarkerHeight).text, geometry.height);
    return geometry;
}

void FitMarker(const SvgDrawState& state, const MarkerGeometry& geometry, ORVPrtSymbolElt& symbol) {
    double xMin = 0.0, xMax = 0.0, yMin = 0.0, yMax = 0.0;
    state.boxes->Compute(symbol, xMin, xMax, yMin, yMax);
    const double h = state.pageHeight;
    if (IsWithinTolerance(xMin, 0.0) && IsWithinTolerance(yMin, 0.0) && IsWithinTolerance(xMax, h) &&
        IsWithinTolerance(yMax, h))
        return;

    const double extentX = xMax - xMin, extentY = yMax - yMin;
    const bool fits = extentX > 0.0 && extentY > 0.0 && geometry.width > 0.0 && geometry.height > 0.0;
    const double scaleX = fits ? geometry.width / extentX : 1.0;
    const double scaleY = fits ? geometry.height / extentY : 1.0;
    const bool flips = state.yFlip == 1;

    ORVPrtTransformAttributes transform = symbol.GetTransformAttributes();
    if (flips) AddPageMirror(state, transform);
    if (!IsUnitScale(scaleX)) transform.AddScaleX(scaleX);
    if (!IsUnitScale(scaleY)) transform.AddScaleY(scaleY);
    transform.AddTranslation({-geometry.refX, -(flips ? h - geometry.refY : geometry.refY)});
    if (flips) AddPageMirror(state, transform);
    symbol.SetTransformAttributes(transform);
}

}  // namespace

template <SvgElementAccess Element>
int HandleDefs(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& /*container*/) {
    const SvgInheritedStateGuard guard(state);
    const ORVRef<ORVPrtDefsElt> holder(state.model->Create<ORVPrtDefsElt>());
    if (!holder) return kNoMemory;
    state.definitions->Register(*holder);
    ApplyContainerPresentation(state, element);
    ReadIdentifier(element, *holder);
    MoveSetsTo(*holder, state);
    WalkChildren(state, element, *holder);
    return kDone;
}

template <SvgElementAccess Element>
int HandleSymbol(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container) {
    return BuildDefinitionOf<ORVPrtSymbolElt>(state, element, container, [&](ORVPrtSymbolElt& symbol) {
        ORVPrtViewBox box;
        if (ReadOptionalViewBox(state, element, box)) symbol.SetViewBox(box);
        WalkChildren(state, element, symbol);
    });
}

template <SvgElementAccess Element>
int HandleMarker(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container) {
    return BuildDefinitionOf<ORVPrtSymbolElt>(state, element, container, [&](ORVPrtSymbolElt& symbol) {
        const MarkerGeometry geometry = ReadMarkerGeometry(state, element);  // "viewBox" has no effect
        WalkChildren(state, element, symbol);
        FitMarker(state, geometry, symbol);
    });
}

template <SvgElementAccess Element>
int HandlePattern(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container) {
    return BuildDefinitionOf<ORVPrtPatternElt>(state, element, container, [&](ORVPrtPatternElt& pattern) {
        ORVPrtViewBox tile;
        ReadHorizontalAttribute(state, element, AttributeName::kX, tile.minX);
        ParseVerticalLength(state, element.Attribute(AttributeName::kY).text, tile.minY);
        ReadHorizontalAttribute(state, element, AttributeName::kWidth, tile.width);
        ParseVerticalLength(state, element.Attribute(AttributeName::kHeight).text, tile.height);
        pattern.SetBox(tile);
        ORVPrtViewBox box;
        if (ReadOptionalViewBox(state, element, box)) pattern.SetViewBox(box);
        WalkChildren(state, element, pattern);
    });
}

#define ORV_INSTANTIATE_DEFINITIONS(Element)                                              \
    template int HandleDefs(SvgDrawState&, const Element&, ORVPrtGraphicPrimitiveElt&);   \
    template int HandleSymbol(SvgDrawState&, const Element&, ORVPrtGraphicPrimitiveElt&); \
    template int HandleMarker(SvgDrawState&, const Element&, ORVPrtGraphicPrimitiveElt&); \
    template int HandlePattern(SvgDrawState&, const Element&, ORVPrtGraphicPrimitiveElt&)
ORV_INSTANTIATE_DEFINITIONS(DomElementAccess);
ORV_INSTANTIATE_DEFINITIONS(LightElementAccess);
#undef ORV_INSTANTIATE_DEFINITIONS
