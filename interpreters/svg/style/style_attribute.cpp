// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/style_attribute.h"

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/style/property_table.h"
#include "interpreters/svg/values/text_scan.h"

bool StyleScanner::Next(StyleDeclaration& declaration) {
    // A leading ";" turns the whole remainder into one declaration with an unknown name.
    if (rest_.empty() || rest_.front() == ';') return false;
    declaration = {CutUpTo(rest_, ';'), {}, {}};
    const std::size_t colon = declaration.text.find(':');
    if (colon != std::string_view::npos) {
        declaration.name = TrimBlanks(declaration.text.substr(0, colon));
        declaration.value = TrimBlanks(declaration.text.substr(colon + 1));
    }
    return true;
}

void ApplyStyleText(SvgDrawState& state, std::string_view text) {
    if (text.empty()) return;

    StyleStep step{state};
    StyleScanner scanner(text);
    for (StyleDeclaration declaration; scanner.Next(declaration);) {
        const PropertyRow* row = FindProperty(declaration.name);
        if (row && row->apply) row->apply(step, declaration.value);
    }
    UpdateDrawStyle(state, step.mentions);
    MultiplyOpacity(state, step.strokeFactor, step.fillFactor);
}
