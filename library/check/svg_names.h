// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string_view>

#include "library/check/findings.h"

// What SVG has beyond what is printed here. None of these names is known to the interpreter; they only make
// better words of findings, or keep the check quiet about what nobody expects to be printed.

/// What an element that the interpreter does not know is to SVG.
struct UnprintedElement {
    std::string_view name;
    /// Nothing for an element that shows nowhere by itself: it is reported where something refers to it.
    std::optional<FindingCode> code;
};
/// Null for a name that SVG does not have.
const UnprintedElement* FindUnprintedElement(std::string_view name);

/// How an attribute that the interpreter does not know is to be taken.
enum class AttributeRole {
    kUnknown,
    kSilent,  ///< changes nothing on paper: versions, languages, classes, accessibility
    kScript,  ///< an event handler
    kSvg,     ///< an attribute of SVG that is not read
};
AttributeRole FindAttributeRole(std::string_view name);

/// Whether a property without effect has the value that it has anyway.
bool IsInitialValue(std::string_view property, std::string_view value);

/// Whether a property is an editor's own, or shows nowhere on paper.
bool IsSilentProperty(std::string_view property);

/// The kind of findings about a property without effect.
FindingCode GetIgnoredPropertyCode(std::string_view property);
