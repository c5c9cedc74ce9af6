// SPDX-License-Identifier: Apache-2.0
#include "generators/sheet/sheet_layout.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr double kPosterMargin = 10.0 * kPaperMillimetre;
constexpr double kPosterOverlap = 10.0 * kPaperMillimetre;
// Space between the cells of a sheet.
constexpr double kGutter = 4.0 * kPaperMillimetre;
// Tolerance for rounding errors of sizes.
constexpr double kRounding = 1e-6;

bool IsSize(double value) { return value > 0.0 && std::isfinite(value); }

/// The possible paper orientations, beginning with that of its name.
std::vector<ORVPaperSize> Feeds(const ORVSheetLayout& layout) {
    const ORVPaperSize& paper = *layout.paper;
    const ORVPaperSize turned{paper.height, paper.width};
    switch (layout.orientation) {
        case ORVSheetOrientation::kPortrait: return {paper.width <= paper.height ? paper : turned};
        case ORVSheetOrientation::kLandscape: return {paper.width >= paper.height ? paper : turned};
        case ORVSheetOrientation::kAuto: break;
    }
    return {paper, turned};
}

/// The area of the sheet inside its margins; empty if they leave nothing.
ORVMathBox2D Room(const ORVPaperSize& sheet, const ORVSheetMargins& margins) {
    ORVMathBox2D room;
    room.xMin = margins.left;
    room.yMin = margins.top;
    room.xMax = sheet.width - margins.right;
    room.yMax = sheet.height - margins.bottom;
    return room.xMin < room.xMax && room.yMin < room.yMax ? room : ORVMathBox2D();
}

double Width(const ORVMathBox2D& box) { return box.xMax - box.xMin; }
double Height(const ORVMathBox2D& box) { return box.yMax - box.yMin; }

/// The largest scale at which a page fits into a box.
double FittingScale(const ORVMathBox2D& box, double width, double height) {
    return std::min(Width(box) / width, Height(box) / height);
}

double Scale(const ORVSheetScale& scale, const ORVMathBox2D& place, double width, double height) {
    const double fitting = FittingScale(place, width, height);
    switch (scale.kind) {
        case ORVSheetScale::Kind::kAutomatic: return fitting < 1.0 - kRounding ? fitting : 1.0;
        case ORVSheetScale::Kind::kFit: return fitting;
        case ORVSheetScale::Kind::kFill: return std::max(Width(place) / width, Height(place) / height);
        case ORVSheetScale::Kind::kWithin:
        case ORVSheetScale::Kind::kFactor: break;
    }
    return scale.factor;
}

/// The scale of a page without a paper size.
double OwnScale(const ORVSheetScale& scale, double width, double height) {
    switch (scale.kind) {
        case ORVSheetScale::Kind::kFactor: return scale.factor;
        case ORVSheetScale::Kind::kWithin: return std::min(scale.width / width, scale.height / height);
        case ORVSheetScale::Kind::kAutomatic:
        case ORVSheetScale::Kind::kFit:
        case ORVSheetScale::Kind::kFill: break;
    }
    return 1.0;
}

/// Positions a page and reduces its place to the size of the page.
std::optional<ORVPlacedPage> Place(const ORVSheetLayout& layout, const ORVMathBox2D& place, double scale,
                                   double width, double height) {
    const double shownWidth = width * scale, shownHeight = height * scale;
    if (!IsSize(shownWidth) || !IsSize(shownHeight)) return std::nullopt;
    ORVPlacedPage page;
    page.scale = scale;
    page.left = place.xMin + (Width(place) - shownWidth) * layout.horizontalAlign.value_or(0.5);
    page.top = place.yMin + (Height(place) - shownHeight) * layout.verticalAlign.value_or(0.5);
    page.place.xMin = std::max(place.xMin, page.left);
    page.place.yMin = std::max(place.yMin, page.top);
    page.place.xMax = std::min(place.xMax, page.left + shownWidth);
    page.place.yMax = std::min(place.yMax, page.top + shownHeight);
    return page;
}

/// Number of steps of `room` minus `overlap` that cover a length.
double Steps(double length, double room, double overlap) {
    if (length <= room * (1.0 + kRounding)) return 1.0;
    return std::max(1.0, std::ceil((length - overlap) / (room - overlap) - kRounding));
}

std::string Millimetres(double userUnits) {
    const double tenths = std::round(userUnits / kPaperMillimetre * 10.0);
    std::string text = std::to_string(static_cast<long long>(tenths / 10.0));
    if (const int rest = static_cast<int>(std::fmod(tenths, 10.0)); rest != 0)
        text += "." + std::to_string(rest);
    return text;
}

