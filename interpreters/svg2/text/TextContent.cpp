// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/TextContent.h"

#include <algorithm>
#include <cstddef>

#include "interpreters/svg2/text/features.h"
#include "interpreters/svg2/text/orientation.h"
#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/tree/structure.h"
#include "interpreters/svg2/values/path_data.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/visualization/fonts/ORVShapedText.h"
#include "platform/visualization/fonts/letter_case.h"
#include "platform/visualization/fonts/text_failure.h"

namespace svg2 {
namespace {

constexpr int kGreatestDepth = 256;  // of spans within each other
// Nothing below joins the character before it.
constexpr char32_t kFirstMark = 0x300;

/// Length in bytes of the character at `offset`.
std::size_t SizeOfCharacter(std::string_view text, std::size_t offset) {
    std::size_t size = 1;
    while (offset + size < text.size() && (static_cast<unsigned char>(text[offset + size]) & 0xC0U) == 0x80U)
        ++size;
    return size;
}

/// Decodes a character. The parser has validated the UTF-8.
char32_t CodePointOf(std::string_view character) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(character[i]); };
    switch (character.size()) {
        case 1: return byte(0);
        case 2: return (byte(0) & 0x1FU) << 6U | (byte(1) & 0x3FU);
        case 3: return (byte(0) & 0x0FU) << 12U | (byte(1) & 0x3FU) << 6U | (byte(2) & 0x3FU);
        default:
            return (byte(0) & 0x07U) << 18U | (byte(1) & 0x3FU) << 12U | (byte(2) & 0x3FU) << 6U |
                   (byte(3) & 0x3FU);
    }
}

bool IsSpanTag(Tag tag) {
    return tag == Tag::kTspan || tag == Tag::kTextPath || tag == Tag::kA || tag == Tag::kTref;
}

}  // namespace

bool TextContent::Collect(ElementIndex element, const Style& style, const Viewport& viewport) {
    viewport_ = viewport;
    AddSpan(element, style, 0);
    CollectChildren(0);
    if (isTooLong_) {
        ORVNoteTextFailure("tref elements repeat too much text; write the text where it is needed");
        return false;
    }
    if (hasFailed_) return false;
    DropSpaceAtEnd();
    if ((hasMarks_ || IsVertical()) && !FindParts()) return false;
    ApplyLists();
    return true;
}

std::string_view TextContent::GetBytes(std::size_t first, std::size_t end) const {
    const std::size_t start = characters_[first].offset;
    const std::size_t stop = end < characters_.size() ? characters_[end].offset : text_.size();
    return std::string_view(text_).substr(start, stop - start);
}

bool TextContent::IsPlain() const {
    const TextSpan& span = spans_[0];
    const Style& style = *span.style;
    return spans_.size() == 1 && places_.size() <= 1 && rotations_.empty() && !IsVertical() &&
           !(style.fontVariants & kSmallCaps) && style.letterSpacing == Length() &&
           style.wordSpacing == Length() && style.unicodeBidi.empty() &&
           scene_.GetDocument().ValueOf(span.element, Name::kTextLength).empty();
}

// ---- spans and their characters ----

void TextContent::AddSpan(ElementIndex element, const Style& style, std::size_t parent) {
    TextSpan span;
    span.element = element;
    span.style = &style;
    span.parent = parent;
    span.first = characters_.size();
    span.isHidden = !style.isDisplayed;
    if (!spans_.empty()) {
        const TextSpan& around = spans_[parent];
        span.opacity = around.opacity * style.opacity;
        span.path = around.path;
        span.shift = around.shift;
        span.depth = around.depth + 1;
        span.isHidden = span.isHidden || around.isHidden;
    }
    span.font = fonts_.Find(style, scene_.GetFonts());
    span.shift += ShiftOf(span);
    if (scene_.GetDocument()[element].tag == Tag::kTextPath) AddRail(span);
    spans_.push_back(span);
}

