// SPDX-License-Identifier: Apache-2.0
#include "library/check/property_checks.h"

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/style/property_table.h"
#include "interpreters/svg/style/style_attribute.h"
#include "library/check/document_order.h"
#include "library/check/element_kinds.h"
#include "library/check/reference_checks.h"
#include "library/check/svg_names.h"
#include "platform/system/number_conversion.h"

namespace {

using enum FindingCode;

// "inherit" turns the paint on.
// @param state  the drawing state around the element
MaybeProblem CheckInherited(bool isFill, const SvgDrawState& state) {
    const int part = isFill ? kDrawFill : kDrawStroke;
    if (state.drawStyle == part || state.drawStyle == kDrawFillAndStroke) return std::nullopt;
    return ValueProblem{kBadValue, isFill ? "turns the fill on, although none is inherited"
                                          : "turns the stroke on, although none is inherited"};
}

MaybeProblem CheckPaint(CheckContext& check, const NumberedElement& element, const SaidProperty& said,
                        const SvgDrawState& state) {
    if (said.value == "none" || said.value == "currentColor") return std::nullopt;
    // In a definition, the inherited value is that of the reference.
    if (said.value == "inherit")
        return check.openDefinition ? std::nullopt : CheckInherited(said.name == "fill", state);
    if (said.value.find("url") == said.value.npos) return check.values.CheckColour(said.value);
    return CheckPaintReference(check, element, said.name == "fill", said.value, state);
}

MaybeProblem CheckValue(CheckContext& check, const NumberedElement& element, const SaidProperty& said,
                        const PropertyRow& row, const SvgDrawState& state) {
    if (said.name == "fill" || said.name == "stroke") return CheckPaint(check, element, said, state);
    if (said.name == "font-family") return std::nullopt;  // checked with the texts that use it
    return check.values.CheckProperty(row, said.value, said.IsInStyle());
}

// Whether a group draws several objects, which may overlap. Images are not blended at all.
bool HasSeveralParts(const ORVXmlNode& group) {
    constexpr int kMostLookedAt = 10000;
    int parts = 0, lookedAt = 0;
    DocumentOrder order(group);
    for (const ORVXmlNode* node = order.Next(); node && parts < 2; node = order.Next()) {
        if (node->id == ElementName::kImage || node->id == ElementName::kUse || ++lookedAt > kMostLookedAt)
            return true;
        parts +=
            node->id != ElementName::kUnknown && !IsContainer(node->id) && !IsDescription(node->id) ? 1 : 0;
    }
    return parts > 1;
}

void CheckPresentation(CheckContext& check, const NumberedElement& element, const SaidProperty& said,
                       const PropertyRow& row, const SvgDrawState& state) {
    if (const MaybeProblem problem = CheckValue(check, element, said, row, state))
        return check.findings.Note(element, said.attribute, said.GetText(), *problem);

    // The parent's state is still in force here.
    if (said.name == "opacity" && said.value == "inherit" && check.inForce.meant.ownOpacity < 1.0)
        check.findings.Note(kOpacityCombined, element, said.attribute, said.GetText(),
                            "does not inherit the opacity of its parent");
    double opacity = 1.0;
    if (said.name == "opacity" && IsContainer(element.node->id) &&
        ORVConvertToDouble(said.value, opacity) == kRead && opacity < 1.0 && HasSeveralParts(*element.node)) {
        check.inForce.meant.isBlendTold = true;
        check.findings.Note(kGroupOpacity, element, said.attribute, said.GetText(),
                            "each part of the group is blended separately");
    }
}

// On a text the attribute overrides the style.
void CheckAgainstAttribute(CheckContext& check, const NumberedElement& element, const SaidProperty& said) {
    const bool isOfFont = said.name == "font-family" || said.name == "font-size" ||
                          said.name == "font-weight" || said.name == "text-anchor";
    if (element.node->id != ElementName::kText || !isOfFont) return;
    const auto attribute = element.node->Find(said.name);
    if (attribute && !attribute->empty() && *attribute != said.value)
        check.findings.Note(
            kAttributeWins, element, said.attribute, said.GetText(),
            "is overridden by the attribute " + std::string(said.name) + "='" + Excerpt(*attribute) + "'");
}

bool IsAboutTexts(std::string_view property) {
    return property.starts_with("font") || property.starts_with("text-") ||
           property.find("baseline") != property.npos;
}

// Whether an element is a text or may contain or refer to one.
bool MayHaveText(ElementName name) {
    return IsContainer(name) || name == ElementName::kText || name == ElementName::kUse;
}

void CheckDeclaration(CheckContext& check, const NumberedElement& element,
                      const StyleDeclaration& declaration, const SvgDrawState& state) {
    if (declaration.name.empty()) {
        if (declaration.text.find_first_not_of(' ') != std::string_view::npos)
            check.findings.Note(kBrokenDeclaration, element, "style", declaration.text, "is not read");
        return;
    }
    const PropertyRow* row = FindProperty(declaration.name);
    if (!row) {
        if (!IsSilentProperty(declaration.name) && !IsInitialValue(declaration.name, declaration.value))
            check.findings.Note(kUnknownProperty, element, "style", declaration.text, "is not known");
        return;
    }
    const SaidProperty said{"style", row->name, declaration.value};
    if (!row->apply)
        CheckPropertyWithoutEffect(check, element, said);
    else if (element.node->id == ElementName::kImage && row->name == "opacity" && declaration.value != "1")
        check.findings.Note(kIgnoredProperty, element, said.attribute, said.GetText(), "has no effect");
    else if (IsAboutTexts(row->name) && !MayHaveText(element.node->id))
        return;
    else if (element.node->id != ElementName::kImage && !declaration.value.empty()) {
        CheckPresentation(check, element, said, *row, state);
        CheckAgainstAttribute(check, element, said);
    }
}

}  // namespace

std::string SaidProperty::GetText() const {
    return IsInStyle() ? std::string(name) + ":" + Excerpt(value) : std::string(value);
}

void CheckStyle(CheckContext& check, const NumberedElement& element, std::string_view style,
                const SvgDrawState& state) {
    StyleScanner scanner(style);
    for (StyleDeclaration declaration; scanner.Next(declaration);)
        CheckDeclaration(check, element, declaration, state);
    const std::string_view rest = scanner.GetRest();
    if (rest.find_first_not_of("; ") != std::string_view::npos)
        check.findings.Note(kLostDeclarations, element, "style", rest, "is ignored after the ;");
}

void CheckPresentationAttribute(CheckContext& check, const NumberedElement& element,
                                const ORVXmlAttribute& attribute, const SvgDrawState& state) {
    const PropertyRow* row = FindProperty(attribute.name);
    if (!row || !row->apply) return;  // "display" and "visibility" accept any word
    CheckPresentation(check, element, {attribute.name, row->name, attribute.value}, *row, state);
}

void CheckPropertyWithoutEffect(CheckContext& check, const NumberedElement& element,
                                const SaidProperty& said) {
    if (IsInitialValue(said.name, said.value) || IsSilentProperty(said.name)) return;
    const bool isAttributeOnly =
        said.name == "display" || said.name == "visibility" || said.name.starts_with("marker");
    if (said.IsInStyle() && isAttributeOnly)
        return check.findings.Note(kAttributeOnlyProperty, element, said.attribute, said.GetText(),
                                   "has no effect in style: write it as an attribute");
    // Text properties on shapes have no effect in SVG either.
    if (IsAboutTexts(said.name) && !MayHaveText(element.node->id)) return;
    check.findings.Note(GetIgnoredPropertyCode(said.name), element, said.attribute, said.GetText(),
                        "has no effect");
}
