// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "interpreters/svg2/document/names.h"
#include "interpreters/svg2/values/length.h"

namespace svg2 {

/// Finds the property with a name, ignoring case.
std::optional<Name> FindProperty(std::string_view text);

/// True if the text is a valid value of a geometry property.
bool IsGeometryValue(Name name, std::string_view value, const UnitSizes& sizes);

/// True if the text is a valid value of a property; always true for custom properties.
bool IsSheetValue(std::string_view property, std::string_view value);

}  // namespace svg2
