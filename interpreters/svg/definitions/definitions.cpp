// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/definitions/definitions.h"

#include <algorithm>
#include <functional>
#include <iterator>

#include "interpreters/svg/definitions/ORVPrtDefsElt.h"
#include "interpreters/svg/state/SvgDrawState.h"

namespace {

// The lower half of the bits selects the slot; the upper half distinguishes identifiers there.
std::uint64_t Hash(std::string_view lowerCase) { return std::hash<std::string_view>{}(lowerCase); }

bool HasStateOf(const ORVPrtDefsElt& holder, const SvgDrawState& state) {
    return holder.GetType() == state.drawStyle && holder.GetStroke() == state.stroke &&
           holder.GetFill() == state.fill && holder.GetText() == state.text;
}

}  // namespace

std::string FoldIdentifier(std::string_view identifier) {
    std::string folded(identifier);
    for (char& c : folded)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return folded;
}

SvgDefinitions::~SvgDefinitions() { Truncate(0); }

std::size_t SvgDefinitions::Register(ORVPrtDefsElt& holder) {
    holders_.push_back({&holder, 0, {}});
    holder.AddRef();
    return holders_.size() - 1;
}

void SvgDefinitions::IndexNewChildren(std::size_t place) {
    Holder& holder = holders_[place];
    const ORVPrtChildList& children = holder.primitive->GetChildren();
    for (; holder.indexedChildren < children.size(); ++holder.indexedChildren) {
        ORVPrtGraphicPrimitiveElt* child = children[holder.indexedChildren];
        if (child->GetID().IsEmpty()) continue;
        const std::uint32_t entry = FindOrAddEntry(FoldIdentifier(child->GetID()));
        // An earlier child wins.
        if (entries_[entry].Insert({holder.primitive, child, place})) holder.entries.push_back(entry);
    }
}

void SvgDefinitions::Truncate(std::size_t count) {
    if (count == 0) {
        entries_.clear();
        slots_.clear();
    }
    while (holders_.size() > count) {
        const Holder& last = holders_.back();
        if (count > 0)
            for (const std::uint32_t entry : last.entries) entries_[entry].RemoveLast();
        last.primitive->Release();
        holders_.pop_back();
    }
}

const SvgDefinitions::Definition* SvgDefinitions::Find(std::string_view identifier) const {
    if (identifier.empty() || entries_.empty()) return nullptr;
    const std::string lowerCase = FoldIdentifier(identifier);
    const Slot& slot = slots_[FindSlot(lowerCase, Hash(lowerCase))];
    if (slot.entry == kFree || !entries_[slot.entry].first.primitive) return nullptr;
    return &entries_[slot.entry].first;
}

void SvgDefinitions::Prefetch(std::string_view identifier) {
    if (prefetchedEntry_ < entries_.size()) __builtin_prefetch(entries_[prefetchedEntry_].first.primitive);
    const std::size_t mask = slots_.size() - 1;
    // The first slot is usually the right one; otherwise the prefetch is merely useless.
    prefetchedEntry_ = slots_[prefetchedHash_ & mask].entry;
    if (prefetchedEntry_ < entries_.size()) {
        const auto* const entry = reinterpret_cast<const char*>(&entries_[prefetchedEntry_]);
        __builtin_prefetch(entry);
        __builtin_prefetch(entry + sizeof(Entry) - 1);
    }
    prefetchedHash_ = Hash(FoldIdentifier(identifier));
    __builtin_prefetch(&slots_[prefetchedHash_ & mask]);
}

bool SvgDefinitions::Entry::Insert(const Definition& definition) {
    if (!first.primitive) {
        first = definition;
        return true;
    }
    if (definition.holderPlace < first.holderPlace) {
        others.insert(others.begin(), first);
        first = definition;
        return true;
    }
    const auto later = std::find_if(others.rbegin(), others.rend(), [&](const Definition& one) {
                           return one.holderPlace <= definition.holderPlace;
                       }).base();
    const Definition& before = later == others.begin() ? first : *std::prev(later);
    if (before.holderPlace == definition.holderPlace) return false;
    others.insert(later, definition);
    return true;
}

void SvgDefinitions::Entry::RemoveLast() {
    if (others.empty())
        first = {};
    else
        others.pop_back();
}

std::size_t SvgDefinitions::FindSlot(std::string_view lowerCase, std::uint64_t hash) const {
    const std::size_t mask = slots_.size() - 1;
    const auto tag = static_cast<std::uint32_t>(hash >> 32U);
    for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
        const Slot& slot = slots_[i];
        if (slot.entry == kFree) return i;
        if (slot.hash == tag && entries_[slot.entry].identifier == lowerCase) return i;
    }
}

std::uint32_t SvgDefinitions::FindOrAddEntry(std::string lowerCase) {
    if (2 * (entries_.size() + 1) > slots_.size()) GrowSlots();
    const std::uint64_t hash = Hash(lowerCase);
    Slot& slot = slots_[FindSlot(lowerCase, hash)];
    if (slot.entry == kFree) {
        const auto entry = static_cast<std::uint32_t>(entries_.size());
        entries_.emplace_back(std::move(lowerCase));
        slot = {static_cast<std::uint32_t>(hash >> 32U), entry};
    }
    return slot.entry;
}

void SvgDefinitions::GrowSlots() {
    constexpr std::size_t kFirstSlots = 64;
    std::vector<Slot> slots(std::max(kFirstSlots, 2 * slots_.size()));
    slots_.swap(slots);
    for (std::uint32_t entry = 0; entry < entries_.size(); ++entry) {
        const std::string& identifier = entries_[entry].identifier;
        const std::uint64_t hash = Hash(identifier);
        slots_[FindSlot(identifier, hash)] = {static_cast<std::uint32_t>(hash >> 32U), entry};
    }
}

void MoveSetsTo(ORVPrtDefsElt& holder, SvgDrawState& state) {
    holder.SetType(state.drawStyle);
    holder.SetStroke(state.stroke);
    holder.SetFill(state.fill);
    state.stroke = {};
    state.fill = {};
    state.text = {};
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
