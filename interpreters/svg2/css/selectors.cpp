// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/selectors.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "interpreters/svg2/css/declarations.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

using Kind = SelectorTest::Kind;
using Combinator = CompoundSelector::Combinator;

constexpr std::string_view kSvgNamespace = "http://www.w3.org/2000/svg";
constexpr int kGreatestDepth = 16;  // nesting depth of :not() and :is()

constexpr std::uint32_t kOfId = 1U << 20U, kOfClass = 1U << 10U, kOfType = 1U;

class SelectorReader {
public:
    SelectorReader(std::string_view text, const SelectorContext& context, int depth, bool isOfHas = false)
        : scanner_(text), context_(context), depth_(depth), isOfHas_(isOfHas) {}

    bool ReadList(std::vector<Selector>& selectors);
    /// True if "&" occurred.
    bool RefersToParents() const { return refersToParents_; }

private:
    bool ReadSelector(Selector& selector);
    void BeginRelative(Selector& selector, Combinator combinator) const;
    bool TakeCombinator(Combinator& combinator);
    bool ReadCompound(CompoundSelector& compound, std::uint32_t& specificity);
    bool ReadType(CompoundSelector& compound, std::uint32_t& specificity, bool& isRead);
    bool ReadAttribute(SelectorTest& test);
    bool ReadPseudoClass(CompoundSelector& compound, std::uint32_t& specificity);
    bool ReadFunction(std::string_view name, std::string_view inside, SelectorTest& test,
                      std::uint32_t& specificity);
    bool ReadPlaceFunction(std::string_view inside, SelectorTest& test, std::uint32_t& specificity);
    bool ReadAlternatives(std::string_view inside, SelectorTest& test, std::uint32_t& greatest,
                          bool isOfHas = false);
    SelectorTest TestOfParents(std::uint32_t& specificity) const;
    /// Decodes escapes in a name.
    std::string_view Meant(std::string_view text) const {
        if (text.find('\\') == std::string_view::npos) return text;
        return context_.texts.emplace_back(Unescaped(text));
    }
    std::string_view TakeName() { return Meant(scanner_.TakeName()); }

    Scanner scanner_;
    const SelectorContext& context_;
    int depth_;
    bool isOfHas_;  // selectors are relative to the element that :has() applies to
    bool refersToParents_ = false;
};

bool SelectorReader::ReadList(std::vector<Selector>& selectors) {
    if (depth_ > kGreatestDepth) return false;
    do {
        Selector selector;
        if (!ReadSelector(selector)) return false;
        selectors.push_back(std::move(selector));
    } while (scanner_.TakeAfterSpace(','));
    return scanner_.AtEnd();
}

bool SelectorReader::TakeCombinator(Combinator& combinator) {
    if (scanner_.Take('>'))
        combinator = Combinator::kChild;
    else if (scanner_.Take('+'))
        combinator = Combinator::kAdjacent;
    else if (scanner_.Take('~'))
        combinator = Combinator::kSibling;
    else
        return false;
    return true;
}

/// "&": the elements that the enclosing rule matches, or the root element if there is none.
SelectorTest SelectorReader::TestOfParents(std::uint32_t& specificity) const {
    SelectorTest test;
    test.kind = context_.parents ? Kind::kIs : Kind::kRoot;
    test.alternatives = context_.parents;
    specificity += context_.parentSpecificity;
    return test;
}

/// Inserts the implicit first compound of a relative selector.
void SelectorReader::BeginRelative(Selector& selector, Combinator combinator) const {
    CompoundSelector first;
    first.combinator = combinator;
    SelectorTest anchor;
    anchor.kind = Kind::kIsAnchor;
    first.tests.push_back(isOfHas_ ? std::move(anchor) : TestOfParents(selector.specificity));
    selector.compounds.insert(selector.compounds.begin(), std::move(first));
}

