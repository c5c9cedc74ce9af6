// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg/state/element_access.h"

struct SvgDrawState;

/// One declaration of a style attribute, blanks around its name and value trimmed.
struct StyleDeclaration {
    std::string_view text;         ///< as written
    std::string_view name, value;  ///< both empty where there is no colon
};

/// Splits a style attribute into its declarations, in one forward pass.
class StyleScanner {
public:
    explicit StyleScanner(std::string_view text) : rest_(text) {}

    /// @return false at the end, and in front of what a leading or doubled ";" makes unreadable
    bool Next(StyleDeclaration& declaration);
    /// After the last declaration: what is lost behind a leading or doubled ";", with that ";".
    std::string_view GetRest() const { return rest_; }

private:
    std::string_view rest_;
};

/// Applies declarations "name:value;name:value" to the state, then their paint and opacity. An empty text
/// changes nothing at all. Blanks around names and values are trimmed, nothing else is; names match exactly.
/// Behind a leading or doubled ";" everything is lost: kept on purpose.
void ApplyStyleText(SvgDrawState& state, std::string_view text);

/// The same for the attribute "style" of an element.
template <SvgElementAccess Element>
void ApplyStyleAttribute(SvgDrawState& state, const Element& element) {
    ApplyStyleText(state, element.Attribute(AttributeName::kStyle).text);
}
