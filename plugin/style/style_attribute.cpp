#include "plugin/style/style_attribute.h"

#include "plugin/structure/SvgDrawState.h"
#include "plugin/style/property_table.h"
#include "plugin/values/text_scan.h"

namespace {

void ApplyDeclaration(StyleStep& step, std::string_view declaration) {
    const std::size_t colon = declaration.find(':');
    if (colon == declaration.npos) return;
    const PropertyRow* row = FindProperty(TrimBlanks(declaration.substr(0, colon)));
    if (row && row->apply) row->apply(step, TrimBlanks(declaration.substr(colon + 1)));
}

}  // namespace

void ApplyStyleText(SvgDrawState& state, std::string_view text) {
    if (text.empty()) return;

    StyleStep step{state};
    while (!text.empty()) {
        const std::size_t end = text.find(';');
        // In front of the rest, a ";" makes one declaration of it, whose name matches nothing.
        if (end == 0) break;
        ApplyDeclaration(step, text.substr(0, end));
        text = end == text.npos ? std::string_view() : text.substr(end + 1);
    }
    UpdateDrawStyle(state, step.mentions);
    MultiplyOpacity(state, step.strokeFactor, step.fillFactor);
}
