#include "apps/orvprint/check/property_checks.h"

#include "apps/orvprint/check/element_kinds.h"
#include "apps/orvprint/check/reference_checks.h"
#include "apps/orvprint/check/svg_names.h"
#include "platform/system/number_conversion.h"
#include "plugin/structure/SvgDrawState.h"
#include "plugin/structure/statuses.h"
#include "plugin/style/property_table.h"
#include "plugin/style/style_attribute.h"

namespace {

using enum FindingCode;

MaybeProblem CheckPaint(CheckContext& check, const NumberedElement& element, const SaidProperty& said,
                        const SvgDrawState& state) {
    if (said.value == "none" || said.value == "currentColor" || said.value == "inherit") return std::nullopt;
    if (said.value.find("url") == said.value.npos) return check.values.CheckColour(said.value);
    return CheckPaintReference(check, element, said.name == "fill", said.value, state);
}

MaybeProblem CheckValue(CheckContext& check, const NumberedElement& element, const SaidProperty& said,
                        const PropertyRow& row, const SvgDrawState& state) {
    if (said.name == "fill" || said.name == "stroke") return CheckPaint(check, element, said, state);
    if (said.name == "font-family") return std::nullopt;  // with the texts that are set in it
    return check.values.CheckProperty(row, said.value, said.IsInStyle());
}

void CheckPresentation(CheckContext& check, const NumberedElement& element, const SaidProperty& said,
                       const PropertyRow& row, const SvgDrawState& state) {
    if (const MaybeProblem problem = CheckValue(check, element, said, row, state))
        return check.findings.Note(element, said.attribute, said.GetText(), *problem);

    const bool isGroup = IsContainer(element.node->id) || element.node->id == ElementName::kUse;
    double opacity = 1.0;
    if (said.name == "opacity" && isGroup && ORVConvertToDouble(said.value, opacity) == kRead &&
        opacity < 1.0)
        check.findings.Note(kGroupOpacity, element, said.attribute, said.GetText(),
                            "each part of the group is blended by itself");
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
    else if (element.node->id != ElementName::kImage && !declaration.value.empty())
        CheckPresentation(check, element, said, *row, state);
}

bool IsAboutTexts(std::string_view property) {
    return property.starts_with("font") || property.starts_with("text-") ||
           property.find("baseline") != property.npos;
}

// Itself, or in what it holds or refers to.
bool MayHaveText(ElementName name) {
    return IsContainer(name) || name == ElementName::kText || name == ElementName::kUse;
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
        check.findings.Note(kLostDeclarations, element, "style", rest, "is lost behind the ;");
}

void CheckPresentationAttribute(CheckContext& check, const NumberedElement& element,
                                const ORVXmlAttribute& attribute, const SvgDrawState& state) {
    const PropertyRow* row = FindProperty(attribute.name);
    if (!row || !row->apply) return;  // "display" and "visibility" take any word
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
    // On shapes, what is about texts says nothing anyway.
    if (IsAboutTexts(said.name) && !MayHaveText(element.node->id)) return;
    check.findings.Note(GetIgnoredPropertyCode(said.name), element, said.attribute, said.GetText(),
                        "has no effect");
}
