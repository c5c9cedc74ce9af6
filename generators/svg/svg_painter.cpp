// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_painter.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "generators/common/map_measures.h"
#include "generators/common/number_text.h"
#include "generators/common/path_range.h"
#include "generators/svg/svg_definitions.h"
#include "generators/svg/svg_path.h"
#include "generators/svg/svg_style.h"
#include "generators/svg/svg_text.h"
#include "generators/svg/svg_writer.h"
#include "generators/svg/xml_text.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

// Glyphs smaller than this (user units per em, on the page) are invisible; larger ones exceed any page.
constexpr double kSmallestGlyph = 1e-3;
constexpr double kLargestGlyph = 1e6;

bool IsUpright(const ORVMathAffine2D& map) {
    constexpr double kTolerance = 1e-9;
    return std::fabs(map.m11 - 1.0) < kTolerance && std::fabs(map.m22 - 1.0) < kTolerance &&
           std::fabs(map.m12) < kTolerance && std::fabs(map.m21) < kTolerance;
}

void AppendNumberAttribute(std::string& text, std::string_view name, double value, int places) {
    text += ' ';
    text += name;
    text += "=\"";
    AppendDecimal(text, value, places);
    text += '"';
}

/// Leading, trailing and repeated spaces are only preserved if the element requests it.
bool HasBlanksToKeep(std::string_view text) {
    return text.starts_with(' ') || text.ends_with(' ') || text.find("  ") != text.npos;
}

bool IsWithin(const ORVMathPoint2D& p, double limit) {
    return std::fabs(p.x) < limit && std::fabs(p.y) < limit;
}

}  // namespace

void SvgPainter::AddGeometry(const ORVPrintPath& path, const ORVMathAffine2D& map, bool mayBeNamed,
                             int places) {
    const SvgOutline outline = mayBeNamed ? RecogniseOutline(path, map, places) : SvgOutline();
    const auto number = [&](std::string_view attribute, double value) {
        AppendNumberAttribute(rest_, attribute, value, places);
    };
    const auto position = [&](std::string_view attribute, double value) {
        if (ToFixed(value, places) != 0) number(attribute, value);
    };
    switch (outline.kind) {
        case SvgOutline::Kind::kRectangle:
            name_ = "rect";
            position("x", outline.x);
            position("y", outline.y);
            number("width", outline.width);
            number("height", outline.height);
            break;
        case SvgOutline::Kind::kCircle:
        case SvgOutline::Kind::kEllipse: {
            const bool isCircle = outline.kind == SvgOutline::Kind::kCircle;
            name_ = isCircle ? "circle" : "ellipse";
            position("cx", outline.x);
            position("cy", outline.y);
            number(isCircle ? "r" : "rx", outline.width);
            if (!isCircle) number("ry", outline.height);
            break;
        }
        case SvgOutline::Kind::kPath:
            name_ = "path";
            rest_ += " d=\"";
            AppendSvgPath(rest_, path, map, places);
            rest_ += '"';
            break;
    }
}

std::string SvgPainter::FindPaint(const ORVPrintFill* fill, const ORVMathAffine2D& elementToPage) {
    if (fill && fill->gradient) return definitions_.FindGradient(*fill->gradient, elementToPage);
    return fill && fill->pattern ? definitions_.FindPattern(*fill, elementToPage) : std::string();
}

std::string SvgPainter::FindPaint(const ORVPrintStroke* stroke, const ORVMathAffine2D& elementToPage) {
    const ORVPrintGradient* gradient = stroke ? stroke->gradient : nullptr;
    return gradient ? definitions_.FindGradient(*gradient, elementToPage) : std::string();
}

