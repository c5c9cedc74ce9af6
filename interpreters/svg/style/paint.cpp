// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/paint.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>
#include <vector>

#include "interpreters/svg/definitions/definitions.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/values/colour.h"
#include "interpreters/svg/values/length.h"
#include "platform/model/ORVPrtBitmapImageElt.h"
#include "platform/model/ORVPrtPatternElt.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/system/number_conversion.h"

namespace {

constexpr std::string_view kReferencePrefix = "url(#";

struct Keyword {
    std::string_view text;
    int value;
};

// Sets `value` if the table contains `text`.
bool FindKeyword(std::span<const Keyword> table, std::string_view text, int& value) {
    if (text.empty()) return false;
    const auto found =
        std::find_if(table.begin(), table.end(), [&](const Keyword& row) { return row.text == text; });
    if (found == table.end()) return false;
    value = found->value;
    return true;
}

constexpr std::array kFillRules{Keyword{"nonzero", kFillNonZero}, Keyword{"evenodd", kFillEvenOdd}};
// Round and square are not numbered in keyword order, on purpose.
constexpr std::array kLineCaps{Keyword{"butt", kCapButt}, Keyword{"round", kCapRound},
                               Keyword{"square", kCapSquare}};
constexpr std::array kLineJoins{Keyword{"miter", kJoinMiter}, Keyword{"round", kJoinRound},
                                Keyword{"bevel", kJoinBevel}};

// Sets the pattern's bitmaps as fill; the last one remains.
void ApplyPattern(SvgDrawState& state, ORVPrtPatternElt& pattern) {
    state.fill.SetFillStyle(kFillPattern);
    for (ORVPrtGraphicPrimitiveElt* child : pattern.GetChildren()) {
        if (child->GetKind() != ORVPrtKind::kBitmapImage) continue;
        ORVPixelImage* image = static_cast<ORVPrtBitmapImageElt*>(child)->GetPixelImage();
        if (!image) continue;
        pattern.SetFillPatternImage(image);
        state.fill.SetFillPatternImage(image);
    }
}

void ApplyFillReference(SvgDrawState& state, std::string_view value) {
    if (!value.starts_with(kReferencePrefix)) return;
    std::string identifier(value.substr(kReferencePrefix.size()));
    std::erase(identifier, ')');
    ORVRef<ORVPrtGraphicPrimitiveElt> definition;
    FindDefinition(state, identifier, definition);
    if (definition && definition->GetKind() == ORVPrtKind::kPattern)
        ApplyPattern(state, static_cast<ORVPrtPatternElt&>(*definition));
}

std::uint8_t ScaledOpacity(std::uint8_t opacity, float factor) {
    const float product = std::ceil(static_cast<float>(opacity) * factor);
    // A conversion that overflows gives the smallest integer, whose low byte is 0.
    constexpr float kLimit = 2147483648.0F;
    if (!(product >= -kLimit && product < kLimit)) return 0;
    return static_cast<std::uint8_t>(static_cast<unsigned int>(static_cast<int>(product)) & 0xFFU);
}

int WithPaint(int style, int part) {
    const int other = part == kDrawStroke ? kDrawFill : kDrawStroke;
    if (style == kDrawNothing || style == kDrawUndecided) return part;
    return style == other ? kDrawFillAndStroke : style;
}

int WithoutPaint(int style, int part) {
    const int other = part == kDrawStroke ? kDrawFill : kDrawStroke;
    if (style == part || style == kDrawUndecided) return kDrawNothing;
    return style == kDrawFillAndStroke ? other : style;
}

int WithMention(int style, PaintMention mention, int part) {
    if (mention == PaintMention::kNone) return style;
    return mention == PaintMention::kOn ? WithPaint(style, part) : WithoutPaint(style, part);
}

}  // namespace

PaintMention ApplyFillPaint(SvgDrawState& state, std::string_view value) {
    if (value.empty()) return PaintMention::kNone;
    if (value == "none") return PaintMention::kOff;
    if (value == "currentColor") {
        state.fill.SetFillColourIndex(state.fillCurrentColour);
    } else if (value.find("url") != value.npos) {
        ApplyFillReference(state, value);
    } else {
        unsigned int index = 0;
        if (ParseColour(state, value, index) == kRead) state.fill.SetFillColourIndex(index);
    }
    return PaintMention::kOn;
}

PaintMention ApplyStrokePaint(SvgDrawState& state, std::string_view value) {
    if (value.empty()) return PaintMention::kNone;
    if (value == "none") return PaintMention::kOff;
    if (value == "currentColor") {
        state.stroke.SetStrokeColourIndex(state.strokeCurrentColour);
    } else if (value.find("url") == value.npos) {
        unsigned int index = 0;
        if (ParseColour(state, value, index) == kRead) state.stroke.SetStrokeColourIndex(index);
    }
    return PaintMention::kOn;
}

void ApplyFillRule(SvgDrawState& state, std::string_view value) {
    int rule = 0;
    if (FindKeyword(kFillRules, value, rule)) state.fill.SetFillRule(rule);
}

