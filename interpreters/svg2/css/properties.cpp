// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/properties.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <utility>

#include "interpreters/svg2/css/selectors.h"
#include "interpreters/svg2/values/scanner.h"
#include "platform/system/ORVPrintLimits.h"

namespace svg2 {
namespace {

using Text = std::string_view;
using Context = PropertyContext;

template <class Value>
struct Keyword {
    Text text;
    Value value;
};

template <class Value, std::size_t kCount>
bool ReadKeyword(const Keyword<Value> (&rows)[kCount], Text text, Value& value) {
    for (const Keyword<Value>& row : rows) {
        if (!EqualsIgnoringCase(text, row.text)) continue;
        value = row.value;
        return true;
    }
    return false;
}

bool Is(Text text, Text lower) { return EqualsIgnoringCase(text, lower); }

// ---- readers of single values ----

bool ReadOpacity(Text text, double& opacity) {
    Scanner scanner(text);
    double value = 0.0;
    if (!scanner.TakeNumber(value)) return false;
    if (scanner.Take('%')) value /= 100.0;
    if (!scanner.AtEnd()) return false;
    opacity = std::clamp(value, 0.0, 1.0);
    return true;
}

bool ReadColourValue(Text text, ColourValue& value) {
    if (Is(text, "currentcolor")) {
        value = {{}, true};
        return true;
    }
    Colour colour;
    if (!ReadColour(text, colour)) return false;
    value = {colour, false};
    return true;
}

/// A paint that is no reference.
bool ReadPlainPaint(Text text, Paint::Kind& kind, Colour& colour) {
    if (Is(text, "none"))
        kind = Paint::Kind::kNone;
    else if (Is(text, "currentcolor"))
        kind = Paint::Kind::kCurrentColour;
    else if (Is(text, "context-fill"))
        kind = Paint::Kind::kContextFill;
    else if (Is(text, "context-stroke"))
        kind = Paint::Kind::kContextStroke;
    else if (ReadColour(text, colour))
        kind = Paint::Kind::kColour;
    else
        return false;
    return true;
}

bool ReadPaint(Text text, Paint& paint) {
    Paint read;
    Text rest;
    if (!TakeReference(text, read.reference, rest)) {
        if (!ReadPlainPaint(text, read.kind, read.colour)) return false;
    } else {
        read.kind = Paint::Kind::kReference;
        rest = Trim(rest);
        if (!rest.empty() && !ReadPlainPaint(rest, read.fallback, read.colour)) return false;
    }
    paint = read;
    return true;
}

bool ReadEvenOdd(Text text, bool& isEvenOdd) {
    constexpr Keyword<bool> kRules[] = {{"nonzero", false}, {"evenodd", true}};
    return ReadKeyword(kRules, text, isEvenOdd);
}

bool ReadDashes(Text text, const Context& context, std::shared_ptr<const std::vector<Length>>& dashes) {
    if (Is(text, "none")) {
        dashes.reset();
        return true;
    }
    auto read = std::make_shared<std::vector<Length>>();
    Scanner scanner(text);
    while (!scanner.AtEnd()) {
        Length length;
        if (read->size() >= ORVPrintLimits::Get(ORVPrintLimit::kDashes) ||
            !TakeLength(scanner, context.sizes, length))
            return false;
        read->push_back(length);
        scanner.SkipCommaSpace();
    }
    dashes = std::move(read);
    return true;
}

/// "none", or a reference to a marker; one that leads out of the document is none.
bool ReadMarker(Text text, Text& id) {
    Text rest;
    if (Is(text, "none")) {
        id = {};
        return true;
    }
    return TakeReference(text, id, rest) && Trim(rest).empty();
}

bool ReadPaintOrder(Text text, std::array<PaintPart, 3>& order) {
    constexpr Keyword<PaintPart> kParts[] = {
        {"fill", PaintPart::kFill}, {"stroke", PaintPart::kStroke}, {"markers", PaintPart::kMarkers}};
    std::array<PaintPart, 3> read{};
    std::size_t count = 0;
    bool isRead = true;
    const auto has = [&](PaintPart part) {
        return std::find(read.begin(), read.begin() + static_cast<std::ptrdiff_t>(count), part) !=
               read.begin() + static_cast<std::ptrdiff_t>(count);
    };
    if (!Is(text, "normal")) {
        ForEachWord(text, [&](Text word) {
            PaintPart part{};
            isRead = ReadKeyword(kParts, word, part) && !has(part);
            if (isRead) read[count++] = part;
            return isRead;
        });
        if (!isRead || count == 0) return false;
    }
    for (const auto& row : kParts)
        if (!has(row.value)) read[count++] = row.value;
    order = read;
    return true;
}

bool ReadFontSize(Text text, const Context& context, double& size) {
    constexpr Keyword<int> kSizes[] = {{"xx-small", -3}, {"x-small", -2}, {"small", -1},   {"medium", 0},
                                       {"large", 1},     {"x-large", 2},  {"xx-large", 3}, {"xxx-large", 4}};
    constexpr double kMedium = 12.0, kFactor = 1.2;
    const double parentSize = context.parent.fontSize;
    int step = 0;
    if (ReadKeyword(kSizes, text, step)) {
        size = kMedium * std::pow(kFactor, step);
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
        size = length.Resolve(parentSize);
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

bool ReadSmallCaps(Text text, bool& hasSmallCaps) {
    if (text.empty()) return false;
    hasSmallCaps = false;
    ForEachWord(text, [&](Text word) {
        hasSmallCaps = Is(word, "small-caps") || Is(word, "all-small-caps");
        return !hasSmallCaps;
    });
    return true;
}

/// "normal" or a length.
bool ReadSpacing(Text text, const Context& context, Length& spacing) {
    if (Is(text, "normal")) {
        spacing = {};
        return true;
    }
    return ReadLength(text, context.sizes, spacing);
}

bool ReadDecoration(Text text, std::uint8_t& lines) {
    constexpr Keyword<std::uint8_t> kLines[] = {
        {"none", 0}, {"underline", kUnderline}, {"overline", kOverline}, {"line-through", kLineThrough}};
    std::uint8_t read = 0;
    bool hasLine = false;
    // Colours and kinds of line may stand beside the lines; those of text are drawn plainly.
    ForEachWord(text, [&](Text word) {
        std::uint8_t line = 0;
        if (ReadKeyword(kLines, word, line)) {
            hasLine = true;
            read |= line;
        }
        return true;
    });
    if (hasLine) lines = read;
    return hasLine;
}

constexpr Keyword<Baseline> kBaselines[] = {
    {"auto", Baseline::kAuto},
    {"baseline", Baseline::kAuto},
    {"alphabetic", Baseline::kAlphabetic},
    {"hanging", Baseline::kHanging},
    {"mathematical", Baseline::kMathematical},
    {"middle", Baseline::kMiddle},
    {"central", Baseline::kCentral},
    {"center", Baseline::kCentral},
    {"text-before-edge", Baseline::kTextBeforeEdge},
    {"before-edge", Baseline::kTextBeforeEdge},
    {"text-top", Baseline::kTextBeforeEdge},
    {"top", Baseline::kTextBeforeEdge},
    {"text-after-edge", Baseline::kTextAfterEdge},
    {"after-edge", Baseline::kTextAfterEdge},
    {"text-bottom", Baseline::kTextAfterEdge},
    {"bottom", Baseline::kTextAfterEdge},
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

bool ReadBlendMode(Text text, ORVPrintBlendMode& mode) {
    using Mode = ORVPrintBlendMode;
    constexpr Keyword<Mode> kModes[] = {{"normal", Mode::kNormal},
                                        {"multiply", Mode::kMultiply},
                                        {"screen", Mode::kScreen},
                                        {"overlay", Mode::kOverlay},
                                        {"darken", Mode::kDarken},
                                        {"lighten", Mode::kLighten},
                                        {"color-dodge", Mode::kColourDodge},
                                        {"color-burn", Mode::kColourBurn},
                                        {"hard-light", Mode::kHardLight},
                                        {"soft-light", Mode::kSoftLight},
                                        {"difference", Mode::kDifference},
                                        {"exclusion", Mode::kExclusion},
                                        {"hue", Mode::kHue},
                                        {"saturation", Mode::kSaturation},
                                        {"color", Mode::kColour},
                                        {"luminosity", Mode::kLuminosity}};
    return ReadKeyword(kModes, text, mode);
}

bool ReadColourProperty(Text text, const Context& context, Colour& colour) {
    if (Is(text, "currentcolor")) {
        colour = context.parent.colour;
        return true;
    }
    return ReadColour(text, colour);
}

bool ReadNonNegative(Text text, const Context& context, Length& length) {
    Length read;
    if (!ReadLength(text, context.sizes, read) || read.px < 0.0 || read.percent < 0.0) return false;
    length = read;
    return true;
}

bool ReadCap(Text text, ORVPrintStroke::Cap& cap) {
    using Cap = ORVPrintStroke::Cap;
    constexpr Keyword<Cap> kCaps[] = {{"butt", Cap::kButt}, {"round", Cap::kRound}, {"square", Cap::kSquare}};
    return ReadKeyword(kCaps, text, cap);
}

bool ReadJoin(Text text, ORVPrintStroke::Join& join) {
    using Join = ORVPrintStroke::Join;
    constexpr Keyword<Join> kJoins[] = {{"miter", Join::kMiter},
                                        {"miter-clip", Join::kMiterClip},
                                        {"arcs", Join::kMiter},
                                        {"round", Join::kRound},
                                        {"bevel", Join::kBevel}};
    return ReadKeyword(kJoins, text, join);
}

bool ReadMiterLimit(Text text, double& limit) {
    double number = 0.0;
    if (!ReadNumber(text, number) || number < 1.0) return false;
    limit = number;
    return true;
}

bool ReadVisibility(Text text, Visibility& visibility) {
    constexpr Keyword<Visibility> kValues[] = {{"visible", Visibility::kVisible},
                                               {"hidden", Visibility::kHidden},
                                               {"collapse", Visibility::kHidden}};
    return ReadKeyword(kValues, text, visibility);
}

bool ReadCrispEdges(Text text, bool& isCrisp) {
    constexpr Keyword<bool> kValues[] = {
        {"auto", false}, {"geometricprecision", false}, {"crispedges", true}, {"optimizespeed", true}};
    return ReadKeyword(kValues, text, isCrisp);
}

bool ReadImageRendering(Text text, ImageRendering& rendering) {
    constexpr Keyword<ImageRendering> kValues[] = {
        {"auto", ImageRendering::kSmooth},           {"smooth", ImageRendering::kSmooth},
        {"high-quality", ImageRendering::kSmooth},   {"optimizequality", ImageRendering::kSmooth},
        {"optimizespeed", ImageRendering::kNearest}, {"pixelated", ImageRendering::kNearest},
        {"crisp-edges", ImageRendering::kNearest}};
    return ReadKeyword(kValues, text, rendering);
}

bool ReadInterpolation(Text text, bool& isLinear, bool byDefault) {
    const Keyword<bool> values[] = {{"srgb", false}, {"linearrgb", true}, {"auto", byDefault}};
    return ReadKeyword(values, text, isLinear);
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

/// Any text, "none" being the same as no value.
bool ReadRaw(Text text, Text& raw) {
    if (text.empty()) return false;
    raw = Is(text, "none") ? Text() : text;
    return true;
}

/// A reference, a list of functions, or none of them.
bool ReadFilterText(Text text, Text& raw) {
    return (Is(text, "none") || text.find('(') != Text::npos) && ReadRaw(text, raw);
}

bool ReadClipText(Text text, Text& raw) {
    const bool isBox = text.ends_with("-box");
    return (isBox || Is(text, "none") || text.find('(') != Text::npos) && ReadRaw(text, raw);
}

bool ReadDisplay(Text text, bool& isDisplayed) {
    if (text.empty()) return false;
    isDisplayed = !Is(text, "none");
    return true;
}

bool ReadOverflow(Text text, Style& style) {
    constexpr Keyword<bool> kValues[] = {
        {"visible", false}, {"auto", false}, {"hidden", true}, {"scroll", true}, {"clip", true}};
    Text first = text.substr(0, text.find(' '));
    if (!ReadKeyword(kValues, first, style.hidesOverflow)) return false;
    style.overflowIsStated = true;
    return true;
}

/// "[style] [variant] [weight] [stretch] size[/line height] family".
bool ReadFont(Text text, const Context& context, Style& style) {
    Style read = style;
    const Style initial;
    read.isItalic = initial.isItalic;
    read.fontWeight = initial.fontWeight;
    read.fontStretch = initial.fontStretch;
    read.hasSmallCaps = initial.hasSmallCaps;
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
            read.hasSmallCaps = true;
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

// ---- the table ----

struct PropertyRow {
    Name name;
    bool isInherited;
    bool (*read)(Text text, const Context& context, Style& style);
    void (*copy)(const Style& from, Style& to);
};

template <auto kMember>
void Copy(const Style& from, Style& to) {
    to.*kMember = from.*kMember;
}

#define ORV_READ(expression) \
    [](Text t, [[maybe_unused]] const Context& c, Style& s) -> bool { return expression; }

const PropertyRow kRows[] = {
    {Name::kAlignmentBaseline, false, ORV_READ(ReadKeyword(kBaselines, t, s.alignmentBaseline)),
     Copy<&Style::alignmentBaseline>},
    {Name::kBackgroundColor, false, ORV_READ(ReadColourValue(t, s.backgroundColour)),
     Copy<&Style::backgroundColour>},
    {Name::kBaselineShift, false, ORV_READ(!t.empty() && (s.baselineShift = t, true)),
     Copy<&Style::baselineShift>},
    {Name::kClipPath, false, ORV_READ(ReadClipText(t, s.clipPath)), Copy<&Style::clipPath>},
    {Name::kClipRule, true, ORV_READ(ReadEvenOdd(t, s.clipIsEvenOdd)), Copy<&Style::clipIsEvenOdd>},
    {Name::kColor, true, ORV_READ(ReadColourProperty(t, c, s.colour)), Copy<&Style::colour>},
    {Name::kColorInterpolation, true, ORV_READ(ReadInterpolation(t, s.interpolatesLinear, false)),
     Copy<&Style::interpolatesLinear>},
    {Name::kColorInterpolationFilters, true,
     ORV_READ(ReadInterpolation(t, s.filtersInterpolateLinear, true)),
     Copy<&Style::filtersInterpolateLinear>},
    {Name::kDirection, true, ORV_READ(ReadDirection(t, s.isRightToLeft)), Copy<&Style::isRightToLeft>},
    {Name::kDisplay, false, ORV_READ(ReadDisplay(t, s.isDisplayed)), Copy<&Style::isDisplayed>},
    {Name::kDominantBaseline, true, ORV_READ(ReadKeyword(kBaselines, t, s.dominantBaseline)),
     Copy<&Style::dominantBaseline>},
    {Name::kFill, true, ORV_READ(ReadPaint(t, s.fill)), Copy<&Style::fill>},
    {Name::kFillOpacity, true, ORV_READ(ReadOpacity(t, s.fillOpacity)), Copy<&Style::fillOpacity>},
    {Name::kFillRule, true, ORV_READ(ReadEvenOdd(t, s.fillIsEvenOdd)), Copy<&Style::fillIsEvenOdd>},
    {Name::kFilter, false, ORV_READ(ReadFilterText(t, s.filter)), Copy<&Style::filter>},
    {Name::kFloodColor, false, ORV_READ(ReadColourValue(t, s.floodColour)), Copy<&Style::floodColour>},
    {Name::kFloodOpacity, false, ORV_READ(ReadOpacity(t, s.floodOpacity)), Copy<&Style::floodOpacity>},
    {Name::kFont, true, ORV_READ(!c.isAttribute && ReadFont(t, c, s)),
     [](const Style& from, Style& to) {
         to.fontFamily = from.fontFamily;
         to.fontSize = from.fontSize;
         to.fontWeight = from.fontWeight;
         to.isItalic = from.isItalic;
         to.fontStretch = from.fontStretch;
         to.hasSmallCaps = from.hasSmallCaps;
     }},
    {Name::kFontFamily, true, ORV_READ(!t.empty() && (s.fontFamily = t, true)), Copy<&Style::fontFamily>},
    {Name::kFontKerning, true, ORV_READ(ReadKerning(t, c, s.hasKerning)), Copy<&Style::hasKerning>},
    {Name::kFontSize, true, ORV_READ(ReadFontSize(t, c, s.fontSize)), Copy<&Style::fontSize>},
    {Name::kFontStretch, true, ORV_READ(ReadFontStretch(t, s.fontStretch)), Copy<&Style::fontStretch>},
    {Name::kFontStyle, true, ORV_READ(ReadFontStyle(t, s.isItalic)), Copy<&Style::isItalic>},
    {Name::kFontVariant, true, ORV_READ(ReadSmallCaps(t, s.hasSmallCaps)), Copy<&Style::hasSmallCaps>},
    {Name::kFontVariantCaps, true, ORV_READ(ReadSmallCaps(t, s.hasSmallCaps)), Copy<&Style::hasSmallCaps>},
    {Name::kFontWeight, true, ORV_READ(ReadFontWeight(t, c, s.fontWeight)), Copy<&Style::fontWeight>},
    {Name::kImageRendering, true, ORV_READ(ReadImageRendering(t, s.imageRendering)),
     Copy<&Style::imageRendering>},
    {Name::kIsolation, false, ORV_READ((Is(t, "auto") || Is(t, "isolate")) && (s.isIsolated = Is(t, "isolate"), true)),
     Copy<&Style::isIsolated>},
    {Name::kKerning, true, ORV_READ(ReadKerning(t, c, s.hasKerning)), Copy<&Style::hasKerning>},
    {Name::kLetterSpacing, true, ORV_READ(ReadSpacing(t, c, s.letterSpacing)), Copy<&Style::letterSpacing>},
    {Name::kLightingColor, false, ORV_READ(ReadColourValue(t, s.lightingColour)),
     Copy<&Style::lightingColour>},
    {Name::kMarkerEnd, true, ORV_READ(ReadMarker(t, s.markerEnd)), Copy<&Style::markerEnd>},
    {Name::kMarkerMid, true, ORV_READ(ReadMarker(t, s.markerMid)), Copy<&Style::markerMid>},
    {Name::kMarkerStart, true, ORV_READ(ReadMarker(t, s.markerStart)), Copy<&Style::markerStart>},
    {Name::kMarker, true,
     ORV_READ(!c.isAttribute && ReadMarker(t, s.markerStart) && (s.markerMid = s.markerEnd = s.markerStart, true)),
     [](const Style& from, Style& to) {
         to.markerStart = from.markerStart;
         to.markerMid = from.markerMid;
         to.markerEnd = from.markerEnd;
     }},
    {Name::kMask, false, ORV_READ(ReadFilterText(t, s.mask)), Copy<&Style::mask>},
    {Name::kMaskType, false,
     ORV_READ((Is(t, "alpha") || Is(t, "luminance")) && (s.isOpacityMask = Is(t, "alpha"), true)),
     Copy<&Style::isOpacityMask>},
    {Name::kMixBlendMode, false, ORV_READ(ReadBlendMode(t, s.blend)), Copy<&Style::blend>},
    {Name::kOpacity, false, ORV_READ(ReadOpacity(t, s.opacity)), Copy<&Style::opacity>},
    {Name::kOverflow, false, ORV_READ(ReadOverflow(t, s)),
     [](const Style& from, Style& to) {
         to.hidesOverflow = from.hidesOverflow;
         to.overflowIsStated = from.overflowIsStated;
     }},
    {Name::kPaintOrder, true, ORV_READ(ReadPaintOrder(t, s.paintOrder)), Copy<&Style::paintOrder>},
    {Name::kShapeRendering, true, ORV_READ(ReadCrispEdges(t, s.hasCrispEdges)), Copy<&Style::hasCrispEdges>},
    {Name::kStopColor, false, ORV_READ(ReadColourValue(t, s.stopColour)), Copy<&Style::stopColour>},
    {Name::kStopOpacity, false, ORV_READ(ReadOpacity(t, s.stopOpacity)), Copy<&Style::stopOpacity>},
    {Name::kStroke, true, ORV_READ(ReadPaint(t, s.stroke)), Copy<&Style::stroke>},
    {Name::kStrokeDasharray, true, ORV_READ(ReadDashes(t, c, s.dashes)), Copy<&Style::dashes>},
    {Name::kStrokeDashoffset, true, ORV_READ(ReadLength(t, c.sizes, s.dashOffset)),
     Copy<&Style::dashOffset>},
    {Name::kStrokeLinecap, true, ORV_READ(ReadCap(t, s.cap)), Copy<&Style::cap>},
    {Name::kStrokeLinejoin, true, ORV_READ(ReadJoin(t, s.join)), Copy<&Style::join>},
    {Name::kStrokeMiterlimit, true, ORV_READ(ReadMiterLimit(t, s.miterLimit)), Copy<&Style::miterLimit>},
    {Name::kStrokeOpacity, true, ORV_READ(ReadOpacity(t, s.strokeOpacity)), Copy<&Style::strokeOpacity>},
    {Name::kStrokeWidth, true, ORV_READ(ReadNonNegative(t, c, s.strokeWidth)), Copy<&Style::strokeWidth>},
    {Name::kTextAnchor, true, ORV_READ(ReadAnchor(t, s.textAnchor)), Copy<&Style::textAnchor>},
    {Name::kTextDecoration, false, ORV_READ(ReadDecoration(t, s.decorationLines)),
     Copy<&Style::decorationLines>},
    {Name::kTextDecorationLine, false, ORV_READ(ReadDecoration(t, s.decorationLines)),
     Copy<&Style::decorationLines>},
    {Name::kTransformBox, false, ORV_READ(!t.empty() && (s.transformBox = t, true)),
     Copy<&Style::transformBox>},
    {Name::kTransformOrigin, false, ORV_READ(!t.empty() && (s.transformOrigin = t, true)),
     Copy<&Style::transformOrigin>},
    {Name::kUnicodeBidi, false, ORV_READ(!t.empty() && (s.unicodeBidi = t, true)), Copy<&Style::unicodeBidi>},
    {Name::kVectorEffect, false,
     ORV_READ(!t.empty() && (s.hasNonScalingStroke = Is(t, "non-scaling-stroke"), true)),
     Copy<&Style::hasNonScalingStroke>},
    {Name::kVisibility, true, ORV_READ(ReadVisibility(t, s.visibility)), Copy<&Style::visibility>},
    {Name::kWhiteSpace, true, ORV_READ(ReadWhiteSpace(t, s.whiteSpace)), Copy<&Style::whiteSpace>},
    {Name::kWordSpacing, true, ORV_READ(ReadSpacing(t, c, s.wordSpacing)), Copy<&Style::wordSpacing>},
    {Name::kWritingMode, true, ORV_READ(ReadWritingMode(t, s.writingMode)), Copy<&Style::writingMode>},
};

#undef ORV_READ

constexpr std::size_t kPropertyCount = static_cast<std::size_t>(kLastProperty) + 1;

/// Rows by the numbers of their names; null for properties that are read elsewhere, or not at all.
const PropertyRow* RowOf(Name name) {
    static const auto kByName = [] {
        std::array<const PropertyRow*, kPropertyCount> rows{};
        for (const PropertyRow& row : kRows) rows[static_cast<std::size_t>(row.name)] = &row;
        return rows;
    }();
    return IsProperty(name) ? kByName[static_cast<std::size_t>(name)] : nullptr;
}

/// Sets a property by one of the words that each of them takes. @return false when it is none of these
bool SetByGeneralKeyword(const PropertyRow& row, Text value, const Context& context, Style& style) {
    static const Style kInitial;
    if (Is(value, "inherit"))
        row.copy(context.parent, style);
    else if (Is(value, "initial"))
        row.copy(kInitial, style);
    else if (Is(value, "unset") || Is(value, "revert") || Is(value, "revert-layer"))
        row.copy(row.isInherited ? context.parent : kInitial, style);
    else
        return false;
    return true;
}

bool MayBeGeneralKeyword(Text value) {
    const char first = value.empty() ? '\0' : ToLower(value.front());
    return first == 'i' || first == 'u' || first == 'r';
}

}  // namespace

bool SetProperty(Name name, Text value, const Context& context, Style& style) {
    const PropertyRow* row = RowOf(name);
    if (!row) return false;
    value = Trim(value);
    if (MayBeGeneralKeyword(value) && SetByGeneralKeyword(*row, value, context, style)) return true;
    return row->read(value, context, style);
}

void CopyProperty(Name name, const Style& from, Style& to) {
    if (const PropertyRow* row = RowOf(name)) row->copy(from, to);
}

bool IsInherited(Name name) {
    const PropertyRow* row = RowOf(name);
    return row && row->isInherited;
}

bool DecidesFontSize(Name name) { return name == Name::kFont || name == Name::kFontSize; }

bool TakeReference(Text text, Text& id, Text& rest) {
    if (!EqualsIgnoringCase(text.substr(0, 4), "url(")) return false;
    Scanner scanner(text);
    scanner.Advance(3);
    Text inside;
    if (!scanner.TakeParentheses(inside)) return false;
    inside = Trim(inside);
    Scanner quoted(inside);
    Text unquoted;
    if (quoted.TakeString(unquoted)) inside = Trim(unquoted);
    id = inside.starts_with('#') ? inside.substr(1) : Text();
    rest = scanner.Rest();
    return true;
}

}  // namespace svg2
