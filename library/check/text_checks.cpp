// SPDX-License-Identifier: Apache-2.0
#include "library/check/text_checks.h"

#include "interpreters/svg/state/SvgDrawState.h"
#include "platform/model/ORVPrtEnumerations.h"

namespace {

using enum FindingCode;

// Line ends and tabs are removed from text.
bool IsDeleted(char c) { return c == '\n' || c == '\r' || c == '\t'; }

// Whether such a character joins two words because there is no blank beside it.
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

// Whether SVG would show different white space than is printed.
const char* ComparedBlanks(std::string_view text, const MeantStyle& meant, const SvgDrawState& state) {
    const std::size_t first = text.find_first_not_of(" \t\r\n"), last = text.find_last_not_of(" \t\r\n");
    const std::string_view inner = text.substr(first, last - first + 1);
    if (meant.keepsBlanks) {
        const bool isAtStart = state.text.GetAnchor() < kAnchorFirst + 4;
        if (first > 0 || (!isAtStart && last + 1 < text.size()))
            return "the spaces at its ends are not printed";
        if (inner.find_first_of("\t\r\n") != inner.npos)
            return "its line breaks and tabs do not count as spaces";
        return nullptr;
    }
    // Two blanks with only removed characters between them are adjacent.
    bool wasBlank = false;
    for (const char c : inner) {
        if (c == ' ' && wasBlank) return "every space of a run is printed, not one for the run";
        if (!IsDeleted(c)) wasBlank = c == ' ';
    }
    return nullptr;
}

// Reports writing modes that other programs handle differently, if the text shows it.
void CheckWritingMode(CheckContext& check, const NumberedElement& element, std::string_view text,
                      const SvgDrawState& state) {
    const int mode = state.text.GetWritingMode();
    if (mode == kTopToBottom)
        check.findings.Note(kExtraEffect, element, {}, text,
                            "writing-mode tb sets letters upright; other programs rotate them");
    const bool isCentred = (state.text.GetAnchor() - kAnchorFirst) / 4 == 1;
    if (mode == kRightToLeft && !isCentred)
        check.findings.Note(kExtraEffect, element, {}, text,
                            "writing-mode rl places it on the other side of x, unlike in SVG");
}

// Only families used by some text are looked up, and each element that specifies them only once.
void CheckFamily(CheckContext& check, const NumberedElement& element, std::string_view text,
                 const SvgDrawState& state) {
    const FontFamily& family = check.inForce.family;
    if (!family.saidBy.node) {
        // The font of a definition may come from its references.
        if (check.openDefinition) return;
        if (const MaybeProblem problem = check.resources.CheckDefaultFont(state))
            check.findings.Note(element, {}, text, *problem);
        return;
    }
    if (!check.families.insert(family.saidBy.node).second) return;
    const char* attribute = family.source == PropertySource::kStyle ? "style" : "font-family";
    if (const MaybeProblem problem = check.resources.CheckFamilies(family.families, family.source))
        check.findings.Note(family.saidBy, attribute, family.families, *problem);
}

}  // namespace

void CheckText(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    const std::string_view text = element.node->GetText();
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) return;
    if (JoinsWords(text))
        check.findings.Note(kJoinedWords, element, {}, text, "put a space at the line break");
    else if (const char* problem = ComparedBlanks(text, check.inForce.meant, state))
        check.findings.Note(kTextBlanks, element, {}, text, problem);
    if (const MaybeProblem problem = check.resources.CheckFont(state))
        check.findings.Note(element, {}, text, *problem);
    if (const MaybeProblem problem = check.resources.CheckGlyphs(text, state))
        check.findings.Note(element, {}, text, *problem);
    CheckFamily(check, element, text, state);
    CheckWritingMode(check, element, text, state);
}
