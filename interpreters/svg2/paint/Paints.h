// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <vector>

#include "interpreters/svg2/paint/gradients.h"
#include "interpreters/svg2/tree/Scene.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// Paints that "context-fill" and "context-stroke" mean: those of the element around, where that stands.
struct ContextPaints {
    const Style* style = nullptr;
    std::function<ORVMathBox2D()> box;  ///< in its user units; asked for when it is needed only
    Viewport viewport;
    ORVMathAffine2D toPage;
    const ContextPaints* outer = nullptr;  ///< of the context element itself; null for none
};

/// What a paint needs to know of the element that it paints.
struct PaintPlace {
    const Style& style;
    const Viewport& viewport;
    const ORVMathAffine2D& toPage;      ///< from user units
    const ContextPaints* context;       ///< null for none
    std::function<ORVMathBox2D()> box;  ///< in user units; asked for when it is needed only
};

/// A paint for a generator.
struct MadePaint {
    enum class Kind : std::uint8_t { kNothing, kColour, kGradient, kPattern };
    Kind kind = Kind::kNothing;
    ORVPrintColour colour;
    GradientPaint gradient;
    // Of a pattern:
    ElementIndex pattern = kNoElement;
    double opacity = 1.0;
    ORVMathBox2D box;
    Viewport viewport;
    ORVMathAffine2D toPage;

    const ORVPrintGradient* GetGradient() const {
        return kind == Kind::kGradient ? &gradient.gradient : nullptr;
    }
};

/// Turns the paints of styles into those of generators.
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

    /// Width, caps, joins and dashes of a style's outline.
    /// @param dashScale  true length of the path by the length that it is said to have
    /// @return false when there is no outline to draw
    bool MakePen(const Style& style, const Viewport& viewport, double dashScale, ORVPrintStroke& stroke);

private:
    void MakeReferenced(const Paint& paint, double opacity, const PaintPlace& place, MadePaint& made);
    void MakePlain(Paint::Kind kind, const Colour& colour, double opacity, const PaintPlace& place,
                   MadePaint& made);

    Scene& scene_;
    Gradients gradients_;
    std::vector<double> dashes_;
};

/// Length of a path in user units, as its dashes run.
double LengthOf(const ORVPrintPath& path);

}  // namespace svg2
