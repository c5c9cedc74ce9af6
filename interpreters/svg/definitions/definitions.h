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

/// The definitions that can be referred to at one point of the walk: holders in registration order, and an
/// index by identifier that answers in constant time on average. Owns a reference to each holder.
class SvgDefinitions {
public:
    /// @param budget  of the model, which bounds restyling; may be null
    explicit SvgDefinitions(ORVPrtPrimitiveBudget* budget = nullptr) : restyling_(budget) {}
    SvgDefinitions(const SvgDefinitions&) = delete;
    SvgDefinitions& operator=(const SvgDefinitions&) = delete;
    ~SvgDefinitions();

    /// Appends a holder and references it. @return its place
    std::size_t Register(ORVPrtDefsElt& holder);
    /// Makes the children that the holder at `place` got since the last call findable. Called when the
    /// handler of a child has ended, so that a definition is never found from inside itself.
    void IndexNewChildren(std::size_t place);

    std::size_t GetHolderCount() const { return holders_.size(); }
    /// Removes the holders behind the first `count`, the last one first, and releases them.
    void Truncate(std::size_t count);

    struct Definition {
        ORVPrtDefsElt* holder = nullptr;
        ORVPrtGraphicPrimitiveElt* primitive = nullptr;
        std::size_t holderPlace = 0;
    };
    /// The first finished child with an identifier, holders in registration order; without regard to the case
    /// of letters. Null when there is none. An empty identifier matches nothing.
    const Definition* Find(std::string_view identifier) const;

    /// True when the definitions are too many to stay near the processor: Prefetch then saves time.
    bool AreMany() const { return entries_.size() >= kMany; }
    /// Asks the processor for what Find is going to look at. Each call also goes a step further with the
    /// identifiers of the calls before, so that the way to a definition is fetched three calls later.
    void Prefetch(std::string_view identifier);

    SvgRestyling& GetRestyling() { return restyling_; }

private:
    struct Holder {
        ORVPrtDefsElt* primitive = nullptr;
        std::size_t indexedChildren = 0;
        std::vector<std::uint32_t> entries;  // in which its children stand
    };
    /// What an identifier names: at most one definition a holder, in registration order of the holders.
    struct Entry {
        explicit Entry(std::string lowerCase) : identifier(std::move(lowerCase)) {}
        /// @return false when the holder has one already
        bool Insert(const Definition& definition);
        void RemoveLast();

        std::string identifier;  // in lower case
        Definition first;        // without a primitive when there is none
        std::vector<Definition> others;
    };
    /// Half of the entry's hash, so that others are passed over without a look at them.
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t entry = kFree;
    };
    static constexpr std::uint32_t kFree = UINT32_MAX;
    static constexpr std::size_t kMany = 4096;

    /// @return the slot of the identifier, or the free one where it belongs
    std::size_t FindSlot(std::string_view lowerCase, std::uint64_t hash) const;
    std::uint32_t FindOrAddEntry(std::string lowerCase);
    void GrowSlots();

    SvgRestyling restyling_;
    std::vector<Holder> holders_;
    // An open-addressing table: few places in memory are looked at for an identifier. Entries whose
    // definitions are gone stay, for their identifiers tend to come again.
    std::vector<Entry> entries_;
    std::vector<Slot> slots_;  // a power of two, half of them free
    // Identifiers that are being fetched: the hash of the last, the entry of the one before it.
    std::uint64_t prefetchedHash_ = 0;
    std::uint32_t prefetchedEntry_ = kFree;
};

/// Removes, when it goes out of scope, the holders registered since it was made.
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

/// What identifiers of definitions are compared as: the case of ASCII letters makes no difference.
std::string FoldIdentifier(std::string_view identifier);

/// Keeps the state's draw style, stroke and fill in a holder, whose text set stays the default one, and
/// leaves the state with default sets: what the holder keeps does not inherit them, references give it
/// theirs.
void MoveSetsTo(ORVPrtDefsElt& holder, SvgDrawState& state);

/// Looks a definition up and styles it for the place that refers to it. Where the state equals the one in
/// force at its holder, the definition itself is handed out, else a duplicate of it.
/// @param definition  null first; then the definition, restyled
/// @return 1 when a definition was found, else 0. A found one may still be null: no memory for a duplicate,
///         or the limit of restyling reached
int FindDefinition(const SvgDrawState& state, std::string_view identifier,
                   ORVRef<ORVPrtGraphicPrimitiveElt>& definition);

/// Gives a tree of primitives, which nothing else refers to, the state's stroke, fill and text sets, each
/// primitive those that its class has. Draw styles, transforms and identifiers stay.
/// @return false when the limit of restyling is reached
bool RestyleDefinition(const SvgDrawState& state, ORVPrtGraphicPrimitiveElt& primitive);
