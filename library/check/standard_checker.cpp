// SPDX-License-Identifier: Apache-2.0
#include "library/check/standard_checker.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "interpreters/svg2/tree/structure.h"
#include "interpreters/svg2/values/scanner.h"
#include "library/check/namespaces.h"
#include "library/check/text_set.h"
#include "platform/print/link_addresses.h"
#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/ORVFontFace.h"

using svg2::Document;
using svg2::ElementIndex;
using svg2::kNoElement;
using svg2::Name;
using svg2::Style;
using svg2::Tag;

void StandardChecker::Run() {
    // Elements come in document order; the styles of their ancestors are on this stack.
    std::vector<Around> around;
    const Style initial = svg2::Cascade::InitialStyle();
    for (ElementIndex element = 0; element < document_.GetCount(); ++element) {
        while (!around.empty() && around.back().element != document_[element].parent) around.pop_back();
        const Around* const parent = around.empty() ? nullptr : &around.back();
        auto style = std::make_unique<Style>();
        cascade_.Compute(element, parent ? *parent->style : initial, *style);
        const bool isHidden = IsHidden(element, *style, parent);
        CheckElement(element, *style, isHidden);
        const bool isSwitch = document_[element].tag == Tag::kSwitch;
        around.push_back({element, std::move(style), isHidden,
                          isSwitch ? svg2::FindOfSwitch(document_, element) : kNoElement});
    }
    for (const ElementIndex sheet : document_.FindAll(Tag::kStyle)) CheckSheet(sheet);
    CheckSheetValues();
    CheckFontFaces();
    CheckRules();
}

namespace {

/// Definitions, which show where they are referred to, whatever is around them.
bool IsDefinition(Tag tag) {
    switch (tag) {
        case Tag::kLinearGradient:
        case Tag::kRadialGradient:
        case Tag::kPattern:
        case Tag::kClipPath:
        case Tag::kMask:
        case Tag::kMarker:
        case Tag::kFilter:
        case Tag::kSymbol: return true;
        default: return false;
    }
}

/// Layers of an editor can be switched on in a viewer.
bool IsEditorLayer(const Document& document, ElementIndex element) {
    return document[element].tag == Tag::kG && document.ValueOf(element, Name::kGroupmode) == "layer";
}

}  // namespace

/// Whether nothing of an element shows, so that nothing about it is worth a finding.
bool StandardChecker::IsHidden(ElementIndex element, const Style& style, const Around* around) {
    if (IsDefinition(document_[element].tag)) return false;
    const bool isOff = (!style.isDisplayed && !IsEditorLayer(document_, element)) ||
                       !svg2::PassesConditions(document_, element);
    if (isOff || !around) return isOff;
    const bool isPassedOver = around->shown != kNoElement && around->shown != element;
    return (around->isHidden || isPassedOver) && !IsUsed(element);
}

bool StandardChecker::IsUsed(ElementIndex element) {
    if (!document_.Find(element, Name::kId)) return false;
    for (ElementIndex other = 0; !knowsUsed_ && other < document_.GetCount(); ++other)
        if (const auto href = document_.Find(other, Name::kHref))
            used_.insert(document_.FindByReference(svg2::Trim(*href)));
    knowsUsed_ = true;
    return used_.contains(element);
}

void StandardChecker::CheckSheet(ElementIndex sheet) {
    const std::string_view text = document_[sheet].node->GetText();
    if (cascade_.GetSheets().ImportsSheets() && text.find("@import") != std::string_view::npos)
        Note(FindingCode::kStyleSheet, sheet, "", "", "other sheets are not loaded: @import is ignored");
}

void StandardChecker::CheckFontFaces() {
    using Kind = svg2::FontSource::Kind;
    const std::span<const svg2::FontFaceRule> rules = cascade_.GetSheets().GetFontFaces();
    for (std::size_t i = 0; i < rules.size(); ++i) {
        const svg2::FontFaceRule& rule = rules[i];
        const bool isFound = fonts_.Open(i) != nullptr;
        const bool hasOther = std::any_of(rule.sources.begin(), rule.sources.end(),
                                          [](const auto& source) { return source.kind == Kind::kOther; });
        if (hasOther && (!isFound || rule.sources.front().kind == Kind::kOther))
            Note(FindingCode::kStyleSheet, rule.sheet, "@font-face", rule.writtenFamily,
                 isFound ? "is not loaded from its address: its next source is taken"
                         : "is not loaded: fonts of sheets are read from data URIs only");
        else if (!isFound)
            Note(FindingCode::kStyleSheet, rule.sheet, "@font-face", rule.writtenFamily,
                 "holds no font that can be used: TrueType, OpenType, WOFF and WOFF2 are read");
        if (!rule.ignored.empty())
            Note(FindingCode::kIgnoredProperty, rule.sheet, rule.ignored, rule.writtenFamily,
                 "is ignored: the font is used as it is");
    }
}

void StandardChecker::CheckRules() {
    using Kind = svg2::UnreadRule::Kind;
    for (const svg2::UnreadRule& rule : cascade_.GetSheets().GetUnreadRules()) {
        switch (rule.kind) {
            case Kind::kAtRule:
                Note(FindingCode::kStyleSheet, rule.sheet, "", "@" + std::string(rule.text),
                     "is not read: nothing within it is applied");
                break;
            case Kind::kAnimation:
                Note(FindingCode::kAnimation, rule.sheet, "", "@" + std::string(rule.text),
                     "is ignored: the page shows the values without it");
                break;
            case Kind::kSelectors:
                Note(FindingCode::kStyleSheet, rule.sheet, "", rule.text,
                     "cannot be read as selectors: the rule is not applied");
                break;
            case Kind::kTooMany:
                Note(FindingCode::kStyleSheet, rule.sheet, "", rule.text,
                     "has too many rules within rules: the rest of them is not applied");
                break;
        }
    }
}

