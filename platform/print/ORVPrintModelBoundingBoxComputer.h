// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"

class ORVPrtPrimitiveBudget;

/// Computes bounding boxes of primitives from their geometry (without stroke width), exact for curves and
/// arcs, with all transformations applied. The box of a bitmap comes from its origin and size, that of a text
/// from the font metrics. Points that are not finite are ignored. Patterns, polylines without points and
/// empty containers have no box; neither has a text that cannot be set (see ORVMeasureText), which is noted
/// in the budget.
class ORV_PLATFORM_EXPORT ORVPrintModelBoundingBoxComputer {
public:
    /// Default limit of visited primitives.
    static constexpr std::uint64_t kVisitLimit = 100'000'000;

    /// @param visitLimit  largest number of primitives visited over the computer's lifetime; shared ones
    /// count each time. Once it is exceeded, boxes are reported as absent
    explicit ORVPrintModelBoundingBoxComputer(std::uint64_t visitLimit = kVisitLimit)
        : visitsLeft_(visitLimit) {}
    /// @param budget  of a model; bounds the visits instead. Must outlive the computer
    explicit ORVPrintModelBoundingBoxComputer(ORVPrtPrimitiveBudget& budget) : budget_(&budget) {}

    /// Bounding box of a primitive, including its own transformation (a page has none).
    /// @return 1 when there is a box; 0 when there is none, with all four values set to 0
    int Compute(const ORVPrtGraphicPrimitiveElt& primitive, double& xMin, double& xMax, double& yMin,
                double& yMax);

    /// Bounding box of a container's children, without the container's own transformation; return values as
    /// for Compute.
    int ComputeChildren(const ORVPrtGraphicPrimitiveElt& container, double& xMin, double& xMax, double& yMin,
                        double& yMax);

private:
    int Finish(const ORVMathBox2D& box, bool complete, double& xMin, double& xMax, double& yMin,
               double& yMax) const;

    bool Walk(const ORVPrtChildList& children, ORVMathBox2D& box);

    std::uint64_t visitsLeft_ = 0;
    ORVPrtPrimitiveBudget* budget_ = nullptr;
};
