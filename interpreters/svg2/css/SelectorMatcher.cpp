// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "interpreters/svg2/css/selectors.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

using Kind = SelectorTest::Kind;
using Combinator = CompoundSelector::Combinator;

bool IsAtPlace(const SelectorTest& test, std::uint32_t place) {
    const long distance = static_cast<long>(place) - test.offset;
    if (test.step == 0) return distance == 0;
    return distance % test.step == 0 && distance / test.step >= 0;
}

bool EqualTexts(std::string_view a, std::string_view b, bool ignoresCase) {
    if (!ignoresCase) return a == b;
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return ToLower(x) == ToLower(y); });
}

bool MatchesAttribute(const ORVXmlNode& node, const SelectorTest& test, StyleWork& work) {
    constexpr unsigned int kAttributesPerStep = 8;
    work.Take(node.attributeCount / kAttributesPerStep);
    const std::optional<std::string_view> found = node.Find(test.name);
    if (!found) return false;
    const std::string_view text = *found, wanted = test.value;
    if (test.kind == Kind::kIncludes) work.TakeText(text.size());
    if (test.kind == Kind::kSubstring) work.Take(text.size() / 4);  // the search may compare at each position
    const auto equals = [&test](std::string_view a, std::string_view b) {
        return EqualTexts(a, b, test.ignoresCase);
    };
    switch (test.kind) {
        case Kind::kHasAttribute: return true;
        case Kind::kEquals: return equals(text, wanted);
        case Kind::kIncludes: {
            bool includes = false;
            ForEachWord(text, [&](std::string_view word) { return !(includes = equals(word, wanted)); });
            return includes;
        }
        case Kind::kDashMatch:
            return equals(text.substr(0, wanted.size()), wanted) &&
                   (text.size() == wanted.size() || text[wanted.size()] == '-');
        case Kind::kPrefix: return !wanted.empty() && equals(text.substr(0, wanted.size()), wanted);
        case Kind::kSuffix:
            return !wanted.empty() && text.size() >= wanted.size() &&
                   equals(text.substr(text.size() - wanted.size()), wanted);
        case Kind::kSubstring: return !wanted.empty() && text.find(wanted) != std::string_view::npos;
        default: return false;
    }
}

/// True if the language, or a prefix of it that ends before "-", is in the list.
bool IsInLanguages(std::string_view language, std::string_view list) {
    for (;;) {
        const std::size_t comma = list.find(',');
        std::string_view wanted = Trim(list.substr(0, comma));
        Scanner quoted(wanted);
        if (std::string_view inside; quoted.TakeString(inside)) wanted = inside;
        if (!wanted.empty() && EqualTexts(language.substr(0, wanted.size()), wanted, true) &&
            (language.size() == wanted.size() || language[wanted.size()] == '-'))
            return true;
        if (comma == std::string_view::npos) return false;
        list.remove_prefix(comma + 1);
    }
}

bool IsEmpty(const ORVXmlNode& node) {
    for (const ORVXmlNode* child = node.firstChild; child; child = child->nextSibling)
        if (child->kind != ORVXmlNode::Kind::kComment && (child->IsElement() || !child->GetText().empty()))
            return false;
    return true;
}

std::string_view LocalName(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

}  // namespace

// Positions of siblings are usually requested in order, so each is counted from the previous one.
template <class IsOfKind>
std::uint32_t SelectorMatcher::FindPlace(ElementIndex element, bool fromLast, KnownPlaces& latest,
                                         IsOfKind isOfKind) {
    KnownPlace& known = latest[document_[element].parent];
    std::uint32_t before = 0;
    ElementIndex sibling = element;
    for (; sibling != kNoElement && sibling != known.element; sibling = document_[sibling].previousSibling) {
        work_.Take();
        if (isOfKind(sibling)) ++before;
    }
    std::uint32_t place = before;
    if (sibling != kNoElement && isOfKind(sibling)) {
        place = fromLast ? known.place - before : known.place + before;
    } else if (sibling != kNoElement || fromLast) {
        place = 1;
        const auto next = [&](ElementIndex index) {
            return fromLast ? document_[index].nextSibling : document_[index].previousSibling;
        };
        for (sibling = next(element); sibling != kNoElement; sibling = next(sibling)) {
            work_.Take();
            if (isOfKind(sibling)) ++place;
        }
    }
    known = {element, place};
    return place;
}

std::uint32_t SelectorMatcher::PlaceOfType(ElementIndex element, bool fromLast) {
    const std::string_view name = document_[element].node->GetName();
    return FindPlace(element, fromLast, fromLast ? fromLast_ : fromFirst_,
                     [&](ElementIndex index) { return document_[index].node->GetName() == name; });
}

bool SelectorMatcher::MatchesAny(ElementIndex element, const std::vector<Selector>& selectors) {
    return std::any_of(selectors.begin(), selectors.end(),
                       [&](const Selector& selector) { return Matches(element, selector); });
}

