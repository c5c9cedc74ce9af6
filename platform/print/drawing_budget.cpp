// SPDX-License-Identifier: Apache-2.0
#include "platform/print/drawing_budget.h"

#include <algorithm>
#include <cmath>

#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/print/primitive_count.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace {

constexpr int kDone = 1;

// Average area that a repeat may paint, in square user units.
constexpr double kAreaPerRepeat = 4096.0;
// Limits a single area, so that sums stay finite.
constexpr double kLargestArea = 1e200;

/// Allows every primitive of the document itself to cover its page with fill and stroke.
double AreaFor(const ORVPrtModel& model, std::span<const ORVPrtImageElt* const> pages,
               std::uint64_t repeatLimit) {
    double largestPage = 0.0;
    for (const ORVPrtImageElt* page : pages) {
        double width = 0.0, height = 0.0;
        page->GetSize(width, height);
        largestPage = std::max(largestPage, std::min(width * height, kLargestArea));
    }
    const ORVPrtPrimitiveBudget& made = model.GetBudget();
    return kAreaPerRepeat * static_cast<double>(repeatLimit) +
           2.0 * largestPage * static_cast<double>(made.GetTaken() - made.GetDuplicates());
}

/// Extra area that the dashes of a line count for.
/// @param length  approximate length of the line, in the units of the stroke
double DashSurcharge(const ORVPrintStroke& stroke, double length) {
    constexpr double kMostDashes = 1e5, kAreaPerDash = 64.0;
    if (stroke.dashes.empty()) return 0.0;
    double period = 0.0;
    for (const double dash : stroke.dashes) period += dash;
    const double dashes = length / period * static_cast<double>(stroke.dashes.size());
    return (dashes < kMostDashes ? dashes : kMostDashes) * kAreaPerDash;
}

/// Approximate length of a text's outlines: four times the font size per glyph.
double OutlineLength(const ORVTextLayout& layout) {
    double length = 0.0;
    for (const ORVGlyphRun& run : layout.runs)
        length += 4.0 * run.size * static_cast<double>(run.glyphs.size());
    return length;
}

}  // namespace

ORVPrintDrawingBudget::ORVPrintDrawingBudget(const ORVPrtModel& model,
                                             std::span<const ORVPrtImageElt* const> pages,
                                             const ORVPrintParameters& parameters, std::uint64_t distinctWork)
    : workLeft_(parameters.GetRepeatLimit() + (1 + kGrowthPerPrimitive) * distinctWork),
      areaLeft_(AreaFor(model, pages, parameters.GetRepeatLimit())) {}

int ORVPrintDrawingBudget::TakePrimitive(const ORVPrtGraphicPrimitiveElt& primitive) {
    constexpr std::uint64_t kInterval = 1024;
    constexpr double kLowMemoryFraction = 0.9;
    if (++drawn_ % kInterval == 0 && ORVPrintPropertiesManager::IsLowMemory(kLowMemoryFraction))
        return ORVPrintModelRender::kLowMemory;
    const std::uint64_t work = ORVDrawingWork(primitive);
    if (work > workLeft_) return ORVPrintModelRender::kTooManyRepeats;
    workLeft_ -= work;
    return kDone;
}

int ORVPrintDrawingBudget::TakePath(const ORVPrtImageElt& page, const ORVPrintPath& path,
                                    const ORVMathAffine2D& toPage, const ORVPrintStroke* stroke) {
    ORVMathBox2D box;
    for (const ORVMathPoint2D& point : path.points) box.Add(toPage(point));
    if (!stroke) return TakeArea(page, box, 0.0, 0.0);
    const double scale = toPage.Enlargement();
    const double length = (box.xMax - box.xMin + box.yMax - box.yMin) *
                          std::max(1.0, static_cast<double>(path.points.size()) / 4.0);
    return TakeArea(page, box, stroke->width * scale / 2.0, DashSurcharge(*stroke, length / scale));
}

int ORVPrintDrawingBudget::TakeText(const ORVPrtImageElt& page, const ORVMathBox2D& box,
                                    const ORVTextLayout& layout, const ORVPrintStroke* stroke) {
    return TakeArea(page, box, 0.0, stroke ? DashSurcharge(*stroke, OutlineLength(layout)) : 0.0);
}

int ORVPrintDrawingBudget::TakeArea(const ORVPrtImageElt& page, const ORVMathBox2D& box, double margin,
                                    double surcharge) {
    double width = 0.0, height = 0.0;
    page.GetSize(width, height);
    const auto extent = [margin](double least, double most, double end) {
        return std::min(most + margin, end) - std::max(least - margin, 0.0);
    };
    const double across = extent(box.xMin, box.xMax, width), down = extent(box.yMin, box.yMax, height);
    // Areas outside the page, and those that are NaN, are free.
    if (!(across > 0.0) || !(down > 0.0)) return kDone;
    areaLeft_ -= std::min(across * down + surcharge, kLargestArea);
    return areaLeft_ >= 0.0 ? kDone : ORVPrintModelRender::kTooManyRepeats;
}
