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

/// A text without its comments, each of which becomes a space; comments within strings stay.
std::string WithoutComments(std::string_view text);

}  // namespace svg2
