#include "plugin/structure/definitions.h"

#include <algorithm>

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
        candidates.insert(later, Definition{entry.primitive, child, place});
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

const SvgDefinitions::Definition* SvgDefinitions::Find(std::string_view identifier) const {
    if (identifier.empty() || index_.empty()) return nullptr;
    const auto found = index_.find(LowerCase(identifier));
    return found == index_.end() ? nullptr : &found->second.front();
}

int FindDefinition(const SvgDrawState& state, std::string_view identifier,
                   ORVRef<ORVPrtGraphicPrimitiveElt>& definition) {
    definition = nullptr;
    if (!state.definitions) return 0;
    const SvgDefinitions::Definition* found = state.definitions->Find(identifier);
    if (!found) return 0;

    if (HasStateOf(*found->holder, state)) {
        if (state.definitions->GetRestyling().RestyleShared(state, *found->primitive))
            definition = ORVRef<ORVPrtGraphicPrimitiveElt>::Share(found->primitive);
        return 1;
    }
    ORVRef<ORVPrtGraphicPrimitiveElt> duplicate(found->primitive->Duplicate());
    if (duplicate && RestyleDefinition(state, *duplicate)) definition = duplicate;
    return 1;
}

bool RestyleDefinition(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive) {
    if (state.definitions) return state.definitions->GetRestyling().RestyleCopy(state, primitive);
    return SvgRestyling().RestyleCopy(state, primitive);
}
