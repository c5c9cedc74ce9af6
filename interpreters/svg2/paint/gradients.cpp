// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/paint/gradients.h"

#include <algorithm>
#include <cmath>

#include "interpreters/svg2/values/scanner.h"
#include "interpreters/svg2/values/transform.h"

namespace svg2 {
namespace {

using Kind = ORVPrintGradient::Kind;
using Spread = ORVPrintGradient::Spread;

constexpr std::uint64_t kStepsPerStop = 50;  // for computing its style
// Cost of copying gradients with very many stops for each shape that uses them.
constexpr std::uint64_t kStepsPerCopiedStop = 40;
constexpr std::size_t kFreeStops = 256;

// Indices of the coordinates in a definition.
enum LinearPlace { kX1, kY1, kX2, kY2 };
enum RadialPlace { kCx, kCy, kR, kFx, kFy, kFr };

struct PlaceRow {
    Name name;
    Length byDefault;
};
constexpr PlaceRow kLinearPlaces[] = {
    {Name::kX1, {0.0, 0.0}}, {Name::kY1, {0.0, 0.0}}, {Name::kX2, {0.0, 100.0}}, {Name::kY2, {0.0, 0.0}}};
// The focal point is the centre by default.
constexpr PlaceRow kRadialPlaces[] = {{Name::kCx, {0.0, 50.0}}, {Name::kCy, {0.0, 50.0}},
                                      {Name::kR, {0.0, 50.0}},  {Name::kFx, {0.0, 50.0}},
                                      {Name::kFy, {0.0, 50.0}}, {Name::kFr, {0.0, 0.0}}};

bool ReadSpread(std::string_view text, Spread& spread) {
    if (text == "pad")
        spread = Spread::kPad;
    else if (text == "reflect")
        spread = Spread::kReflect;
    else if (text == "repeat")
        spread = Spread::kRepeat;
    else
        return false;
    return true;
}

double Offset(std::string_view text) {
    Scanner scanner(Trim(text));
    double offset = 0.0;
    if (!scanner.TakeNumber(offset)) return 0.0;
    if (scanner.Take('%')) offset /= 100.0;
    if (!scanner.AtEnd()) return 0.0;
    return std::clamp(offset, 0.0, 1.0);
}

/// The coordinates of a gradient applied to a shape.
struct Coordinates {
    const GradientDefinition& definition;
    const Viewport& viewport;