void ApplyDashArray(SvgDrawState& state, std::string_view value) {
    if (value.empty()) return;
    if (value == "none") {
        state.stroke.SetStrokeType(kLineSolid);
        return;
    }
    const std::uint64_t most = ORVPrintLimits::Get(ORVPrintLimit::kDashes);
    std::vector<float> lengths;
    constexpr std::string_view kSeparators = " ,";
    for (std::size_t start = value.find_first_not_of(kSeparators); start != value.npos;
         start = value.find_first_not_of(kSeparators, start)) {
        const std::size_t end = std::min(value.find_first_of(kSeparators, start), value.size());
        double number = 0.0;
        if (ORVConvertToDouble(value.substr(start, end - start), number) == kRead) {
            if (lengths.size() >= most) return;
            lengths.push_back(static_cast<float>(number));
        }
        start = end;
    }
    state.stroke.SetStrokeType(kLineUserDash);
    if (lengths.empty()) return;
    // The model stores the number of dashes in a byte; 256 of them count as none.
    state.stroke.SetStrokeDashPattern(lengths.data(), static_cast<std::uint8_t>(lengths.size() & 0xFFU));
}

void ApplyLineCap(SvgDrawState& state, std::string_view value) {
    int cap = 0;
    if (FindKeyword(kLineCaps, value, cap)) state.stroke.SetStrokeCap(cap);
}

void ApplyLineJoin(SvgDrawState& state, std::string_view value) {
    int join = 0;
    if (FindKeyword(kLineJoins, value, join)) state.stroke.SetStrokeJoin(join);
}

void ApplyStrokeWidth(SvgDrawState& state, std::string_view value) {
    double width = 0.0;
    if (ParseLength(state, value, width) == kRead) state.stroke.SetStrokeWidth(width);
}

void UpdateDrawStyle(SvgDrawState& state, const PaintMentions& mentions) {
    state.drawStyle = WithMention(state.drawStyle, mentions.stroke, kDrawStroke);
    state.drawStyle = WithMention(state.drawStyle, mentions.fill, kDrawFill);
}

bool ReadOpacityFactor(std::string_view value, float& factor) {
    double number = 0.0;
    if (value == "inherit" || ORVConvertToDouble(value, number) != kRead) return false;
    factor = static_cast<float>(number);
    return true;
}

void MultiplyOpacity(SvgDrawState& state, float strokeFactor, float fillFactor) {
    state.stroke.SetStrokeColourTransparency(
        ScaledOpacity(state.stroke.GetStrokeColourTransparency(), strokeFactor));
    state.fill.SetFillColourTransparency(ScaledOpacity(state.fill.GetFillColourTransparency(), fillFactor));
}

template <SvgElementAccess Element>
void ApplyOpacity(SvgDrawState& state, const Element& element) {
    float both = 1.0F;
    ReadOpacityFactor(element.Attribute(AttributeName::kOpacity).text, both);
    float stroke = both, fill = both;
    ReadOpacityFactor(element.Attribute(AttributeName::kStrokeOpacity).text, stroke);
    ReadOpacityFactor(element.Attribute(AttributeName::kFillOpacity).text, fill);
    MultiplyOpacity(state, stroke, fill);
}

template <SvgElementAccess Element>
void ApplyCurrentColour(SvgDrawState& state, const Element& element) {
    const std::string_view value = element.Attribute(AttributeName::kColor).text;
    if (value.empty()) return;
    unsigned int index = 0;
    if (ParseColour(state, value, index) == kRead)
        state.strokeCurrentColour = state.fillCurrentColour = index;
}

template <SvgElementAccess Element>
void ApplyPaint(SvgDrawState& state, const Element& element) {
    const AttributeValue fill = element.Attribute(AttributeName::kFill);
    if (!fill.WasRead()) return;

    PaintMentions mentions;
    mentions.fill = ApplyFillPaint(state, fill.text);
    ApplyFillRule(state, element.Attribute(AttributeName::kFillRule).text);
    mentions.stroke = ApplyStrokePaint(state, element.Attribute(AttributeName::kStroke).text);
    ApplyDashArray(state, element.Attribute(AttributeName::kStrokeDasharray).text);
    ApplyLineCap(state, element.Attribute(AttributeName::kStrokeLinecap).text);
    ApplyLineJoin(state, element.Attribute(AttributeName::kStrokeLinejoin).text);
    ApplyStrokeWidth(state, element.Attribute(AttributeName::kStrokeWidth).text);
    UpdateDrawStyle(state, mentions);
}

template <SvgElementAccess Element>
void PrefetchPaint(const SvgDrawState& state, const Element& element) {
    if (!HasManyColours(state) || element.IsNull()) return;
    PrefetchColour(state, element.Attribute(AttributeName::kFill).text);
    PrefetchColour(state, element.Attribute(AttributeName::kStroke).text);
}

template void ApplyOpacity(SvgDrawState&, const DomElementAccess&);
template void ApplyOpacity(SvgDrawState&, const LightElementAccess&);
template void ApplyCurrentColour(SvgDrawState&, const DomElementAccess&);
template void ApplyCurrentColour(SvgDrawState&, const LightElementAccess&);
template void ApplyPaint(SvgDrawState&, const DomElementAccess&);
template void ApplyPaint(SvgDrawState&, const LightElementAccess&);
template void PrefetchPaint(const SvgDrawState&, const DomElementAccess&);
template void PrefetchPaint(const SvgDrawState&, const LightElementAccess&);
