// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdint>
#include <iterator>
#include <string>

#include "interpreters/svg2/css/declarations.h"
#include "interpreters/svg2/css/properties.h"
#include "interpreters/svg2/css/sheet_values.h"
#include "interpreters/svg2/values/length.h"
#include "interpreters/svg2/values/path_data.h"
#include "interpreters/svg2/values/scanner.h"
#include "interpreters/svg2/values/transform.h"
#include "interpreters/svg2/values/view_box.h"
#include "library/check/standard_checker.h"
#include "library/check/text_set.h"
#include "library/check/unread_properties.h"

// Findings about values that cannot be read. What they would set keeps its value.

using svg2::ElementIndex;
using svg2::Name;
using svg2::Tag;

namespace {

constexpr const char* kIgnored = "cannot be read and is ignored";

FindingCode CodeFor(Name name) {
    switch (name) {
        case Name::kColor:
        case Name::kFill:
        case Name::kStroke:
        case Name::kStopColor:
        case Name::kFloodColor:
        case Name::kLightingColor: return FindingCode::kBadColour;
        case Name::kTransform: return FindingCode::kBadTransform;
        default: return FindingCode::kBadValue;
    }
}

/// Whether a value says nothing by itself: it is known elsewhere, or none is stated.
bool IsOpen(std::string_view value) {
    return value.empty() || value.find("var(") != std::string_view::npos ||
           IsOneOf(value, {"inherit", "initial", "unset", "revert", "revert-layer"});
}

/// Whether there is nothing to read: the property changes no page, or its values are reported elsewhere.
bool IsExempt(Name name, std::string_view value) {
    switch (name) {
        case Name::kTextRendering:
        case Name::kTextDecorationColor:
        case Name::kInlineSize: return true;
        case Name::kStrokeMiterlimit: {
            // Written by an editor, and ignored everywhere.
            double number = 1.0;
            return svg2::ReadNumber(value, number) && number == 0.0;
        }
        default: return false;
    }
}

bool IsLength(std::string_view text) {
    svg2::Length length;
    return svg2::ReadLength(text, svg2::UnitSizes{}, length);
}

/// Whether a text consists of lengths, separated by white space and commas.
bool AreLengths(std::string_view text) {
    svg2::Scanner scanner(svg2::Trim(text));
    svg2::Length length;
    while (!scanner.AtEnd()) {
        if (!svg2::TakeLength(scanner, svg2::UnitSizes{}, length)) return false;
        scanner.SkipCommaSpace();
    }
    return true;
}

bool AreNumberPairs(std::string_view text) {
    svg2::Scanner scanner(svg2::Trim(text));
    std::size_t count = 0;
    for (double number = 0.0; !scanner.AtEnd(); ++count) {
        if (!scanner.TakeNumber(number)) return false;
        scanner.SkipCommaSpace();
    }
    return count % 2 == 0;
}

bool IsTransform(std::string_view text) {
    ORVMathAffine2D transform;
    return svg2::ReadTransformAttribute(text, transform);
}

bool IsPathData(std::string_view text) {
    ORVPrintPath path;
    return svg2::ReadPathData(text, path);
}

bool IsViewBox(std::string_view text) { return svg2::ReadViewBox(text).has_value(); }
bool IsLengthOrAuto(std::string_view text) { return text == "auto" || IsLength(text); }
bool IsReferencePoint(std::string_view text) {
    return IsOneOf(text, {"left", "center", "right", "top", "bottom"}) || IsLength(text);
}

/// An attribute that is no property, and how it is read.
struct ReadAttribute {
    Name name;
    bool (*isReadable)(std::string_view text);
    FindingCode code;
};

const ReadAttribute kAttributes[] = {
    {Name::kTransform, IsTransform, FindingCode::kBadTransform},
    {Name::kGradientTransform, IsTransform, FindingCode::kBadTransform},
    {Name::kPatternTransform, IsTransform, FindingCode::kBadTransform},
    {Name::kD, IsPathData, FindingCode::kBadPathData},
    {Name::kPoints, AreNumberPairs, FindingCode::kBadPoints},
    {Name::kViewBox, IsViewBox, FindingCode::kBadViewBox},
    {Name::kX, AreLengths, FindingCode::kBadLength},
    {Name::kY, AreLengths, FindingCode::kBadLength},
    {Name::kDx, AreLengths, FindingCode::kBadLength},
    {Name::kDy, AreLengths, FindingCode::kBadLength},
    {Name::kRotate, AreLengths, FindingCode::kBadLength},
    {Name::kWidth, IsLengthOrAuto, FindingCode::kBadLength},
    {Name::kHeight, IsLengthOrAuto, FindingCode::kBadLength},
    {Name::kRx, IsLengthOrAuto, FindingCode::kBadLength},
    {Name::kRy, IsLengthOrAuto, FindingCode::kBadLength},
    {Name::kCx, IsLength, FindingCode::kBadLength},
    {Name::kCy, IsLength, FindingCode::kBadLength},
    {Name::kR, IsLength, FindingCode::kBadLength},
    {Name::kX1, IsLength, FindingCode::kBadLength},
    {Name::kY1, IsLength, FindingCode::kBadLength},
    {Name::kX2, IsLength, FindingCode::kBadLength},
    {Name::kY2, IsLength, FindingCode::kBadLength},
    {Name::kFx, IsLength, FindingCode::kBadLength},
    {Name::kFy, IsLength, FindingCode::kBadLength},
    {Name::kRefX, IsReferencePoint, FindingCode::kBadLength},
    {Name::kRefY, IsReferencePoint, FindingCode::kBadLength},
    {Name::kMarkerWidth, IsLength, FindingCode::kBadLength},
    {Name::kMarkerHeight, IsLength, FindingCode::kBadLength},
    {Name::kStartOffset, IsLength, FindingCode::kBadLength},
    {Name::kTextLength, IsLength, FindingCode::kBadLength},
};

const ReadAttribute* FindAttribute(Name name) {
    const auto* const row = std::find_if(std::begin(kAttributes), std::end(kAttributes),
                                         [name](const ReadAttribute& other) { return other.name == name; });
    return row == std::end(kAttributes) ? nullptr : row;
}

}  // namespace

