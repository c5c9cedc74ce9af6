// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/supports.h"

#include <vector>

#include "interpreters/svg2/css/sheet_values.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

constexpr int kGreatestDepth = 16;  // nesting depth of conditions

class SupportsReader {
public:
    explicit SupportsReader(const SelectorContext& context) : context_(context) {}

    bool Holds(std::string_view condition, int depth);

private:
    bool HoldsNext(Scanner& scanner, int depth);
    bool HoldsInParentheses(std::string_view inside, int depth);

    const SelectorContext& context_;
    bool isReadable_ = true;
};

bool SupportsReader::HoldsInParentheses(std::string_view inside, int depth) {
    Scanner scanner(Trim(inside));
    const std::string_view name = scanner.TakeName();
    if (!name.empty() && scanner.TakeAfterSpace(':')) return IsSheetValue(name, scanner.Rest());
    return Holds(inside, depth + 1);
}

bool SupportsReader::HoldsNext(Scanner& scanner, int depth) {
    scanner.SkipSpace();
    const std::string_view function = scanner.TakeName();
    std::string_view inside;
    if (!scanner.TakeParentheses(inside)) return isReadable_ = false;
    if (function.empty()) return HoldsInParentheses(inside, depth);
    std::vector<Selector> selectors;
    return EqualsIgnoringCase(function, "selector") && ReadSelectors(inside, context_, selectors);
}

bool SupportsReader::Holds(std::string_view condition, int depth) {
    if (depth > kGreatestDepth) return isReadable_ = false;
    Scanner scanner(Trim(condition));
    constexpr std::string_view kNot = "not";
    if (EqualsIgnoringCase(scanner.Rest().substr(0, kNot.size()), kNot) &&
        !IsNameCharacter(scanner.Peek(kNot.size()))) {
        scanner.Advance(kNot.size());
        const bool holds = HoldsNext(scanner, depth);
        return isReadable_ && scanner.AtEnd() && !holds;
    }
    bool holds = HoldsNext(scanner, depth), isAlternative = false;
    for (bool isFirst = true; isReadable_; isFirst = false) {
        scanner.SkipSpace();
        if (scanner.AtEnd()) return holds;
        const bool isOr = EqualsIgnoringCase(scanner.TakeName(), "or");
        if (!isFirst && isOr != isAlternative) return isReadable_ = false;
        isAlternative = isOr;
        const bool next = HoldsNext(scanner, depth);
        holds = isOr ? holds || next : holds && next;
    }
    return false;
}

}  // namespace

bool MatchesSupports(std::string_view condition, const SelectorContext& context) {
    return SupportsReader(context).Holds(condition, 0);
}

}  // namespace svg2
