// SPDX-License-Identifier: Apache-2.0
#include "library/check/reference_checks.h"

#include <algorithm>
#include <cmath>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/structure/walker.h"
#include "interpreters/svg/style/marker_properties.h"
#include "interpreters/svg/values/length.h"
#include "interpreters/svg/values/view_box.h"
#include "library/check/clip_checks.h"
#include "library/check/painting_checks.h"
#include "platform/model/ORVPrtViewBox.h"
#include "platform/print/link_addresses.h"

namespace {

using enum FindingCode;

constexpr const char* kNoSuchElement = "the document has no such element";

constexpr const char* kOtherLetters = "differs in upper and lower case: other programs do not find it";

bool IsClose(double a, double b) {
    return std::abs(a - b) <= 0.01 * std::max(std::abs(a), std::abs(b)) + 1e-9;
}

// The definition that a "use" refers to. If there is none, reports it and returns null.
const SvgDefinitions::Definition* FindUsed(CheckContext& check, const NumberedElement& use,
                                           std::string_view reference, const SvgDrawState& state) {
    const std::string_view id = reference.substr(1);
    if (const SvgDefinitions::Definition* found = state.definitions->Find(id)) {
        if (!check.identifiers.IsInDocument(id, Identifiers::Letters::kSame))
            check.findings.Note(kBadReference, use, "xlink:href", reference, kOtherLetters);
        return found;
    }
    if (!check.identifiers.FindOnPage(id))
        check.findings.Note(kMissingReference, use, "xlink:href", reference, kNoSuchElement);
    else
        check.findings.Note(kUnreachableReference, use, "xlink:href", reference,
                            "is not a definition here: only direct children of defs, symbols, markers and "
                            "patterns that come before, in a group still open, are found");
    return nullptr;
}

// Any reference with a width and height is scaled to fit; SVG fits only symbols, and always fits these.
void CheckFitting(CheckContext& check, const NumberedElement& use, const DefinitionFacts& facts,
                  const SvgDrawState& state) {
    double width = 0.0, height = 0.0;
    ParseHorizontalLength(state, use.node->Value(AttributeName::kWidth), width);
    ParseVerticalLength(state, use.node->Value(AttributeName::kHeight), height);
    const bool isFitted = width > 0.0 && height > 0.0;
    if (isFitted && !facts.hasViewBox)
        check.findings.Note(kFittedUse, use, "width", use.node->Value(AttributeName::kWidth),
                            "its target is not a symbol with a viewBox, but is scaled");
    if (!isFitted && facts.hasViewBox)
        check.findings.Note(kUnfittedSymbol, use, "xlink:href", use.node->Value(AttributeName::kXlinkHref),
                            "has no width and height: other programs fit the symbol to the page");
    if (facts.isCutElsewhere)
        check.findings.Note(kNotClipped, use, "xlink:href", use.node->Value(AttributeName::kXlinkHref),
                            "the symbol extends beyond its viewBox, and is not clipped there");
}

// The bounding box of what a "use" draws, in its own coordinates.
ORVMathBox2D BoxOfUse(const ORVXmlNode& use, const DefinitionFacts& facts, const SvgDrawState& state) {
    double x = 0.0, y = 0.0, width = 0.0, height = 0.0;
    ParseHorizontalLength(state, use.Value(AttributeName::kX), x);
    ParseVerticalLength(state, use.Value(AttributeName::kY), y);
    ParseHorizontalLength(state, use.Value(AttributeName::kWidth), width);
    ParseVerticalLength(state, use.Value(AttributeName::kHeight), height);
    if (!facts.hasViewBox || !(width > 0.0) || !(height > 0.0))
        return MapBox(ORVMathAffine2D::Translation(x, y), facts.content);
    ORVMathBox2D box;
    box.Add({x, y});
    box.Add({x + width, y + height});
    return box;
}

// Whether marker content fills one dimension of its region, without scaling or clipping.
bool FillsSide(double from, double to, double start, double size, bool isCut) {
    const double slack = 0.02 * size + 1e-9;
    if (isCut && (from < start - slack || to > start + size + slack)) return false;
    return IsClose(to - from, size);
}

// Whether a marker placed in `state` has the same size in SVG and is not clipped.
bool IsAsLargeAsMeant(const DefinitionFacts& facts, const SvgDrawState& state) {
    const ORVXmlNode& marker = *facts.node;
    constexpr double kInitialSize = 3.0;
    double width = kInitialSize, height = kInitialSize;
    ParseHorizontalLength(state, marker.Value(AttributeName::kMarkerWidth), width);
    ParseVerticalLength(state, marker.Value(AttributeName::kMarkerHeight), height);
    const bool scalesWithLine = marker.Find("markerUnits").value_or("strokeWidth") != "userSpaceOnUse";
    if (scalesWithLine && !IsClose(state.stroke.GetStrokeWidth(), 1.0)) return false;

    ORVPrtViewBox box{0.0, 0.0, width, height};
    ReadViewBox(marker.Value(AttributeName::kViewBox), box);
    if (!IsClose(box.width, width) || !IsClose(box.height, height)) return false;
    if (facts.content.IsEmpty()) return facts.leaves == 0;
    MeantStyle own;
    own.TakeIn(marker);
    const bool isScaled = marker.Has(AttributeName::kMarkerWidth) && marker.Has(AttributeName::kMarkerHeight);
    const ORVMathBox2D& drawn = facts.content;
    if (!isScaled && !own.isClipped) return true;
    return FillsSide(drawn.xMin, drawn.xMax, box.minX, width, own.isClipped) &&
           FillsSide(drawn.yMin, drawn.yMax, box.minY, height, own.isClipped);
}

void CheckMarker(CheckContext& check, const NumberedElement& element, const ORVUnicodeString& id,
                 const SvgDrawState& state) {
    if (id.IsEmpty()) return;
    const SvgDefinitions::Definition* found = state.definitions->Find(id);
    if (!found) {
        // References to missing elements were reported with the attributes.
        if (check.identifiers.FindOnPage(id))
            check.findings.Note(
                kUnreachableReference, element, "marker", id,
                "is not a definition here: only earlier children of defs, in a group that is still "
                "open, is found");
        return;
    }
    const DefinitionFacts* facts = check.definitions.Find(*found);
    if (!facts) return;
    const Visibility& visibility = check.inForce.visibility;
    if (visibility.isRemoved || visibility.isHidden)
        return check.findings.Note(kHiddenButPrinted, element, "marker", id, "its markers are printed");
    if (facts->IsChangedBy(state))
        check.findings.Note(kRepaintedDefinition, element, "marker", id,
                            "the marker takes the paint of its line");
    if (!check.inForce.meant.isBlendTold && check.inForce.meant.opacity < 1.0)
        check.findings.Note(kGroupOpacity, element, "marker", id, "the line shows through its marker");
    if (facts->element == ElementName::kMarker && !IsAsLargeAsMeant(*facts, state))
        check.findings.Note(kMarkerSize, element, "marker", id,
                            "the marker is not scaled with the line, or not clipped, as in other programs");
}

// Whether a path has vertices that in SVG have no marker, or more than one.
bool HasOtherVertices(const NumberedElement& element, const SvgMarkerReferences& references) {
    if (element.node->id == ElementName::kPolygon)
        return !references.mid.IsEmpty() || !references.end.IsEmpty();
    if (element.node->id != ElementName::kPath || references.mid.IsEmpty()) return false;
    const std::string_view data = element.node->Value(AttributeName::kD);
    const std::size_t close = data.find_first_of("zZ");
    return close != data.npos && data.find_first_of("LlHhVvCcSsQqTtAaMm", close) != data.npos;
}

// Whether a pattern tiles as in SVG: it contains one image that exactly covers the tile.
bool IsTileAsMeant(CheckContext& check, const DefinitionFacts& facts, const SvgDrawState& state) {
    const ORVXmlNode& pattern = *facts.node;
    const ORVXmlNode* const image = pattern.firstChild;
    if (!image || image->id != ElementName::kImage || image->nextSibling) return false;
    if (pattern.Find("patternUnits").value_or("") != "userSpaceOnUse" ||
        pattern.Has(AttributeName::kViewBox) || pattern.Has(AttributeName::kPatternTransform) ||
        pattern.Find("patternContentUnits").value_or("userSpaceOnUse") != "userSpaceOnUse")
        return false;
    const ImageFacts& source = check.resources.CheckImage(state, image->Value(AttributeName::kXlinkHref));
    for (const ORVXmlNode* node : {&pattern, image}) {
        double x = 0.0, y = 0.0, width = 0.0, height = 0.0;
        ParseHorizontalLength(state, node->Value(AttributeName::kX), x);
        ParseVerticalLength(state, node->Value(AttributeName::kY), y);
        ParseHorizontalLength(state, node->Value(AttributeName::kWidth), width);
        ParseVerticalLength(state, node->Value(AttributeName::kHeight), height);
        if (x != 0.0 || y != 0.0 || !IsClose(width, source.tileWidth) || !IsClose(height, source.tileHeight))
            return false;
    }
    return true;
}

}  // namespace

