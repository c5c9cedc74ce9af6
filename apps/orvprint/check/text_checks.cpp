#include "apps/orvprint/check/text_checks.h"

#include "plugin/structure/SvgDrawState.h"

namespace {

using enum FindingCode;

// Line ends and tabs are taken out of a text.
bool IsDeleted(char c) { return c == '\n' || c == '\r' || c == '\t'; }

// Whether something stands on both sides of them, and no blank.
bool JoinsWords(std::string_view text) {
    for (std::size_t i = 1; i + 1 < text.size(); ++i) {
        if (!IsDeleted(text[i])) continue;
        std::size_t end = i;
        while (end < text.size() && IsDeleted(text[end])) ++end;
        if (end < text.size() && text[i - 1] != ' ' && !IsDeleted(text[i - 1]) && text[end] != ' ')
            return true;
        i = end;
    }
    return false;
}

// Only families that some text is set in are looked for, and each place that names them once.
void CheckFamily(CheckContext& check) {
    const FontFamily& family = check.inForce.family;
    if (!family.saidBy.node || !check.families.insert(family.saidBy.node).second) return;
    const char* attribute = family.source == PropertySource::kStyle ? "style" : "font-family";
    if (const MaybeProblem problem = check.resources.CheckFamilies(family.families, family.source))
        check.findings.Note(family.saidBy, attribute, family.families, *problem);
}

}  // namespace

void CheckText(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    const std::string_view text = element.node->GetText();
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) return;
    if (JoinsWords(text))
        check.findings.Note(kJoinedWords, element, {}, text, "put a blank where the line breaks");
    if (const MaybeProblem problem = check.resources.CheckFont(state))
        check.findings.Note(element, {}, text, *problem);
    if (const MaybeProblem problem = check.resources.CheckGlyphs(text, state))
        check.findings.Note(element, {}, text, *problem);
    CheckFamily(check);
}
