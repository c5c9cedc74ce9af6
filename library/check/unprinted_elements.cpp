// SPDX-License-Identifier: Apache-2.0
#include "library/check/unprinted_elements.h"

#include "library/check/svg_names.h"

namespace {

using enum FindingCode;

const char* Explain(FindingCode code) {
    switch (code) {
        case kTextSpan: return "its text is not printed";
        case kStyleSheet: return "none of its rules is applied";
        case kScript:
        case kAnimation: return "is not run";
        case kSwitch: return "none of its alternatives is printed";
        case kForeignObject: return "its content is not printed";
        case kSvgFont: return "texts are set in installed fonts";
        default: return "is not printed";
    }
}

// Whether an element is an empty style sheet.
bool SaysNothing(const UnprintedElement& known, std::string_view text) {
    return known.name == "style" && text.find_first_not_of(" \t\r\n") == text.npos;
}

}  // namespace

void CheckUnprinted(CheckContext& check, const NumberedElement& element, bool isInLeaf) {
    const ORVXmlNode& node = *element.node;
    const ElementScope scope(check, node);
    const std::string_view prefix = PrefixOf(node.GetName()), space = check.namespaces.Find(prefix);
    const bool isSvg = space == Namespaces::kSvg;
    if (!prefix.empty() && isSvg) {
        check.findings.Note(kPrefixedElement, element, {}, {}, "only names without a prefix are read");
    } else if (space == Namespaces::kXinclude && LocalNameOf(node.GetName()) == "include") {
        check.findings.Note(kUnprintedElement, element, "href", node.Find("href").value_or(""),
                            "no document is included, and its fallback is not printed");
    } else if (!prefix.empty() || (!space.empty() && !isSvg)) {
        check.findings.CountForeign();
    } else if (const UnprintedElement* known = FindUnprintedElement(node.GetName())) {
        if (known->code && !SaysNothing(*known, node.GetText()))
            check.findings.Note(*known->code, element, {}, node.GetText(), Explain(*known->code));
    } else {
        check.findings.Note(kUnknownElement, element, {}, {},
                            isInLeaf ? "is not known" : "is unknown; it and its content are not printed");
    }
}