void CheckLink(CheckContext& check, const NumberedElement& element, std::string_view value) {
    if (value.starts_with('#') && !check.identifiers.IsInDocument(value.substr(1)))
        check.findings.Note(kMissingReference, element, "xlink:href", value, kNoSuchElement);
    const ORVXmlNode* target =
        value.starts_with('#') ? check.identifiers.FindOnPage(value.substr(1)) : nullptr;
    if (target && !HasHandler(target->id))
        check.findings.Note(kUnreachableReference, element, "xlink:href", value,
                            "is not printed: the link is left out");
    if (ORVIsScriptAddress(value))
        check.findings.Note(kScriptLink, element, "xlink:href", value,
                            "is left out: it would execute code when it is opened");
}

void CheckMarkerReference(CheckContext& check, const NumberedElement& element,
                          const ORVXmlAttribute& attribute) {
    SvgDrawState state;  // extracts the identifier as the interpreter does
    ApplyMarkerReference(state, MarkerPlace::kStart, attribute.value);
    const std::string_view id = state.markers.Get().start;
    if (id.empty() || id == "none" || check.identifiers.FindOnPage(id)) return;
    check.findings.Note(kMissingReference, element, attribute.name, attribute.value, kNoSuchElement);
}

void CheckMarkers(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    const SvgMarkerReferences& references = state.markers.Get();
    for (const ORVUnicodeString* id : {&references.start, &references.mid, &references.end})
        CheckMarker(check, element, *id, state);
    if (HasOtherVertices(element, references))
        check.findings.Note(kMarkerPlace, element, "marker",
                            references.mid.IsEmpty() ? references.end : references.mid,
                            "the point that closes it has no marker of its own here");
}

