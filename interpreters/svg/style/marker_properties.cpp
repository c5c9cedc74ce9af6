// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/marker_properties.h"

#include <string>

#include "interpreters/svg/state/SvgDrawState.h"
#include "platform/system/number_conversion.h"

namespace {

void EraseFirst(std::string& text, std::string_view part) {
    const std::size_t found = text.find(part);
    if (found != std::string::npos) text.erase(found, part.size());
}

void StoreReference(SvgDrawState& state, MarkerPlace place, std::string_view identifier) {
    using Member = ORVUnicodeString SvgMarkerReferences::*;
    const auto store = [&](MarkerPlace one, Member member) {
        if (place == MarkerPlace::kAll || place == one)
            state.markers.Set(member, ORVUnicodeString(identifier));
    };
    store(MarkerPlace::kStart, &SvgMarkerReferences::start);
    store(MarkerPlace::kMid, &SvgMarkerReferences::mid);
    store(MarkerPlace::kEnd, &SvgMarkerReferences::end);
}

}  // namespace

void ApplyMarkerReference(SvgDrawState& state, MarkerPlace place, std::string_view value) {
    if (value.empty() || ORVCompareText(value, "inherit") != kTextDiffers) return;
    if (ORVCompareText(value, "none ") != kTextDiffers) {
        StoreReference(state, place, {});
        return;
    }
    std::string identifier(value);
    EraseFirst(identifier, "url(#");
    EraseFirst(identifier, ")");
    StoreReference(state, place, identifier);
}
