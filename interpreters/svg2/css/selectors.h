// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "interpreters/svg2/css/StyleWork.h"
#include "interpreters/svg2/document/Document.h"

namespace svg2 {

struct Selector;
/// A shared list of alternative selectors.
using SelectorList = std::shared_ptr<const std::vector<Selector>>;

/// A condition on an element other than its type, identifier or class.
struct SelectorTest {
    enum class Kind : std::uint8_t {
        kNothing,  ///< never matches in print, for example ":hover"
        kAnything,
        kHasAttribute,
        kEquals,
        kIncludes,  ///< one word of the value
        kDashMatch,
        kPrefix,
        kSuffix,
        kSubstring,
        kRoot,
        kEmpty,
        kNthChild,
        kNthLastChild,
        kNthOfType,
        kNthLastOfType,
        kOnlyOfType,
        kNot,
        kIs,
        kHas,
        kIsAnchor,  ///< the element that kHas applies to
        kLang,
        kLink,
    };
    Kind kind = Kind::kNothing;
    bool ignoresCase = false;
    std::string_view name, value;  ///< of an attribute; or the language
    int step = 0, offset = 0;      ///< of positions: step * n + offset, n >= 0
    SelectorList alternatives;     ///< null: none; for positions, the siblings that are counted
};

/// A compound selector: conditions on one element.
struct CompoundSelector {
    /// The combinator between this compound and the one to its right.
    enum class Combinator : std::uint8_t { kDescendant, kChild, kAdjacent, kSibling };
    Combinator combinator = Combinator::kDescendant;
    std::string_view type;  ///< empty: any type
    bool matchesNothing = false;
    std::vector<std::string_view> ids, classes;
    std::vector<SelectorTest> tests;
};

/// A complex selector: conditions on an element and its context.
struct Selector {
    std::vector<CompoundSelector> compounds;  ///< the subject first, then from right to left
    std::uint32_t specificity = 0;            ///< greater ones win
};

/// Namespace URIs by prefix; the empty prefix is the default namespace.
using SelectorNamespaces = std::unordered_map<std::string_view, std::string_view>;

/// Context for parsing selectors.
struct SelectorContext {
    const SelectorNamespaces& namespaces;
    std::deque<std::string>& texts;       ///< stores decoded names; must outlive the selectors
    SelectorList parents;                 ///< selectors of the enclosing rule; null: none
    std::uint32_t parentSpecificity = 0;  ///< the greatest specificity among them
};

/// Parses a selector list.
/// @param text  without comments; must outlive the selectors
/// @return false if one of them is invalid, which invalidates the whole list
bool ReadSelectors(std::string_view text, const SelectorContext& context, std::vector<Selector>& selectors);

/// The greatest specificity in a list; 0 if it is empty.
std::uint32_t GreatestSpecificity(const std::vector<Selector>& selectors);

/// Matches selectors against elements, within a budget.
class SelectorMatcher {
public:
    /// @param document  must outlive this object
    /// @param work      counts a step for each element tested; must outlive this object
    SelectorMatcher(const Document& document, StyleWork& work) : document_(document), work_(work) {}

    /// Always false once the budget is exceeded.
    bool Matches(ElementIndex element, const Selector& selector);

private:
    /// The outcome of matching; failures say whether trying another ancestor or sibling can succeed.
    enum class Result : std::uint8_t { kMatches, kFails, kFailsForSiblings, kFailsForAncestors };

    bool MatchesCompound(ElementIndex element, const CompoundSelector& compound);
    bool MatchesTest(ElementIndex element, const SelectorTest& test);
    /// Matches the compounds from `place` on against the element's context.
    Result MatchAround(ElementIndex element, const Selector& selector, std::size_t place);
    bool MatchesAny(ElementIndex element, const std::vector<Selector>& selectors);
    bool MatchesPlace(ElementIndex element, const SelectorTest& test);
    bool Has(ElementIndex element, const SelectorTest& test);

    /// The position of an element among siblings that meet a condition.
    struct KnownPlace {
        ElementIndex element = kNoElement;
        std::uint32_t place = 0;
    };
    /// The most recent one for each parent.
    using KnownPlaces = std::unordered_map<ElementIndex, KnownPlace>;

    std::uint32_t PlaceOfType(ElementIndex element, bool fromLast);
    /// The position of an element among the matching siblings, of which it is one.
    template <class IsOfKind>
    std::uint32_t FindPlace(ElementIndex element, bool fromLast, KnownPlaces& latest, IsOfKind isOfKind);

    const Document& document_;
    StyleWork& work_;
    KnownPlaces fromFirst_, fromLast_;
    std::unordered_map<const SelectorTest*, KnownPlaces> byTest_;
    ElementIndex anchor_ = kNoElement;  // the element that ":has()" applies to
};

/// Calls `use` for each space-separated word, until it returns false.
template <class Use>
void ForEachWord(std::string_view text, Use use) {
    std::size_t start = 0;
    constexpr std::string_view kSpaces = " \t\r\n\f";
    while ((start = text.find_first_not_of(kSpaces, start)) != std::string_view::npos) {
        const std::size_t end = text.find_first_of(kSpaces, start);
        if (!use(text.substr(start, end - start)) || end == std::string_view::npos) return;
        start = end;
    }
}

}  // namespace svg2
