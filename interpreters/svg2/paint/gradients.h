// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include "interpreters/svg2/tree/Scene.h"
#include "platform/print/ORVPrintGenerator.h"

namespace svg2 {

/// A gradient with all that it borrows from others, before it meets a shape.
struct GradientDefinition {
    ORVPrintGradient::Kind kind = ORVPrintGradient::Kind::kLinear;
    ORVPrintGradient::Spread spread = ORVPrintGradient::Spread::kPad;
    Units units = Units::kBoundingBox;
    ORVMathAffine2D transform;
    bool isSingular = false;  ///< the transform leaves no area: nothing is painted
    /// x1, y1, x2, y2 of a linear gradient; cx, cy, r, fx, fy, fr of a radial one.
    Length places[6];
    std::vector<ORVPrintGradientStop> stops;  ///< in ascending order
};

/// What a reference to a gradient gives on a shape.
struct GradientPaint {
    enum class Kind : std::uint8_t {
        kNothing,  ///< nothing is painted
        kColour,   ///< one colour
        kGradient,
        kUnusable,  ///< it asks for a box that has no area: the fallback paints
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

    /// Makes a paint of a gradient.
    /// @param box      of the shape, in user units
    /// @param toPage   from user units to the page
    /// @param opacity  that the paint is to have besides its stops' own
    void Make(ElementIndex gradient, const ORVMathBox2D& box, const Viewport& viewport,
              const ORVMathAffine2D& toPage, double opacity, GradientPaint& paint);
    /// Whether the gradient's coordinates are shares of a shape's box.
    bool NeedsBox(ElementIndex gradient) { return Find(gradient).units == Units::kBoundingBox; }

private:
    const GradientDefinition& Find(ElementIndex gradient);
    void Resolve(ElementIndex gradient, GradientDefinition& definition);
    void ReadStops(ElementIndex gradient, std::vector<ORVPrintGradientStop>& stops);

    Scene& scene_;
    std::unordered_map<ElementIndex, std::unique_ptr<GradientDefinition>> definitions_;
};

/// A colour with an opacity besides its own.
ORVPrintColour MakeColour(const Colour& colour, double opacity);

}  // namespace svg2
