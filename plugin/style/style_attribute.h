#pragma once

#include <string_view>

#include "plugin/interpreter/element_access.h"

struct SvgDrawState;

/// Applies declarations "name:value;name:value" to the state, then their paint and opacity. An empty text
/// changes nothing at all. Blanks around names and values are trimmed, nothing else is; names match exactly.
/// Behind a leading or doubled ";" everything is lost: kept on purpose.
void ApplyStyleText(SvgDrawState& state, std::string_view text);

/// The same for the attribute "style" of an element.
template <SvgElementAccess Element>
void ApplyStyleAttribute(SvgDrawState& state, const Element& element) {
    ApplyStyleText(state, element.Attribute(AttributeName::kStyle).text);
}
