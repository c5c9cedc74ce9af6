// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/paint/Paints.h"

#include <algorithm>
#include <cmath>

#include "interpreters/svg2/paint/pattern_definition.h"
#include "interpreters/svg2/values/scanner.h"
#include "interpreters/svg2/values/view_box.h"

namespace svg2 {
namespace {

double Distance(const ORVMathPoint2D& a, const ORVMathPoint2D& b) { return std::hypot(b.x - a.x, b.y - a.y); }

/// Length of a cubic curve, approximated by line segments.
double CurveLength(const ORVMathPoint2D& p0, const ORVMathPoint2D& p1, const ORVMathPoint2D& p2,
                   const ORVMathPoint2D& p3) {
    constexpr int kSteps = 64;
    double length = 0.0;
    ORVMathPoint2D last = p0;
    for (int i = 1; i <= kSteps; ++i) {
        const double t = static_cast<double>(i) / kSteps, s = 1.0 - t;
        const double a = s * s * s, b = 3.0 * s * s * t, c = 3.0 * s * t * t, d = t * t * t;
        const ORVMathPoint2D point{a * p0.x + b * p1.x + c * p2.x + d * p3.x,
                                   a * p0.y + b * p1.y + c * p2.y + d * p3.y};
        length += Distance(last, point);
        last = point;
    }
    return length;
}

/// Whether a pattern's units are relative to the bounding box it paints.
bool NeedsBox(const Scene& scene, ElementIndex pattern) {
    const Document& document = scene.GetDocument();
    bool hasUnits = false, hasContentUnits = false, hasViewBox = false, needsContentBox = false;
    constexpr int kLongestChain = 64;
    for (int i = 0; i < kLongestChain && pattern != kNoElement && document[pattern].tag == Tag::kPattern;
         ++i, pattern = document.FindByReference(Trim(document.ValueOf(pattern, Name::kHref)))) {
        if (!hasUnits && (hasUnits = document.Find(pattern, Name::kPatternUnits).has_value()) &&
            scene.UnitsOf(pattern, Name::kPatternUnits, Units::kBoundingBox) == Units::kBoundingBox)
            return true;
        if (!hasContentUnits &&
            (hasContentUnits = document.Find(pattern, Name::kPatternContentUnits).has_value()))
            needsContentBox =
                scene.UnitsOf(pattern, Name::kPatternContentUnits, Units::kUserSpace) == Units::kBoundingBox;
        hasViewBox = hasViewBox || ReadViewBox(document.ValueOf(pattern, Name::kViewBox)).has_value();
    }
    return !hasUnits || (needsContentBox && !hasViewBox);
}

}  // namespace

double LengthOf(const ORVPrintPath& path) {
    using Verb = ORVPrintPath::Verb;
    double length = 0.0;
    ORVMathPoint2D current, start;
    std::size_t point = 0;
    for (const Verb verb : path.verbs) {
        switch (verb) {
            case Verb::kMove: current = start = path.points[point++]; break;
            case Verb::kLine:
                length += Distance(current, path.points[point]);
                current = path.points[point++];
                break;
            case Verb::kCubic:
                length +=
                    CurveLength(current, path.points[point], path.points[point + 1], path.points[point + 2]);
                current = path.points[point + 2];
                point += 3;
                break;
            case Verb::kClose:
                length += Distance(current, start);
                current = start;
                break;
        }
    }
    return length;
}

void Paints::MakePlain(Paint::Kind kind, const Colour& colour, double opacity, const PaintPlace& place,
                       MadePaint& made) {
    made.kind = MadePaint::Kind::kNothing;
    if (kind != Paint::Kind::kColour && kind != Paint::Kind::kCurrentColour) return;
    made.colour = MakeColour(kind == Paint::Kind::kColour ? colour : place.style.colour, opacity);
    if (made.colour.opacity > 0) made.kind = MadePaint::Kind::kColour;
}

/// Whether a pattern that paints nothing is replaced by a stated fallback.
bool Paints::UsesFallback(const Paint& paint, ElementIndex pattern, const ORVMathBox2D& box,
                          const Viewport& viewport) {
    if (paint.fallback == Paint::Kind::kNone) return false;
    const PatternDefinition definition = ResolvePattern(scene_, pattern);
    return !definition.HasTiles(definition.TileOf(scene_, box, viewport));
}

void Paints::MakeReferenced(const Paint& paint, double opacity, const PaintPlace& place, MadePaint& made) {
    const Document& document = scene_.GetDocument();
    const ElementIndex server = document.FindById(paint.reference);
    made.kind = MadePaint::Kind::kNothing;
    if (server != kNoElement && Gradients::IsGradient(document[server].tag)) {
        const ORVMathBox2D box = gradients_.NeedsBox(server) ? place.box() : ORVMathBox2D{};
        gradients_.Make(server, box, place.viewport, place.toPage, opacity, made.gradient);
        switch (made.gradient.kind) {
            case GradientPaint::Kind::kNothing: return;
            case GradientPaint::Kind::kColour:
                made.colour = made.gradient.colour;
                if (made.colour.opacity > 0) made.kind = MadePaint::Kind::kColour;
                return;
            case GradientPaint::Kind::kGradient:
                made.colour = made.gradient.colour;
                made.kind = MadePaint::Kind::kGradient;
                return;
            case GradientPaint::Kind::kUnusable: break;
        }
    } else if (server != kNoElement && document[server].tag == Tag::kPattern) {
        made.box = place.box();
        const bool hasArea = made.box.xMax > made.box.xMin && made.box.yMax > made.box.yMin;
        if ((hasArea || !NeedsBox(scene_, server)) &&
            !UsesFallback(paint, server, made.box, place.viewport)) {
            made.kind = MadePaint::Kind::kPattern;
            made.pattern = server;
            made.opacity = opacity;
            made.viewport = place.viewport;
            made.toPage = place.toPage;
            return;
        }
    }
    MakePlain(paint.fallback, paint.colour, opacity, place, made);
}

void Paints::Make(const Paint& paint, double opacity, const PaintPlace& place, MadePaint& made) {
    switch (paint.kind) {
        case Paint::Kind::kReference: MakeReferenced(paint, opacity, place, made); return;
        case Paint::Kind::kContextFill:
        case Paint::Kind::kContextStroke: break;
        default: MakePlain(paint.kind, paint.colour, opacity, place, made); return;
    }
    made.kind = MadePaint::Kind::kNothing;
    const ContextPaints* context = place.context;
    if (!context) return;
    const bool isFill = paint.kind == Paint::Kind::kContextFill;
    const PaintPlace there{*context->style, context->viewport, context->toPage, context->outer,
                           [context] { return context->box(); }};
    const double own = isFill ? context->style->fillOpacity : context->style->strokeOpacity;
    Make(isFill ? context->style->fill : context->style->stroke, opacity * own, there, made);
}

bool Paints::MakePen(const Style& style, const Viewport& viewport, double dashScale, MadePen& pen) {
    ORVPrintStroke& stroke = pen.stroke;
    stroke.width = style.strokeWidth.Resolve(viewport.Diagonal());
    if (!(stroke.width > 0.0) || !std::isfinite(stroke.width)) return false;
    stroke.cap = style.cap;
    stroke.join = style.join;
    stroke.miterLimit = style.miterLimit;
    stroke.isCrisp = style.hasCrispEdges;
    stroke.isExact = true;
    stroke.dashes = {};
    stroke.dashOffset = 0.0;
    if (!style.dashes || style.dashes->empty()) return true;

    pen.dashes.clear();
    double total = 0.0;
    for (const Length& dash : *style.dashes) {
        const double length = dash.Resolve(viewport.Diagonal()) * dashScale;
        // An invalid dash array gives a solid line.
        if (!(length >= 0.0) || !std::isfinite(length)) return true;
        pen.dashes.push_back(length);
        total += length;
    }
    if (!(total > 0.0)) return true;
    if (pen.dashes.size() % 2 != 0) {
        pen.dashes.reserve(2 * pen.dashes.size());
        pen.dashes.insert(pen.dashes.end(), pen.dashes.begin(), pen.dashes.end());
        total *= 2.0;
    }
    const double offset = std::fmod(style.dashOffset.Resolve(viewport.Diagonal()) * dashScale, total);
    stroke.dashes = pen.dashes;
    stroke.dashOffset = std::isfinite(offset) ? (offset < 0.0 ? offset + total : offset) : 0.0;
    return true;
}

}  // namespace svg2
