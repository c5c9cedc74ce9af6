// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// A declaration of a style attribute, with spaces around name and value trimmed.
struct StyleDeclaration {
    std::string_view text;         ///< as written
    std::string_view name, value;  ///< both empty if there is no colon
};

/// Splits a style attribute into declarations in one forward pass.
class StyleScanner {
public:
    explicit StyleScanner(std::string_view text) : rest_(text) {}

    /// @return false at the end, or before a leading or doubled ";", after which nothing is read
    bool Next(StyleDeclaration& declaration);
    /// After the last declaration: the unread remainder, starting at a leading or doubled ";".
    std::string_view GetRest() const { return rest_; }

private:
    std::string_view rest_;
};

/// Applies declarations "name:value;name:value" to the state, then their paint and opacity. An empty text
/// changes nothing. Only spaces around names and values are trimmed; names are case-sensitive. Everything
/// after a leading or doubled ";" is ignored, on purpose.
void ApplyStyleText(SvgDrawState& state, std::string_view text);

/// Applies the "style" attribute of an element.
template <SvgElementAccess Element>
void ApplyStyleAttribute(SvgDrawState& state, const Element& element) {
    ApplyStyleText(state, element.Attribute(AttributeName::kStyle).text);
}
