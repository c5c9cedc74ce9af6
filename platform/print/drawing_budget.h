// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

#include "platform/mathematics/geometry.h"

class ORVPrintParameters;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtImageElt;
class ORVPrtModel;
struct ORVPrintPath;
struct ORVPrintStroke;
struct ORVTextLayout;

/// Limits the cost of one drawing: the work, of which every distinct primitive allows some more, and the
/// painted area, which determines the time of raster output. Stops drawings whose cost is out of proportion
/// to their size. Functions return 1, or an error of ORVPrintModelRender when a limit is reached.
class ORVPrintDrawingBudget {
public:
    /// @param pages         the pages to draw
    /// @param distinctWork  work of drawing each of their primitives once
    ORVPrintDrawingBudget(const ORVPrtModel& model, std::span<const ORVPrtImageElt* const> pages,
                          const ORVPrintParameters& parameters, std::uint64_t distinctWork);

    /// Counts one primitive. From time to time, also checks for low memory on behalf of generators that keep
    /// what is drawn.
    [[nodiscard]] int TakePrimitive(const ORVPrtGraphicPrimitiveElt& primitive);
    /// Counts the painted area of a path and its stroke, clipped to the page. @param stroke  null for none
    [[nodiscard]] int TakePath(const ORVPrtImageElt& page, const ORVPrintPath& path,
                               const ORVMathAffine2D& toPage, const ORVPrintStroke* stroke);
    /// Counts the area of a text's bounding box in page coordinates, and the dashes of its outlines.
    [[nodiscard]] int TakeText(const ORVPrtImageElt& page, const ORVMathBox2D& box,
                               const ORVTextLayout& layout, const ORVPrintStroke* stroke);
    /// Counts the area of a box in page coordinates.
    [[nodiscard]] int TakeBox(const ORVPrtImageElt& page, const ORVMathBox2D& box) {
        return TakeArea(page, box, 0.0, 0.0);
    }

private:
    int TakeArea(const ORVPrtImageElt& page, const ORVMathBox2D& box, double margin, double surcharge);

    std::uint64_t drawn_ = 0;
    std::uint64_t workLeft_;  // in units of ORVDrawingWork
    double areaLeft_;         // square user units
};