void TextContent::CollectChildren(std::size_t span) {
    const Document& document = scene_.GetDocument();
    const ElementIndex element = spans_[span].element;
    const bool isLost = spans_[span].path != TextSpan::kNoPath && !rails_[spans_[span].path].IsUsable();
    const bool isReference = document[element].tag == Tag::kTref;
    if (isReference) isTooLong_ = isTooLong_ || !AddReferenced(span);
    ElementIndex child = document[element].firstChild;
    for (const ORVXmlNode* node = document[element].node->firstChild; node && !isLost && !isReference;
         node = node->nextSibling) {
        if (node->kind == ORVXmlNode::Kind::kText) AddText(node->GetText(), span);
        if (!node->IsElement()) continue;
        if (child == kNoElement || document[child].node != node) continue;  // in a different namespace
        const ElementIndex inner = child;
        child = document[child].nextSibling;
        CollectChild(inner, span);
    }
    // Elements of the light tree have no text nodes; their text comes first.
    if (!isLost && !isReference && !document[element].node->firstChild)
        AddText(document[element].node->GetText(), span);
    spans_[span].end = characters_.size();
}

void TextContent::CollectChild(ElementIndex child, std::size_t parent) {
    const Document& document = scene_.GetDocument();
    const Tag tag = document[child].tag;
    if (!IsSpanTag(tag) || spans_[parent].depth >= kGreatestDepth || !PassesConditions(document, child))
        return;
    // Only a textPath that is a direct child of the text element has a path, and only as a whole.
    const bool isWithinText = document[spans_[parent].element].tag == Tag::kText;
    if (tag == Tag::kTextPath && !isWithinText && document[spans_[parent].element].tag != Tag::kA) return;
    Style& style = *styles_.emplace_back(std::make_unique<Style>());
    scene_.GetCascade().Compute(child, *spans_[parent].style, style);
    const std::size_t number = spans_.size();
    const bool endedWithSpace = endsWithSpace_;
    AddSpan(child, style, parent);
    CollectChildren(number);
    if (!style.isDisplayed) endsWithSpace_ = endedWithSpace;
}

/// The text in the letter case that its span asks for.
std::string_view TextContent::Transformed(std::string_view text, std::size_t span, std::string& memory) {
    constexpr std::size_t kLongestWord = 256;
    const TextTransform transform = spans_[span].style->textTransform;
    if (transform == TextTransform::kNone || hasFailed_) return text;
    // A word may have begun in another span.
    std::size_t start = text_.size() - std::min(text_.size(), kLongestWord);
    while (start < text_.size() && (static_cast<unsigned char>(text_[start]) & 0xC0U) == 0x80U) ++start;
    const ORVLetterCase letterCase = transform == TextTransform::kUppercase   ? ORVLetterCase::kUpper
                                     : transform == TextTransform::kLowercase ? ORVLetterCase::kLower
                                                                              : ORVLetterCase::kWordStarts;
    hasFailed_ = !ORVChangeCase(text, letterCase, std::string_view(text_).substr(start),
                                scene_.GetDocument().LanguageOf(spans_[span].element), memory);
    return memory;
}

void TextContent::AddText(std::string_view written, std::size_t span) {
    std::string memory;
    const std::string_view text = Transformed(written, span, memory);
    const bool collapses = spans_[span].style->whiteSpace == WhiteSpace::kCollapse;
    const bool isHidden = spans_[span].isHidden;
    if (characters_.empty()) {
        characters_.reserve(text.size());
        codePoints_.reserve(text.size());
        text_.reserve(text.size());
    }
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t size = SizeOfCharacter(text, i);
        std::string_view bytes = text.substr(i, size);
        i += size;
        const bool isSpace = size == 1 && IsSpace(bytes.front());
        if (isSpace && collapses && endsWithSpace_) continue;
        if (isSpace) bytes = " ";
        endsWithSpace_ = isSpace;
        const char32_t code = CodePointOf(bytes);
        TextCharacter added;
        added.span = static_cast<std::uint32_t>(span);
        added.offset = static_cast<std::uint32_t>(text_.size());
        added.isCollapsed = isSpace && collapses;
        added.isHidden = isHidden;
        characters_.push_back(added);
        codePoints_.push_back(code);
        hasMarks_ = hasMarks_ || code >= kFirstMark;
        if (!isHidden) text_ += bytes;
    }
}

