// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/markers.h"

#include "interpreters/svg/definitions/attach.h"
#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/values/transform_list.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtModel.h"

namespace {

ORVRef<ORVPrtGraphicPrimitiveElt> Resolve(const SvgDrawState& state, const ORVUnicodeString& reference) {
    ORVRef<ORVPrtGraphicPrimitiveElt> marker;
    if (!reference.IsEmpty()) FindDefinition(state, reference, marker);
    return marker;
}

void PlaceMarker(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& marker, double x, double y,
                 ORVPrtGraphicPrimitiveElt& container) {
    const ORVRef<ORVPrtGroupElt> instance(state.model->Create<ORVPrtGroupElt>());
    if (!instance) return;
    AttachToContainer(container, *instance);
    instance->AddChild(&marker);

    ORVPrtTransformAttributes transform;
    if (state.yFlip == 1) {
        AddPageMirror(state, transform);
        transform.AddTranslation({x, state.pageHeight - y});
        AddPageMirror(state, transform);
    } else {
        transform.AddTranslation({x, y});
    }
    instance->SetTransformAttributes(transform);
}

}  // namespace

ResolvedMarkers ResolveMarkers(const SvgDrawState& state) {
    const SvgMarkerReferences& references = state.markers.Get();
    return {Resolve(state, references.start), Resolve(state, references.mid), Resolve(state, references.end)};
}

void PlaceMarkers(const SvgDrawState& state, const ResolvedMarkers& markers, std::span<const double> vertices,
                  ORVPrtGraphicPrimitiveElt& container) {
    const std::size_t count = vertices.size() / 2;
    if (count == 0) return;
    const auto place = [&](ORVPrtGraphicPrimitiveElt& marker, std::size_t vertex) {
        PlaceMarker(state, marker, vertices[2 * vertex], vertices[2 * vertex + 1], container);
    };
    if (markers.start) place(*markers.start, 0);
    if (markers.mid)
        for (std::size_t vertex = 1; vertex + 1 < count; ++vertex) place(*markers.mid, vertex);
    if (markers.end) place(*markers.end, count - 1);
}
