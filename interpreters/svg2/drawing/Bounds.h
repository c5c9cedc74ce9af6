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

/// Computes bounding boxes for clips, masks and paints: those of outlines, without strokes, markers and
/// clips.
class Bounds final : public ElementBoxes {
public:
    Bounds(Scene& scene, DrawingBudget& budget, TextFonts& fonts)
        : scene_(scene), budget_(budget), fonts_(fonts) {}

    /// The box of an element in its own user units, before its transform.
    /// @param map  from the element's user units to the coordinates of the result
    ORVMathBox2D Of(ElementIndex element, const Style& style, const Viewport& viewport,
                    const ORVMathAffine2D& map = {}) {
        return OfContent(element, style, viewport, map, 0);
    }

    /// Sets the images that provide the sizes of "image" elements without explicit ones; without it, these
    /// have no box.
    void SetImages(Images* images) { images_ = images; }
    /// The "use" through which an element is drawn: it sets the size of a symbol or nested "svg".
    struct DrawnUse {
        ElementIndex target = kNoElement, use = kNoElement;
        const Style* style = nullptr;  ///< of the "use"
    };
    /// Sets the "use" being drawn; the style must live until the next call.
    /// @return the previous one
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
    std::vector<ElementIndex> uses_;  // targets of "use" being followed
    DrawnUse drawn_;
};

}  // namespace svg2
