// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg2/drawing/DrawState.h"
#include "interpreters/svg2/paint/Paints.h"
#include "interpreters/svg2/text/TextLayout.h"
#include "interpreters/svg2/tree/Scene.h"

namespace svg2 {

class Drawing;

/// Draws "text" elements.
class TextDrawing {
public:
    explicit TextDrawing(Drawing& drawing) : drawing_(drawing) {}

    void Draw(ElementIndex element, const Style& style, const DrawState& state);

private:
    void DrawSegment(const TextLayout& layout, const TextSegment& segment, const DrawState& state);
    ElementIndex LinkAround(const TextLayout& layout, const TextSegment& segment) const;
    struct Paints;
    void MakePaints(const Style& style, const DrawState& state, double opacity, Paints& paints);
    template <class Action>
    void Paint(const Paints& paints, const DrawState& state, Action draw);
    template <class Action>
    void PaintTiles(const MadePaint& paint, const DrawState& state, double margin, Action draw);
    void DrawGlyphs(const TextSegment& segment, const Style& style, const DrawState& state, double opacity);
    void DrawColoured(const TextSegment& segment, const Paints& paints, const Style& style,
                      const DrawState& state);
    bool PaintGlyph(const ORVGlyphRun& run, const ORVGlyph& glyph, const Paints& paints,
                    const ORVMathAffine2D& toPage);
    bool DrawGlyphDrawing(const TextSegment& segment, const ORVGlyphRun& run, const ORVGlyph& glyph,
                          const Paints& paints, const Style& style, const DrawState& state);
    bool DrawImageOf(const ORVGlyphRun& run, const ORVGlyph& glyph, const Paints& paints,
                     const ORVMathAffine2D& toPage);
    void DrawLines(const TextSegment& segment, const Style& style, const DrawState& state, double opacity,
                   bool above);

    Drawing& drawing_;
    ORVMathBox2D box_;  // bounding box of the whole text
};

}  // namespace svg2
