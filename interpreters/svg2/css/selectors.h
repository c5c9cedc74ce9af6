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
/// Selectors of which one is enough; shared by those that refer to them.
using SelectorList = std::shared_ptr<const std::vector<Selector>>;

/// A condition on one element that is neither its type, an identifier nor a class.
struct SelectorTest {
    enum class Kind : std::uint8_t {
        kNothing,  ///< never holds: what a drawing on paper has none of, such as ":hover"
        kHasAttribute,
        kEquals,
        kIncludes,  ///< a word of the value
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
        kIsAnchor,  ///< the element that kHas asks about
        kLang,
        kLink,
    };
    Kind kind = Kind::kNothing;
    bool ignoresCase = false;
    std::string_view name, value;  ///< of an attribute; the language
    int step = 0, offset = 0;      ///< of places: step * n + offset, n not negative
    SelectorList alternatives;     ///< null for none; of places: those that are counted
};

/// Conditions on one element.
struct CompoundSelector {
    /// How the element stands to that of the compound to its right.
    enum class Combinator : std::uint8_t { kDescendant, kChild, kAdjacent, kSibling };
    Combinator combinator = Combinator::kDescendant;
    std::string_view type;  ///< empty for any
    bool matchesNothing = false;
    std::vector<std::string_view> ids, classes;
    std::vector<SelectorTest> tests;
};

/// Conditions on an element and on those around it.
struct Selector {
    std::vector<CompoundSelector> compounds;  ///< the element's own first, then to the left
    std::uint32_t specificity = 0;            ///< greater ones win
};

/// What prefixes of types stand for; the empty one is the default.
using SelectorNamespaces = std::unordered_map<std::string_view, std::string_view>;

/// What selectors are read in.
struct SelectorContext {
    const SelectorNamespaces& namespaces;
    std::deque<std::string>&
        texts;             ///< takes names that were written with escapes; must outlive the selectors
    SelectorList parents;  ///< of the rule around; null outside of rules
    std::uint32_t parentSpecificity = 0;  ///< the greatest of theirs
};

/// Reads a list of selectors.
/// @param text  without comments; must outlive the selectors
/// @return false when one of them cannot be read, which makes the whole list void
bool ReadSelectors(std::string_view text, const SelectorContext& context, std::vector<Selector>& selectors);

/// The greatest specificity of a list; 0 of an empty one.
std::uint32_t GreatestSpecificity(const std::vector<Selector>& selectors);

/// Finds out which elements selectors select, and counts what that costs.
class SelectorMatcher {
public:
    /// @param document  must outlive this object
    /// @param work      takes a step for each element that is looked at; must outlive this object
    SelectorMatcher(const Document& document, StyleWork& work) : document_(document), work_(work) {}

    /// False without a look once the budget is used up.
    bool Matches(ElementIndex element, const Selector& selector);

private:
    /// A failure may say that no element further up, or further to the left, can do better.
    enum class Result : std::uint8_t { kMatches, kFails, kFailsForSiblings, kFailsForAncestors };

    bool MatchesCompound(ElementIndex element, const CompoundSelector& compound);
    bool MatchesTest(ElementIndex element, const SelectorTest& test);
    /// Whether the compounds from `place` on match the elements around.
    Result MatchAround(ElementIndex element, const Selector& selector, std::size_t place);
    bool MatchesAny(ElementIndex element, const std::vector<Selector>& selectors);
    bool MatchesPlace(ElementIndex element, const SelectorTest& test);
    bool Has(ElementIndex element, const SelectorTest& test);

    /// An element whose place among those of its kind has been found.
    struct KnownPlace {
        ElementIndex element = kNoElement;
        std::uint32_t place = 0;
    };
    /// The latest, by parent.
    using KnownPlaces = std::unordered_map<ElementIndex, KnownPlace>;

    std::uint32_t PlaceOfType(ElementIndex element, bool fromLast);
    /// The place of an element among the siblings of a kind, to which it belongs.
    template <class IsOfKind>
    std::uint32_t FindPlace(ElementIndex element, bool fromLast, KnownPlaces& latest, IsOfKind isOfKind);

    const Document& document_;
    StyleWork& work_;
    KnownPlaces fromFirst_, fromLast_;
    std::unordered_map<const SelectorTest*, KnownPlaces> byTest_;
    ElementIndex anchor_ = kNoElement;  // that ":has()" asks about
};

/// Calls `use` for each word of a value that consists of words, until it returns false.
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