/// Adds the text of another element.
/// @return false if that happened too often
bool TextContent::AddReferenced(std::size_t span) {
    const Document& document = scene_.GetDocument();
    const ElementIndex target =
        document.FindByReference(Trim(document.ValueOf(spans_[span].element, Name::kHref)));
    if (target == kNoElement) return true;
    std::vector<const ORVXmlNode*> nodes{document[target].node};
    while (!nodes.empty()) {
        const ORVXmlNode* const node = nodes.back();
        nodes.pop_back();
        if (node != document[target].node && node->nextSibling) nodes.push_back(node->nextSibling);
        if (node->firstChild) nodes.push_back(node->firstChild);
        const bool holdsText =
            node->kind == ORVXmlNode::Kind::kText || (node->IsElement() && !node->firstChild);
        if (!holdsText) continue;
        if (!fonts_.TakeRepeatedText(node->GetText().size())) return false;
        AddText(node->GetText(), span);
    }
    return true;
}

// Trailing white space is removed, too.
void TextContent::DropSpaceAtEnd() {
    std::size_t last = characters_.size();
    while (last > 0 && characters_[last - 1].isHidden) --last;
    if (last == 0 || !characters_[last - 1].isCollapsed) return;
    --last;
    const std::size_t offset = characters_[last].offset;
    text_.erase(offset, 1);
    characters_.erase(characters_.begin() + static_cast<std::ptrdiff_t>(last));
    codePoints_.erase(last, 1);
    for (std::size_t i = last; i < characters_.size(); ++i) --characters_[i].offset;
    for (TextSpan& span : spans_) {
        if (span.first > last) --span.first;
        if (span.end > last) --span.end;
    }
}

bool TextContent::FindParts() {
    std::vector<bool> isPart;
    if (!ORVFindClusterParts(codePoints_, isPart)) return false;
    for (std::size_t i = 0; i < characters_.size(); ++i) characters_[i].isPart = isPart[i];
    if (IsVertical()) FindUpright();
    return true;
}

/// True if a character is set sideways because its font has no vertical form for it.
bool TextContent::IsTurned(std::size_t character) const {
    constexpr std::uint32_t kVertical = FeatureTag("vert");
    const ORVFontFace* const face = SpanOf(character).font.choice.face;
    return NeedsVerticalForm(codePoints_[character]) && face && !ORVHasFontFeature(*face, kVertical);
}

void TextContent::FindUpright() {
    for (std::size_t i = 0; i < characters_.size(); ++i) {
        TextCharacter& character = characters_[i];
        const TextOrientation orientation = spans_[character.span].style->textOrientation;
        if (orientation != TextOrientation::kMixed)
            character.isUpright = orientation == TextOrientation::kUpright;
        else if (character.isPart)
            character.isUpright = characters_[i - 1].isUpright;
        else
            character.isUpright = IsUpright(codePoints_[i]) && !IsTurned(i);
    }
}

double TextContent::ShiftOf(const TextSpan& span) const {
    const Style& style = *span.style;
    const std::string_view text = style.baselineShift;
    if (text.empty() || scene_.GetDocument()[span.element].tag == Tag::kText) return 0.0;
    Length length;
    if (EqualsIgnoringCase(text, "sub")) return -span.font.metrics.subscript * span.FontSize();
    if (EqualsIgnoringCase(text, "super")) return span.font.metrics.superscript * span.FontSize();
    if (!ReadLength(text, scene_.GetCascade().SizesOf(style), length)) return 0.0;
    return length.Resolve(style.fontSize);
}

// ---- outlines ----

void TextContent::AddRail(TextSpan& span) {
    const Document& document = scene_.GetDocument();
    span.path = rails_.size();
    TextRail& rail = rails_.emplace_back();
    ORVPrintPath outline;
    ORVMathAffine2D transform;
    ElementIndex target = kNoElement;
    if (const std::string_view data = document.ValueOf(span.element, Name::kPath); !data.empty()) {
        ReadPathData(data, outline);
    } else {
        target = document.FindByReference(Trim(document.ValueOf(span.element, Name::kHref)));
        if (target == kNoElement || !IsShape(document[target].tag)) return;
        const Style& style = scene_.StyleInPlace(target);
        AddOutline(scene_, target, style, viewport_, outline);
        if (!scene_.TransformOf(target, style, viewport_, transform)) return;
    }
    rail.path.Add(outline, transform);
    if (!rail.IsUsable()) return;
    if (document.ValueOf(span.element, Name::kSide) == "right") rail.path.Reverse();
    ReadStartOffset(span, target, rail);
}

