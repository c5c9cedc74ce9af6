// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>

#include "interpreters/svg2/css/font_variants.h"
#include "interpreters/svg2/css/property_rows.h"
#include "platform/print/ORVPrintPreferences.h"

namespace svg2 {
namespace {

using Text = std::string_view;
using Context = PropertyContext;

bool ReadFontSize(Text text, const Context& context, double& size) {
    constexpr Keyword<int> kSizes[] = {{"xx-small", -3}, {"x-small", -2}, {"small", -1},   {"medium", 0},
                                       {"large", 1},     {"x-large", 2},  {"xx-large", 3}, {"xxx-large", 4}};
    constexpr double kFactor = 1.2;
    const double parentSize = context.parent.fontSize;
    int step = 0;
    if (ReadKeyword(kSizes, text, step)) {
        size = ORVPrintPreferences::Get().fontSize * std::pow(kFactor, step);
    } else if (Is(text, "larger")) {
        size = parentSize * kFactor;
    } else if (Is(text, "smaller")) {
        size = parentSize / kFactor;
    } else {
        UnitSizes sizes = context.sizes;
        sizes.fontSize = parentSize;
        sizes.xHeight = sizes.zeroWidth = parentSize / 2.0;
        Length length;
        if (!ReadLength(text, sizes, length)) return false;
        const double resolved = length.Resolve(parentSize);
        if (resolved < 0.0) return false;
        size = resolved;
    }
    return true;
}

bool ReadFontWeight(Text text, const Context& context, int& weight) {
    constexpr int kRegular = 400, kBold = 700, kLight = 100, kHeavy = 900, kMost = 1000;
    const int parent = context.parent.fontWeight;
    double number = 0.0;
    if (Is(text, "normal")) {
        weight = kRegular;
    } else if (Is(text, "bold")) {
        weight = kBold;
    } else if (Is(text, "bolder")) {
        weight = parent < 350 ? kRegular : parent < 550 ? kBold : std::max(parent, kHeavy);
    } else if (Is(text, "lighter")) {
        weight = parent < 550 ? std::min(parent, kLight) : parent < 750 ? kRegular : kBold;
    } else if (ReadNumber(text, number) && number >= 1.0 && number <= kMost) {
        weight = static_cast<int>(std::lround(number));
    } else {
        return false;
    }
    return true;
}

template <std::uint32_t kGroup>
void CopyVariants(const Style& from, Style& to) {
    to.fontVariants = (to.fontVariants & ~kGroup) | (from.fontVariants & kGroup);
}

/// "none", or a number or "from-font", optionally after the metric that it refers to.
bool ReadFontSizeAdjustment(Text text, FontSizeAdjustment& adjustment) {
    using Measure = FontSizeAdjustment::Measure;
    constexpr Keyword<Measure> kMeasures[] = {{"ex-height", Measure::kExHeight},
                                              {"cap-height", Measure::kCapHeight},
                                              {"ch-width", Measure::kZeroWidth},
                                              {"ic-width", Measure::kIdeographWidth}};
    FontSizeAdjustment read;
    if (Is(text, "none")) {
        adjustment = read;
        return true;
    }
    Scanner scanner(text);
    if (const Text word = scanner.TakeName(); ReadKeyword(kMeasures, word, read.measure))
        text = Trim(scanner.Rest());
    read.isFromFont = Is(text, "from-font");
    if (!read.isFromFont && (!ReadNumber(text, read.value) || read.value < 0.0)) return false;
    adjustment = read;
    return true;
}

/// A list as written; "normal" is the same as none.
bool ReadSettings(Text text, Text& settings) {
    if (!Is(text, "normal") && !text.starts_with('"') && !text.starts_with('\'')) return false;
    settings = Is(text, "normal") ? Text() : text;
    return true;
}

bool ReadTextOrientation(Text text, TextOrientation& orientation) {
    constexpr Keyword<TextOrientation> kValues[] = {{"mixed", TextOrientation::kMixed},
                                                    {"upright", TextOrientation::kUpright},
                                                    {"sideways", TextOrientation::kSideways},
                                                    {"sideways-right", TextOrientation::kSideways}};
    return ReadKeyword(kValues, text, orientation);
}

bool ReadTextTransform(Text text, TextTransform& transform) {
    constexpr Keyword<TextTransform> kValues[] = {{"none", TextTransform::kNone},
                                                  {"uppercase", TextTransform::kUppercase},
                                                  {"lowercase", TextTransform::kLowercase},
                                                  {"capitalize", TextTransform::kCapitalize}};
    return ReadKeyword(kValues, text, transform);
}

/// "glyph-orientation-vertical": an angle, of which 0 and 90 degrees have equivalents in text-orientation.
bool ReadGlyphOrientation(Text text, TextOrientation& orientation) {
    constexpr Keyword<TextOrientation> kValues[] = {{"auto", TextOrientation::kMixed},
                                                    {"0", TextOrientation::kUpright},
                                                    {"0deg", TextOrientation::kUpright},
                                                    {"90", TextOrientation::kSideways},
                                                    {"90deg", TextOrientation::kSideways}};
    return ReadKeyword(kValues, text, orientation);
}

/// "normal" or a length.
bool ReadSpacing(Text text, const Context& context, Length& spacing) {
    if (Is(text, "normal")) {
        spacing = {};
        return true;
    }
    return ReadLength(text, context.sizes, spacing);
}

bool ReadDecorationStyle(Text text, DecorationStyle& style) {
    constexpr Keyword<DecorationStyle> kStyles[] = {{"solid", DecorationStyle::kSolid},
                                                    {"double", DecorationStyle::kDouble},
                                                    {"dotted", DecorationStyle::kDotted},
                                                    {"dashed", DecorationStyle::kDashed},
                                                    {"wavy", DecorationStyle::kWavy}};
    return ReadKeyword(kStyles, text, style);
}

/// "auto", "from-font" (the same here), or a non-negative length.
bool ReadDecorationThickness(Text text, const Context& context, std::optional<Length>& thickness) {
    if (Is(text, "auto") || Is(text, "from-font")) {
        thickness.reset();
        return true;
    }
    Length length;
    if (!ReadLength(text, context.sizes, length) || length.px < 0.0 || length.percent < 0.0) return false;
    thickness = length;
    return true;
}

bool ReadDecorationLine(Text word, std::uint8_t& line) {
    constexpr Keyword<std::uint8_t> kLines[] = {
        {"none", 0}, {"underline", kUnderline}, {"overline", kOverline}, {"line-through", kLineThrough}};
    return ReadKeyword(kLines, word, line);
}

/// The shorthand "text-decoration". A colour is accepted and ignored: lines have the colour of their text.
class DecorationReader {
public:
    explicit DecorationReader(const Context& context) : context_(context) {}

