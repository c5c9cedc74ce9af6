// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/pdf_reach.h"

#include <algorithm>

#include "generators/common/map_measures.h"
#include "generators/pdf/pdf_operators.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

/// Margin for rounding by readers.
constexpr double kMargin = 1.0;

ORVMathBox2D Grown(const ORVMathBox2D& box, double margin) {
    return {box.xMin - margin, box.xMax + margin, box.yMin - margin, box.yMax + margin};
}

double LineReach(const ORVPrintStroke* stroke, double scale) {
    return stroke ? PdfHalfWidth(stroke, scale) * PdfCornerReach(*stroke) : 0.0;
}

}  // namespace

ORVMathBox2D PdfCommonBox(const ORVMathBox2D& a, const ORVMathBox2D& b) {
    const ORVMathBox2D common{std::max(a.xMin, b.xMin), std::min(a.xMax, b.xMax), std::max(a.yMin, b.yMin),
                              std::min(a.yMax, b.yMax)};
    return common.xMin < common.xMax && common.yMin < common.yMax ? common : ORVMathBox2D();
}

ORVMathBox2D PdfPathBox(const ORVPrintPath& path, const ORVMathAffine2D& map) {
    ORVMathBox2D box;
    for (const ORVMathPoint2D& point : path.points) box.Add(map(point));
    return box;
}

ORVMathBox2D PdfLineBox(const ORVTextLayout& layout) {
    const double advance = layout.advance, half = 0.5 * (layout.ascent + layout.descent);
    const bool isVertical = !layout.runs.empty() && layout.runs.front().vertical;
    return isVertical ? ORVMathBox2D{-half, half, -advance, 0.0}
                      : ORVMathBox2D{0.0, advance, -layout.descent, layout.ascent};
}

double PdfHalfWidth(const ORVPrintStroke* stroke, double scale) {
    return stroke ? 0.5 * std::min(stroke->width * scale, kPdfCoordinateLimit) : 0.0;
}

double PdfCornerReach(const ORVPrintStroke& stroke) { return std::clamp(stroke.miterLimit, 2.0, 100.0); }

double PdfGlyphReach(const ORVGlyphRun& run, double scale) {
    return std::min(2.0 * run.size * scale, kPdfCoordinateLimit);
}

ORVMathBox2D PdfPaintedBox(const ORVPrintShape& shape) {
    return Grown(PdfPathBox(shape.path, shape.toPage),
                 LineReach(shape.stroke, shape.toPage.Enlargement()) + kMargin);
}

ORVMathBox2D PdfPaintedBox(const ORVPrintText& text) {
    const double scale = text.toPage.Enlargement();
    double reach = 0.0;
    for (const ORVGlyphRun& run : text.layout.runs) reach = std::max(reach, PdfGlyphReach(run, scale));
    const ORVMathBox2D line = PdfLineBox(text.layout);
    ORVMathBox2D box;
    for (const double x : {line.xMin, line.xMax})
        for (const double y : {line.yMin, line.yMax}) box.Add(text.toPage({x, y}));
    return Grown(box, reach + LineReach(text.stroke, scale) + kMargin);
}