MaybeProblem CheckPaintReference(CheckContext& check, const NumberedElement& element, bool isFill,
                                 std::string_view value, const SvgDrawState& state) {
    constexpr std::string_view kPrefix = "url(#";
    const std::size_t close = value.find(')');
    if (!value.starts_with(kPrefix) || close == value.npos)
        return ValueProblem{kBadReference, "only url(#id) is read: the colour does not change"};

    std::string id(value.substr(kPrefix.size()));
    std::erase(id, ')');
    const ORVXmlNode* target = check.identifiers.FindOnPage(id);
    if (!target) {
        // A fallback colour after it, as SVG allows, makes the identifier unreadable.
        const std::string_view named = value.substr(kPrefix.size(), close - kPrefix.size());
        if (close + 1 < value.size() && check.identifiers.FindOnPage(named))
            return ValueProblem{kBadReference,
                                "what follows url(#id) makes it unreadable: the colour does not change"};
        return ValueProblem{kMissingReference, kNoSuchElement};
    }
    if (target->GetName().ends_with("Gradient") || target->GetName() == "meshgradient")
        return ValueProblem{kGradient, "is a gradient: the colour does not change"};
    if (!isFill) return ValueProblem{kBadReference, "strokes have no patterns: the colour does not change"};

    const SvgDefinitions::Definition* found = state.definitions->Find(id);
    if (!found)
        return ValueProblem{
            kUnreachableReference,
            "is not a definition here: only earlier ones, in a group that is still open, are found"};
    const DefinitionFacts* facts = check.definitions.Find(*found);
    if (!facts) return std::nullopt;
    if (!check.identifiers.IsInDocument(id, Identifiers::Letters::kSame))
        return ValueProblem{kBadReference, kOtherLetters};
    if (facts->element != ElementName::kPattern)
        return ValueProblem{kBadReference, "is not a pattern: the colour does not change"};
    if (!facts->hasImage && element.node->id != ElementName::kPattern)
        return ValueProblem{kPatternWithoutImage, "the pattern has no image of its own"};
    if (element.node->id != ElementName::kPattern &&
        (check.inForce.isMoved || !IsTileAsMeant(check, *facts, state)))
        return ValueProblem{kPatternTile, "other programs place or scale the pattern's image differently"};
    return std::nullopt;
}