bool SelectorReader::ReadSelector(Selector& selector) {
    scanner_.SkipSpace();
    const bool isNested = context_.parents && depth_ == 0;
    Combinator combinator = Combinator::kDescendant;
    const bool isRelative = (isOfHas_ || isNested) && TakeCombinator(combinator);
    scanner_.SkipSpace();
    refersToParents_ = refersToParents_ && depth_ > 0;
    for (;;) {
        CompoundSelector compound;
        if (!ReadCompound(compound, selector.specificity)) return false;
        selector.compounds.push_back(std::move(compound));
        const bool hasSpace = IsSpace(scanner_.Peek());
        scanner_.SkipSpace();
        if (!TakeCombinator(selector.compounds.back().combinator) &&
            (!hasSpace || scanner_.AtEnd() || scanner_.Peek() == ','))
            break;
        scanner_.SkipSpace();
    }
    if (isRelative || isOfHas_ || (isNested && !refersToParents_)) BeginRelative(selector, combinator);
    std::reverse(selector.compounds.begin(), selector.compounds.end());
    return true;
}

bool SelectorReader::ReadType(CompoundSelector& compound, std::uint32_t& specificity, bool& isRead) {
    const auto takeName = [&]() -> std::string_view {
        if (!scanner_.Take('*')) return TakeName();
        return "*";
    };
    std::string_view name = takeName();
    isRead = !name.empty();
    if (scanner_.Peek() == '|' && scanner_.Peek(1) != '=') {
        scanner_.Advance();
        const std::string_view prefix = name;
        name = takeName();
        if (name.empty()) return false;
        isRead = true;
        const auto known = context_.namespaces.find(prefix);
        if (prefix != "*" && !prefix.empty() && known == context_.namespaces.end()) return false;
        compound.matchesNothing = prefix.empty() || (prefix != "*" && known != context_.namespaces.end() &&
                                                     known->second != kSvgNamespace);
    } else if (isRead) {
        const auto byDefault = context_.namespaces.find({});
        compound.matchesNothing =
            byDefault != context_.namespaces.end() && byDefault->second != kSvgNamespace;
    }
    if (!isRead || name == "*") return true;
    compound.type = name;
    specificity += kOfType;
    return true;
}

bool SelectorReader::ReadCompound(CompoundSelector& compound, std::uint32_t& specificity) {
    bool isRead = false;
    if (!ReadType(compound, specificity, isRead)) return false;
    for (;; isRead = true) {
        if (scanner_.Take('#') || scanner_.Peek() == '.') {
            const bool isClass = scanner_.Take('.');
            const std::string_view name = TakeName();
            if (name.empty()) return false;
            (isClass ? compound.classes : compound.ids).push_back(name);
            specificity += isClass ? kOfClass : kOfId;
        } else if (scanner_.Take('[')) {
            SelectorTest test;
            if (!ReadAttribute(test)) return false;
            compound.tests.push_back(std::move(test));
            specificity += kOfClass;
        } else if (scanner_.Take(':')) {
            if (!ReadPseudoClass(compound, specificity)) return false;
        } else if (scanner_.Take('&')) {
            refersToParents_ = true;
            compound.tests.push_back(TestOfParents(specificity));
        } else {
            return isRead;
        }
    }
}

bool SelectorReader::ReadAttribute(SelectorTest& test) {
    scanner_.SkipSpace();
    test.name = TakeName();
    if (scanner_.Peek() == '|' && scanner_.Peek(1) != '=') {
        scanner_.Advance();
        test.name = TakeName();
    }
    if (test.name.empty()) return false;
    scanner_.SkipSpace();
    if (scanner_.Take(']')) {
        test.kind = Kind::kHasAttribute;
        return true;
    }
    constexpr std::pair<char, Kind> kOperators[] = {{'~', Kind::kIncludes},
                                                    {'|', Kind::kDashMatch},
                                                    {'^', Kind::kPrefix},
                                                    {'$', Kind::kSuffix},
                                                    {'*', Kind::kSubstring}};
    test.kind = Kind::kEquals;
    for (const auto& [character, kind] : kOperators) {
        if (!scanner_.Take(character)) continue;
        test.kind = kind;
        break;
    }
    if (!scanner_.Take('=')) return false;
    scanner_.SkipSpace();
    if (scanner_.TakeString(test.value)) {
        test.value = Meant(test.value);
    } else {
        test.value = TakeName();
        if (test.value.empty()) return false;
    }
    scanner_.SkipSpace();
    const char flag = ToLower(scanner_.Peek());
    test.ignoresCase = flag == 'i';
    if (flag == 'i' || flag == 's') scanner_.Advance();
    return scanner_.TakeAfterSpace(']');
}

