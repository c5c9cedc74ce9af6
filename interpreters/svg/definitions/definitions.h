// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "interpreters/svg/definitions/restyling.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"
#include "platform/system/ORVRef.h"

class ORVPrtDefsElt;
struct SvgDrawState;

/// The definitions that can be referenced at one point of the walk: holders in registration order and an
/// index by identifier with constant average look-up time. Owns a reference to each holder.
class SvgDefinitions {
public:
    /// @param budget  of the model, which limits restyling; may be null
    explicit SvgDefinitions(ORVPrtPrimitiveBudget* budget = nullptr) : restyling_(budget) {}
    SvgDefinitions(const SvgDefinitions&) = delete;
    SvgDefinitions& operator=(const SvgDefinitions&) = delete;
    ~SvgDefinitions();

    /// Appends a holder and acquires a reference to it.
    /// @return its index
    std::size_t Register(ORVPrtDefsElt& holder);
    /// Indexes the children that the holder at `place` has received since the last call. Called after the
    /// handler of a child has finished, so that a definition cannot be found from inside itself.
    void IndexNewChildren(std::size_t place);

    std::size_t GetHolderCount() const { return holders_.size(); }
    /// Removes and releases all holders after the first `count`, in reverse order.
    void Truncate(std::size_t count);

    struct Definition {
        ORVPrtDefsElt* holder = nullptr;
        ORVPrtGraphicPrimitiveElt* primitive = nullptr;
        std::size_t holderPlace = 0;
    };
    /// The first finished child with an identifier, in registration order of the holders, ignoring case; null
    /// if there is none. An empty identifier matches nothing.
    const Definition* Find(std::string_view identifier) const;

    /// Whether the definitions exceed the processor cache, so that Prefetch saves time.
    bool AreMany() const { return entries_.size() >= kMany; }
    /// Prefetches the memory that Find will access. The look-up is a chain of dependent accesses; each call
    /// also advances the previous identifiers by one step, so a definition is fetched three calls later.
    void Prefetch(std::string_view identifier);

    SvgRestyling& GetRestyling() { return restyling_; }

private:
    struct Holder {
        ORVPrtDefsElt* primitive = nullptr;
        std::size_t indexedChildren = 0;
        std::vector<std::uint32_t> entries;  // indices of the entries with its children
    };
    /// The definitions of an identifier: at most one per holder, in registration order of the holders.
    struct Entry {
        explicit Entry(std::string lowerCase) : identifier(std::move(lowerCase)) {}
        /// @return false if the holder already has one
        bool Insert(const Definition& definition);
        void RemoveLast();

        std::string identifier;  // in lower case
        Definition first;        // its primitive is null if there is none
        std::vector<Definition> others;
    };
    /// Stores half of the entry's hash, so that other entries can be skipped without accessing them.
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t entry = kFree;
    };
    static constexpr std::uint32_t kFree = UINT32_MAX;
    static constexpr std::size_t kMany = 4096;

    /// @return the slot of the identifier, or the free slot where it belongs
    std::size_t FindSlot(std::string_view lowerCase, std::uint64_t hash) const;
    std::uint32_t FindOrAddEntry(std::string lowerCase);
    void GrowSlots();

    SvgRestyling restyling_;
    std::vector<Holder> holders_;
    // Open-addressing hash table, for few memory accesses per look-up. Entries without definitions are kept,
    // since identifiers tend to recur.
    std::vector<Entry> entries_;
    std::vector<Slot> slots_;  // the size is a power of two; at least half are free
    // Identifiers being prefetched: the hash of the last one, and the entry of the one before.
    std::uint64_t prefetchedHash_ = 0;
    std::uint32_t prefetchedEntry_ = kFree;
};

/// Removes, at the end of its scope, the holders registered since its construction.
class SvgDefinitionScope {
public:
    explicit SvgDefinitionScope(SvgDefinitions& definitions)
        : definitions_(definitions), count_(definitions.GetHolderCount()) {}
    ~SvgDefinitionScope() { definitions_.Truncate(count_); }
    SvgDefinitionScope(const SvgDefinitionScope&) = delete;
    SvgDefinitionScope& operator=(const SvgDefinitionScope&) = delete;

private:
    SvgDefinitions& definitions_;
    std::size_t count_;
};

/// Key for comparing identifiers of definitions: ASCII letters in lower case.
std::string FoldIdentifier(std::string_view identifier);

/// Moves the state's draw style, stroke and fill to a holder (whose text set stays the default) and resets
/// the state to default sets: definitions do not inherit these sets, but receive those of their references.
void MoveSetsTo(ORVPrtDefsElt& holder, SvgDrawState& state);

/// Finds a definition and applies the style of the referring element. If the state equals that of the holder,
/// the definition itself is returned; otherwise a duplicate.
/// @param definition  must be null; receives the restyled definition
/// @return 1 if a definition was found, else 0. It may still be null: out of memory for a duplicate, or the
///         limit of restyling was reached
int FindDefinition(const SvgDrawState& state, std::string_view identifier,
                   ORVRef<ORVPrtGraphicPrimitiveElt>& definition);

/// Applies the state's stroke, fill and text sets to a tree of primitives that nothing else refers to; each
/// primitive takes those its class has. Draw styles, transforms and identifiers are unchanged.
/// @return false if the limit of restyling is reached
bool RestyleDefinition(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive);
