// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>
#include <vector>

#include "interpreters/svg2/drawing/DrawState.h"
#include "interpreters/svg2/drawing/DrawingBudget.h"
#include "interpreters/svg2/drawing/Images.h"
#include "interpreters/svg2/text/FontMetrics.h"
#include "interpreters/svg2/tree/Scene.h"

namespace svg2 {

/// Computes the boxes that units of clips, masks and paints refer to: those of outlines, without strokes,
/// markers and clips.
class Bounds final : public ElementBoxes {
public:
    Bounds(Scene& scene, DrawingBudget& budget, TextFonts& fonts)
        : scene_(scene), budget_(budget), fonts_(fonts) {}

    /// The box of an element in its own user units, which its transform is not part of.
    /// @param map  from the element's user units to where the box is wanted
    ORVMathBox2D Of(ElementIndex element, const Style& style, const Viewport& viewport,
                    const ORVMathAffine2D& map = {}) {
        return OfContent(element, style, viewport, map, 0);
    }

    /// Where the sizes of images come from that do not state theirs; without, these have no box.
    void SetImages(Images* images) { images_ = images; }
    /// What an element is drawn for: the size of a symbol or of an inner `svg` is that of its `use`.
    struct DrawnUse {
        ElementIndex target = kNoElement, use = kNoElement;
        const Style* style = nullptr;  ///< of the use
    };
    /// Notes that; the style must live until something else is noted. @return what was noted before
    DrawnUse NoteUse(const DrawnUse& drawn) { return std::exchange(drawn_, drawn); }

    ORVMathBox2D BoxOf(ElementIndex element, const Style& style, const Viewport& viewport) override {
        return Of(element, style, viewport);
    }

private:
    ORVMathBox2D OfContent(ElementIndex element, const Style& style, const Viewport& viewport,
                           const ORVMathAffine2D& map, int depth);
    ORVMathBox2D OfChildren(ElementIndex element, const Style& style, const Viewport& viewport,
                            const ORVMathAffine2D& map, int depth);
    ORVMathBox2D OfImage(ElementIndex element, const Style& style, const Viewport& viewport,
                         const ORVMathAffine2D& map);
    ORVMathBox2D OfUse(ElementIndex element, const Style& style, const Viewport& viewport,
                       const ORVMathAffine2D& map, int depth);
    ORVMathBox2D OfViewport(ElementIndex element, const Style& style, const Viewport& viewport,
                            const ORVMathAffine2D& map, ElementIndex use, const Style* useStyle, int depth);
    ORVMathBox2D OfChild(ElementIndex child, const Style& parent, const Viewport& viewport,
                         const ORVMathAffine2D& map, int depth);

    Scene& scene_;
    DrawingBudget& budget_;
    TextFonts& fonts_;
    Images* images_ = nullptr;
    std::vector<ElementIndex> uses_;  // that are being followed
    DrawnUse drawn_;
};

}  // namespace svg2
