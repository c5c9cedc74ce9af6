// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "library/check/findings.h"

// SVG names that the interpreter does not support. They serve only to word findings better, or to suppress
// findings about things that are not expected to print.

/// How to report an element that the interpreter does not support.
struct UnprintedElement {
    std::string_view name;
    /// Empty for an element that is not drawn directly: it is reported where it is referenced.
    std::optional<FindingCode> code;
};
/// @return null for a name that SVG does not define
const UnprintedElement* FindUnprintedElement(std::string_view name);

/// How to treat an attribute that the interpreter does not support.
enum class AttributeRole {
    kUnknown,
    kSilent,  ///< no effect on paper: versions, languages, classes, accessibility
    kScript,  ///< an event handler
    kSvg,     ///< an SVG attribute that is not read
};
AttributeRole FindAttributeRole(std::string_view name);

/// Whether a property without effect has its initial value anyway.
bool IsInitialValue(std::string_view property, std::string_view value);

/// Whether a property is specific to an editor or has no effect on paper.
bool IsSilentProperty(std::string_view property);

/// The kind of finding for a property without effect.
FindingCode GetIgnoredPropertyCode(std::string_view property);
