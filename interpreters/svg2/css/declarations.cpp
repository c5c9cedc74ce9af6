// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/declarations.h"

namespace svg2 {
namespace {

/// What stands before the next ";", which is skipped.
std::string_view TakeValue(Scanner& scanner) {
    const std::string_view value = scanner.TakeUntil(";");
    scanner.Take(';');
    return value;
}

/// Cuts "!important" off the end. @return true when it was there
bool CutImportance(std::string_view& value) {
    constexpr std::string_view kWord = "important";
    const std::size_t mark = value.rfind('!');
    if (mark == std::string_view::npos || !EqualsIgnoringCase(Trim(value.substr(mark + 1)), kWord))
        return false;
    value = Trim(value.substr(0, mark));
    return true;
}

}  // namespace

bool TakeDeclaration(Scanner& scanner, Declaration& declaration) {
    for (;;) {
        scanner.SkipSpace();
        if (scanner.AtEnd()) return false;
        const std::string_view name = scanner.TakeName();
        scanner.SkipSpace();
        if (name.empty() || !scanner.Take(':')) {
            TakeValue(scanner);
            continue;
        }
        declaration.name = name;
        declaration.value = Trim(TakeValue(scanner));
        declaration.isImportant = CutImportance(declaration.value);
        return true;
    }
}

std::string WithoutComments(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    char quote = '\0';
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (quote != '\0') {
            if (c == quote || c == '\n') quote = '\0';
        } else if (c == '"' || c == '\'') {
            quote = c;
        } else if (c == '/' && i + 1 < text.size() && text[i + 1] == '*') {
            const std::size_t end = text.find("*/", i + 2);
            result += ' ';
            if (end == std::string_view::npos) break;
            i = end + 1;
            continue;
        }
        result += c;
    }
    return result;
}

}  // namespace svg2