namespace {

// Adds the content of a "use" to the enclosing definition, with the styles of the reference.
void NoteUsed(CheckContext& check, const NumberedElement& use, const DefinitionFacts& facts,
              const SvgDrawState& state) {
    NoteDrawn(check, use, BoxOfUse(*use.node, facts, state));
    if (!check.openDefinition) return;
    for (DrawnSets sets : facts.sets) {
        sets.said = check.inForce.meant.said;
        if (sets.strokes) sets.stroke = state.stroke;
        if (sets.fills) sets.fill = state.fill;
        if (sets.isText) sets.text = state.text;
        check.openDefinition->Add(std::move(sets));
    }
}

// Text in a definition without a font uses that of the reference.
void CheckDefaultFont(CheckContext& check, const NumberedElement& use, const DefinitionFacts& facts,
                      const SvgDrawState& state) {
    if (check.openDefinition || check.inForce.family.saidBy.node) return;
    const auto takesTheFont = [](const DrawnSets& one) {
        return one.isText && (one.said & static_cast<std::uint32_t>(SaidOf::kFontFamily)) == 0;
    };
    if (std::none_of(facts.sets.begin(), facts.sets.end(), takesTheFont)) return;
    if (const MaybeProblem problem = check.resources.CheckDefaultFont(state))
        check.findings.Note(use, "xlink:href", use.node->Value(AttributeName::kXlinkHref), *problem);
}

// Reports content that SVG blends as a group, and the interpreter part by part.
void CheckBlending(CheckContext& check, const NumberedElement& use, const DefinitionFacts& facts,
                   const SvgDrawState& state) {
    if (check.openDefinition) return;
    MeantStyle& meant = check.inForce.meant;
    if (meant.opacity < 1.0 && !meant.isBlendTold && facts.HasOverlaps())
        check.findings.Note(kGroupOpacity, use, {}, {}, "each part of its target is blended separately");
    meant.isBlendTold = true;
    PaintedParts parts;
    for (const DrawnSets& one : facts.sets) {
        parts.fills |= one.fills;
        parts.strokes |= one.strokes;
    }
    CheckMeantPaint(check, use, parts, state);
}

}  // namespace

void CheckUse(CheckContext& check, const NumberedElement& element, const SvgDrawState& state) {
    const std::string_view reference = element.node->Value(AttributeName::kXlinkHref);
    if (reference.empty()) {
        if (!element.node->Find("href"))
            check.findings.Note(kBadReference, element, {}, {}, "has no target: give it xlink:href");
        return;
    }
    if (!reference.starts_with('#'))
        return check.findings.Note(kBadReference, element, "xlink:href", reference,
                                   "only #id of the same document is read");
    const SvgDefinitions::Definition* found = FindUsed(check, element, reference, state);
    const DefinitionFacts* facts = found ? check.definitions.Find(*found) : nullptr;
    if (!facts) return;
    NoteUsed(check, element, *facts, state);
    CheckFitting(check, element, *facts, state);
    CheckDefaultFont(check, element, *facts, state);
    const Visibility& visibility = check.inForce.visibility;
    if (visibility.isRemoved || visibility.isHidden)
        return check.findings.Note(kHiddenButPrinted, element, "xlink:href", reference,
                                   "its target is printed even if it is hidden");
    if (facts->IsReplacedBy(state))
        check.findings.Note(kRepaintedDefinition, element, "xlink:href", reference,
                            "all of it takes the stroke, fill and font of this use");
    else if (facts->MissesPaintOf(state))
        check.findings.Note(kRepaintedDefinition, element, "xlink:href", reference,
                            "this use does not decide whether it is filled and stroked");
    CheckBlending(check, element, *facts, state);
}
