// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "interpreters/svg2/document/names.h"
#include "interpreters/svg2/values/length.h"

namespace svg2 {

/// The property of a name as sheets write it, in any case.
std::optional<Name> FindProperty(std::string_view text);

/// Whether a text is a value that a sheet may give to a property of shape or place.
bool IsGeometryValue(Name name, std::string_view value, const UnitSizes& sizes);

/// Whether a sheet may give a value to a property: true for variables.
bool IsSheetValue(std::string_view property, std::string_view value);

}  // namespace svg2