void SvgPainter::AddShape(std::string_view id, const ORVPrintPath& path, const ORVMathAffine2D& map,
                          const Paint& paint, const SvgSpace& space) {
    if (path.IsEmpty()) return;
    const ORVPrintStroke* stroke = paint.stroke;
    rest_.clear();
    definitions_.AppendId(rest_, space.IdOf(id));
    AppendSvgTransform(rest_, paint.transform, space.places);
    // The start of the path determines the phase of dashes.
    AddGeometry(path, map, !stroke || stroke->dashes.empty(), space.places);
    rest_ += "/>\n";
    std::optional<ORVPrintFill> fill;
    if (paint.fill) fill = *paint.fill;
    if (fill && name_ != "path") fill->evenOdd = false;
    const std::string pattern = FindPaint(paint.fill, paint.transform);
    const std::string gradient = FindPaint(stroke, paint.transform);
    style_.clear();
    AppendSvgFill(style_, fill ? &*fill : nullptr, pattern, stroke != nullptr);
    if (stroke) AppendSvgStroke(style_, *stroke, paint.scale, gradient);
    if ((fill && fill->isCrisp) || (stroke && stroke->isCrisp)) style_ += " shape-rendering=\"crispEdges\"";
    writer_.AddElement(name_, style_, rest_);
}

void SvgPainter::DrawShape(const ORVPrintShape& shape, const SvgSpace& space) {
    if (!IsDrawable(shape.toPage)) return;
    const double limit = space.limit, scale = shape.toPage.Enlargement();
    const ORVPrintStroke* stroke = IsFlat(shape.toPage) ? nullptr : shape.stroke;
    const ORVPrintPath* fillPath =
        shape.fill ? &FitPathToRange(shape.path, shape.toPage, limit, PathUse::kFill, fitted_) : nullptr;
    const ORVPrintPath* strokePath =
        stroke ? &FitPathToRange(shape.path, shape.toPage, limit, PathUse::kStroke, fittedStroke_) : nullptr;
    const bool hasRoundPen = KeepsAngles(shape.toPage);
    if (fillPath && fillPath == strokePath && hasRoundPen)
        return AddShape(shape.id, shape.path, shape.toPage, {shape.fill, stroke, scale, {}}, space);
    if (fillPath) AddShape(shape.id, *fillPath, shape.toPage, {shape.fill, nullptr, 1.0, {}}, space);
    if (!strokePath) return;
    if (hasRoundPen)
        return AddShape(shape.id, *strokePath, shape.toPage, {nullptr, stroke, scale, {}}, space);
    // The pen is transformed with the path. Path coordinates are scaled to about page size, so that their
    // digits suffice.
    const ORVMathAffine2D toPage = shape.toPage * ORVMathAffine2D::Scaling(1.0 / scale, 1.0 / scale);
    AddShape(shape.id, *strokePath, ORVMathAffine2D::Scaling(scale, scale), {nullptr, stroke, scale, toPage},
             space);
}

void SvgPainter::AddTextPiece(const ORVPrintText& text, std::string_view id, const SvgTextPiece& piece,
                              const SvgSpace& space) {
    const ORVGlyphRun& run = *piece.run;
    const int places = space.places;
    const double scale = text.toPage.Enlargement();
    const ORVMathPoint2D start = text.toPage({piece.x, piece.y});
    const double size = run.size * scale * space.scale;
    if (!IsWithin(start, space.limit) || !(size > kSmallestGlyph) || !(size < kLargestGlyph) ||
        !(run.expansion > 0.0))
        return;

    // SVG text is upright where y points down.
    ORVMathAffine2D map = text.toPage * ORVMathAffine2D::Scaling(run.expansion / scale, -1.0 / scale);
    map.dx = start.x;
    map.dy = start.y;
    const bool isUpright = IsUpright(map);
    const double unit = scale / run.expansion;  // scale of the layout's lengths along the line

    rest_.clear();
    definitions_.AppendId(rest_, space.IdOf(id));
    if (isUpright) {
        AppendNumberAttribute(rest_, "x", start.x, places);
        AppendNumberAttribute(rest_, "y", start.y, places);
    } else {
        AppendSvgTransform(rest_, map, places);
    }
    // Keeps the length of the line in readers that use another font.
    if (piece.length > 0.0) AppendNumberAttribute(rest_, "textLength", piece.length * unit, places);
    if (HasBlanksToKeep(piece.text)) rest_ += " xml:space=\"preserve\"";
    rest_ += '>';
    AppendXmlText(rest_, piece.text);
    rest_ += "</text>\n";

    const ORVMathAffine2D elementToPage = isUpright ? ORVMathAffine2D() : map;
    const std::string pattern = FindPaint(text.fill, elementToPage);
    const std::string gradient = FindPaint(text.stroke, elementToPage);
    const std::string brought = run.face->IsOfDocument() ? definitions_.FindFont(*run.face) : std::string();
    style_.clear();
    AppendSvgFont(style_, *run.face, brought, run.size * scale, run.syntheticBold);
    if (piece.spacing != 0.0) {
        style_ += " letter-spacing=\"";
        AppendDecimal(style_, piece.spacing * unit, places);
        style_ += '"';
    }
    if (run.rightToLeft) style_ += " direction=\"rtl\" writing-mode=\"rl\"";
    std::optional<ORVPrintFill> paint;
    if (text.fill) paint = *text.fill;
    if (paint) paint->evenOdd = false;
    AppendSvgFill(style_, paint ? &*paint : nullptr, pattern, text.stroke != nullptr);
    if (text.stroke) AppendSvgStroke(style_, *text.stroke, scale, gradient);
    writer_.AddElement("text", style_, rest_);
}