/// Parses "odd", "even", "3", "2n+1", "-n + 3".
bool ReadPlaces(std::string_view text, SelectorTest& test) {
    text = Trim(text);
    if (EqualsIgnoringCase(text, "odd")) {
        test.step = 2;
        test.offset = 1;
        return true;
    }
    if (EqualsIgnoringCase(text, "even")) {
        test.step = 2;
        return true;
    }
    Scanner scanner(text);
    const auto takeInteger = [&scanner](int& value) {
        constexpr int kMost = 100'000'000;
        int sign = 1;
        if (scanner.Take('-'))
            sign = -1;
        else
            scanner.Take('+');
        scanner.SkipSpace();
        int number = 0;
        bool hasDigit = false;
        for (; IsDigit(scanner.Peek()); scanner.Advance(), hasDigit = true)
            number = std::min(number * 10 + (scanner.Peek() - '0'), kMost);
        value = sign * (hasDigit ? number : 1);
        return hasDigit;
    };
    int number = 0;
    const bool hasDigits = takeInteger(number);
    if (ToLower(scanner.Peek()) != 'n') {
        test.offset = number;
        return hasDigits && scanner.AtEnd();
    }
    scanner.Advance();
    test.step = number;
    scanner.SkipSpace();
    if (scanner.AtEnd()) return true;
    return (scanner.Peek() == '+' || scanner.Peek() == '-') && takeInteger(test.offset) && scanner.AtEnd();
}

struct PseudoClass {
    std::string_view name;
    Kind kind;
    int offset;  // for positions, counted from one end
};

constexpr PseudoClass kPseudoClasses[] = {
    {"root", Kind::kRoot, 0},
    {"empty", Kind::kEmpty, 0},
    {"first-child", Kind::kNthChild, 1},
    {"last-child", Kind::kNthLastChild, 1},
    {"first-of-type", Kind::kNthOfType, 1},
    {"last-of-type", Kind::kNthLastOfType, 1},
    {"only-of-type", Kind::kOnlyOfType, 0},
    {"link", Kind::kLink, 0},
    {"any-link", Kind::kLink, 0},
    {"scope", Kind::kRoot, 0},
};

constexpr std::pair<std::string_view, Kind> kPlaceFunctions[] = {
    {"nth-child", Kind::kNthChild},
    {"nth-last-child", Kind::kNthLastChild},
    {"nth-of-type", Kind::kNthOfType},
    {"nth-last-of-type", Kind::kNthLastOfType},
};

constexpr std::pair<std::string_view, Kind> kListFunctions[] = {
    {"not", Kind::kNot}, {"is", Kind::kIs}, {"where", Kind::kIs}, {"has", Kind::kHas}};

bool SelectorReader::ReadAlternatives(std::string_view inside, SelectorTest& test, std::uint32_t& greatest,
                                      bool isOfHas) {
    std::vector<Selector> alternatives;
    SelectorReader reader(inside, context_, depth_ + 1, isOfHas);
    if (!reader.ReadList(alternatives)) return false;
    refersToParents_ = refersToParents_ || reader.RefersToParents();
    greatest = GreatestSpecificity(alternatives);
    test.alternatives = std::make_shared<const std::vector<Selector>>(std::move(alternatives));
    return true;
}

