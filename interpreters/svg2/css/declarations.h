// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "interpreters/svg2/values/scanner.h"

namespace svg2 {

/// "property: value" in a style sheet or style attribute.
struct Declaration {
    std::string_view name;   ///< as written
    std::string_view value;  ///< without surrounding white space and "!important"
    bool isImportant = false;
};

/// Reads the next declaration of a list, skipping invalid ones.
/// @param scanner  over a text without comments
/// @return false at the end of the list
bool TakeDeclaration(Scanner& scanner, Declaration& declaration);

/// Removes comments, except in strings and URLs, and normalises escapes: escaped letters and digits are
/// written plainly, as are spaces and most signs in strings; every other escape becomes a backslash followed
/// by the character itself.
std::string WithoutComments(std::string_view text);

/// Decodes all escapes.
std::string Unescaped(std::string_view text);

}  // namespace svg2