void SvgPainter::DrawText(const ORVPrintText& text, const SvgSpace& space) {
    if (!IsDrawable(text.toPage) || IsFlat(text.toPage) || (!text.fill && !text.stroke)) return;
    const std::vector<SvgTextPiece> pieces = SplitSvgText(text);
    // Several elements are grouped under the identifier.
    const bool isOneElement = pieces.size() == 1 && !text.clip;
    std::string attributes;
    if (!isOneElement) definitions_.AppendId(attributes, space.IdOf(text.id));
    if (!attributes.empty()) writer_.Put("<g" + attributes + ">\n");
    if (text.clip) OpenClip(FitPathToRange(*text.clip, {}, space.limit, PathUse::kFill, fitted_), space);
    for (const SvgTextPiece& piece : pieces)
        AddTextPiece(text, isOneElement ? text.id : std::string_view(), piece, space);
    if (text.clip) writer_.Put("</g>\n");
    if (!attributes.empty()) writer_.Put("</g>\n");
}

void SvgPainter::DrawImage(const ORVPrintImage& image, const SvgSpace& space) {
    if (!IsDrawable(image.toPage)) return;
    for (const ORVMathPoint2D& corner : {ORVMathPoint2D{0.0, 0.0}, ORVMathPoint2D{1.0, 0.0},
                                         ORVMathPoint2D{0.0, 1.0}, ORVMathPoint2D{1.0, 1.0}})
        if (!IsWithin(image.toPage(corner), 10.0 * space.limit)) return;
    const std::string id = definitions_.FindImage(image.image);
    std::string attributes;
    definitions_.AppendId(attributes, space.IdOf(image.id));
    if (!image.isSmooth) attributes += " image-rendering=\"optimizeSpeed\"";
    const ORVMathAffine2D toPixels =
        ORVMathAffine2D::Scaling(1.0 / image.image.GetWidth(), 1.0 / image.image.GetHeight());
    PutUse(id, attributes, image.toPage * toPixels, space);
}

void SvgPainter::PutUse(std::string_view id, std::string_view attributes, const ORVMathAffine2D& map,
                        const SvgSpace& space) {
    rest_ = "<use xlink:href=\"#";
    rest_ += id;
    rest_ += '"';
    rest_ += attributes;
    AppendSvgTransform(rest_, map, space.places);
    rest_ += "/>\n";
    writer_.Put(rest_);
}

void SvgPainter::OpenClip(const ORVPrintPath& outline, const SvgSpace& space) {
    writer_.Put("<g clip-path=\"url(#" + definitions_.DefineClip(outline, space.places) + ")\">\n");
}

void SvgPainter::OpenClip(const ORVPrintClipPath& clip, const SvgSpace& space) {
    static const ORVPrintPath kNothing;
    const bool shows = IsDrawable(clip.toPage);
    const ORVPrintPath& path =
        shows ? FitPathToRange(clip.path, clip.toPage, space.limit, PathUse::kFill, fitted_) : kNothing;
    const std::string id =
        definitions_.FindClipPath(path, shows ? clip.toPage : ORVMathAffine2D(), clip.evenOdd, space.places);
    writer_.Put("<g clip-path=\"url(#" + id + ")\">\n");
}
