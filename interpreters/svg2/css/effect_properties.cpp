// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <iterator>
#include <vector>

#include "interpreters/svg2/css/property_rows.h"
#include "interpreters/svg2/values/filter_list.h"

namespace svg2 {
namespace {

using Text = std::string_view;

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

bool ReadVisibility(Text text, Visibility& visibility) {
    constexpr Keyword<Visibility> kValues[] = {{"visible", Visibility::kVisible},
                                               {"hidden", Visibility::kHidden},
                                               {"collapse", Visibility::kHidden}};
    return ReadKeyword(kValues, text, visibility);
}

/// Any text; "none" is the same as no value.
bool ReadRaw(Text text, Text& raw) {
    if (text.empty()) return false;
    raw = Is(text, "none") ? Text() : text;
    return true;
}

/// Further components of a mask value, such as position and mode, which are ignored.
bool IsMaskWord(Text word) {
    constexpr Text kWords[] = {
        "repeat",     "repeat-x",    "repeat-y",    "no-repeat", "space",        "round",    "left",
        "right",      "top",         "bottom",      "center",    "auto",         "cover",    "contain",
        "border-box", "padding-box", "content-box", "fill-box",  "stroke-box",   "view-box", "no-clip",
        "add",        "subtract",    "intersect",   "exclude",   "match-source", "alpha",    "luminance"};
    const bool isNumber = word.find_first_of("0123456789/+-.") == 0;
    return isNumber || std::any_of(std::begin(kWords), std::end(kWords),
                                   [&](Text known) { return EqualsIgnoringCase(word, known); });
}

/// A list of masks, of which only the first is used, or none.
bool ReadMaskText(Text text, Text& raw) {
    Text id, rest;
    if (TakeReference(text, id, rest)) {
        for (rest = Trim(rest); !rest.empty() && rest.front() != ',';) {
            const Text word = rest.substr(0, rest.find_first_of(" \t\r\n,"));
            if (!IsMaskWord(word)) return false;
            rest = Trim(rest.substr(word.size()));
        }
    }
    return (Is(text, "none") || text.find('(') != Text::npos) && ReadRaw(text, raw);
}

/// A list of filter references and functions, or none.
bool ReadFilterText(Text text, const PropertyContext& context, Text& raw) {
    std::vector<FilterFunction> list;
    return ReadFilterList(text, context.sizes, list) && ReadRaw(text, raw);
}

/// A reference, a basic shape, a box, or none.
bool ReadClipText(Text text, Text& raw) {
    Text id, rest;
    if (TakeReference(text, id, rest)) return Trim(rest).empty() && ReadRaw(text, raw);
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

const PropertyRow kRows[] = {
    {Name::kClipPath, false, ORV_READ(ReadClipText(t, s.clipPath)), Copy<&Style::clipPath>},
    {Name::kClipRule, true, ORV_READ(ReadEvenOdd(t, s.clipIsEvenOdd)), Copy<&Style::clipIsEvenOdd>},
    {Name::kColorInterpolationFilters, true, ORV_READ(ReadInterpolation(t, s.filtersInterpolateLinear, true)),
     Copy<&Style::filtersInterpolateLinear>},
    {Name::kDisplay, false, ORV_READ(ReadDisplay(t, s.isDisplayed)), Copy<&Style::isDisplayed>},
    {Name::kFilter, false, ORV_READ(ReadFilterText(t, c, s.filter)), Copy<&Style::filter>},
    {Name::kFloodColor, false, ORV_READ(ReadColourValue(t, s.floodColour)), Copy<&Style::floodColour>},
    {Name::kFloodOpacity, false, ORV_READ(ReadOpacity(t, s.floodOpacity)), Copy<&Style::floodOpacity>},
    {Name::kIsolation, false,
     ORV_READ((Is(t, "auto") || Is(t, "isolate")) && (s.isIsolated = Is(t, "isolate"), true)),
     Copy<&Style::isIsolated>},
    {Name::kLightingColor, false, ORV_READ(ReadColourValue(t, s.lightingColour)),
     Copy<&Style::lightingColour>},
    {Name::kMask, false, ORV_READ(ReadMaskText(t, s.mask)), Copy<&Style::mask>},
    {Name::kMaskType, false,
     ORV_READ((Is(t, "alpha") || Is(t, "luminance")) && (s.isOpacityMask = Is(t, "alpha"), true)),
     Copy<&Style::isOpacityMask>},
    {Name::kMixBlendMode, false, ORV_READ(ReadBlendMode(t, s.blend)), Copy<&Style::blend>},
    {Name::kOpacity, false, ORV_READ(ReadOpacity(t, s.opacity)), Copy<&Style::opacity>},
    {Name::kOverflow, false, ORV_READ(ReadOverflow(t, s)),
     [](const Style& from, Style& to) {
         // The initial value is visible; that viewports clip by default is not inherited as a value.
         to.hidesOverflow = from.overflowIsStated && from.hidesOverflow;
         to.overflowIsStated = true;
     }},
    {Name::kTransformBox, false, ORV_READ(!t.empty() && (s.transformBox = t, true)),
     Copy<&Style::transformBox>},
    {Name::kTransformOrigin, false, ORV_READ(!t.empty() && (s.transformOrigin = t, true)),
     Copy<&Style::transformOrigin>},
    {Name::kVisibility, true, ORV_READ(ReadVisibility(t, s.visibility)), Copy<&Style::visibility>},
};

}  // namespace

std::span<const PropertyRow> EffectProperties() { return kRows; }

}  // namespace svg2
