// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "interpreters/svg2/tree/Scene.h"
#include "platform/print/ORVPrintGenerator.h"

namespace svg2 {

/// A gradient with the attributes it takes from its templates, before it is applied to a shape.
struct GradientDefinition {
    ORVPrintGradient::Kind kind = ORVPrintGradient::Kind::kLinear;
    ORVPrintGradient::Spread spread = ORVPrintGradient::Spread::kPad;
    Units units = Units::kBoundingBox;
    ORVMathAffine2D transform;
    bool isSingular = false;  ///< the transform is singular: nothing is painted
    /// x1, y1, x2, y2 of a linear gradient; cx, cy, r, fx, fy, fr of a radial one.
    Length places[6];
    std::vector<ORVPrintGradientStop> stops;  ///< in ascending order of offset
};

/// The result of applying a gradient to a shape.
struct GradientPaint {
    enum class Kind : std::uint8_t {
        kNothing,  ///< nothing is painted
        kColour,   ///< a single colour
        kGradient,
        kUnusable,  ///< it needs a bounding box but that has no area: use the fallback
    };
    Kind kind = Kind::kNothing;
    ORVPrintColour colour;
    ORVPrintGradient gradient;  ///< its stops are views into `stops`
    std::vector<ORVPrintGradientStop> stops;
};

/// The gradients of a document, each resolved once.
class Gradients {
public:
    explicit Gradients(Scene& scene) : scene_(scene) {}

    static bool IsGradient(Tag tag) { return tag == Tag::kLinearGradient || tag == Tag::kRadialGradient; }

    /// Applies a gradient to a shape.
    /// @param box      bounding box of the shape, in user units
    /// @param toPage   from user units to page coordinates
    /// @param opacity  multiplied with the opacity of the stops
    void Make(ElementIndex gradient, const ORVMathBox2D& box, const Viewport& viewport,
              const ORVMathAffine2D& toPage, double opacity, GradientPaint& paint);
    /// Whether the gradient's coordinates are relative to the bounding box of the shape.
    bool NeedsBox(ElementIndex gradient) { return Find(gradient).units == Units::kBoundingBox; }

private:
    const GradientDefinition& Find(ElementIndex gradient);
    void Resolve(ElementIndex gradient, GradientDefinition& definition);
    void ReadStops(ElementIndex gradient, std::vector<ORVPrintGradientStop>& stops);

    Scene& scene_;
    std::unordered_map<ElementIndex, std::unique_ptr<GradientDefinition>> definitions_;
};

/// Applies an additional opacity to a colour.
ORVPrintColour MakeColour(const Colour& colour, double opacity);

}  // namespace svg2
