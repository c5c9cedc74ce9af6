// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_gradient.h"

#include <algorithm>
#include <vector>

#include "generators/common/gradient_measures.h"
#include "generators/common/number_text.h"
#include "generators/svg/svg_style.h"
#include "generators/svg/svg_writer.h"

namespace {

constexpr int kLengthDigits = 9, kOffsetPlaces = 6;

void AppendLength(std::string& text, std::string_view name, double value) {
    text += ' ';
    text += name;
    text += "=\"";
    AppendSignificant(text, value, kLengthDigits);
    text += '"';
}

void AppendStops(std::string& text, std::span<const ORVPrintGradientStop> stops) {
    for (const ORVPrintGradientStop& stop : stops) {
        text += "<stop offset=\"";
        AppendDecimal(text, stop.offset, kOffsetPlaces);
        text += '"';
        AppendSvgStopColour(text, stop.colour);
        text += "/>";
    }
}

/// The same gradient with its ends exchanged.
ORVPrintGradient Reversed(const ORVPrintGradient& gradient, std::vector<ORVPrintGradientStop>& stops) {
    stops.assign(gradient.stops.rbegin(), gradient.stops.rend());
    for (ORVPrintGradientStop& stop : stops) stop.offset = 1.0 - stop.offset;
    ORVPrintGradient reversed = gradient;
    std::swap(reversed.start, reversed.end);
    std::swap(reversed.startRadius, reversed.endRadius);
    reversed.stops = stops;
    return reversed;
}

void AppendSpread(std::string& text, ORVPrintGradient::Spread spread) {
    switch (spread) {
        case ORVPrintGradient::Spread::kPad: text += " spreadMethod=\"pad\""; break;
        case ORVPrintGradient::Spread::kReflect: text += " spreadMethod=\"reflect\""; break;
        case ORVPrintGradient::Spread::kRepeat: text += " spreadMethod=\"repeat\""; break;
    }
}

}  // namespace

SvgGradientText WriteSvgGradient(const ORVPrintGradient& given, const ORVMathAffine2D& toElement) {
    SvgGradientText text;
    const bool isLinear = given.kind == ORVPrintGradient::Kind::kLinear;
    text.element = isLinear ? "linearGradient" : "radialGradient";
    // SVG renders nothing if the start circle contains the end circle.
    std::vector<ORVPrintGradientStop> stops;
    const bool isInward = !isLinear && given.startRadius > given.endRadius && ORVCoversPage(given);
    const ORVPrintGradient gradient = isInward ? Reversed(given, stops) : given;

    std::string& attributes = text.attributes;
    attributes = " gradientUnits=\"userSpaceOnUse\"";
    if (isLinear) {
        AppendLength(attributes, "x1", gradient.start.x);
        AppendLength(attributes, "y1", gradient.start.y);
        AppendLength(attributes, "x2", gradient.end.x);
        AppendLength(attributes, "y2", gradient.end.y);
    } else {
        AppendLength(attributes, "cx", gradient.end.x);
        AppendLength(attributes, "cy", gradient.end.y);
        AppendLength(attributes, "r", gradient.endRadius);
        AppendLength(attributes, "fx", gradient.start.x);
        AppendLength(attributes, "fy", gradient.start.y);
        AppendLength(attributes, "fr", gradient.startRadius);
    }
    std::string transform;
    AppendSvgTransform(transform, toElement, kSvgMostPlaces);
    attributes +=
        transform.empty() ? " gradientTransform=\"translate(0)\"" : " gradientT" + transform.substr(2);
    AppendSpread(attributes, gradient.spread);
    AppendStops(text.stops, gradient.stops);
    return text;
}
