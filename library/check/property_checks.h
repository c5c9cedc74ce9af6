// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// A property as an element says it.
struct SaidProperty {
    std::string_view attribute;  ///< the one that it stands in: "style", or that of its own name
    std::string_view name;
    std::string_view value;

    bool IsInStyle() const { return attribute == "style"; }
    /// As findings show it.
    std::string GetText() const;
};

/// Checks the declarations of a style attribute.
/// @param state  in force around the element
void CheckStyle(CheckContext& check, const NumberedElement& element, std::string_view style,
                const SvgDrawState& state);

/// Checks the value of an attribute that is a property with an effect. Any other attribute has none to check.
/// @param state  in force around the element
void CheckPresentationAttribute(CheckContext& check, const NumberedElement& element,
                                const ORVXmlAttribute& attribute, const SvgDrawState& state);

/// Checks a property that has no effect where it stands: whether SVG would have it change something.
void CheckPropertyWithoutEffect(CheckContext& check, const NumberedElement& element,
                                const SaidProperty& said);
