// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <vector>

#include "interpreters/svg2/paint/gradients.h"
#include "interpreters/svg2/tree/Scene.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// The paints that "context-fill" and "context-stroke" refer to, with the coordinates of the context element.
struct ContextPaints {
    const Style* style = nullptr;
    std::function<ORVMathBox2D()> box;  ///< in user units of the context element; computed only if needed
    Viewport viewport;
    ORVMathAffine2D toPage;
    const ContextPaints* outer = nullptr;  ///< context of the context element; null for none
};

/// The element that a paint is made for.
struct PaintPlace {
    const Style& style;
    const Viewport& viewport;
    const ORVMathAffine2D& toPage;      ///< from user units to page coordinates
    const ContextPaints* context;       ///< null for none
    std::function<ORVMathBox2D()> box;  ///< bounding box in user units; computed only if needed
};

/// A paint in the form that generators use.
struct MadePaint {
    enum class Kind : std::uint8_t { kNothing, kColour, kGradient, kPattern };
    Kind kind = Kind::kNothing;
    ORVPrintColour colour;
    GradientPaint gradient;
    // For patterns only:
    ElementIndex pattern = kNoElement;
    double opacity = 1.0;
    ORVMathBox2D box;
    Viewport viewport;
    ORVMathAffine2D toPage;

    const ORVPrintGradient* GetGradient() const {
        return kind == Kind::kGradient ? &gradient.gradient : nullptr;
    }
};

/// A pen in the form that generators use. It is not copied: `stroke` refers to `dashes`.
struct MadePen {
    MadePen() = default;
    MadePen(const MadePen&) = delete;
    MadePen& operator=(const MadePen&) = delete;

    ORVPrintStroke stroke;
    std::vector<double> dashes;
};

/// Converts the paints of styles to those of generators.
class Paints {
public:
    explicit Paints(Scene& scene) : scene_(scene), gradients_(scene) {}

    void MakeFill(const PaintPlace& place, double opacity, MadePaint& made) {
        Make(place.style.fill, place.style.fillOpacity * opacity, place, made);
    }
    void MakeStroke(const PaintPlace& place, double opacity, MadePaint& made) {
        Make(place.style.stroke, place.style.strokeOpacity * opacity, place, made);
    }
    void Make(const Paint& paint, double opacity, const PaintPlace& place, MadePaint& made);

    /// Sets width, caps, joins and dashes of a stroke.
    /// @param dashScale  actual length of the path divided by its "pathLength"
    /// @return false if there is no stroke to draw
    bool MakePen(const Style& style, const Viewport& viewport, double dashScale, MadePen& pen);

private:
    bool UsesFallback(const Paint& paint, ElementIndex pattern, const ORVMathBox2D& box,
                      const Viewport& viewport);
    void MakeReferenced(const Paint& paint, double opacity, const PaintPlace& place, MadePaint& made);
    void MakePlain(Paint::Kind kind, const Colour& colour, double opacity, const PaintPlace& place,
                   MadePaint& made);

    Scene& scene_;
    Gradients gradients_;
};

/// Length of a path in user units, as used for dashes.
double LengthOf(const ORVPrintPath& path);

}  // namespace svg2