/// Parses "2n+1" and "2n+1 of .a".
bool SelectorReader::ReadPlaceFunction(std::string_view inside, SelectorTest& test,
                                       std::uint32_t& specificity) {
    specificity += kOfClass;
    const bool mayBeOfList = test.kind == Kind::kNthChild || test.kind == Kind::kNthLastChild;
    std::size_t end = 0;
    for (std::size_t start = 0; mayBeOfList && start < inside.size(); start = end + 1) {
        end = std::min(inside.find_first_of(" \t\r\n\f", start), inside.size());
        if (!EqualsIgnoringCase(inside.substr(start, end - start), "of")) continue;
        std::uint32_t greatest = 0;
        if (!ReadAlternatives(inside.substr(end), test, greatest)) return false;
        specificity += greatest;
        inside = inside.substr(0, start);
    }
    return ReadPlaces(inside, test);
}

bool SelectorReader::ReadFunction(std::string_view name, std::string_view inside, SelectorTest& test,
                                  std::uint32_t& specificity) {
    for (const auto& [function, kind] : kPlaceFunctions) {
        if (!EqualsIgnoringCase(name, function)) continue;
        test.kind = kind;
        return ReadPlaceFunction(inside, test, specificity);
    }
    const bool isWhere = EqualsIgnoringCase(name, "where");
    for (const auto& [function, kind] : kListFunctions) {
        if (!EqualsIgnoringCase(name, function)) continue;
        test.kind = kind;
        const bool isHas = kind == Kind::kHas;
        std::uint32_t greatest = 0;
        if ((isHas && isOfHas_) || !ReadAlternatives(inside, test, greatest, isHas)) return false;
        specificity += isWhere ? 0 : greatest;
        return true;
    }
    specificity += kOfClass;
    // other functional pseudo-classes never match in print
    if (!EqualsIgnoringCase(name, "lang")) return true;
    test.kind = Kind::kLang;
    test.value = Trim(inside);
    return !test.value.empty();
}

bool SelectorReader::ReadPseudoClass(CompoundSelector& compound, std::uint32_t& specificity) {
    const bool isElement = scanner_.Take(':');
    const std::string_view name = TakeName();
    if (name.empty()) return false;
    SelectorTest test;
    std::string_view inside;
    if (scanner_.Peek() == '(') {
        if (!scanner_.TakeParentheses(inside) || !ReadFunction(name, inside, test, specificity)) return false;
    } else {
        specificity += isElement ? kOfType : kOfClass;
        for (const PseudoClass& row : kPseudoClasses) {
            if (isElement || !EqualsIgnoringCase(name, row.name)) continue;
            test.kind = row.kind;
            test.offset = row.offset;
        }
        if (!isElement && EqualsIgnoringCase(name, "only-child")) {
            SelectorTest first;
            first.kind = Kind::kNthChild;
            first.offset = 1;
            compound.tests.push_back(std::move(first));
            test.kind = Kind::kNthLastChild;
            test.offset = 1;
        }
    }
    compound.tests.push_back(std::move(test));
    return true;
}

// ---- matching ----

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

bool MatchesLanguage(const Document& document, ElementIndex element, std::string_view wanted) {
    for (; element != kNoElement; element = document[element].parent) {
        const std::optional<std::string_view> language = document.Find(element, Name::kLang);
        if (!language) continue;
        return IsInLanguages(*language, wanted);
    }
    return false;
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
        case Kind::kLang: return MatchesLanguage(document_, index, test.value);
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

std::uint32_t GreatestSpecificity(const std::vector<Selector>& selectors) {
    std::uint32_t greatest = 0;
    for (const Selector& selector : selectors) greatest = std::max(greatest, selector.specificity);
    return greatest;
}

bool ReadSelectors(std::string_view text, const SelectorContext& context, std::vector<Selector>& selectors) {
    return SelectorReader(text, context, 0).ReadList(selectors);
}

}  // namespace svg2
