// SPDX-License-Identifier: Apache-2.0
#include "library/check/attribute_checks.h"

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/style/property_table.h"
#include "interpreters/svg/values/view_box.h"
#include "library/check/clip_checks.h"
#include "library/check/element_kinds.h"
#include "library/check/image_checks.h"
#include "library/check/property_checks.h"
#include "library/check/reference_checks.h"
#include "library/check/svg_names.h"
#include "library/check/unit_checks.h"
#include "platform/model/ORVPrtViewBox.h"
#include "platform/system/number_conversion.h"

namespace {

using enum FindingCode;

// ---- attributes that have an effect: checks of their values

void CheckShiftUp(CheckContext& check, const NumberedElement& element, std::string_view value) {
    double shift = 0.0;
    if (ORVConvertToDouble(value, shift) == kRead && shift != 0.0)
        check.findings.Note(kTextShiftUp, element, "dy", value,
                            shift > 0.0 ? "moves the text up" : "moves the text down");
}

MaybeProblem CheckTextVersion(std::string_view value) {
    int version = 0;
    if (ORVConvertToInt(value, version) == kRead && version >= 0) return std::nullopt;
    return ValueProblem{kBadValue, "is not a version: no effect"};
}

// Attributes that have an effect here but none in SVG.
bool HasExtraEffect(ElementName element, AttributeName name) {
    if (name == AttributeName::kPatternTransform) return true;
    return name == AttributeName::kViewBox && element == ElementName::kText;
}

bool IsVertical(AttributeName name) {
    switch (name) {
        case AttributeName::kY:
        case AttributeName::kDy:
        case AttributeName::kHeight:
        case AttributeName::kCy:
        case AttributeName::kRy:
        case AttributeName::kY1:
        case AttributeName::kY2:
        case AttributeName::kRefY:
        case AttributeName::kMarkerHeight: return true;
        default: return false;
    }
}

void CheckPercentage(CheckContext& check, const NumberedElement& element, AttributeName name,
                     const ORVXmlAttribute& attribute, const SvgDrawState& state) {
    if (attribute.value.find('%') == std::string_view::npos) return;
    // In a drawing embedded in a document, the page height is reset after it has been read.
    const bool isOnPage = state.pageWidth > 0.0 || state.pageHeight > 0.0;
    if (state.embeddedFragment == 1 && isOnPage && IsVertical(name))
        check.findings.Note(kPercentageOfNothing, element, attribute.name, attribute.value,
                            "in a drawing inside a document, the height has no percentages");
    else if (check.inForce.isNested)
        check.findings.Note(kPercentageInNestedSvg, element, attribute.name, attribute.value,
                            "is a part of the page");
}

void CheckEffective(CheckContext& check, const NumberedElement& element, AttributeName name,
                    const ORVXmlAttribute& attribute, const SvgDrawState& state) {
    const std::string_view value = attribute.value;
    const bool isText = element.node->id == ElementName::kText;
    MaybeProblem problem;
    bool isLength = false;
    if (HasExtraEffect(element.node->id, name))
        check.findings.Note(
            kExtraEffect, element, attribute.name, value,
            "has an effect here, and none on " + std::string(element.node->GetName()) + " in SVG");
    switch (name) {
        case AttributeName::kX:
        case AttributeName::kY:
        case AttributeName::kDx:
        case AttributeName::kDy:
            problem = isText ? CheckTextPosition(value) : CheckLength(value);
            isLength = true;
            if (!problem && name == AttributeName::kDy) CheckShiftUp(check, element, value);
            break;
        case AttributeName::kWidth:
        case AttributeName::kHeight:
        case AttributeName::kCx:
        case AttributeName::kCy:
        case AttributeName::kR:
        case AttributeName::kRx:
        case AttributeName::kRy:
        case AttributeName::kX1:
        case AttributeName::kX2:
        case AttributeName::kY1:
        case AttributeName::kY2:
        case AttributeName::kRefX:
        case AttributeName::kRefY:
        case AttributeName::kMarkerWidth:
        case AttributeName::kMarkerHeight:
            problem = CheckLength(value);
            isLength = true;
            break;
        case AttributeName::kTransform:
        case AttributeName::kPatternTransform: problem = check.values.CheckTransform(value); break;
        case AttributeName::kViewBox: problem = CheckViewBox(value); break;
        case AttributeName::kPoints: problem = CheckPoints(value); break;
        case AttributeName::kTextVersion: problem = CheckTextVersion(value); break;
        case AttributeName::kD: return;  // checked with the paint, which determines the effect
        case AttributeName::kXlinkHref:
            // Images and references are checked with the state they are drawn in.
            if (element.node->id == ElementName::kA) CheckLink(check, element, value);
            return;
        case AttributeName::kMarker:
            if (value != "none")
                check.findings.Note(kExtraEffect, element, attribute.name, value,
                                    "is no attribute in SVG: write marker-start, marker-mid and marker-end");
            return CheckMarkerReference(check, element, attribute);
        case AttributeName::kMarkerStart:
        case AttributeName::kMarkerMid:
        case AttributeName::kMarkerEnd: return CheckMarkerReference(check, element, attribute);
        default: return CheckPresentationAttribute(check, element, attribute, state);
    }
    if (problem) check.findings.Note(element, attribute.name, value, *problem);
    if (isLength && !problem) CheckUnit(check, element, attribute.name, value);
    CheckPercentage(check, element, name, attribute, state);
}

// ---- attributes without effect on their element

// Inherited SVG properties that have no meaning on the shapes they are often specified on.
bool IsInherited(AttributeName name) {
    switch (name) {
        case AttributeName::kAlignmentBaseline:
        case AttributeName::kFontStyle:
        case AttributeName::kDisplay:
        case AttributeName::kVisibility:
        case AttributeName::kOpacity: return false;
        default: return true;
    }
}

// Attributes that editors leave behind when they convert one shape to another.
bool IsOfOtherShapes(ElementName element, AttributeName name) {
    switch (name) {
        case AttributeName::kD:
        case AttributeName::kPoints:
        case AttributeName::kCx:
        case AttributeName::kCy:
        case AttributeName::kR:
        case AttributeName::kX1:
        case AttributeName::kX2:
        case AttributeName::kY1:
        case AttributeName::kY2: return true;
        case AttributeName::kX:
        case AttributeName::kY:
        case AttributeName::kWidth:
        case AttributeName::kHeight:
            return HasVertices(element) || element == ElementName::kCircle ||
                   element == ElementName::kEllipse || element == ElementName::kG ||
                   element == ElementName::kA;
        default: return false;
    }
}

// Whether the attribute has no effect in SVG either, or none on paper.
bool IsHarmless(CheckContext& check, const NumberedElement& element, AttributeName name,
                const ORVXmlAttribute& attribute, const SvgDrawState& state) {
    const ElementName id = element.node->id;
    if (IsInitialValue(attribute.name, attribute.value)) return true;
    if (IsOfOtherShapes(id, name)) return true;
    // Position of a page on a screen.
    if (id == ElementName::kSvg && (name == AttributeName::kX || name == AttributeName::kY)) return true;
    if (id == ElementName::kPattern && IsSizeOfTile(check.resources, *element.node, name, state)) return true;
    // Fill on an element without interior has no effect, in SVG either.
    const bool isOnOpenLine = id == ElementName::kLine || id == ElementName::kPolyline;
    if (isOnOpenLine && attribute.name.starts_with("fill")) return true;
    if (isOnOpenLine && (name == AttributeName::kDisplay || name == AttributeName::kVisibility)) return true;
    // Text properties and the like on shapes: no effect in SVG either.
    const bool isOnShape = !IsContainer(id) && id != ElementName::kUse && id != ElementName::kImage;
    return isOnShape && IsInherited(name) && FindProperty(attribute.name);
}

void CheckWithoutEffect(CheckContext& check, const NumberedElement& element, AttributeName name,
                        const ORVXmlAttribute& attribute, const SvgDrawState& state) {
    const bool isRadius = name == AttributeName::kRx || name == AttributeName::kRy;
    if (isRadius && element.node->id == ElementName::kRect) {
        double radius = 0.0;
        if (ORVConvertToDouble(attribute.value, radius) == kRead && radius != 0.0)
            check.findings.Note(kSquareCorners, element, attribute.name, attribute.value,
                                "its corners are not rounded");
    } else if (!IsHarmless(check, element, name, attribute, state)) {
        check.findings.Note(kAttributeWithoutEffect, element, attribute.name, attribute.value,
                            "has no effect on " + std::string(element.node->GetName()));
    }
}

// ---- names unknown to the interpreter

// Whether a nested drawing has the aspect ratio of its viewport, or no viewBox to fit.
bool HasShapeOfItsBox(const ORVXmlNode& svg, const SvgDrawState& state) {
    ORVPrtViewBox box;
    if (ReadViewBox(svg.Value(AttributeName::kViewBox), box) != kRead) return true;
    const ORVMathBox2D region = ReadNestedRegion(svg, state).region;
    const double spareX = region.xMax - region.xMin - box.width,
                 spareY = region.yMax - region.yMin - box.height;
    return spareX < 0.01 * box.width && spareY < 0.01 * box.height;
}

void CheckUnread(CheckContext& check, const NumberedElement& element, const ORVXmlAttribute& attribute,
                 const SvgDrawState& state) {
    if (attribute.name != "preserveAspectRatio" && IsInitialValue(attribute.name, attribute.value)) return;
    if (element.node->id == ElementName::kMarker && attribute.name == "orient")
        return check.findings.Note(kMarkerNotTurned, element, attribute.name, attribute.value,
                                   "is placed on every vertex without rotation");
    if (attribute.name == "preserveAspectRatio") {
        // Images, patterns, markers and the page have their own checks for this.
        const ElementName id = element.node->id;
        if (element.node == check.page.node || (id != ElementName::kSymbol && id != ElementName::kSvg))
            return;
        if (id == ElementName::kSvg && HasShapeOfItsBox(*element.node, state)) return;
        const bool isSlice = attribute.value.find("slice") != std::string_view::npos;
        if (attribute.value.starts_with("xMidYMid") && !isSlice) return;
    }
    check.findings.Note(kAttributeWithoutEffect, element, attribute.name, attribute.value, "is not read");
}

void CheckUnknown(CheckContext& check, const NumberedElement& element, const ORVXmlAttribute& attribute) {
    const std::string_view prefix = PrefixOf(attribute.name);
    if (prefix.empty())
        check.findings.Note(kUnknownAttribute, element, attribute.name, attribute.value, "is not known");
    else if (prefix != "xlink" && check.namespaces.Find(prefix) == Namespaces::kXlink)
        check.findings.Note(kPrefixedAttribute, element, attribute.name, attribute.value,
                            "write xlink:" + std::string(LocalNameOf(attribute.name)));
    else
        check.findings.CountForeign();
}

void CheckOther(CheckContext& check, const NumberedElement& element, const ORVXmlAttribute& attribute,
                const SvgDrawState& state) {
    if (attribute.name == "href") {
        if (!element.node->Has(AttributeName::kXlinkHref))
            check.findings.Note(kHrefWithoutPrefix, element, attribute.name, attribute.value,
                                "write xlink:href");
        return;
    }
    if (const PropertyRow* row = FindProperty(attribute.name))
        return CheckPropertyWithoutEffect(check, element, {attribute.name, row->name, attribute.value});
    switch (FindAttributeRole(attribute.name)) {
        case AttributeRole::kSilent: return;
        case AttributeRole::kScript:
            return check.findings.Note(kScript, element, attribute.name, attribute.value, "is not run");
        case AttributeRole::kSvg: return CheckUnread(check, element, attribute, state);
        case AttributeRole::kUnknown: return CheckUnknown(check, element, attribute);
    }
}

}  // namespace

void CheckAttributes(CheckContext& check, const NumberedElement& element, SvgPlace place,
                     const SvgDrawState& state) {
    const std::uint64_t effective = GetEffectiveAttributes(element.node->id, place);
    for (std::uint32_t i = 0; i < element.node->attributeCount; ++i) {
        const ORVXmlAttribute attribute = element.node->GetAttribute(i);
        const auto name = FindAttributeName(attribute.name);
        if (!name)
            CheckOther(check, element, attribute, state);
        else if (*name == AttributeName::kId || attribute.value.empty())
            continue;
        else if (*name == AttributeName::kStyle)
            CheckStyle(check, element, attribute.value, state);
        else if (HasEffect(effective, *name))
            CheckEffective(check, element, *name, attribute, state);
        else
            CheckWithoutEffect(check, element, *name, attribute, state);
    }
}
