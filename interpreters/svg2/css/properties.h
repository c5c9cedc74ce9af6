// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "interpreters/svg2/css/Style.h"
#include "interpreters/svg2/document/names.h"
#include "interpreters/svg2/values/length.h"

namespace svg2 {

/// What values are read by.
struct PropertyContext {
    const Style& parent;
    UnitSizes sizes;
    bool isAttribute = false;  ///< a presentation attribute, else a declaration of a sheet
};

/// Sets a property to what a text says.
/// @return false when the text is no value of the property; the style is then as it was
bool SetProperty(Name name, std::string_view value, const PropertyContext& context, Style& style);

/// Sets a property to its value on another element.
void CopyProperty(Name name, const Style& from, Style& to);

/// Whether elements without a value have that of their parent.
bool IsInherited(Name name);
/// Whether lengths in other properties depend on it.
bool DecidesFontSize(Name name);

/// Reads "url(#id)", whatever the quotes, and what follows it.
/// @param id  out: empty when the reference leads out of the document
/// @return false when the text does not begin with a reference
bool TakeReference(std::string_view text, std::string_view& id, std::string_view& rest);

}  // namespace svg2
