// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "interpreters/svg2/values/scanner.h"

namespace svg2 {

/// "property: value" of a style sheet or of a style attribute.
struct Declaration {
    std::string_view name;   ///< as written
    std::string_view value;  ///< without white space around it, and without "!important"
    bool isImportant = false;
};

/// Reads the next declaration of a list, passing over what cannot be one.
/// @param scanner  over a text without comments
/// @return false at the end of the list
bool TakeDeclaration(Scanner& scanner, Declaration& declaration);

/// A text without its comments, as sheets and style attributes are read; comments within strings and
/// addresses stay. Escapes of letters and digits are these afterwards, also within strings, where spaces and
/// most signs are written plainly, too; every other escape is a backslash and the character itself.
std::string WithoutComments(std::string_view text);

/// A text with its escapes resolved.
std::string Unescaped(std::string_view text);

}  // namespace svg2
