// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/path_element.h"

#include "interpreters/svg/geometry/markers.h"
#include "interpreters/svg/geometry/path_data.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/element_texts.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/style/presentation.h"
#include "interpreters/svg/values/transform_list.h"
#include "platform/model/ORVPrtGroupElt.h"

template <SvgElementAccess Element>
int HandlePath(SvgDrawState state, const Element& element, ORVPrtGroupElt* group,
               ORVPrtGraphicPrimitiveElt& /*container*/) {
    if (!group) return kUnusable;

    ApplyShapePresentation(state, element, Vertices::kWithMarkers);
    ReadIdentifier(element, *group);
    const std::string_view transform = element.Attribute(AttributeName::kTransform).text;
    if (!transform.empty()) ApplyTransformList(state, transform, group);

    // Lengths are never scaled: "pathLength" is ignored.
    const ResolvedMarkers markers = ResolveMarkers(state);
    PathDataInterpreter interpreter(state, *group, markers.start || markers.mid || markers.end);
    interpreter.Interpret(element.Attribute(AttributeName::kD).text);
    element.Forget(AttributeName::kD);
    PlaceMarkers(state, markers, interpreter.GetVertices(), *group);
    ReadDescriptions(element, *group);
    return kDone;
}

template int HandlePath(SvgDrawState, const DomElementAccess&, ORVPrtGroupElt*, ORVPrtGraphicPrimitiveElt&);
template int HandlePath(SvgDrawState, const LightElementAccess&, ORVPrtGroupElt*, ORVPrtGraphicPrimitiveElt&);
