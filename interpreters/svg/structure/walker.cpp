// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/walker.h"

#include <algorithm>
#include <array>

#include "interpreters/svg/definitions/attach.h"
#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/geometry/basic_shapes.h"
#include "interpreters/svg/geometry/images.h"
#include "interpreters/svg/geometry/path_element.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_texts.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/structure/child_loop.h"
#include "interpreters/svg/structure/definition_elements.h"
#include "interpreters/svg/structure/groups.h"
#include "interpreters/svg/structure/references.h"
#include "interpreters/svg/style/text_element.h"
#include "platform/model/ORVPrtBitmapImageElt.h"
#include "platform/model/ORVPrtCircleElt.h"
#include "platform/model/ORVPrtEllipseElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtLineElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/ORVPrtPolygonElt.h"
#include "platform/model/ORVPrtPolylineElt.h"
#include "platform/model/ORVPrtRectangleElt.h"
#include "platform/model/ORVPrtTextElt.h"

namespace {

// Creates and attaches a primitive and lets the row's handler fill it in.
template <class Primitive, auto kHandler, SvgElementAccess Element>
int CreateAndHandle(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container) {
    const ORVRef<Primitive> primitive(state.model->Create<Primitive>());
    if (!primitive) return kNoMemory;
    AttachToContainer(container, *primitive);
    return kHandler(state, element, primitive.get(), container);
}

template <SvgElementAccess Element>
struct HandlerRow {
    ElementName name;
    int (*handle)(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container);
};

// The handlers by element name. Names are unique, so the order of the rows does not matter.
template <SvgElementAccess Element>
constexpr std::array kHandlers{
    HandlerRow<Element>{ElementName::kPath, CreateAndHandle<ORVPrtGroupElt, HandlePath<Element>, Element>},
    HandlerRow<Element>{ElementName::kText, CreateAndHandle<ORVPrtTextElt, BuildText<Element>, Element>},
    HandlerRow<Element>{ElementName::kRect,
                        CreateAndHandle<ORVPrtRectangleElt, HandleRect<Element>, Element>},
    HandlerRow<Element>{ElementName::kCircle,
                        CreateAndHandle<ORVPrtCircleElt, HandleCircle<Element>, Element>},
    HandlerRow<Element>{ElementName::kEllipse,
                        CreateAndHandle<ORVPrtEllipseElt, HandleEllipse<Element>, Element>},
    HandlerRow<Element>{ElementName::kLine, CreateAndHandle<ORVPrtLineElt, HandleLine<Element>, Element>},
    HandlerRow<Element>{ElementName::kPolyline,
                        CreateAndHandle<ORVPrtPolylineElt, HandlePolyline<Element>, Element>},
    HandlerRow<Element>{ElementName::kPolygon,
                        CreateAndHandle<ORVPrtPolygonElt, HandlePolygon<Element>, Element>},
    HandlerRow<Element>{ElementName::kImage,
                        CreateAndHandle<ORVPrtBitmapImageElt, HandleImage<Element>, Element>},
    HandlerRow<Element>{ElementName::kG, CreateAndHandle<ORVPrtGroupElt, HandleGroup<Element>, Element>},
    HandlerRow<Element>{ElementName::kDefs, HandleDefs<Element>},
    HandlerRow<Element>{ElementName::kUse, CreateAndHandle<ORVPrtGroupElt, HandleUse<Element>, Element>},
    HandlerRow<Element>{ElementName::kSymbol, HandleSymbol<Element>},
    HandlerRow<Element>{ElementName::kSvg,
                        CreateAndHandle<ORVPrtGroupElt, HandleNestedSvg<Element>, Element>},
    HandlerRow<Element>{ElementName::kMarker, HandleMarker<Element>},
    HandlerRow<Element>{ElementName::kA, CreateAndHandle<ORVPrtGroupElt, HandleLink<Element>, Element>},
    HandlerRow<Element>{ElementName::kPattern, HandlePattern<Element>},
};

template <SvgElementAccess Element>
constexpr bool HasUniqueNames() {
    for (std::size_t i = 0; i < kHandlers<Element>.size(); ++i)
        for (std::size_t j = 0; j < i; ++j)
            if (kHandlers<Element>[i].name == kHandlers<Element>[j].name) return false;
    return true;
}
static_assert(HasUniqueNames<DomElementAccess>());

}  // namespace

bool HasHandler(ElementName name) {
    const auto& rows = kHandlers<LightElementAccess>;
    return std::any_of(rows.begin(), rows.end(), [name](const auto& row) { return row.name == name; });
}

template <SvgElementAccess Element>
int HandleChild(SvgDrawState& state, const Element& child, ORVPrtGraphicPrimitiveElt* container) {
    if (!container) return kUnusable;
    const ElementName name = child.Name();
    if (name == ElementName::kUnknown) return kDone;
    for (const HandlerRow<Element>& row : kHandlers<Element>)
        if (row.name == name) return row.handle(state, child, *container);
    return kDone;
}

template <SvgElementAccess Element>
void WalkChildren(SvgDrawState& state, const Element& element, ORVPrtGraphicPrimitiveElt& container) {
    const bool defines = AsDefinitionHolder(container) != nullptr;
    // The holder is registered immediately before its children are walked.
    const std::size_t holderPlace = state.definitions->GetHolderCount() - 1;
    ForEachChild(state, element, [&](const Element& child) {
        if (ReadDescription(child, container)) return;
        HandleChild(state, child, &container);
        if (defines) state.definitions->IndexNewChildren(holderPlace);
    });
}

template int HandleChild(SvgDrawState&, const DomElementAccess&, ORVPrtGraphicPrimitiveElt*);
template int HandleChild(SvgDrawState&, const LightElementAccess&, ORVPrtGraphicPrimitiveElt*);
template void WalkChildren(SvgDrawState&, const DomElementAccess&, ORVPrtGraphicPrimitiveElt&);
template void WalkChildren(SvgDrawState&, const LightElementAccess&, ORVPrtGraphicPrimitiveElt&);
