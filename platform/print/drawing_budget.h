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

/// What one drawing may still cost: work, for which every distinct primitive allows some more, and painted
/// area, which is what generators of pixels pay for. It stops what is out of proportion to its document. What
/// is refused answers with a failure of ORVPrintModelRender, all else with 1.
class ORVPrintDrawingBudget {
public:
    /// @param pages         to be drawn
    /// @param distinctWork  of drawing each of their primitives once
    ORVPrintDrawingBudget(const ORVPrtModel& model, std::span<const ORVPrtImageElt* const> pages,
                          const ORVPrintParameters& parameters, std::uint64_t distinctWork);

    /// Counts one primitive. Memory may have run short, which generators that keep what is drawn are to see
    /// in time; it is looked at now and then only.
    [[nodiscard]] int TakePrimitive(const ORVPrtGraphicPrimitiveElt& primitive);
    /// Takes the area of a path with its stroke, which may be null, as far as it lies on the page.
    [[nodiscard]] int TakePath(const ORVPrtImageElt& page, const ORVPrintPath& path,
                               const ORVMathAffine2D& toPage, const ORVPrintStroke* stroke);
    /// Takes the area of a text's box in page coordinates; dashes of its outlines count besides.
    [[nodiscard]] int TakeText(const ORVPrtImageElt& page, const ORVMathBox2D& box,
                               const ORVTextLayout& layout, const ORVPrintStroke* stroke);
    /// Takes the area of a box in page coordinates.
    [[nodiscard]] int TakeBox(const ORVPrtImageElt& page, const ORVMathBox2D& box) {
        return TakeArea(page, box, 0.0, 0.0);
    }

private:
    int TakeArea(const ORVPrtImageElt& page, const ORVMathBox2D& box, double margin, double surcharge);

    std::uint64_t drawn_ = 0;
    std::uint64_t workLeft_;  // see ORVDrawingWork
    double areaLeft_;         // user units squared
};
