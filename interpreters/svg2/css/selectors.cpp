// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/selectors.h"

#include <algorithm>
#include <iterator>
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
    {"read-only", Kind::kAnything, 0},
    {"defined", Kind::kAnything, 0},
};

/// Pseudo-classes and pseudo-elements that never match in print: states of interaction and of forms, and
/// generated content.
constexpr std::string_view kNeverInPrint[] = {"active",         "after",         "autofill",
                                              "backdrop",       "before",        "blank",
                                              "buffering",      "checked",       "cue",
                                              "current",        "default",       "disabled",
                                              "enabled",        "first-letter",  "first-line",
                                              "focus",          "focus-visible", "focus-within",
                                              "fullscreen",     "future",        "grammar-error",
                                              "highlight",      "host",          "host-context",
                                              "hover",          "in-range",      "indeterminate",
                                              "invalid",        "marker",        "modal",
                                              "muted",          "open",          "optional",
                                              "out-of-range",   "part",          "past",
                                              "paused",         "placeholder",   "placeholder-shown",
                                              "playing",        "popover-open",  "read-write",
                                              "required",       "selection",     "slotted",
                                              "spelling-error", "state",         "target",
                                              "target-text",    "target-within", "user-invalid",
                                              "user-valid",     "valid",         "visited"};

/// False for names that do not exist, which make a list of selectors invalid. Names of vendors all exist.
bool IsNeverInPrint(std::string_view name) {
    return name.starts_with('-') ||
           std::any_of(std::begin(kNeverInPrint), std::end(kNeverInPrint),
                       [name](std::string_view known) { return EqualsIgnoringCase(name, known); });
}

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
    const auto readList = [&](std::string_view list) {
        SelectorReader reader(list, context_, depth_ + 1, isOfHas);
        if (!reader.ReadList(alternatives)) return false;
        refersToParents_ = refersToParents_ || reader.RefersToParents();
        return true;
    };
    if (test.kind == Kind::kIs) {
        // Invalid selectors are left out of this list, and do not invalidate it.
        Scanner parts(inside);
        do {
            const std::size_t count = alternatives.size();
            if (!readList(parts.TakeUntil(","))) alternatives.resize(count);
        } while (parts.Take(','));
    } else if (!readList(inside)) {
        return false;
    }
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
    // Goes by HTML's attribute, which SVG does not have, so every element is left to right.
    if (EqualsIgnoringCase(name, "dir")) {
        if (EqualsIgnoringCase(Trim(inside), "ltr")) test.kind = Kind::kAnything;
        return true;
    }
    if (!EqualsIgnoringCase(name, "lang")) return IsNeverInPrint(name);
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
        const bool isOnlyChild = !isElement && EqualsIgnoringCase(name, "only-child");
        if (test.kind == Kind::kNothing && !isOnlyChild && !IsNeverInPrint(name)) return false;
        if (isOnlyChild) {
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

}  // namespace

std::uint32_t GreatestSpecificity(const std::vector<Selector>& selectors) {
    std::uint32_t greatest = 0;
    for (const Selector& selector : selectors) greatest = std::max(greatest, selector.specificity);
    return greatest;
}

bool ReadSelectors(std::string_view text, const SelectorContext& context, std::vector<Selector>& selectors) {
    return SelectorReader(text, context, 0).ReadList(selectors);
}

}  // namespace svg2
