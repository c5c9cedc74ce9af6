// SPDX-License-Identifier: Apache-2.0
#include "library/check/font_family.h"

#include "interpreters/svg/style/style_attribute.h"

void FontFamily::TakeIn(const NumberedElement& element) {
    const ORVXmlNode& node = *element.node;
    const std::string_view attribute = node.Value(AttributeName::kFontFamily);
    if (!attribute.empty()) *this = {attribute, PropertySource::kAttribute, element};

    // On a text the attribute overrides the style; elsewhere the style overrides the attribute.
    if (!attribute.empty() && node.id == ElementName::kText) return;
    StyleScanner scanner(node.Value(AttributeName::kStyle));
    for (StyleDeclaration declaration; scanner.Next(declaration);)
        if (declaration.name == "font-family" && !declaration.value.empty())
            *this = {declaration.value, PropertySource::kStyle, element};
}
