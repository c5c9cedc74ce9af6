#include "apps/orvprint/check/reference_checks.h"

#include "platform/print/link_addresses.h"
#include "plugin/geometry/markers.h"
#include "plugin/structure/SvgDrawState.h"
#include "plugin/values/length.h"

namespace {

using enum FindingCode;

constexpr const char* kNoSuchElement = "the document has no such element";

// What a "use" refers to. Where there is nothing, that is a finding, and the result null.
const SvgDefinitions::Definition* FindUsed(CheckContext& check, const NumberedElement& use,
                                           std::string_view reference, const SvgDrawState& state) {
    const std::string_view id = reference.substr(1);
    if (const SvgDefinitions::Definition* found = state.definitions->Find(id)) return found;
    if (!check.identifiers.FindOnPage(id))
        check.findings.Note(kMissingReference, use, "xlink:href", reference, kNoSuchElement);
    else
        check.findings.Note(kUnreachableReference, use, "xlink:href", reference,
                            "is no definition here: only direct children of defs, symbols, markers and "
                            "patterns that come before, in a group still open, are found");
    return nullptr;
}

// What is given a width and height is scaled to fit, which SVG does with symbols only.
void CheckFitting(CheckContext& check, const NumberedElement& use, const SvgDrawState& state) {
    double width = 0.0, height = 0.0;
    ParseHorizontalLength(state, use.node->Value(AttributeName::kWidth), width);
    ParseVerticalLength(state, use.node->Value(AttributeName::kHeight), height);
    if (width > 0.0 && height > 0.0)
        check.findings.Note(kFittedUse, use, "width", use.node->Value(AttributeName::kWidth),
                            "what it places is no symbol with a viewBox, and is scaled all the same");
}

void CheckMarker(CheckContext& check, const NumberedElement& element, const ORVUnicodeString& id,
                 const SvgDrawState& state) {
    if (id.IsEmpty()) return;
    const SvgDefinitions::Definition* found = state.definitions->Find(id);
    if (!found) {
        // What the attributes name and the document does not have was found there.
        if (check.identifiers.FindOnPage(id))
            check.findings.Note(kUnreachableReference, element, "marker", id,
                                "is no definition here: only what stood in defs before, in a group still "
                                "open, is found");
        return;
    }
    const DefinitionFacts* facts = check.definitions.Find(*found);
    if (facts && facts->IsReplacedBy(state))
        check.findings.Note(kRepaintedDefinition, element, "marker", id,
                            "the marker takes the paint of the line it stands on");
}

}  // namespace

void CheckLink(CheckContext& check, const NumberedElement& element, std::string_view value) {
    if (value.starts_with('#') && !check.identifiers.IsInDocument(value.substr(1)))
        check.findings.Note(kMissingReference, element, "xlink:href", value, kNoSuchElement);
    if (ORVIsScriptAddress(value))
        check.findings.Note(kScriptLink, element, "xlink:href", value,
                            "is left out: it would run something where it is opened");
}

void CheckMarkerReference(CheckContext& check, const NumberedElement& element,
                          const ORVXmlAttribute& attribute) {
    SvgDrawState state;  // takes the identifier out of the value as the interpreter does
    ApplyMarkerReference(state, MarkerPlace::kStart, attribute.value);
    const std::string_view id = state.markers.Get().start;
    if (id.empty() || id == "none" || check.identifiers.FindOnPage(id)) return;
    check.findings.Note(kMissingReference, element, attribute.name, attribute.value, kNoSuchElement);
}

void CheckMarkers(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    const SvgMarkerReferences& references = state.markers.Get();
    for (const ORVUnicodeString* id : {&references.start, &references.mid, &references.end})
        CheckMarker(check, element, *id, state);
}

MaybeProblem CheckPaintReference(CheckContext& check, const NumberedElement& element, bool isFill,
                                 std::string_view value, const SvgDrawState& state) {
    constexpr std::string_view kPrefix = "url(#";
    const std::size_t close = value.find(')');
    if (!value.starts_with(kPrefix) || close == value.npos)
        return ValueProblem{kBadReference, "only url(#id) is read: the colour stays as it was"};

    std::string id(value.substr(kPrefix.size()));
    std::erase(id, ')');
    const ORVXmlNode* target = check.identifiers.FindOnPage(id);
    if (!target) {
        // With a colour behind it, as SVG has it, the value is no identifier any more.
        const std::string_view named = value.substr(kPrefix.size(), close - kPrefix.size());
        if (close + 1 < value.size() && check.identifiers.FindOnPage(named))
            return ValueProblem{kBadReference,
                                "what follows url(#id) makes it unreadable: the colour stays as it was"};
        return ValueProblem{kMissingReference, kNoSuchElement};
    }
    if (target->GetName().ends_with("Gradient") || target->GetName() == "meshgradient")
        return ValueProblem{kGradient, "is a gradient: the colour stays as it was"};
    if (!isFill) return ValueProblem{kBadReference, "strokes have no patterns: the colour stays as it was"};

    const SvgDefinitions::Definition* found = state.definitions->Find(id);
    if (!found)
        return ValueProblem{kUnreachableReference,
                            "is no definition here: only what comes before, in a group still open, is found"};
    const DefinitionFacts* facts = check.definitions.Find(*found);
    if (!facts) return std::nullopt;
    if (facts->element != ElementName::kPattern)
        return ValueProblem{kBadReference, "is no pattern: the colour stays as it was"};
    if (!facts->hasPicture && element.node->id != ElementName::kPattern)
        return ValueProblem{kPatternWithoutImage, "the pattern holds no picture of its own"};
    return std::nullopt;
}

void CheckUse(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    const std::string_view reference = element.node->Value(AttributeName::kXlinkHref);
    if (reference.empty()) {
        if (!element.node->Find("href"))
            check.findings.Note(kBadReference, element, {}, {}, "names nothing: give it xlink:href");
        return;
    }
    if (!reference.starts_with('#'))
        return check.findings.Note(kBadReference, element, "xlink:href", reference,
                                   "only #id of the same document is read");
    const SvgDefinitions::Definition* found = FindUsed(check, element, reference, state);
    const DefinitionFacts* facts = found ? check.definitions.Find(*found) : nullptr;
    if (!facts) return;
    if (check.openDefinition) check.openDefinition->Add({state.stroke, state.fill, state.text});
    if (!facts->hasViewBox) CheckFitting(check, element, state);
    if (facts->IsReplacedBy(state))
        check.findings.Note(kRepaintedDefinition, element, "xlink:href", reference,
                            "all of it takes the stroke, fill and font of this use");
}
