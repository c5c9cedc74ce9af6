#include "plugin/structure/restyling.h"

#include <type_traits>
#include <vector>

#include "platform/model/visit_primitive.h"
#include "plugin/structure/SvgDrawState.h"

namespace {

// Marks are drawn from here, so that no two walks mean different things by one. 0 marks nothing.
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

// Definitions are complete when they can be found: what bears the mark has nothing below it that does not.
bool SvgRestyling::Walk(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive, std::uint32_t mark) {
    std::vector<ORVPrtGraphicPrimitiveElt*> waiting{&primitive};
    while (!waiting.empty()) {
        ORVPrtGraphicPrimitiveElt* next = waiting.back();
        waiting.pop_back();
        if (next->GetVisitMark() == mark) continue;
        if (++visits_ > kVisitLimit) return false;
        next->SetVisitMark(mark);
        RestyleOne(state, *next);
        if (const ORVPrtChildList* children = next->GetChildList())
            waiting.insert(waiting.end(), children->begin(), children->end());
    }
    return true;
}
