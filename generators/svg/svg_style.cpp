// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_style.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <numeric>

#include "generators/common/number_text.h"
#include "generators/svg/xml_text.h"
#include "platform/visualization/fonts/ORVFontFace.h"

namespace {

constexpr int kLengthDigits = 6;
constexpr double kWidest = 1e6, kThinnest = 1e-6;
// Dashes of a shorter period (user units) look like a solid line.
constexpr double kShortestDashPeriod = 0.02;

void AppendColour(std::string& text, const ORVPrintColour& colour) {
    constexpr char kDigits[] = "0123456789abcdef";
    const std::array<std::uint8_t, 3> channels{colour.red, colour.green, colour.blue};
    // #1a2 is short for #11aa22.
    const bool isShort =
        std::all_of(channels.begin(), channels.end(), [](std::uint8_t value) { return value % 17 == 0; });
    text += '#';
    for (const std::uint8_t value : channels) {
        if (!isShort) text += kDigits[value >> 4U];
        text += kDigits[value & 15U];
    }
}

void AppendOpacity(std::string& text, std::string_view name, int opacity) {
    if (opacity == 255) return;
    text += name;
    // Four decimal places preserve each of the 256 values.
    AppendDecimal(text, opacity / 255.0, 4);
    text += '"';
}

/// Appends a family name in the syntax of a font family list.
void AppendFamily(std::string& text, std::string_view family) {
    const auto isLetter = [](char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0; };
    bool isPlain = !family.empty() && isLetter(family.front());
    for (std::size_t i = 1; isPlain && i < family.size(); ++i)
        // Identifiers begin with a letter.
        isPlain = isLetter(family[i]) ||
                  (family[i - 1] != ' ' && (family[i] == ' ' || family[i] == '-' ||
                                            std::isdigit(static_cast<unsigned char>(family[i])) != 0));
    if (!isPlain) text += '\'';
    std::string name(family);
    std::erase_if(name, [](char c) { return c == '\'' || c == '\\'; });
    AppendXmlText(text, name);
    if (!isPlain) text += '\'';
}

/// The generic family to use if the family is not installed.
std::string_view GenericFamily(std::string family) {
    std::transform(family.begin(), family.end(), family.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    struct Row {
        std::string_view part, generic;
    };
    // The first match wins: "sans mono" is monospace, "sans serif" not serif.
    constexpr std::array kRows{
        Row{"mono", "monospace"},  Row{"courier", "monospace"}, Row{"typewriter", "monospace"},
        Row{"sans", "sans-serif"}, Row{"serif", "serif"},       Row{"roman", "serif"},
        Row{"times", "serif"},     Row{"georgia", "serif"},     Row{"garamond", "serif"},
    };
    for (const Row& row : kRows)
        if (family.find(row.part) != family.npos) return row.generic;
    return "sans-serif";
}

}  // namespace

void AppendSvgFill(std::string& text, const ORVPrintFill* fill, std::string_view pattern, bool plainly) {
    if (!fill) {
        text += " fill=\"none\"";
        return;
    }
    const ORVPrintColour& colour = fill->colour;
    const bool isBlack = colour.red == 0 && colour.green == 0 && colour.blue == 0;
    if (!pattern.empty()) {
        text += " fill=\"url(#";
        text += pattern;
        text += ")\"";
    } else if (plainly || !isBlack) {
        text += " fill=\"";
        AppendColour(text, colour);
        text += '"';
    }
    // Gradient stops have their own opacities.
    if (pattern.empty() || !fill->gradient) AppendOpacity(text, " fill-opacity=\"", colour.opacity);
    if (fill->evenOdd) text += " fill-rule=\"evenodd\"";
}

void AppendSvgStopColour(std::string& text, const ORVPrintColour& colour) {
    text += " stop-color=\"";
    AppendColour(text, colour);
    text += '"';
    AppendOpacity(text, " stop-opacity=\"", colour.opacity);
}

void AppendSvgStroke(std::string& text, const ORVPrintStroke& stroke, double scale,
                     std::string_view gradient) {
    text += " stroke=\"";
    if (gradient.empty())
        AppendColour(text, stroke.colour);
    else
        text.append("url(#").append(gradient).append(")");
    text += '"';
    const double width = std::clamp(stroke.width * scale, kThinnest, kWidest);
    if (width != 1.0) {
        text += " stroke-width=\"";
        AppendSignificant(text, width, kLengthDigits);
        text += '"';
    }
    switch (stroke.cap) {
        case ORVPrintStroke::Cap::kRound: text += " stroke-linecap=\"round\""; break;
        case ORVPrintStroke::Cap::kSquare: text += " stroke-linecap=\"square\""; break;
        case ORVPrintStroke::Cap::kButt: break;
    }
    switch (stroke.join) {
        case ORVPrintStroke::Join::kRound: text += " stroke-linejoin=\"round\""; break;
        case ORVPrintStroke::Join::kBevel: text += " stroke-linejoin=\"bevel\""; break;
        case ORVPrintStroke::Join::kMiterClip: text += " stroke-linejoin=\"miter-clip\""; [[fallthrough]];
        case ORVPrintStroke::Join::kMiter:
            if (stroke.miterLimit == 4.0) break;
            text += " stroke-miterlimit=\"";
            AppendSignificant(text, std::clamp(stroke.miterLimit, 1.0, kWidest), kLengthDigits);
            text += '"';
            break;
    }
    const double period = std::accumulate(stroke.dashes.begin(), stroke.dashes.end(), 0.0) * scale;
    if (period > kShortestDashPeriod) {
        text += " stroke-dasharray=\"";
        for (const double dash : stroke.dashes) {
            if (text.back() != '"') text += ',';
            AppendSignificant(text, std::clamp(dash * scale, 0.0, kWidest), kLengthDigits);
        }
        text += '"';
        if (stroke.dashOffset != 0.0) {
            text += " stroke-dashoffset=\"";
            AppendSignificant(text, std::clamp(stroke.dashOffset * scale, 0.0, kWidest), kLengthDigits);
            text += '"';
        }
    }
    if (gradient.empty()) AppendOpacity(text, " stroke-opacity=\"", stroke.colour.opacity);
}

namespace {

/// Appends variations such as "wght=650,wdth=75" as CSS.
void AppendVariations(std::string& text, std::string_view variations) {
    text += " style=\"font-variation-settings:'";
    for (const char c : variations) {
        if (c == '=')
            text += "' ";
        else if (c == ',')
            text += ",'";
        else
            text += c;
    }
    text += '"';
}

/// Appends the font for an embedded face. Its family has only that face: nothing may be selected or
/// synthesised beyond what the page shows.
void AppendBroughtFont(std::string& text, const ORVFontFace& face, std::string_view family, double size,
                       bool bold) {
    text.append(" font-family=\"").append(family).append("\" font-size=\"");
    AppendSignificant(text, size, kLengthDigits);
    text += '"';
    if (bold) text += " font-weight=\"bold\"";
    if (!face.GetVariations().empty()) AppendVariations(text, face.GetVariations());
}

}  // namespace

void AppendSvgFont(std::string& text, const ORVFontFace& face, std::string_view brought, double size,
                   bool bold) {
    if (!brought.empty()) {
        AppendBroughtFont(text, face, brought, size, bold);
        return;
    }
    text += " font-family=\"";
    if (face.IsItalic() && !face.GetPostScriptName().empty()) {
        // For readers that find a face by its PostScript name; for others, the family name follows.
        AppendFamily(text, face.GetPostScriptName());
        text += ',';
    }
    AppendFamily(text, face.GetFamily());
    text += ',';
    text += GenericFamily(face.GetFamily());
    text += "\" font-size=\"";
    AppendSignificant(text, size, kLengthDigits);
    text += '"';
    if (face.IsItalic()) text += " font-style=\"italic\"";
    const int weight = bold ? 700 : std::clamp((face.GetWeight() + 50) / 100 * 100, 100, 900);
    if (weight == 700)
        text += " font-weight=\"bold\"";
    else if (weight != 400)
        text += " font-weight=\"" + std::to_string(weight) + "\"";
}

std::string_view NameOfSvgBlendMode(ORVPrintBlendMode blend) {
    switch (blend) {
        case ORVPrintBlendMode::kNormal: break;
        case ORVPrintBlendMode::kMultiply: return "multiply";
        case ORVPrintBlendMode::kScreen: return "screen";
        case ORVPrintBlendMode::kOverlay: return "overlay";
        case ORVPrintBlendMode::kDarken: return "darken";
        case ORVPrintBlendMode::kLighten: return "lighten";
        case ORVPrintBlendMode::kColourDodge: return "color-dodge";
        case ORVPrintBlendMode::kColourBurn: return "color-burn";
        case ORVPrintBlendMode::kHardLight: return "hard-light";
        case ORVPrintBlendMode::kSoftLight: return "soft-light";
        case ORVPrintBlendMode::kDifference: return "difference";
        case ORVPrintBlendMode::kExclusion: return "exclusion";
        case ORVPrintBlendMode::kHue: return "hue";
        case ORVPrintBlendMode::kSaturation: return "saturation";
        case ORVPrintBlendMode::kColour: return "color";
        case ORVPrintBlendMode::kLuminosity: return "luminosity";
    }
    return "normal";
}
