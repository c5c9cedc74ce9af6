// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/TextDrawing.h"

#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/tree/shapes.h"
#include "platform/print/ORVPrintModelRender.h"

namespace svg2 {

void TextDrawing::Draw(ElementIndex element, const Style& style, const DrawState& state) {
    TextLayout layout(drawing_.scene_, drawing_.fonts_);
    if (!layout.LayOut(element, style, state.viewport)) {
        drawing_.Do(ORVPrintModelRender::kTextNotSet);
        return;
    }
    box_ = layout.GetBox();
    for (const TextSegment& segment : layout.GetSegments()) {
        if (drawing_.IsStopped()) return;
        if (!drawing_.budget_.TakeElement()) {
            drawing_.Do(ORVPrintModelRender::kTooManyRepeats);
            return;
        }
        DrawSegment(layout, segment, state);
    }
}

void TextDrawing::DrawSegment(const TextLayout& layout, const TextSegment& segment, const DrawState& state) {
    const TextSpan& span = layout.SpanOf(segment);
    const Style& style = *span.style;
    if (!segment.isShown || style.visibility != Visibility::kVisible || segment.layout.runs.empty()) return;
    if (state.isWithinClip) {
        const ORVPrintFill fill{};
        drawing_.Do(drawing_.generator_.DrawText(
            {segment.layout, segment.text, state.toPage * segment.toUser, &fill, nullptr}));
        return;
    }
    DrawLines(segment, style, state, box_, span.opacity, false);
    DrawGlyphs(segment, style, state, box_, span.opacity);
    DrawLines(segment, style, state, box_, span.opacity, true);
}

void TextDrawing::DrawGlyphs(const TextSegment& segment, const Style& style, const DrawState& state,
                             const ORVMathBox2D& box, double opacity) {
    using Kind = MadePaint::Kind;
    const PaintPlace place{style, state.viewport, state.toPage, state.context, [&box] { return box; }};
    MadePaint fillPaint, strokePaint;
    drawing_.paints_.MakeFill(place, opacity, fillPaint);
    ORVPrintStroke stroke;
    bool hasStroke = false;
    if (style.stroke.kind != Paint::Kind::kNone) {
        drawing_.paints_.MakeStroke(place, opacity, strokePaint);
        hasStroke = (strokePaint.kind == Kind::kColour || strokePaint.kind == Kind::kGradient) &&
                    drawing_.paints_.MakePen(style, state.viewport, 1.0, stroke);
        stroke.isCrisp = false;  // shapes only have crisp edges
        stroke.colour = strokePaint.colour;
        stroke.gradient = strokePaint.GetGradient();
    }
    const ORVMathAffine2D toPage = state.toPage * segment.toUser;
    ORVPrintGenerator& generator = drawing_.generator_;
    const auto drawText = [&](const ORVPrintFill* fill, const ORVPrintStroke* pen) {
        if (!fill && !pen) return;
        drawing_.Do(generator.DrawText({segment.layout, segment.text, toPage, fill, pen}));
    };
    const ORVPrintFill fill{.colour = fillPaint.colour, .gradient = fillPaint.GetGradient()};
    const bool hasFill = fillPaint.kind == Kind::kColour || fillPaint.kind == Kind::kGradient;
    if (fillPaint.kind == Kind::kPattern) {
        // The pattern shows where the letters are.
        ORVPrintLayer layer;
        layer.hasMask = true;
        layer.box = drawing_.page_;
        if (!drawing_.Do(generator.BeginLayer(layer))) return;
        ORVPrintMask mask;
        mask.kind = ORVPrintMask::Kind::kOpacity;
        mask.box = drawing_.page_;
        const ORVPrintFill black{};
        if (generator.BeginMask(mask) != ORVPrintGenerator::kSkipMask) {
            drawText(&black, nullptr);
            drawing_.Do(generator.EndMask());
        }
        ORVPrintPath area;
        AddRectangle(area, {box.xMin, box.yMin, box.xMax - box.xMin, box.yMax - box.yMin});
        drawing_.DrawPattern(area, state.toPage, false, fillPaint, state);
        drawing_.Do(generator.EndLayer());
    }
    const bool strokesFirst =
        style.paintOrder[0] == PaintPart::kStroke ||
        (style.paintOrder[0] == PaintPart::kMarkers && style.paintOrder[1] == PaintPart::kStroke);
    if (strokesFirst && hasStroke) {
        drawText(nullptr, &stroke);
        drawText(hasFill ? &fill : nullptr, nullptr);
        return;
    }
    drawText(hasFill ? &fill : nullptr, hasStroke ? &stroke : nullptr);
}

void TextDrawing::DrawLines(const TextSegment& segment, const Style& style, const DrawState& state,
                            const ORVMathBox2D& box, double opacity, bool above) {
    if (!style.decorations || segment.isVertical) return;
    for (const Decoration& decoration : *style.decorations) {
        Style painted = style;
        painted.fill = decoration.fill;
        painted.fillOpacity = decoration.fillOpacity;
        painted.stroke = decoration.stroke;
        painted.strokeOpacity = decoration.strokeOpacity;
        painted.strokeWidth = decoration.strokeWidth;
        painted.colour = decoration.colour;
        painted.fontFamily = decoration.fontFamily;
        painted.fontWeight = decoration.fontWeight;
        painted.isItalic = decoration.isItalic;
        const FontMetrics metrics = drawing_.fonts_.Find(painted).metrics;
        const double size = decoration.fontSize;
        const auto drawLine = [&](double middle, double thickness) {
            ORVPrintPath path;
            AddRectangle(path, {0.0, (middle - thickness / 2.0) * size, segment.advance, thickness * size});
            const PaintPlace place{painted, state.viewport, state.toPage, state.context,
                                   [&box] { return box; }};
            MadePaint paint;
            drawing_.paints_.MakeFill(place, opacity, paint);
            if (paint.kind != MadePaint::Kind::kColour && paint.kind != MadePaint::Kind::kGradient) return;
            const ORVPrintFill fill{.colour = paint.colour, .gradient = paint.GetGradient()};
            drawing_.Do(drawing_.generator_.DrawShape({path, state.toPage * segment.toUser, &fill, nullptr}));
        };
        if (!above && (decoration.lines & kUnderline))
            drawLine(metrics.underline, metrics.underlineThickness);
        if (!above && (decoration.lines & kOverline))
            drawLine(metrics.ascent - metrics.underlineThickness / 2.0, metrics.underlineThickness);
        if (above && (decoration.lines & kLineThrough))
            drawLine(metrics.strikeout, metrics.strikeoutThickness);
    }
}

}  // namespace svg2