void StandardChecker::CheckUnread(ElementIndex element, bool isHidden) {
    switch (document_[element].tag) {
        case Tag::kScript: Note(FindingCode::kScript, element, "", "", "is not run"); return;
        case Tag::kForeignObject:
            if (!isHidden) Note(FindingCode::kForeignObject, element, "", "", "is not drawn");
            return;
        case Tag::kFlowRoot:
            if (!isHidden)
                Note(FindingCode::kUnprintedElement, element, "", "",
                     "is not drawn: text that flows into shapes");
            return;
        case Tag::kUnknown: CheckUnknown(element, isHidden); return;
        default: return;
    }
}

void StandardChecker::CheckUnknown(ElementIndex element, bool isHidden) {
    const std::string_view name = LocalNameOf(document_[element].node->GetName());
    if (IsOneOf(name,
                {"animate", "set", "animateMotion", "animateTransform", "animateColor", "mpath", "discard"}))
        Note(FindingCode::kAnimation, element, "", "", "is ignored: the page shows the value without it");
    else if (IsOneOf(name, {"font", "font-face", "glyph", "missing-glyph", "hkern", "vkern", "font-face-src",
                            "font-face-name", "font-face-uri", "altGlyph", "glyphRef"}))
        Note(FindingCode::kSvgFont, element, "", "", "is not read: fonts within drawings are not used");
    else if (!isHidden)
        Note(FindingCode::kUnknownElement, element, "", "", "is not drawn");
}

void StandardChecker::CheckImage(ElementIndex element) {
    const std::string_view reference = svg2::Trim(document_.ValueOf(element, Name::kHref));
    if (reference.empty()) {
        Note(FindingCode::kImageMissing, element, "", "", "names no image");
        return;
    }
    const bool isData = svg2::EqualsIgnoringCase(reference.substr(0, 5), "data:");
    if (!isData && reference.find("://") != std::string_view::npos && !reference.starts_with("file:")) {
        Note(FindingCode::kImageRemote, element, "href", reference,
             "is not fetched: nothing is read from networks");
        return;
    }
    const svg2::ImageContent& content = images_.Find(reference);
    if (content.pixels || content.drawing) return;
    Note(isData ? FindingCode::kImageBroken : FindingCode::kImageMissing, element, "href", reference,
         isData ? "holds no image that can be read: PNG, JPEG, GIF, WebP, BMP and SVG are read"
                : "is not there, may not be read, or is no PNG, JPEG, GIF, WebP, BMP or SVG");
}

bool StandardChecker::HasText(ElementIndex element) const {
    const std::string_view text = document_[element].node->GetText();
    return text.find_first_not_of(" \t\r\n") != std::string_view::npos;
}

void StandardChecker::CheckFont(ElementIndex element, const Style& style) {
    const Tag tag = document_[element].tag;
    if ((tag != Tag::kText && tag != Tag::kTspan && tag != Tag::kTextPath) || !HasText(element)) return;
    if (!families_.insert(style.fontFamily).second) return;
    const ORVFontQuery query{style.fontFamily,  style.fontWeight, style.isItalic,
                             style.fontStretch, style.fontSize,   style.fontVariationSettings};
    const svg2::OrderedFont* const brought = fonts_.Choose(query);
    const ORVFontChoice choice = brought ? brought->choice : ORVChooseFont(query);
    if (brought) return;
    if (choice.font == ORVFont::Unavailable())
        Note(FindingCode::kTextCannotBeSet, element, "", "", "cannot be set: no font can be used");
    else if (style.fontFamily.empty())
        Note(FindingCode::kFontUnspecified, element, "", "",
             "is set in " + std::string(choice.font->GetName().GetView()));
    else if (!choice.isOfFamily)
        Note(FindingCode::kFontMissing, element, "font-family", style.fontFamily,
             "is not installed: the text is set in " + std::string(choice.font->GetName().GetView()));
}

void StandardChecker::CheckElement(ElementIndex element, const Style& style, bool isHidden) {
    CheckUnread(element, isHidden);
    if (isHidden) return;
    CheckValues(element);
    if (!style.isDisplayed) return;
    const bool isVisible = style.visibility == svg2::Visibility::kVisible;
    switch (document_[element].tag) {
        case Tag::kImage:
            if (isVisible) CheckImage(element);
            break;
        case Tag::kFeImage: CheckFilterImage(element); break;
        case Tag::kPath:
        case Tag::kRect:
        case Tag::kCircle:
        case Tag::kEllipse:
        case Tag::kLine:
        case Tag::kPolyline:
        case Tag::kPolygon: CheckMarkers(element, style); [[fallthrough]];
        case Tag::kText:
        case Tag::kTspan:
            CheckPaint(element, style.fill, "fill");
            CheckPaint(element, style.stroke, "stroke");
            break;
        case Tag::kA:
            if (ORVIsScriptAddress(document_.ValueOf(element, Name::kHref)))
                Note(FindingCode::kScriptLink, element, "href", document_.ValueOf(element, Name::kHref),
                     "is left out: the address executes code");
            break;
        default: break;
    }
    CheckReference(element, "clip-path", style.clipPath, {Tag::kClipPath});
    CheckReference(element, "mask", style.mask, {Tag::kMask});
    CheckFilter(element, style);
    CheckPrimitive(element);
    CheckHref(element);
    CheckInclusions(element);
    if (isVisible) CheckFont(element, style);
}