bool SelectorMatcher::MatchesPlace(ElementIndex index, const SelectorTest& test) {
    const bool fromLast = test.kind == Kind::kNthLastChild;
    if (test.alternatives) {
        if (!MatchesAny(index, *test.alternatives)) return false;
        const auto isCounted = [&](ElementIndex sibling) { return MatchesAny(sibling, *test.alternatives); };
        return IsAtPlace(test, FindPlace(index, fromLast, byTest_[&test], isCounted));
    }
    const Element& element = document_[index];
    if (!fromLast) return IsAtPlace(test, element.position);
    const std::uint32_t count = element.parent == kNoElement ? 1 : document_[element.parent].childCount;
    return IsAtPlace(test, count - element.position + 1);
}

// The descendants of an element follow it in document order.
bool SelectorMatcher::Has(ElementIndex element, const SelectorTest& test) {
    const auto endOf = [this](ElementIndex index) {
        while (index != kNoElement && document_[index].nextSibling == kNoElement)
            index = document_[index].parent;
        return index == kNoElement ? static_cast<ElementIndex>(document_.GetCount())
                                   : document_[index].nextSibling;
    };
    const ElementIndex outer = std::exchange(anchor_, element);
    const auto hasOne = [&](const Selector& selector) {
        const Combinator first = selector.compounds.back().combinator;
        const bool isBelow = first == Combinator::kDescendant || first == Combinator::kChild;
        const ElementIndex parent = document_[element].parent;
        const ElementIndex end = isBelow || parent == kNoElement ? endOf(element) : endOf(parent);
        for (ElementIndex index = isBelow ? element + 1 : endOf(element); index < end; ++index)
            if (Matches(index, selector)) return true;
        return false;
    };
    const bool has = std::any_of(test.alternatives->begin(), test.alternatives->end(), hasOne);
    anchor_ = outer;
    return has;
}

bool SelectorMatcher::MatchesTest(ElementIndex index, const SelectorTest& test) {
    const Element& element = document_[index];
    switch (test.kind) {
        case Kind::kNothing: return false;
        case Kind::kAnything: return true;
        case Kind::kRoot: return index == Document::kRoot;
        case Kind::kEmpty: return IsEmpty(*element.node);
        case Kind::kNthChild:
        case Kind::kNthLastChild: return MatchesPlace(index, test);
        case Kind::kNthOfType: return IsAtPlace(test, PlaceOfType(index, false));
        case Kind::kNthLastOfType: return IsAtPlace(test, PlaceOfType(index, true));
        case Kind::kOnlyOfType: return PlaceOfType(index, false) == 1 && PlaceOfType(index, true) == 1;
        case Kind::kNot: return !MatchesAny(index, *test.alternatives);
        case Kind::kIs: return MatchesAny(index, *test.alternatives);
        case Kind::kHas: return Has(index, test);
        case Kind::kIsAnchor: return index == anchor_;
        case Kind::kLink: return element.tag == Tag::kA && document_.Find(index, Name::kHref).has_value();
        case Kind::kLang: return IsInLanguages(document_.LanguageOf(index), test.value);
        default: return MatchesAttribute(*element.node, test, work_);
    }
}

bool SelectorMatcher::MatchesCompound(ElementIndex index, const CompoundSelector& compound) {
    work_.Take();
    if (compound.matchesNothing) return false;
    const ORVXmlNode& node = *document_[index].node;
    if (!compound.type.empty() && LocalName(node.GetName()) != compound.type) return false;
    for (const std::string_view id : compound.ids)
        if (node.Value(AttributeName::kId) != id) return false;
    if (!compound.classes.empty()) {
        const std::string_view classes = document_.ValueOf(index, Name::kClass);
        work_.TakeText(compound.classes.size() * classes.size());
        for (const std::string_view wanted : compound.classes) {
            bool has = false;
            ForEachWord(classes, [&](std::string_view word) { return !(has = word == wanted); });
            if (!has) return false;
        }
    }
    return std::all_of(compound.tests.begin(), compound.tests.end(),
                       [&](const SelectorTest& test) { return MatchesTest(index, test); });
}

// If a selector fails because an ancestor is missing, it fails for every ancestor as well, so no path is
// tried twice.
SelectorMatcher::Result SelectorMatcher::MatchAround(ElementIndex element, const Selector& selector,
                                                     std::size_t place) {
    if (place == selector.compounds.size()) return Result::kMatches;
    const CompoundSelector& compound = selector.compounds[place];
    const bool goesUp =
        compound.combinator == Combinator::kDescendant || compound.combinator == Combinator::kChild;
    const bool tries =
        compound.combinator == Combinator::kDescendant || compound.combinator == Combinator::kSibling;
    const Result exhausted = goesUp ? Result::kFailsForAncestors : Result::kFailsForSiblings;
    for (;;) {
        element = goesUp ? document_[element].parent : document_[element].previousSibling;
        if (element == kNoElement) return exhausted;
        Result result = Result::kFails;
        if (MatchesCompound(element, compound)) result = MatchAround(element, selector, place + 1);
        if (!tries || result == Result::kMatches || result == Result::kFailsForAncestors ||
            (!goesUp && result == Result::kFailsForSiblings))
            return result;
    }
}

bool SelectorMatcher::Matches(ElementIndex element, const Selector& selector) {
    return !work_.IsSpent() && MatchesCompound(element, selector.compounds.front()) &&
           MatchAround(element, selector, 1) == Result::kMatches;
}

}  // namespace svg2
