// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/check_context.h"

/// A property as specified on an element.
struct SaidProperty {
    std::string_view attribute;  ///< attribute that specifies it: "style" or the property's own name
    std::string_view name;
    std::string_view value;

    bool IsInStyle() const { return attribute == "style"; }
    /// Text for findings.
    std::string GetText() const;
};

/// Checks the declarations of a style attribute.
/// @param state  the drawing state around the element
void CheckStyle(CheckContext& check, const NumberedElement& element, std::string_view style,
                const SvgDrawState& state);

/// Checks the value of a presentation attribute that has an effect. Other attributes are ignored.
/// @param state  the drawing state around the element
void CheckPresentationAttribute(CheckContext& check, const NumberedElement& element,
                                const ORVXmlAttribute& attribute, const SvgDrawState& state);

/// Checks a property that has no effect here: whether it would change something according to SVG.
void CheckPropertyWithoutEffect(CheckContext& check, const NumberedElement& element,
                                const SaidProperty& said);
