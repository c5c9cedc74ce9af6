// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <optional>
#include <utility>

#include "interpreters/svg2/tree/structure.h"
#include "interpreters/svg2/values/scanner.h"
#include "library/check/namespaces.h"
#include "library/check/standard_checker.h"
#include "library/check/text_set.h"

// Findings about references: what they name is not there, or cannot be used.

using svg2::ElementIndex;
using svg2::kNoElement;
using svg2::Name;
using svg2::Style;
using svg2::Tag;

namespace {

/// Whether the href of an element names one that it draws or takes values from.
bool HasReference(Tag tag) {
    switch (tag) {
        case Tag::kUse:
        case Tag::kTextPath:
        case Tag::kTref:
        case Tag::kLinearGradient:
        case Tag::kRadialGradient:
        case Tag::kPattern: return true;
        default: return false;
    }
}

}  // namespace

void StandardChecker::CheckReference(ElementIndex element, std::string_view property, std::string_view value,
                                     std::initializer_list<Tag> tags) {
    std::string_view id, rest;
    if (value.empty() || !svg2::TakeReference(value, id, rest)) return;
    const ElementIndex target = document_.FindById(id);
    if (id.empty())
        Note(FindingCode::kUnreachableReference, element, property, value,
             "refers to another document, which is not read");
    else if (target == kNoElement || std::find(tags.begin(), tags.end(), document_[target].tag) == tags.end())
        Note(FindingCode::kMissingReference, element, property, value, "refers to nothing of that kind");
}

void StandardChecker::CheckFilter(ElementIndex element, const Style& style) {
    if (style.filter.empty()) return;
    if (document_[element].tag == Tag::kTspan || document_[element].tag == Tag::kTextPath) {
        Note(FindingCode::kIgnoredProperty, element, "filter", style.filter,
             "is ignored: only a whole text is filtered");
        return;
    }
    for (std::string_view rest = style.filter; !rest.empty();) {
        const std::size_t start = rest.find("url(");
        if (start == std::string_view::npos) return;
        const std::string_view entry = rest.substr(start);
        std::string_view id;
        if (!svg2::TakeReference(entry, id, rest)) return;
        CheckReference(element, "filter", entry.substr(0, entry.size() - rest.size()), {Tag::kFilter});
    }
}

/// Reports inputs of a filter primitive that do not exist.
void StandardChecker::CheckPrimitive(ElementIndex element) {
    for (const Name name : {Name::kIn, Name::kIn2}) {
        const std::string_view input = svg2::Trim(document_.ValueOf(element, name));
        if (IsOneOf(input, {"BackgroundImage", "BackgroundAlpha", "FillPaint", "StrokePaint"}))
            Note(FindingCode::kAttributeWithoutEffect, element, svg2::TextOf(name), input,
                 "is no input here: the filtered element is taken instead");
    }
}

void StandardChecker::CheckFilterImage(ElementIndex element) {
    const std::string_view reference = svg2::Trim(document_.ValueOf(element, Name::kHref));
    if (!reference.starts_with('#')) return CheckImage(element);
    if (document_.FindByReference(reference) == kNoElement)
        Note(FindingCode::kMissingReference, element, "href", reference, "refers to nothing of the document");
}

void StandardChecker::CheckPaint(ElementIndex element, const svg2::Paint& paint, std::string_view property) {
    if (paint.kind != svg2::Paint::Kind::kReference) return;
    const ElementIndex target = paint.reference.empty() ? kNoElement : document_.FindById(paint.reference);
    const Tag tag = target == kNoElement ? Tag::kUnknown : document_[target].tag;
    if (tag != Tag::kLinearGradient && tag != Tag::kRadialGradient && tag != Tag::kPattern)
        Note(FindingCode::kMissingReference, element, property, paint.reference,
             "refers to no gradient or pattern of the document");
}

void StandardChecker::CheckHref(ElementIndex element) {
    const Tag tag = document_[element].tag;
    const auto href = HasReference(tag) ? document_.Find(element, Name::kHref) : std::nullopt;
    if (!href || (tag == Tag::kTextPath && document_.Find(element, Name::kPath))) return;
    const std::string_view reference = svg2::Trim(*href);
    if (!reference.starts_with('#'))
        Note(FindingCode::kUnreachableReference, element, "href", reference,
             "refers to another document, which is not read");
    else if (document_.FindByReference(reference) == kNoElement)
        Note(FindingCode::kMissingReference, element, "href", reference, "refers to nothing of the document");
    else if (tag == Tag::kUse && svg2::FindUseTarget(document_, element) == kNoElement)
        Note(FindingCode::kBadReference, element, "href", reference,
             "refers to what cannot be drawn here: the element itself, one around it, or a definition");
}

/// Reports markers that do not exist.
void StandardChecker::CheckMarkers(ElementIndex element, const Style& style) {
    const std::pair<const char*, std::string_view> markers[] = {{"marker-start", style.markerStart},
                                                                {"marker-mid", style.markerMid},
                                                                {"marker-end", style.markerEnd}};
    for (const auto& [property, id] : markers) {
        if (id.empty()) continue;
        const ElementIndex target = document_.FindById(id);
        if (target == kNoElement || document_[target].tag != Tag::kMarker)
            Note(FindingCode::kMissingReference, element, property, id,
                 "refers to no marker of the document");
    }
}

/// The namespace that an element and those around it give a prefix, by the name of its declaration.
std::string_view StandardChecker::NamespaceAt(ElementIndex element, std::string_view declaration) const {
    for (; element != kNoElement; element = document_[element].parent)
        if (const auto uri = document_[element].node->Find(declaration)) return *uri;
    return {};
}

/// Reports children that include other files.
void StandardChecker::CheckInclusions(ElementIndex element) {
    std::string known;  // the declaration that was looked up last
    std::string_view around;
    for (const ORVXmlNode* child = document_[element].node->firstChild; child; child = child->nextSibling) {
        if (!child->IsElement() || LocalNameOf(child->GetName()) != "include") continue;
        const std::string_view prefix = PrefixOf(child->GetName());
        const std::string declaration = prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix);
        if (declaration != known) around = NamespaceAt(element, known = declaration);
        if (child->Find(declaration).value_or(around) != Namespaces::kXinclude) continue;
        writer_.Note(FindingCode::kUnprintedElement, At(child), "href", child->Find("href").value_or(""),
                     "no document is included, and its fallback is not printed");
    }
}