    double At(int place, Axis axis) const {
        const Length& length = definition.places[place];
        if (definition.units == Units::kBoundingBox) return length.px + length.percent / 100.0;
        return length.Resolve(Scene::BaseOf(viewport, axis));
    }
};

void PlaceLinear(const Coordinates& at, ORVPrintGradient& gradient) {
    gradient.start = {at.At(kX1, Axis::kX), at.At(kY1, Axis::kY)};
    gradient.end = {at.At(kX2, Axis::kX), at.At(kY2, Axis::kY)};
}

void PlaceRadial(const Coordinates& at, ORVPrintGradient& gradient) {
    gradient.start = {at.At(kFx, Axis::kX), at.At(kFy, Axis::kY)};
    gradient.end = {at.At(kCx, Axis::kX), at.At(kCy, Axis::kY)};
    gradient.startRadius = std::max(at.At(kFr, Axis::kNone), 0.0);
    gradient.endRadius = at.At(kR, Axis::kNone);
    if (gradient.start == gradient.end && gradient.startRadius == gradient.endRadius) {
        // There is no space between the circles: the first colour inside, the last one outside.
        constexpr double kNearly = 1.0 - 1e-6;
        gradient.startRadius *= kNearly;
        gradient.spread = Spread::kPad;
    }
}

/// A gradient without extent paints its last colour only.
bool HasExtent(const ORVPrintGradient& gradient) {
    if (gradient.kind == Kind::kLinear) return !(gradient.start == gradient.end);
    return gradient.endRadius > 0.0;
}

}  // namespace

ORVPrintColour MakeColour(const Colour& colour, double opacity) {
    constexpr double kOpaque = 255.0;
    const double share = static_cast<double>(colour.opacity) * opacity;
    return {colour.red, colour.green, colour.blue,
            static_cast<std::uint8_t>(std::lround(kOpaque * std::clamp(share, 0.0, 1.0)))};
}

const GradientDefinition& Gradients::Find(ElementIndex gradient) {
    std::unique_ptr<GradientDefinition>& definition = definitions_[gradient];
    if (!definition) {
        definition = std::make_unique<GradientDefinition>();
        Resolve(gradient, *definition);
    }
    return *definition;
}

void Gradients::ReadStops(ElementIndex gradient, std::vector<ORVPrintGradientStop>& stops) {
    const Document& document = scene_.GetDocument();
    const Style& parent = scene_.StyleInPlace(gradient);
    double least = 0.0;
    for (ElementIndex child = document[gradient].firstChild; child != kNoElement;
         child = document[child].nextSibling) {
        if (document[child].tag != Tag::kStop) continue;
        scene_.GetCascade().GetWork()->Take(kStepsPerStop);
        Style style;
        scene_.GetCascade().Compute(child, parent, style);
        least = std::max(least, Offset(document.ValueOf(child, Name::kOffset)));
        stops.push_back({least, MakeColour(svg2::Resolve(style.stopColour, style), style.stopOpacity)});
    }
}

void Gradients::Resolve(ElementIndex gradient, GradientDefinition& definition) {
    const Document& document = scene_.GetDocument();
    const std::vector<ElementIndex> chain = scene_.TemplateChain(gradient, IsGradient);
    const bool isLinear = document[gradient].tag == Tag::kLinearGradient;
    definition.kind = isLinear ? Kind::kLinear : Kind::kRadial;
    const std::span<const PlaceRow> rows =
        isLinear ? std::span<const PlaceRow>(kLinearPlaces) : std::span<const PlaceRow>(kRadialPlaces);
    bool isPlaced[std::size(kRadialPlaces)] = {};
    bool hasUnits = false, hasSpread = false, hasTransform = false;
    for (const ElementIndex element : chain) {
        const Style& style = scene_.StyleInPlace(element);
        const UnitSizes sizes = scene_.GetCascade().SizesOf(style);
        const bool isSameKind = document[element].tag == document[gradient].tag;
        for (std::size_t i = 0; i < rows.size() && isSameKind; ++i) {
            if (isPlaced[i]) continue;
            Length length;
            if (!ReadLength(document.ValueOf(element, rows[i].name), sizes, length)) continue;
            // A negative radius is ignored.
            if (rows[i].name == Name::kR && (length.px < 0.0 || length.percent < 0.0)) continue;
            definition.places[i] = length;
            isPlaced[i] = true;
        }
        if (!hasUnits && document.Find(element, Name::kGradientUnits)) {
            definition.units = scene_.UnitsOf(element, Name::kGradientUnits, Units::kBoundingBox);
            hasUnits = true;
        }
        hasSpread =
            hasSpread || ReadSpread(Trim(document.ValueOf(element, Name::kSpreadMethod)), definition.spread);
        const bool statesTransform = document.Find(element, Name::kGradientTransform) || style.geometry;
        if (!hasTransform && statesTransform) {
            const Viewport unit{1.0, 1.0};
            definition.isSingular =
                !scene_.TransformOf(element, style, unit, definition.transform, Name::kGradientTransform);
            hasTransform = true;
        }
        if (definition.stops.empty()) ReadStops(element, definition.stops);
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (isPlaced[i]) continue;
        definition.places[i] = rows[i].byDefault;
        if (!isLinear && i == kFx) definition.places[i] = definition.places[kCx];
        if (!isLinear && i == kFy) definition.places[i] = definition.places[kCy];
    }
}

void Gradients::Make(ElementIndex element, const ORVMathBox2D& box, const Viewport& viewport,
                     const ORVMathAffine2D& toPage, double opacity, GradientPaint& paint) {
    const GradientDefinition& definition = Find(element);
    paint.kind = GradientPaint::Kind::kNothing;
    if (definition.stops.empty()) return;
    // The stops are copied for each shape, and every generator processes them.
    if (definition.stops.size() > kFreeStops)
        scene_.GetCascade().GetWork()->Take(kStepsPerCopiedStop * definition.stops.size());

    ORVMathAffine2D toUser;
    if (definition.units == Units::kBoundingBox) {
        const double width = box.xMax - box.xMin, height = box.yMax - box.yMin;
        if (!(width > 0.0) || !(height > 0.0)) {
            paint.kind = GradientPaint::Kind::kUnusable;
            return;
        }
        toUser = {width, 0.0, 0.0, height, box.xMin, box.yMin};
    }
    ORVPrintGradient& gradient = paint.gradient;
    gradient = {};
    gradient.kind = definition.kind;
    gradient.spread = definition.spread;
    const Coordinates at{definition, viewport};
    if (definition.kind == Kind::kLinear)
        PlaceLinear(at, gradient);
    else
        PlaceRadial(at, gradient);
    gradient.toPage = toPage * toUser * definition.transform;
    if (definition.isSingular || !IsInvertible(gradient.toPage)) return;

    const auto withOpacity = [opacity](ORVPrintColour colour) {
        colour.opacity = static_cast<std::uint8_t>(std::lround(colour.opacity * opacity));
        return colour;
    };
    if (definition.stops.size() == 1 || !HasExtent(gradient)) {
        paint.kind = GradientPaint::Kind::kColour;
        paint.colour = withOpacity(definition.stops.back().colour);
        return;
    }
    paint.stops.assign(definition.stops.begin(), definition.stops.end());
    for (ORVPrintGradientStop& stop : paint.stops) stop.colour = withOpacity(stop.colour);
    gradient.stops = paint.stops;
    paint.colour = paint.stops.front().colour;
    paint.kind = GradientPaint::Kind::kGradient;
}

}  // namespace svg2
