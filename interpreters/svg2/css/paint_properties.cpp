// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

#include "interpreters/svg2/css/property_rows.h"
#include "platform/system/ORVPrintLimits.h"

namespace svg2 {
namespace {

using Text = std::string_view;
using Context = PropertyContext;

/// A paint other than a reference.
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

/// "none" or a reference to a marker. References to other documents count as none.
bool ReadMarker(Text text, Text& id) {
    Text rest;
    if (Is(text, "none")) {
        id = {};
        return true;
    }
    Text read;
    if (!TakeReference(text, read, rest) || !Trim(rest).empty()) return false;
    id = read;
    return true;
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

const PropertyRow kRows[] = {
    {Name::kBackgroundColor, false, ORV_READ(ReadColourValue(t, s.backgroundColour)),
     Copy<&Style::backgroundColour>},
    {Name::kColor, true, ORV_READ(ReadColourProperty(t, c, s.colour)), Copy<&Style::colour>},
    {Name::kColorInterpolation, true, ORV_READ(ReadInterpolation(t, s.interpolatesLinear, false)),
     Copy<&Style::interpolatesLinear>},
    {Name::kFill, true, ORV_READ(ReadPaint(t, s.fill)), Copy<&Style::fill>},
    {Name::kFillOpacity, true, ORV_READ(ReadOpacity(t, s.fillOpacity)), Copy<&Style::fillOpacity>},
    {Name::kFillRule, true, ORV_READ(ReadEvenOdd(t, s.fillIsEvenOdd)), Copy<&Style::fillIsEvenOdd>},
    {Name::kImageRendering, true, ORV_READ(ReadImageRendering(t, s.imageRendering)),
     Copy<&Style::imageRendering>},
    {Name::kMarker, true,
     ORV_READ(!c.isAttribute && ReadMarker(t, s.markerStart) &&
              (s.markerMid = s.markerEnd = s.markerStart, true)),
     [](const Style& from, Style& to) {
         to.markerStart = from.markerStart;
         to.markerMid = from.markerMid;
         to.markerEnd = from.markerEnd;
     }},
    {Name::kMarkerEnd, true, ORV_READ(ReadMarker(t, s.markerEnd)), Copy<&Style::markerEnd>},
    {Name::kMarkerMid, true, ORV_READ(ReadMarker(t, s.markerMid)), Copy<&Style::markerMid>},
    {Name::kMarkerStart, true, ORV_READ(ReadMarker(t, s.markerStart)), Copy<&Style::markerStart>},
    {Name::kPaintOrder, true, ORV_READ(ReadPaintOrder(t, s.paintOrder)), Copy<&Style::paintOrder>},
    {Name::kShapeRendering, true, ORV_READ(ReadCrispEdges(t, s.hasCrispEdges)), Copy<&Style::hasCrispEdges>},
    {Name::kStopColor, false, ORV_READ(ReadColourValue(t, s.stopColour)), Copy<&Style::stopColour>},
    {Name::kStopOpacity, false, ORV_READ(ReadOpacity(t, s.stopOpacity)), Copy<&Style::stopOpacity>},
    {Name::kStroke, true, ORV_READ(ReadPaint(t, s.stroke)), Copy<&Style::stroke>},
    {Name::kStrokeDasharray, true, ORV_READ(ReadDashes(t, c, s.dashes)), Copy<&Style::dashes>},
    {Name::kStrokeDashoffset, true, ORV_READ(ReadLength(t, c.sizes, s.dashOffset)), Copy<&Style::dashOffset>},
    {Name::kStrokeLinecap, true, ORV_READ(ReadCap(t, s.cap)), Copy<&Style::cap>},
    {Name::kStrokeLinejoin, true, ORV_READ(ReadJoin(t, s.join)), Copy<&Style::join>},
    {Name::kStrokeMiterlimit, true, ORV_READ(ReadMiterLimit(t, s.miterLimit)), Copy<&Style::miterLimit>},
    {Name::kStrokeOpacity, true, ORV_READ(ReadOpacity(t, s.strokeOpacity)), Copy<&Style::strokeOpacity>},
    {Name::kStrokeWidth, true, ORV_READ(ReadNonNegative(t, c, s.strokeWidth)), Copy<&Style::strokeWidth>},
    {Name::kVectorEffect, false,
     ORV_READ(!t.empty() && (s.hasNonScalingStroke = Is(t, "non-scaling-stroke"), true)),
     Copy<&Style::hasNonScalingStroke>},
};

}  // namespace

std::span<const PropertyRow> PaintProperties() { return kRows; }

}  // namespace svg2