std::string Size(const ORVPaperSize& sheet) {
    return Millimetres(sheet.width) + " x " + Millimetres(sheet.height) + " mm";
}

/// Rows and columns of cells on a sheet.
struct CellGrid {
    unsigned int columns, rows;
};

ORVMathBox2D Cell(const ORVMathBox2D& room, const CellGrid& grid, unsigned int number) {
    const double width = (Width(room) - kGutter * (grid.columns - 1)) / grid.columns;
    const double height = (Height(room) - kGutter * (grid.rows - 1)) / grid.rows;
    const unsigned int row = number / grid.columns;
    ORVMathBox2D cell;
    cell.xMin = room.xMin + (width + kGutter) * (number % grid.columns);
    cell.yMin = room.yMin + (height + kGutter) * row;
    cell.xMax = cell.xMin + width;
    cell.yMax = cell.yMin + height;
    return width > 0.0 && height > 0.0 ? cell : ORVMathBox2D();
}

}  // namespace

ORVSheetMargins ORVSheetLayout::Margins() const {
    if (margins) return *margins;
    // The margins of a poster contain marks and labels.
    if (isPoster) return {kPosterMargin, kPosterMargin, kPosterMargin, kPosterMargin};
    return {};
}

double ORVSheetLayout::Overlap() const { return overlap.value_or(isPoster ? kPosterOverlap : 0.0); }

std::string ORVCheckSheetLayout(const ORVSheetLayout& layout) {
    if (layout.scale.kind == ORVSheetScale::Kind::kFactor && !IsSize(layout.scale.factor))
        return "the scale must be greater than 0";
    if (!layout.paper) return {};
    for (const ORVPaperSize& sheet : Feeds(layout)) {
        const ORVMathBox2D room = Room(sheet, layout.Margins());
        if (room.IsEmpty()) return "the margins leave nothing of a sheet of " + Size(sheet);
        if (layout.isPoster && std::min(Width(room), Height(room)) <= layout.Overlap() * (1.0 + kRounding))
            return "an overlap of " + Millimetres(layout.Overlap()) + " mm leaves nothing of a sheet of " +
                   Size(sheet) + " within its margins";
        if (layout.pagesPerSheet > 1 &&
            ORVLayOutCells(layout, sheet.width, sheet.height).cells.size() < layout.pagesPerSheet)
            return "a sheet of " + Size(sheet) + " has no room for " + std::to_string(layout.pagesPerSheet) +
                   " pages";
    }
    return {};
}

std::optional<ORVSheetOfOne> ORVLayOutPage(const ORVSheetLayout& layout, double width, double height) {
    const ORVSheetMargins margins = layout.Margins();
    ORVSheetOfOne sheet;
    if (!layout.paper) {
        const double scale = OwnScale(layout.scale, width, height);
        const double shownWidth = width * scale, shownHeight = height * scale;
        if (!IsSize(shownWidth) || !IsSize(shownHeight)) return std::nullopt;
        sheet.width = shownWidth + margins.left + margins.right;
        sheet.height = shownHeight + margins.top + margins.bottom;
        sheet.page.scale = scale;
        sheet.page.left = margins.left;
        sheet.page.top = margins.top;
        sheet.page.place.xMin = margins.left;
        sheet.page.place.yMin = margins.top;
        sheet.page.place.xMax = margins.left + shownWidth;
        sheet.page.place.yMax = margins.top + shownHeight;
    } else {
        double best = -1.0;
        for (const ORVPaperSize& feed : Feeds(layout)) {
            const ORVMathBox2D room = Room(feed, margins);
            if (room.IsEmpty()) continue;
            const double fitting = FittingScale(room, width, height);
            if (!(fitting > best * (1.0 + kRounding))) continue;
            best = fitting;
            const auto page = Place(layout, room, Scale(layout.scale, room, width, height), width, height);
            if (!page) return std::nullopt;
            sheet = {feed.width, feed.height, *page};
        }
        if (!IsSize(best)) return std::nullopt;
    }
    const ORVMathBox2D& place = sheet.page.place;
    // Content off the sheet is invisible without a clip.
    sheet.page.isCut =
        place.xMin > 0.0 || place.yMin > 0.0 || place.xMax < sheet.width || place.yMax < sheet.height;
    if (!IsSize(sheet.width) || !IsSize(sheet.height)) return std::nullopt;
    return sheet;
}

