#include "plugin/structure/definitions.h"

#include <algorithm>
#include <type_traits>

#include "platform/model/visit_primitive.h"
#include "plugin/structure/ORVPrtDefsElt.h"
#include "plugin/structure/SvgDrawState.h"

namespace {

std::string LowerCase(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

bool HasStateOf(const ORVPrtDefsElt& holder, const SvgDrawState& state) {
    return holder.GetType() == state.drawStyle && holder.GetStroke() == state.stroke &&
           holder.GetFill() == state.fill && holder.GetText() == state.text;
}

// Marks of walks are drawn from here, so that no two walks share one.
std::uint32_t NextVisitMark() {
    thread_local std::uint32_t mark = 0;
    return ++mark;
}

bool RestyleOne(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive) {
    bool changed = false;
    VisitPrimitive(primitive, [&]<class Primitive>(Primitive& one) {
        if constexpr (std::is_base_of_v<ORVPrtStroked, Primitive>) {
            changed |= !(one.GetStrokeAttributes() == state.stroke);
            one.SetStrokeAttributes(state.stroke);
        }
        if constexpr (std::is_base_of_v<ORVPrtFilled, Primitive>) {
            changed |= !(one.GetFillAttributes() == state.fill);
            one.SetFillAttributes(state.fill);
        }
        if constexpr (std::is_same_v<ORVPrtTextElt, Primitive>) {
            changed |= !(one.GetTextAttributes() == state.text);
            one.SetTextAttributes(state.text);
        }
    });
    return changed;
}

}  // namespace

SvgDefinitions::~SvgDefinitions() { Truncate(0); }

std::size_t SvgDefinitions::Register(ORVPrtDefsElt& holder) {
    holders_.push_back({&holder, 0, {}});
    holder.AddRef();
    return holders_.size() - 1;
}

void SvgDefinitions::IndexNewChildren(std::size_t place) {
    Holder& entry = holders_[place];
    const ORVPrtChildList& children = entry.primitive->GetChildren();
    for (; entry.indexedChildren < children.size(); ++entry.indexedChildren) {
        ORVPrtGraphicPrimitiveElt* child = children[entry.indexedChildren];
        if (child->GetID().IsEmpty()) continue;
        std::string identifier = LowerCase(child->GetID());
        std::vector<Definition>& candidates = index_[identifier];
        const auto later = std::find_if(candidates.rbegin(), candidates.rend(), [&](const Definition& one) {
                               return one.holderPlace <= place;
                           }).base();
        if (later != candidates.begin() && std::prev(later)->holderPlace == place)
            continue;  // an earlier child wins
        candidates.insert(later, Definition{entry.primitive, child, place, 0});
        entry.identifiers.push_back(std::move(identifier));
    }
}

void SvgDefinitions::Truncate(std::size_t count) {
    while (holders_.size() > count) {
        const Holder& last = holders_.back();
        for (const std::string& identifier : last.identifiers) {
            const auto found = index_.find(identifier);
            found->second.pop_back();  // the last holder's definition is the last candidate
            if (found->second.empty()) index_.erase(found);
        }
        last.primitive->Release();
        holders_.pop_back();
    }
}

SvgDefinitions::Definition* SvgDefinitions::Find(std::string_view identifier) {
    if (identifier.empty() || index_.empty()) return nullptr;
    const auto found = index_.find(LowerCase(identifier));
    return found == index_.end() ? nullptr : &found->second.front();
}

int FindDefinition(const SvgDrawState& state, std::string_view identifier,
                   ORVRef<ORVPrtGraphicPrimitiveElt>& definition) {
    definition = nullptr;
    if (!state.definitions) return 0;
    SvgDefinitions::Definition* found = state.definitions->Find(identifier);
    if (!found) return 0;

    if (!HasStateOf(*found->holder, state)) {
        definition = ORVRef<ORVPrtGraphicPrimitiveElt>(found->primitive->Duplicate());
        if (definition) RestyleDefinition(state, *definition);
        return 1;
    }
    // Restyling in place gives a definition the same sets every time; it need not be done again unless a
    // definition was changed since, which may share parts with this one.
    if (found->restyledAt != state.definitions->changes) {
        if (RestyleDefinition(state, *found->primitive)) ++state.definitions->changes;
        found->restyledAt = state.definitions->changes;
    }
    definition = ORVRef<ORVPrtGraphicPrimitiveElt>::Share(found->primitive);
    return 1;
}

bool RestyleDefinition(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive) {
    const std::uint32_t mark = NextVisitMark();
    bool changed = false;
    std::vector<ORVPrtGraphicPrimitiveElt*> waiting{&primitive};
    while (!waiting.empty()) {
        ORVPrtGraphicPrimitiveElt* next = waiting.back();
        waiting.pop_back();
        if (next->GetVisitMark() == mark) continue;  // shared, and done already
        next->SetVisitMark(mark);
        changed |= RestyleOne(state, *next);
        if (const ORVPrtChildList* children = next->GetChildList())
            waiting.insert(waiting.end(), children->begin(), children->end());
    }
    return changed;
}