    bool Read(Text text, Style& style) {
        ForEachWord(text, [this](Text word) {
            isReadable_ = isReadable_ && TakeWord(word);
            return isReadable_;
        });
        if (!hasLine_ || !isReadable_ || (hasNone_ && lines_ != 0)) return false;
        style.decorationLines = lines_;
        style.decorationStyle = style_;
        style.decorationThickness = thickness_;
        return true;
    }

private:
    bool TakeWord(Text word) {
        std::uint8_t line = 0;
        ColourValue colour;
        // The arguments of a colour function are separate words.
        const bool isWithin = depth_ > 0;
        depth_ += std::count(word.begin(), word.end(), '(') - std::count(word.begin(), word.end(), ')');
        if (isWithin || word.find('(') != Text::npos) return true;
        if (!ReadDecorationLine(word, line))
            return Is(word, "blink") || ReadDecorationStyle(word, style_) ||
                   ReadDecorationThickness(word, context_, thickness_) || ReadColourValue(word, colour);
        hasLine_ = true;
        hasNone_ = hasNone_ || line == 0;
        lines_ |= line;
        return true;
    }

    const Context& context_;
    std::uint8_t lines_ = 0;
    DecorationStyle style_ = DecorationStyle::kSolid;
    std::optional<Length> thickness_;
    std::ptrdiff_t depth_ = 0;  // of parentheses
    bool hasLine_ = false, hasNone_ = false, isReadable_ = true;
};

/// The longhand "text-decoration-line".
bool ReadDecorationLines(Text text, std::uint8_t& lines) {
    std::uint8_t read = 0;
    bool hasNone = false, isReadable = !text.empty();
    ForEachWord(text, [&](Text word) {
        std::uint8_t line = 0;
        isReadable = isReadable && (Is(word, "blink") || ReadDecorationLine(word, line));
        hasNone = hasNone || Is(word, "none");
        read |= line;
        return isReadable;
    });
    if (!isReadable || (hasNone && read != 0)) return false;
    lines = read;
    return true;
}

constexpr Keyword<Baseline> kBaselines[] = {
    {"auto", Baseline::kAuto},
    {"baseline", Baseline::kAuto},
    {"alphabetic", Baseline::kAlphabetic},
    {"hanging", Baseline::kHanging},
    {"mathematical", Baseline::kMathematical},
    {"middle", Baseline::kMiddle},
    {"central", Baseline::kCentral},
    {"text-before-edge", Baseline::kTextBeforeEdge},
    {"before-edge", Baseline::kTextBeforeEdge},
    {"text-top", Baseline::kTextBeforeEdge},
    {"text-after-edge", Baseline::kTextAfterEdge},
    {"after-edge", Baseline::kTextAfterEdge},
    {"text-bottom", Baseline::kTextAfterEdge},
    {"ideographic", Baseline::kIdeographic},
    {"use-script", Baseline::kAuto},
    {"reset-size", Baseline::kAuto},
    {"no-change", Baseline::kNoChange},
};

bool ReadWritingMode(Text text, WritingMode& mode) {
    constexpr Keyword<WritingMode> kModes[] = {{"lr-tb", WritingMode::kHorizontal},
                                               {"rl-tb", WritingMode::kHorizontal},
                                               {"lr", WritingMode::kHorizontal},
                                               {"rl", WritingMode::kHorizontal},
                                               {"horizontal-tb", WritingMode::kHorizontal},
                                               {"tb-rl", WritingMode::kVerticalRightToLeft},
                                               {"tb", WritingMode::kVerticalRightToLeft},
                                               {"vertical-rl", WritingMode::kVerticalRightToLeft},
                                               {"vertical-lr", WritingMode::kVerticalLeftToRight},
                                               {"tb-lr", WritingMode::kVerticalLeftToRight}};
    return ReadKeyword(kModes, text, mode);
}

bool ReadAnchor(Text text, TextAnchor& anchor) {
    constexpr Keyword<TextAnchor> kValues[] = {
        {"start", TextAnchor::kStart}, {"middle", TextAnchor::kMiddle}, {"end", TextAnchor::kEnd}};
    return ReadKeyword(kValues, text, anchor);
}

bool ReadDirection(Text text, bool& isRightToLeft) {
    constexpr Keyword<bool> kValues[] = {{"ltr", false}, {"rtl", true}};
    return ReadKeyword(kValues, text, isRightToLeft);
}

bool ReadWhiteSpace(Text text, WhiteSpace& whiteSpace) {
    constexpr Keyword<WhiteSpace> kValues[] = {
        {"normal", WhiteSpace::kCollapse},   {"nowrap", WhiteSpace::kCollapse},
        {"pre-line", WhiteSpace::kCollapse}, {"pre", WhiteSpace::kPreserve},
        {"pre-wrap", WhiteSpace::kPreserve}, {"break-spaces", WhiteSpace::kPreserve}};
    return ReadKeyword(kValues, text, whiteSpace);
}

bool ReadKerning(Text text, const Context& context, bool& hasKerning) {
    constexpr Keyword<bool> kValues[] = {{"auto", true}, {"normal", true}, {"none", false}};
    Length length;
    if (ReadKeyword(kValues, text, hasKerning)) return true;
    if (!ReadLength(text, context.sizes, length)) return false;
    hasKerning = length.px != 0.0;
    return true;
}

/// "[style] [variant] [weight] [stretch] size[/line height] family".
bool ReadFont(Text text, const Context& context, Style& style) {
    Style read = style;
    const Style initial;
    read.isItalic = initial.isItalic;
    read.fontWeight = initial.fontWeight;
    read.fontStretch = initial.fontStretch;
    read.fontSizeAdjustment = initial.fontSizeAdjustment;
    read.fontVariants = initial.fontVariants;
    read.fontFeatureSettings = initial.fontFeatureSettings;
    read.fontVariationSettings = initial.fontVariationSettings;
    read.hasKerning = initial.hasKerning;
    Scanner scanner(text);
    bool lineHeightFollows = false;
    for (;;) {
        scanner.SkipSpace();
        const Text rest = scanner.Rest();
        const Text word = rest.substr(0, rest.find_first_of(" \t\r\n\f"));
        if (word.empty()) return false;
        const Text size = word.substr(0, word.find('/'));
        bool isItalic = false;
        int weight = 0;
        double stretch = 0.0, fontSize = 0.0;
        scanner.Advance(word.size());
        if (Is(word, "normal")) continue;
        if (ReadFontStyle(word, isItalic)) {
            read.isItalic = isItalic;
        } else if (Is(word, "small-caps")) {
            read.fontVariants = kSmallCaps;
        } else if (word.find_first_of("%emptxcmqrh.") == Text::npos &&
                   ReadFontWeight(word, context, weight)) {
            read.fontWeight = weight;
        } else if (Is(word, "bold") || Is(word, "bolder") || Is(word, "lighter")) {
            ReadFontWeight(word, context, read.fontWeight);
        } else if (!word.empty() && !IsDigit(word.front()) && ReadFontStretch(word, stretch)) {
            read.fontStretch = stretch;
        } else if (ReadFontSize(size, context, fontSize)) {
            read.fontSize = fontSize;
            lineHeightFollows =
                word.ends_with('/') || (size.size() == word.size() && scanner.TakeAfterSpace('/'));
            break;
        } else {
            return false;
        }
    }
    if (lineHeightFollows) {
        scanner.SkipSpace();
        while (!scanner.AtEnd() && !IsSpace(scanner.Peek())) scanner.Advance();
    }
    read.fontFamily = Trim(scanner.Rest());
    if (read.fontFamily.empty()) return false;
    style = read;
    return true;
}

const PropertyRow kRows[] = {
    {Name::kAlignmentBaseline, false, ORV_READ(ReadKeyword(kBaselines, t, s.alignmentBaseline)),
     Copy<&Style::alignmentBaseline>},
    {Name::kBaselineShift, false, ORV_READ(!t.empty() && (s.baselineShift = t, true)),
     Copy<&Style::baselineShift>},
    {Name::kDirection, true, ORV_READ(ReadDirection(t, s.isRightToLeft)), Copy<&Style::isRightToLeft>},
    {Name::kDominantBaseline, true, ORV_READ(ReadKeyword(kBaselines, t, s.dominantBaseline)),
     Copy<&Style::dominantBaseline>},
    {Name::kFont, true, ORV_READ(!c.isAttribute && ReadFont(t, c, s)),
     [](const Style& from, Style& to) {
         to.fontFamily = from.fontFamily;
         to.fontSize = from.fontSize;
         to.fontWeight = from.fontWeight;
         to.isItalic = from.isItalic;
         to.fontStretch = from.fontStretch;
         to.fontSizeAdjustment = from.fontSizeAdjustment;
         to.fontVariants = from.fontVariants;
         to.fontFeatureSettings = from.fontFeatureSettings;
         to.fontVariationSettings = from.fontVariationSettings;
         to.hasKerning = from.hasKerning;
     }},
    {Name::kFontFamily, true, ORV_READ(!t.empty() && (s.fontFamily = t, true)), Copy<&Style::fontFamily>},
    {Name::kFontKerning, true, ORV_READ(ReadKerning(t, c, s.hasKerning)), Copy<&Style::hasKerning>},
    {Name::kFontSize, true, ORV_READ(ReadFontSize(t, c, s.fontSize)), Copy<&Style::fontSize>},
    {Name::kFontSizeAdjust, true, ORV_READ(ReadFontSizeAdjustment(t, s.fontSizeAdjustment)),
     Copy<&Style::fontSizeAdjustment>},
    {Name::kFontStretch, true, ORV_READ(ReadFontStretch(t, s.fontStretch)), Copy<&Style::fontStretch>},
    {Name::kFontStyle, true, ORV_READ(ReadFontStyle(t, s.isItalic)), Copy<&Style::isItalic>},
    {Name::kFontFeatureSettings, true, ORV_READ(ReadSettings(t, s.fontFeatureSettings)),
     Copy<&Style::fontFeatureSettings>},
    {Name::kFontVariationSettings, true, ORV_READ(ReadSettings(t, s.fontVariationSettings)),
     Copy<&Style::fontVariationSettings>},
    {Name::kFontOpticalSizing, true,
     ORV_READ((Is(t, "auto") || Is(t, "none")) && (s.hasOpticalSizes = Is(t, "auto"), true)),
     Copy<&Style::hasOpticalSizes>},
    {Name::kFontVariant, true, ORV_READ(ReadFontVariants(t, kFontVariants, s.fontVariants)),
     CopyVariants<kFontVariants>},
    {Name::kFontVariantAlternates, true, ORV_READ(ReadFontVariants(t, kHistoricalForms, s.fontVariants)),
     CopyVariants<kHistoricalForms>},
    {Name::kFontVariantCaps, true, ORV_READ(ReadFontVariants(t, kCapsVariants, s.fontVariants)),
     CopyVariants<kCapsVariants>},
    {Name::kFontVariantEastAsian, true, ORV_READ(ReadFontVariants(t, kEastAsianVariants, s.fontVariants)),
     CopyVariants<kEastAsianVariants>},
    {Name::kFontVariantLigatures, true, ORV_READ(ReadFontVariants(t, kLigatureVariants, s.fontVariants)),
     CopyVariants<kLigatureVariants>},
    {Name::kFontVariantNumeric, true, ORV_READ(ReadFontVariants(t, kNumericVariants, s.fontVariants)),
     CopyVariants<kNumericVariants>},
    {Name::kFontVariantPosition, true, ORV_READ(ReadFontVariants(t, kPositionVariants, s.fontVariants)),
     CopyVariants<kPositionVariants>},
    {Name::kFontWeight, true, ORV_READ(ReadFontWeight(t, c, s.fontWeight)), Copy<&Style::fontWeight>},
    {Name::kGlyphOrientationVertical, true, ORV_READ(ReadGlyphOrientation(t, s.textOrientation)),
     Copy<&Style::textOrientation>},
    {Name::kKerning, true, ORV_READ(ReadKerning(t, c, s.hasKerning)), Copy<&Style::hasKerning>},
    {Name::kLetterSpacing, true, ORV_READ(ReadSpacing(t, c, s.letterSpacing)), Copy<&Style::letterSpacing>},
    {Name::kTextAnchor, true, ORV_READ(ReadAnchor(t, s.textAnchor)), Copy<&Style::textAnchor>},
    {Name::kTextDecoration, false, ORV_READ(DecorationReader(c).Read(t, s)),
     [](const Style& from, Style& to) {
         to.decorationLines = from.decorationLines;
         to.decorationStyle = from.decorationStyle;
         to.decorationThickness = from.decorationThickness;
     }},
    {Name::kTextDecorationLine, false, ORV_READ(ReadDecorationLines(t, s.decorationLines)),
     Copy<&Style::decorationLines>},
    {Name::kTextDecorationStyle, false, ORV_READ(ReadDecorationStyle(t, s.decorationStyle)),
     Copy<&Style::decorationStyle>},
    {Name::kTextDecorationThickness, false, ORV_READ(ReadDecorationThickness(t, c, s.decorationThickness)),
     Copy<&Style::decorationThickness>},
    {Name::kTextOrientation, true, ORV_READ(ReadTextOrientation(t, s.textOrientation)),
     Copy<&Style::textOrientation>},
    {Name::kTextTransform, true, ORV_READ(ReadTextTransform(t, s.textTransform)),
     Copy<&Style::textTransform>},
    {Name::kUnicodeBidi, false, ORV_READ(!t.empty() && (s.unicodeBidi = t, true)), Copy<&Style::unicodeBidi>},
    {Name::kWhiteSpace, true, ORV_READ(ReadWhiteSpace(t, s.whiteSpace)), Copy<&Style::whiteSpace>},
    {Name::kWordSpacing, true, ORV_READ(ReadSpacing(t, c, s.wordSpacing)), Copy<&Style::wordSpacing>},
    {Name::kWritingMode, true, ORV_READ(ReadWritingMode(t, s.writingMode)), Copy<&Style::writingMode>},
};

}  // namespace

bool ReadFontStyle(Text text, bool& isItalic) {
    if (Is(text, "normal"))
        isItalic = false;
    else if (Is(text, "italic") || Is(text.substr(0, 7), "oblique"))
        isItalic = true;
    else
        return false;
    return true;
}

bool ReadFontStretch(Text text, double& percent) {
    constexpr Keyword<double> kStretches[] = {
        {"normal", 100.0},         {"condensed", 75.0}, {"semi-condensed", 87.5}, {"extra-condensed", 62.5},
        {"ultra-condensed", 50.0}, {"expanded", 125.0}, {"semi-expanded", 112.5}, {"extra-expanded", 150.0},
        {"ultra-expanded", 200.0}, {"narrower", 75.0},  {"wider", 125.0}};
    if (ReadKeyword(kStretches, text, percent)) return true;
    Scanner scanner(text);
    double number = 0.0;
    if (!scanner.TakeNumber(number) || !scanner.Take('%') || !scanner.AtEnd() || number <= 0.0) return false;
    percent = number;
    return true;
}

std::span<const PropertyRow> TextProperties() { return kRows; }

}  // namespace svg2
