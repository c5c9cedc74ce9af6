// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/TextDrawing.h"

#include <algorithm>
#include <vector>

#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/drawing/GlyphPainter.h"
#include "interpreters/svg2/drawing/decoration_lines.h"
#include "interpreters/svg2/tree/shapes.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/visualization/fonts/glyph_bitmap.h"

namespace svg2 {

void TextDrawing::Draw(ElementIndex element, const Style& style, const DrawState& state) {
    TextLayout layout(drawing_.scene_, drawing_.fonts_);
    if (!layout.LayOut(element, style, state.viewport)) {
        drawing_.Do(ORVPrintModelRender::kTextNotSet);
        return;
    }
    box_ = layout.GetBox();
    const std::size_t mark = drawing_.ends_.size();
    ElementIndex link = kNoElement;
    for (const TextSegment& segment : layout.GetSegments()) {
        if (drawing_.IsStopped()) break;
        if (!drawing_.budget_.TakeElement()) {
            drawing_.Do(ORVPrintModelRender::kTooManyRepeats);
            break;
        }
        const ElementIndex around = state.isWithinClip ? kNoElement : LinkAround(layout, segment);
        if (around != link) {
            drawing_.EndBack(mark);
            if (around != kNoElement) drawing_.BeginLink(around);
            link = around;
        }
        DrawSegment(layout, segment, state);
    }
    drawing_.EndBack(mark);
}

/// The innermost "a" inside the text that encloses a segment.
ElementIndex TextDrawing::LinkAround(const TextLayout& layout, const TextSegment& segment) const {
    const Document& document = drawing_.scene_.GetDocument();
    for (std::size_t i = segment.span; i != 0; i = layout.GetSpan(i).parent)
        if (document[layout.GetSpan(i).element].tag == Tag::kA) return layout.GetSpan(i).element;
    return kNoElement;
}

void TextDrawing::DrawSegment(const TextLayout& layout, const TextSegment& segment, const DrawState& state) {
    const TextSpan& span = layout.SpanOf(segment);
    const Style& style = *span.style;
    if (!segment.isShown || style.visibility != Visibility::kVisible || segment.layout.runs.empty()) return;
    DrawLines(segment, style, state, span.opacity, false);
    DrawGlyphs(segment, style, state, span.opacity);
    DrawLines(segment, style, state, span.opacity, true);
}

/// The paints of text with a certain style.
struct TextDrawing::Paints {
    MadePaint fill, stroke;
    ORVPrintFill inside;
    MadePen pen;
    bool hasFill = false, hasStroke = false, strokesFirst = false;
};

void TextDrawing::MakePaints(const Style& style, const DrawState& state, double opacity, Paints& paints) {
    // Clips consist of plain fills.
    if (state.isWithinClip) {
        paints.hasFill = true;
        return;
    }
    using Kind = MadePaint::Kind;
    const auto isPlain = [](const MadePaint& paint) {
        return paint.kind == Kind::kColour || paint.kind == Kind::kGradient;
    };
    const PaintPlace place{style, state.viewport, state.toPage, state.context, [this] { return box_; }};
    drawing_.paints_.MakeFill(place, opacity, paints.fill);
    paints.hasFill = isPlain(paints.fill);
    paints.inside.colour = paints.fill.colour;
    paints.inside.gradient = paints.fill.GetGradient();
    paints.strokesFirst =
        style.paintOrder[0] == PaintPart::kStroke ||
        (style.paintOrder[0] == PaintPart::kMarkers && style.paintOrder[1] == PaintPart::kStroke);
    if (style.stroke.kind == Paint::Kind::kNone) return;
    drawing_.paints_.MakeStroke(place, opacity, paints.stroke);
    paints.hasStroke = (isPlain(paints.stroke) || paints.stroke.kind == Kind::kPattern) &&
                       drawing_.paints_.MakePen(style, state.viewport, 1.0, paints.pen);
    paints.pen.stroke.isCrisp = false;  // applies to shapes only
    paints.pen.stroke.colour = paints.stroke.colour;
    paints.pen.stroke.gradient = paints.stroke.GetGradient();
}

/// Draws a part of a text, or a line of its decoration, with all its paints.
/// @param draw  draws with a fill, a stroke, or both
template <class Action>
void TextDrawing::Paint(const Paints& paints, const DrawState& state, Action draw) {
    using Kind = MadePaint::Kind;
    const ORVPrintFill* const fill = paints.hasFill ? &paints.inside : nullptr;
    const bool hasTiles = paints.fill.kind == Kind::kPattern;
    const bool strokesWithTiles = paints.hasStroke && paints.stroke.kind == Kind::kPattern;
    if (!hasTiles && !strokesWithTiles && !(paints.strokesFirst && paints.hasStroke)) {
        draw(fill, paints.hasStroke ? &paints.pen.stroke : nullptr);
        return;
    }
    const auto drawInside = [&] {
        const ORVPrintFill black{};
        if (hasTiles)
            PaintTiles(paints.fill, state, 0.0, [&] { draw(&black, nullptr); });
        else
            draw(fill, nullptr);
    };
    const auto drawOutline = [&] {
        ORVPrintStroke black = paints.pen.stroke;
        black.colour = {};
        black.gradient = nullptr;
        if (strokesWithTiles)
            PaintTiles(paints.stroke, state, paints.pen.stroke.width, [&] { draw(nullptr, &black); });
        else if (paints.hasStroke)
            draw(nullptr, &paints.pen.stroke);
    };
    if (paints.strokesFirst) drawOutline();
    drawInside();
    if (!paints.strokesFirst) drawOutline();
}

/// Fills the area that `draw` covers with a pattern.
template <class Action>
void TextDrawing::PaintTiles(const MadePaint& paint, const DrawState& state, double margin, Action draw) {
    ORVPrintGenerator& generator = drawing_.generator_;
    ORVPrintLayer layer;
    layer.hasMask = true;
    layer.box = drawing_.page_;
    if (!drawing_.Do(generator.BeginLayer(layer))) return;
    ORVPrintMask mask;
    mask.kind = ORVPrintMask::Kind::kOpacity;
    mask.box = drawing_.page_;
    if (generator.BeginMask(mask) != ORVPrintGenerator::kSkipMask) {
        draw();
        drawing_.Do(generator.EndMask());
    }
    // Glyphs may extend beyond their em boxes.
    const double reach = margin + (box_.yMax - box_.yMin);
    ORVPrintPath area;
    AddRectangle(area, {box_.xMin - reach, box_.yMin - reach, box_.xMax - box_.xMin + 2.0 * reach,
                        box_.yMax - box_.yMin + 2.0 * reach});
    drawing_.DrawPattern(area, state.toPage, false, paint, state);
    drawing_.Do(generator.EndLayer());
}

void TextDrawing::DrawGlyphs(const TextSegment& segment, const Style& style, const DrawState& state,
                             double opacity) {
    Paints paints;
    MakePaints(style, state, opacity, paints);
    const bool isColoured =
        !state.isWithinClip &&
        std::any_of(segment.layout.runs.begin(), segment.layout.runs.end(),
                    [this](const ORVGlyphRun& run) { return drawing_.fonts_.HasColours(*run.face); });
    if (isColoured) {
        DrawColoured(segment, paints, style, state);
        return;
    }
    const ORVMathAffine2D toPage = state.toPage * segment.toUser;
    Paint(paints, state, [&](const ORVPrintFill* fill, const ORVPrintStroke* pen) {
        if (!fill && !pen) return;
        drawing_.Do(drawing_.generator_.DrawText({segment.layout, segment.text, toPage, fill, pen}));
    });
}

/// Draws text whose glyphs may be colour or bitmap glyphs, one by one.
void TextDrawing::DrawColoured(const TextSegment& segment, const Paints& paints, const Style& style,
                               const DrawState& state) {
    const ORVMathAffine2D toPage = state.toPage * segment.toUser;
    ORVTextLayout part = segment.layout;
    for (const ORVGlyphRun& run : segment.layout.runs) {
        part.runs.assign(1, run);
        const auto draw = [&](const ORVPrintFill* fill, const ORVPrintStroke* pen, bool isUnseen = false) {
            if (fill || pen || isUnseen)
                drawing_.Do(drawing_.generator_.DrawText({part, segment.text, toPage, fill, pen}));
        };
        if (!drawing_.fonts_.HasColours(*run.face)) {
            Paint(paints, state, draw);
            continue;
        }
        for (const ORVGlyph& glyph : run.glyphs) {
            part.runs.front().glyphs.assign(1, glyph);
            if (PaintGlyph(run, glyph, paints, toPage) ||
                DrawGlyphDrawing(segment, run, glyph, paints, style, state)) {
                // A painted glyph is also written as invisible text, if the format supports it, so that it
                // can be searched.
                if ((drawing_.generator_.GetPowers() & ORVPrintGenerator::kUnseenText) != 0)
                    draw(nullptr, nullptr, true);
                continue;
            }
            if (DrawImageOf(run, glyph, paints, toPage)) continue;
            const std::vector<ORVGlyphLayer> layers = ORVFindGlyphLayers(*run.face, glyph.index);
            if (layers.empty()) Paint(paints, state, draw);
            for (const ORVGlyphLayer& layer : layers) {
                ORVGlyph& drawn = part.runs.front().glyphs.front();
                drawn.index = layer.glyph;
                const double opacity = paints.inside.colour.opacity * layer.opacity / 255.0;
                const ORVPrintFill own{.colour = {layer.colour.red, layer.colour.green, layer.colour.blue,
                                                  static_cast<std::uint8_t>(opacity + 0.5)}};
                if (!layer.isTextColour)
                    draw(&own, nullptr);
                else
                    Paint(paints, state, draw);
                drawn.textLength = 0;  // the lowest layer carries the text
            }
        }
    }
}

/// @return false if the font has no colour glyph
bool TextDrawing::PaintGlyph(const ORVGlyphRun& run, const ORVGlyph& glyph, const Paints& paints,
                             const ORVMathAffine2D& toPage) {
    const ORVMathAffine2D fromEm =
        toPage * ORVMathAffine2D{run.size * run.expansion, 0.0, 0.0, run.size, glyph.x, glyph.y};
    ORVPrintGenerator& generator = drawing_.generator_;
    const ORVPrintColour colour = paints.inside.colour;
    GlyphPainter painter(generator, drawing_.budget_, *run.face, fromEm, colour, drawing_.page_);
    ORVPrintLayer layer;
    layer.opacity = colour.opacity / 255.0;
    layer.box = drawing_.page_;
    const bool isFaint = colour.opacity < 255 && ORVIsPaintedGlyph(*run.face, glyph.index);
    if (isFaint && !drawing_.Do(generator.BeginLayer(layer))) return true;
    const bool isPainted = ORVPaintGlyph(*run.face, glyph.index, painter);
    drawing_.Do(painter.GetStatus());
    if (isFaint) drawing_.Do(generator.EndLayer());
    return isPainted;
}

/// @return false if the font has no drawing of the glyph
bool TextDrawing::DrawGlyphDrawing(const TextSegment& segment, const ORVGlyphRun& run, const ORVGlyph& glyph,
                                   const Paints& paints, const Style& style, const DrawState& state) {
    ElementIndex element = kNoElement;
    ImageContent* const content = drawing_.images_.FindGlyph(*run.face, glyph.index, element);
    if (!content || !ORVFindGlyphLayers(*run.face, glyph.index).empty()) return false;
    // The em square is the viewport, with y down from the baseline.
    const double unitsPerEm = run.face->GetUnitsPerEm(), unit = run.size / unitsPerEm;
    const ORVMathAffine2D toPage = state.toPage * segment.toUser *
                                   ORVMathAffine2D{unit * run.expansion, 0.0, 0.0, -unit, glyph.x, glyph.y};
    if (!IsInvertible(toPage)) return true;
    const Viewport square{unitsPerEm, unitsPerEm};
    drawing_.PrepareDrawing(*content, square, Images::kGreatestDepth);
    // References of the text's paints are those of another document.
    Style context = style;
    for (svg2::Paint* const paint : {&context.fill, &context.stroke})
        if (paint->kind == svg2::Paint::Kind::kReference) paint->kind = svg2::Paint::Kind::kCurrentColour;
    context.fillOpacity = 1.0;  // that of the glyph
    const ContextPaints given{&context, [this] { return box_; }, state.viewport, state.toPage, nullptr};
    ORVPrintLayer layer;
    layer.opacity = paints.inside.colour.opacity / 255.0;
    layer.box = drawing_.page_;
    const bool isFaint = layer.opacity < 1.0;
    if (isFaint && !drawing_.Do(drawing_.generator_.BeginLayer(layer))) return true;
    Drawing inner(*content->scene, drawing_.generator_, drawing_.budget_, *content->images, drawing_.fonts_);
    drawing_.Do(inner.DrawGlyph(element, toPage, square, drawing_.page_, given));
    if (isFaint) drawing_.Do(drawing_.generator_.EndLayer());
    return true;
}

/// @return false if the font has no bitmap glyph
bool TextDrawing::DrawImageOf(const ORVGlyphRun& run, const ORVGlyph& glyph, const Paints& paints,
                              const ORVMathAffine2D& toPage) {
    // Of other fonts, an image of the outline or of the layers would be made.
    if (!drawing_.fonts_.HasImages(*run.face)) return false;
    const ORVPrintColour colour = paints.inside.colour;
    const ORVGlyphBitmap bitmap = ORVMakeGlyphBitmap(*run.face, glyph.index, run.size * toPage.Enlargement(),
                                                     {colour.red, colour.green, colour.blue});
    if (!bitmap.image) return false;
    const double across = run.size * run.expansion;
    const ORVMathAffine2D box{
        bitmap.width * across,          0.0, 0.0, -bitmap.height * run.size, glyph.x + bitmap.left * across,
        glyph.y + bitmap.top * run.size};
    const bool isFaint = colour.opacity < 255;
    ORVPrintLayer layer;
    layer.opacity = colour.opacity / 255.0;
    layer.box = drawing_.page_;
    if (isFaint && !drawing_.Do(drawing_.generator_.BeginLayer(layer))) return true;
    drawing_.Do(drawing_.generator_.DrawImage({*bitmap.image, toPage * box}));
    if (isFaint) drawing_.Do(drawing_.generator_.EndLayer());
    return true;
}

namespace {

/// The style for a decoration line, with the paints and font of the element that specifies it.
Style StyleOf(const Decoration& decoration, const Style& style) {
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
    return painted;
}

}  // namespace

void TextDrawing::DrawLines(const TextSegment& segment, const Style& style, const DrawState& state,
                            double opacity, bool above) {
    using Grows = DecorationPlace::Grows;
    if (!style.decorations) return;
    for (const Decoration& decoration : *style.decorations) {
        const Style painted = StyleOf(decoration, style);
        const TextFont font = drawing_.fonts_.Find(painted, drawing_.scene_.GetFonts());
        const FontMetrics& metrics = font.metrics;
        const double size = decoration.fontSize * font.enlargement;
        Paints paints;
        MakePaints(painted, state, opacity, paints);
        const auto drawLine = [&](double middle, double thickness, DecorationPlace::Grows grows) {
            ORVPrintPath path;
            const DecorationPlace place{middle * size, thickness * size, segment.advance, grows};
            AddDecorationLine(path, place, decoration.style, decoration.thickness.value_or(place.thickness));
            Paint(paints, state, [&](const ORVPrintFill* fill, const ORVPrintStroke* pen) {
                if (fill || pen)
                    drawing_.Do(
                        drawing_.generator_.DrawShape({path, state.toPage * segment.line, fill, pen}));
            });
        };
        if (!above && (decoration.lines & kUnderline))
            drawLine(metrics.underline, metrics.underlineThickness, Grows::kDown);
        if (!above && (decoration.lines & kOverline))
            drawLine(metrics.ascent - metrics.underlineThickness / 2.0, metrics.underlineThickness,
                     Grows::kUp);
        if (above && (decoration.lines & kLineThrough))
            drawLine(metrics.strikeout, metrics.strikeoutThickness, Grows::kBothWays);
    }
}

}  // namespace svg2
