// SPDX-License-Identifier: Apache-2.0
#include "library/check/standard_check.h"

#include <algorithm>
#include <array>
#include <memory>
#include <span>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "interpreters/svg2/css/Cascade.h"
#include "interpreters/svg2/document/Document.h"
#include "interpreters/svg2/drawing/Images.h"
#include "interpreters/svg2/tree/DocumentFonts.h"
#include "interpreters/svg2/tree/page_size.h"
#include "interpreters/svg2/tree/structure.h"
#include "interpreters/svg2/values/scanner.h"
#include "library/check/document_order.h"
#include "library/check/finding_writer.h"
#include "library/check/text_set.h"
#include "library/check/unread_properties.h"
#include "platform/print/link_addresses.h"
#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/ORVFontFace.h"

namespace {

using svg2::Document;
using svg2::ElementIndex;
using svg2::kNoElement;
using svg2::Name;
using svg2::Style;
using svg2::Tag;

std::string_view LocalName(std::string_view name) {
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

class StandardCheck {
public:
    StandardCheck(const CheckedDocument& checked, const Document& document, Findings& findings,
                  const std::unordered_map<const ORVXmlNode*, std::size_t>& numbers)
        : document_(document),
          writer_(checked, findings),
          numbers_(numbers),
          cascade_(document, Medium(document)),
          images_(ORVUnicodeString(checked.path)),
          fonts_(cascade_.GetSheets().GetFontFaces()) {}

    void Run();

private:
    static svg2::Medium Medium(const Document& document) {
        const svg2::Viewport size = svg2::FindImageSize(document);
        return {size.width, size.height};
    }

    NumberedElement At(ElementIndex element) const {
        const ORVXmlNode* node = document_[element].node;
        const auto found = numbers_.find(node);
        return {node, found == numbers_.end() ? ~std::size_t{0} : found->second};
    }
    void Note(FindingCode code, ElementIndex element, std::string_view attribute, std::string_view value,
              const std::string& message) {
        writer_.Note(code, At(element), attribute, value, message);
    }
    /// An element on the way down to the one that is checked.
    struct Around {
        ElementIndex element;
        std::unique_ptr<Style> style;
        bool isHidden;
        ElementIndex shown;  ///< of a "switch": its child that shows
    };
    bool IsHidden(ElementIndex element, const Style& style, const Around* around);
    bool IsUsed(ElementIndex element);
    void CheckSheet(ElementIndex sheet);
    void CheckFontFaces();
    void CheckRules();
    void CheckElement(ElementIndex element, const Style& style, bool isHidden);
    void CheckUnread(ElementIndex element, bool isHidden);
    void CheckUnknown(ElementIndex element, bool isHidden);
    void CheckProperty(ElementIndex element, std::string_view name, std::string_view value);
    void CheckProperties(ElementIndex element);
    void CheckPaint(ElementIndex element, const svg2::Paint& paint, std::string_view property);
    void CheckReference(ElementIndex element, std::string_view property, std::string_view value,
                        std::initializer_list<Tag> tags);
    void CheckFilter(ElementIndex element, const Style& style);
    void CheckPrimitive(ElementIndex element);
    void CheckFilterImage(ElementIndex element);
    void CheckHref(ElementIndex element);
    void CheckImage(ElementIndex element);
    void CheckFont(ElementIndex element, const Style& style);
    bool HasText(ElementIndex element) const;

    const Document& document_;
    FindingWriter writer_;
    const std::unordered_map<const ORVXmlNode*, std::size_t>& numbers_;
    svg2::Cascade cascade_;
    svg2::Images images_;
    svg2::DocumentFonts fonts_;
    std::unordered_set<std::string_view> families_;  // already looked up
    std::unordered_set<ElementIndex> used_;          // what "use" and its like show, once it is asked for
    bool knowsUsed_ = false;
};

void StandardCheck::Run() {
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
    CheckFontFaces();
    CheckRules();
}

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

/// Whether nothing of an element shows, so that nothing about it is worth a finding.
bool StandardCheck::IsHidden(ElementIndex element, const Style& style, const Around* around) {
    if (IsDefinition(document_[element].tag)) return false;
    const bool isOff = (!style.isDisplayed && !IsEditorLayer(document_, element)) ||
                       !svg2::PassesConditions(document_, element);
    if (isOff || !around) return isOff;
    const bool isPassedOver = around->shown != kNoElement && around->shown != element;
    return (around->isHidden || isPassedOver) && !IsUsed(element);
}

bool StandardCheck::IsUsed(ElementIndex element) {
    if (!document_.Find(element, Name::kId)) return false;
    for (ElementIndex other = 0; !knowsUsed_ && other < document_.GetCount(); ++other)
        if (const auto href = document_.Find(other, Name::kHref))
            used_.insert(document_.FindByReference(svg2::Trim(*href)));
    knowsUsed_ = true;
    return used_.contains(element);
}

void StandardCheck::CheckSheet(ElementIndex sheet) {
    const std::string_view text = document_[sheet].node->GetText();
    if (cascade_.GetSheets().ImportsSheets() && text.find("@import") != std::string_view::npos)
        Note(FindingCode::kStyleSheet, sheet, "", "", "other sheets are not loaded: @import is ignored");
}

void StandardCheck::CheckFontFaces() {
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

void StandardCheck::CheckRules() {
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

void StandardCheck::CheckUnread(ElementIndex element, bool isHidden) {
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

void StandardCheck::CheckUnknown(ElementIndex element, bool isHidden) {
    const std::string_view name = LocalName(document_[element].node->GetName());
    if (IsOneOf(name,
                {"animate", "set", "animateMotion", "animateTransform", "animateColor", "mpath", "discard"}))
        Note(FindingCode::kAnimation, element, "", "", "is ignored: the page shows the value without it");
    else if (IsOneOf(name, {"font", "font-face", "glyph", "missing-glyph", "hkern", "vkern", "font-face-src",
                            "font-face-name", "font-face-uri", "altGlyph", "glyphRef"}))
        Note(FindingCode::kSvgFont, element, "", "", "is not read: fonts within drawings are not used");
    else if (!isHidden)
        Note(FindingCode::kUnknownElement, element, "", "", "is not drawn");
}

void StandardCheck::CheckProperty(ElementIndex element, std::string_view name, std::string_view value) {
    ForEachLossOf(name, value, [&](const char* message) {
        Note(FindingCode::kIgnoredProperty, element, name, value, message);
    });
}

void StandardCheck::CheckProperties(ElementIndex element) {
    document_.ForEachProperty(element, [&](Name name, std::string_view value) {
        CheckProperty(element, svg2::TextOf(name), svg2::Trim(value));
    });
    svg2::Scanner scanner(document_.ValueOf(element, Name::kStyle));
    for (svg2::Declaration declaration; svg2::TakeDeclaration(scanner, declaration);)
        CheckProperty(element, declaration.name, declaration.value);
}

void StandardCheck::CheckReference(ElementIndex element, std::string_view property, std::string_view value,
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

void StandardCheck::CheckFilter(ElementIndex element, const Style& style) {
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
void StandardCheck::CheckPrimitive(ElementIndex element) {
    for (const Name name : {Name::kIn, Name::kIn2}) {
        const std::string_view input = svg2::Trim(document_.ValueOf(element, name));
        if (IsOneOf(input, {"BackgroundImage", "BackgroundAlpha", "FillPaint", "StrokePaint"}))
            Note(FindingCode::kAttributeWithoutEffect, element, svg2::TextOf(name), input,
                 "is no input here: the filtered element is taken instead");
    }
}

void StandardCheck::CheckFilterImage(ElementIndex element) {
    const std::string_view reference = svg2::Trim(document_.ValueOf(element, Name::kHref));
    if (!reference.starts_with('#')) return CheckImage(element);
    if (document_.FindByReference(reference) == kNoElement)
        Note(FindingCode::kMissingReference, element, "href", reference, "refers to nothing of the document");
}

void StandardCheck::CheckPaint(ElementIndex element, const svg2::Paint& paint, std::string_view property) {
    if (paint.kind != svg2::Paint::Kind::kReference) return;
    const ElementIndex target = paint.reference.empty() ? kNoElement : document_.FindById(paint.reference);
    const Tag tag = target == kNoElement ? Tag::kUnknown : document_[target].tag;
    if (tag != Tag::kLinearGradient && tag != Tag::kRadialGradient && tag != Tag::kPattern)
        Note(FindingCode::kMissingReference, element, property, paint.reference,
             "refers to no gradient or pattern of the document");
}

void StandardCheck::CheckHref(ElementIndex element) {
    const Tag tag = document_[element].tag;
    if (tag != Tag::kUse && tag != Tag::kTextPath) return;
    const auto href = document_.Find(element, Name::kHref);
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

void StandardCheck::CheckImage(ElementIndex element) {
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
         isData ? "holds no image that can be read: PNG, JPEG, BMP and SVG are read"
                : "is not there, may not be read, or is no PNG, JPEG, BMP or SVG");
}

bool StandardCheck::HasText(ElementIndex element) const {
    const std::string_view text = document_[element].node->GetText();
    return text.find_first_not_of(" \t\r\n") != std::string_view::npos;
}

void StandardCheck::CheckFont(ElementIndex element, const Style& style) {
    const Tag tag = document_[element].tag;
    if ((tag != Tag::kText && tag != Tag::kTspan && tag != Tag::kTextPath) || !HasText(element)) return;
    if (!families_.insert(style.fontFamily).second) return;
    const ORVFontQuery query{style.fontFamily,  style.fontWeight, style.isItalic,
                             style.fontStretch, style.fontSize,   style.fontVariationSettings};
    const svg2::OrderedFont* const brought = fonts_.Choose(query);
    const ORVFontChoice choice = brought ? brought->choice : ORVChooseFont(query);
    const auto hasTable = [&](std::string_view name) { return !choice.face->GetTable(name).bytes.empty(); };
    if (choice.face && hasTable("SVG ") && !hasTable("COLR") && !hasTable("CBDT") && !hasTable("sbix"))
        Note(FindingCode::kIgnoredProperty, element, "font-family", style.fontFamily,
             "has glyphs in colours that are SVG drawings: they are drawn in one colour");
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

void StandardCheck::CheckElement(ElementIndex element, const Style& style, bool isHidden) {
    CheckUnread(element, isHidden);
    if (isHidden) return;
    CheckProperties(element);
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
        case Tag::kPolygon:
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
    if (isVisible) CheckFont(element, style);
}

/// The style sheets linked before the root, where the parsed document has no nodes.
std::vector<svg2::OuterSheet> FindOuterSheets(const CheckedDocument& checked, bool keepsSource,
                                              Findings& findings) {
    if (!checked.fragments.empty()) return {};
    std::vector<std::string> lost;
    std::vector<svg2::OuterSheet> sheets =
        svg2::ReadOuterSheets(checked.text, ORVUnicodeString(checked.path), &lost);
    for (const std::string& reference : lost)
        FindingWriter(checked, findings)
            .Note(FindingCode::kStyleSheet, {checked.root, 0}, "", reference,
                  "the sheet cannot be read: none of its rules is applied");
    if (keepsSource || sheets.empty()) return sheets;
    FindingWriter(checked, findings)
        .Note(
            FindingCode::kStyleSheet, {checked.root, 0}, "", "<?xml-stylesheet?>",
            "the sheet is not read in a document with entities or of such an encoding: none of its rules is "
            "applied");
    return {};
}

}  // namespace

void CheckStandardDocument(const CheckedDocument& checked, const ORVRef<const ORVXmlTree>& tree,
                           Findings& findings) {
    std::unordered_map<const ORVXmlNode*, std::size_t> numbers;
    DocumentOrder order(*checked.root);
    std::size_t number = 0;
    while (const ORVXmlNode* node = order.Next())
        if (node->IsElement()) numbers.emplace(node, number++);
    std::vector<const ORVXmlNode*> roots(checked.fragments.begin(), checked.fragments.end());
    if (roots.empty()) roots.push_back(checked.root);
    for (const ORVXmlNode* root : roots) {
        Document document(tree, *root);
        if (document.IsSvg())
            document.SetOuterSheets(FindOuterSheets(checked, !tree->GetSource().empty(), findings));
        if (document.IsSvg())
            StandardCheck(checked, document, findings, numbers).Run();
        else
            FindingWriter(checked, findings)
                .Note(FindingCode::kForeignNamespace, {root, numbers[root]}, "", "",
                      "is no svg element of SVG's namespace");
    }
}

std::vector<std::uint32_t> CountStandardElements(const ORVRef<const ORVXmlTree>& tree, const ORVXmlNode& root,
                                                 const ORVXmlNode& top) {
    const Document document(tree, root);
    std::vector<std::uint32_t> numbers;
    numbers.reserve(document.GetCount());
    DocumentOrder order(top);
    std::uint32_t number = 0;
    while (const ORVXmlNode* node = order.Next()) {
        if (!node->IsElement()) continue;
        ++number;
        // Both are in document order, and the interpreter skips some elements.
        if (numbers.size() < document.GetCount() &&
            document[static_cast<ElementIndex>(numbers.size())].node == node)
            numbers.push_back(number);
    }
    return numbers;
}
