// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/definitions/restyling.h"

#include <limits>
#include <type_traits>
#include <vector>

#include "interpreters/svg/state/SvgDrawState.h"
#include "platform/model/ORVPrtPrimitiveBudget.h"
#include "platform/model/visit_primitive.h"

namespace {

// Unique marks for walks, counted per thread. 0 is no mark.
std::uint32_t NextMark() {
    thread_local std::uint32_t mark = 0;
    if (++mark == 0) ++mark;
    return mark;
}

void RestyleOne(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive) {
    VisitPrimitive(primitive, [&]<class Primitive>(Primitive& one) {
        if constexpr (std::is_base_of_v<ORVPrtStroked, Primitive>) one.SetStrokeAttributes(state.stroke);
        if constexpr (std::is_base_of_v<ORVPrtFilled, Primitive>) one.SetFillAttributes(state.fill);
        if constexpr (std::is_same_v<ORVPrtTextElt, Primitive>) one.SetTextAttributes(state.text);
    });
}

}  // namespace

bool SvgRestyling::RestyleCopy(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive) {
    return Walk(state, primitive, NextMark());
}

bool SvgRestyling::RestyleShared(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive) {
    const bool sameSets = sharedMark_ != 0 && sharedStroke_ == state.stroke && sharedFill_ == state.fill &&
                          sharedText_ == state.text;
    if (!sameSets) {
        sharedMark_ = NextMark();
        sharedStroke_ = state.stroke;
        sharedFill_ = state.fill;
        sharedText_ = state.text;
    }
    return Walk(state, primitive, sharedMark_);
}

// Definitions are complete when they can be found, so everything below a marked primitive is marked as well.
bool SvgRestyling::Walk(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive, std::uint32_t mark) {
    const std::uint64_t most = budget_ ? budget_->GetVisitsLeft() : std::numeric_limits<std::uint64_t>::max();
    std::uint64_t visits = 0;
    std::vector<ORVPrtGraphicPrimitiveElt*> waiting{&primitive};
    while (!waiting.empty() && visits < most) {
        ORVPrtGraphicPrimitiveElt* next = waiting.back();
        waiting.pop_back();
        if (next->GetVisitMark() == mark) continue;
        ++visits;
        next->SetVisitMark(mark);
        RestyleOne(state, *next);
        if (const ORVPrtChildList* children = next->GetChildList())
            waiting.insert(waiting.end(), children->begin(), children->end());
    }
    if (budget_) budget_->NoteVisits(visits);
    return waiting.empty();
}