/// Reports values of properties and other attributes, and of the style attribute.
void StandardChecker::CheckValues(ElementIndex element) {
    const Tag tag = document_[element].tag;
    if (tag == Tag::kUnknown || tag == Tag::kScript || tag == Tag::kForeignObject || tag == Tag::kNamedView ||
        tag == Tag::kPage)
        return;
    const ORVXmlNode& node = *document_[element].node;
    for (std::uint32_t i = 0; i < node.attributeCount; ++i) {
        const ORVXmlAttribute attribute = node.GetAttribute(i);
        const auto name = svg2::FindName(attribute.name);
        const std::string_view value = svg2::Trim(attribute.value);
        if (!name || IsOpen(value)) continue;
        if (svg2::IsPresentationAttribute(*name))
            CheckPresentation(element, *name, value);
        else if (*name == Name::kStyle)
            CheckStyle(element, value);
        else if (const ReadAttribute* read = FindAttribute(*name); read && !read->isReadable(value))
            Note(read->code, element, attribute.name, value,
                 *name == Name::kD || *name == Name::kPoints
                     ? "cannot be read completely: the part before the fault is drawn"
                     : kIgnored);
    }
}

bool StandardChecker::NoteLosses(ElementIndex element, std::string_view property, std::string_view value) {
    bool has = false;
    ForEachLossOf(property, value, [&](const char* message) {
        Note(FindingCode::kIgnoredProperty, element, property, value, message);
        has = true;
    });
    return has;
}

void StandardChecker::CheckPresentation(ElementIndex element, Name name, std::string_view value) {
    if (!NoteLosses(element, svg2::TextOf(name), value) && !IsExempt(name, value) &&
        !svg2::SetProperty(name, value, {initial_, {}, true}, read_))
        Note(CodeFor(name), element, svg2::TextOf(name), value, kIgnored);
}

void StandardChecker::CheckStyle(ElementIndex element, std::string_view style) {
    const std::string text = svg2::WithoutComments(style);
    svg2::Scanner scanner(text);
    for (svg2::Declaration declaration; svg2::TakeDeclaration(scanner, declaration);)
        CheckDeclaration(element, declaration);
}

void StandardChecker::CheckDeclaration(ElementIndex element, const svg2::Declaration& declaration) {
    if (NoteLosses(element, declaration.name, declaration.value)) return;
    const auto name = svg2::FindProperty(declaration.name);
    if (!name || IsOpen(declaration.value) || IsExempt(*name, declaration.value) ||
        svg2::IsSheetValue(declaration.name, declaration.value))
        return;
    Note(CodeFor(*name), element, declaration.name, declaration.value, kIgnored);
}

/// Reports values in style sheets, at the sheet that they are in.
void StandardChecker::CheckSheetValues() {
    cascade_.GetSheets().ForEachDeclaration([this](ElementIndex sheet, const svg2::Declaration& declaration) {
        CheckDeclaration(sheet, declaration);
    });
}
