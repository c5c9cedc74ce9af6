// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "interpreters/svg2/css/Style.h"
#include "interpreters/svg2/document/names.h"
#include "interpreters/svg2/values/length.h"

namespace svg2 {

/// Context for reading values.
struct PropertyContext {
    const Style& parent;
    UnitSizes sizes;
    bool isAttribute = false;  ///< a presentation attribute, otherwise a CSS declaration
};

/// Sets a property from text.
/// @return false, without any change, if the text is not a valid value
bool SetProperty(Name name, std::string_view value, const PropertyContext& context, Style& style);

/// Copies a property's value from another element.
void CopyProperty(Name name, const Style& from, Style& to);

/// True for inherited properties.
bool IsInherited(Name name);
/// True if lengths in other properties depend on it.
bool DecidesFontSize(Name name);

/// Reads "url(#id)", quoted or not, and the text after it.
/// @param id  receives the identifier; empty if the reference leads to another document
/// @return false if the text does not begin with a reference
bool TakeReference(std::string_view text, std::string_view& id, std::string_view& rest);

}  // namespace svg2