void TextContent::ReadStartOffset(const TextSpan& span, ElementIndex target, TextRail& rail) {
    Length offset;
    if (!ReadLength(scene_.GetDocument().ValueOf(span.element, Name::kStartOffset),
                    scene_.GetCascade().SizesOf(*span.style), offset))
        return;
    const double length = rail.path.GetLength();
    const double stated = target == kNoElement ? 0.0 : scene_.NumberOf(target, Name::kPathLength, 0.0);
    const double scale = stated > 0.0 ? length / stated : 1.0;
    rail.offset = offset.px * scale + offset.percent * length / 100.0;
}

// ---- positions given by attributes ----

void TextContent::ApplyList(const TextSpan& span, Name name, Axis axis) {
    const std::string_view list = scene_.GetDocument().ValueOf(span.element, name);
    if (list.empty()) return;
    Scanner scanner(list);
    const UnitSizes sizes = scene_.GetCascade().SizesOf(*span.style);
    scanner.SkipSpace();
    for (std::size_t i = span.first; i < span.end && !scanner.AtEnd(); ++i) {
        Length length;
        if (!TakeLength(scanner, sizes, length)) return;
        scanner.SkipCommaSpace();
        const double value = length.Resolve(Scene::BaseOf(viewport_, axis));
        if (places_.size() <= i) places_.resize(i + 1);
        TextPlace& place = places_[i];
        switch (name) {
            case Name::kX:
                place.x = value;
                place.hasX = true;
                break;
            case Name::kY:
                place.y = value;
                place.hasY = true;
                break;
            case Name::kDx: place.dx = value; break;
            default: place.dy = value; break;
        }
        hasMoves_ = hasMoves_ || place.dx != 0.0 || place.dy != 0.0;
    }
}

namespace {

/// @return false if the list contains anything but numbers
bool ReadRotations(std::string_view list, std::vector<double>& degrees) {
    Scanner scanner(list);
    scanner.SkipSpace();
    while (!scanner.AtEnd()) {
        if (!scanner.TakeNumber(degrees.emplace_back())) return false;
        const std::size_t end = scanner.GetPosition();
        scanner.SkipCommaSpace();
        const bool isApart = scanner.GetPosition() > end || scanner.Peek() == '-' || scanner.Peek() == '+';
        if (!scanner.AtEnd() && !isApart) return false;
    }
    return !degrees.empty();
}

}  // namespace

void TextContent::ApplyRotation(const TextSpan& span) {
    const std::string_view list = scene_.GetDocument().ValueOf(span.element, Name::kRotate);
    std::vector<double> degrees;
    if (list.empty() || !ReadRotations(list, degrees)) return;
    if (rotations_.size() < span.end) rotations_.resize(span.end);
    // The last value applies to all following characters.
    for (std::size_t i = span.first; i < span.end; ++i)
        rotations_[i] = degrees[std::min(i - span.first, degrees.size() - 1)];
}

// Outer spans come first, so that inner ones override them.
void TextContent::ApplyLists() {
    for (const TextSpan& span : spans_) {
        if (span.isHidden || scene_.GetDocument()[span.element].tag == Tag::kTextPath) continue;
        ApplyList(span, Name::kX, Axis::kX);
        ApplyList(span, Name::kY, Axis::kY);
        ApplyList(span, Name::kDx, Axis::kX);
        ApplyList(span, Name::kDy, Axis::kY);
        ApplyRotation(span);
    }
    // A character inside a cluster has no position of its own; its offsets are added to the cluster's.
    for (std::size_t i = 0; i < std::min(characters_.size(), places_.size()); ++i)
        if (characters_[i].isPart) places_[i].hasX = places_[i].hasY = false;
}

}  // namespace svg2
