// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/mathematics/geometry.h"
#include "platform/model/ORVPrtGraphicPrimitiveElt.h"

class ORVPrtPrimitiveBudget;

/// Computes boxes of primitives: those of the geometry (no stroke width), exact for curves and arcs, through
/// all transforms. A bitmap's box is its origin and size, a text's comes from the font's metrics; points
/// that are not finite are left out. Where a text cannot be set (see ORVMeasureText), there is no box, and
/// the budget notes it. A pattern, a polyline without points and an empty container have none.
class ORV_PLATFORM_EXPORT ORVPrintModelBoundingBoxComputer {
public:
    /// Primitives that one computer visits when nothing else is said.
    static constexpr std::uint64_t kVisitLimit = 100'000'000;

    /// @param visitLimit  primitives that the computer visits at most over its life, shared ones counted each
    ///                    time. Past it, boxes are reported as absent
    explicit ORVPrintModelBoundingBoxComputer(std::uint64_t visitLimit = kVisitLimit)
        : visitsLeft_(visitLimit) {}
    /// @param budget  of a model, which bounds the visits instead; outlives the computer
    explicit ORVPrintModelBoundingBoxComputer(ORVPrtPrimitiveBudget& budget) : budget_(&budget) {}

    /// Box of a primitive, its own transform included (a page has none).
    /// @return 1 when there is a box; 0 when there is none, with all four written as 0
    int Compute(const ORVPrtGraphicPrimitiveElt& primitive, double& xMin, double& xMax, double& yMin,
                double& yMax);

    /// Box of a container's children, without the container's own transform; results as Compute.
    int ComputeChildren(const ORVPrtGraphicPrimitiveElt& container, double& xMin, double& xMax, double& yMin,
                        double& yMax);

private:
    int Finish(const ORVMathBox2D& box, bool complete, double& xMin, double& xMax, double& yMin,
               double& yMax) const;

    bool Walk(const ORVPrtChildList& children, ORVMathBox2D& box);

    std::uint64_t visitsLeft_ = 0;
    ORVPrtPrimitiveBudget* budget_ = nullptr;
};