ORVPlacedPage ORVPoster::Sheet(unsigned int row, unsigned int column) const {
    ORVPlacedPage page;
    page.scale = scale;
    page.left = left - column * HorizontalStep();
    page.top = top - row * VerticalStep();
    page.place.xMin = std::max(room.xMin, page.left);
    page.place.yMin = std::max(room.yMin, page.top);
    page.place.xMax = std::min(room.xMax, page.left + pageWidth * scale);
    page.place.yMax = std::min(room.yMax, page.top + pageHeight * scale);
    return page;
}

std::string ORVPoster::Label(unsigned int row, unsigned int column) {
    std::string letters;
    for (unsigned int rest = row + 1; rest > 0; rest = (rest - 1) / 26)
        letters.insert(letters.begin(), static_cast<char>('A' + (rest - 1) % 26));
    return letters + std::to_string(column + 1);
}

std::optional<ORVPoster> ORVLayOutPoster(const ORVSheetLayout& layout, double width, double height) {
    const double scale = layout.scale.kind == ORVSheetScale::Kind::kFactor ? layout.scale.factor : 1.0;
    const double shownWidth = width * scale, shownHeight = height * scale;
    if (!layout.paper || !IsSize(shownWidth) || !IsSize(shownHeight)) return std::nullopt;
    std::optional<ORVPoster> best;
    double bestFitting = 0.0;
    for (const ORVPaperSize& feed : Feeds(layout)) {
        ORVPoster poster;
        poster.width = feed.width;
        poster.height = feed.height;
        poster.room = Room(feed, layout.Margins());
        poster.overlap = layout.Overlap();
        if (poster.room.IsEmpty() || !(poster.HorizontalStep() > 0.0) || !(poster.VerticalStep() > 0.0))
            continue;
        poster.columns = Steps(shownWidth, Width(poster.room), poster.overlap);
        poster.rows = Steps(shownHeight, Height(poster.room), poster.overlap);
        poster.scale = scale;
        poster.pageWidth = width;
        poster.pageHeight = height;
        // Prefers fewer sheets, then the orientation in which the drawing is larger.
        const double fitting = FittingScale(poster.room, width, height);
        if (best && !(poster.SheetCount() < best->SheetCount()) &&
            !(poster.SheetCount() == best->SheetCount() && fitting > bestFitting * (1.0 + kRounding)))
            continue;
        const double blankWidth =
            poster.HorizontalStep() * (poster.columns - 1.0) + Width(poster.room) - shownWidth;
        const double blankHeight =
            poster.VerticalStep() * (poster.rows - 1.0) + Height(poster.room) - shownHeight;
        poster.left = poster.room.xMin + blankWidth * layout.horizontalAlign.value_or(0.0);
        poster.top = poster.room.yMin + blankHeight * layout.verticalAlign.value_or(0.0);
        best = poster;
        bestFitting = fitting;
    }
    return best;
}

ORVSheetOfMany ORVLayOutCells(const ORVSheetLayout& layout, double width, double height) {
    ORVSheetOfMany best;
    double bestScale = 0.0;
    const unsigned int count = layout.pagesPerSheet;
    for (const ORVPaperSize& feed : Feeds(layout)) {
        const ORVMathBox2D room = Room(feed, layout.Margins());
        if (room.IsEmpty()) continue;
        for (unsigned int columns = 1; columns <= count; ++columns) {
            const CellGrid grid{columns, (count + columns - 1) / columns};
            const ORVMathBox2D first = Cell(room, grid, 0);
            if (first.IsEmpty()) continue;
            const double scale = FittingScale(first, width, height);
            if (!(scale > bestScale * (1.0 + kRounding))) continue;
            bestScale = scale;
            best = {feed.width, feed.height, {}};
            for (unsigned int i = 0; i < count; ++i) best.cells.push_back(Cell(room, grid, i));
        }
    }
    return best;
}

std::optional<ORVPlacedPage> ORVPlaceInCell(const ORVSheetLayout& layout, const ORVMathBox2D& cell,
                                            double width, double height) {
    ORVSheetScale scale = layout.scale;
    if (scale.kind == ORVSheetScale::Kind::kAutomatic) scale.kind = ORVSheetScale::Kind::kFit;
    return Place(layout, cell, Scale(scale, cell, width, height), width, height);
}

double ORVCountSheets(const ORVSheetLayout& layout, const std::vector<ORVPaperSize>& pages) {
    if (layout.pagesPerSheet > 1) return std::ceil(static_cast<double>(pages.size()) / layout.pagesPerSheet);
    double count = 0.0;
    for (const ORVPaperSize& page : pages) {
        const auto poster = layout.isPoster ? ORVLayOutPoster(layout, page.width, page.height) : std::nullopt;
        count += poster ? poster->SheetCount() : 1.0;
    }
    return count;
}
