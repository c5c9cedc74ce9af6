// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "generators/sheet/paper_sizes.h"
#include "platform/mathematics/geometry.h"

enum class ORVSheetOrientation {
    kAuto,  ///< portrait or landscape, whichever shows the drawing larger
    kPortrait,
    kLandscape,
};

struct ORVSheetScale {
    enum class Kind {
        kAutomatic,  ///< natural size, reduced to fit if necessary; kFit if a sheet takes several pages
        kFactor,
        kFit,     ///< as large as fits
        kFill,    ///< as small as covers the place; the excess is clipped
        kWithin,  ///< without a paper size: as large as fits into a given box
    };
    Kind kind = Kind::kAutomatic;
    double factor = 1.0;  ///< for kFactor: 1 is the natural size
    /// For kWithin: size of the box in user units. One of them may be infinite.
    double width = 0.0, height = 0.0;
};

/// In user units, not negative.
struct ORVSheetMargins {
    double top = 0.0, right = 0.0, bottom = 0.0, left = 0.0;
};

/// How pages of drawings are placed on sheets. A "place" is the sheet inside its margins or, if a sheet takes
/// several pages, a cell of it.
struct ORVSheetLayout {
    /// Absent: a sheet is as large as the scaled drawing plus margins.
    std::optional<ORVPaperSize> paper;
    ORVSheetOrientation orientation = ORVSheetOrientation::kAuto;
    ORVSheetScale scale;
    std::optional<ORVSheetMargins> margins;  ///< absent: the default for the kind of sheet
    /// Alignment of the drawing in its place: 0 for left and top, 1 for right and bottom. Absent: centred, or
    /// left and top for posters.
    std::optional<double> horizontalAlign, verticalAlign;
    bool isPoster = false;           ///< large drawings are split over several sheets
    std::optional<double> overlap;   ///< of adjacent sheets of a poster, in user units
    unsigned int pagesPerSheet = 1;  ///< greater than 1: pages share a sheet

    ORVSheetMargins Margins() const;
    double Overlap() const;
};

/// Maximum number of pages per sheet.
inline constexpr unsigned int kMostPagesPerSheet = 400;
/// Maximum number of sheets for a document of posters.
inline constexpr double kMostPosterSheets = 10'000.0;

/// Checks whether a layout can work for any drawing.
/// @return empty if it can, otherwise the text of an error message
std::string ORVCheckSheetLayout(const ORVSheetLayout& layout);

/// A page positioned on a sheet.
struct ORVPlacedPage {
    ORVMathBox2D place;            ///< area of the sheet that the page is clipped to
    double scale = 1.0;            ///< from page to sheet
    double left = 0.0, top = 0.0;  ///< position of the page's corner on the sheet
    bool isCut = true;             ///< whether a clip to `place` is needed
    ORVMathAffine2D ToSheet() const { return {scale, 0.0, 0.0, scale, left, top}; }
};

/// A sheet with a single page.
struct ORVSheetOfOne {
    double width = 0.0, height = 0.0;
    ORVPlacedPage page;
};
/// @param width, height  of the page, positive and finite
/// @return nothing if the sizes overflow
std::optional<ORVSheetOfOne> ORVLayOutPage(const ORVSheetLayout& layout, double width, double height);

/// The sheets of a poster. Rows are numbered from the top and columns from the left, both from 0.
struct ORVPoster {
    double width = 0.0, height = 0.0;  ///< of each sheet
    double columns = 1.0, rows = 1.0;  ///< integers, without an upper limit
    ORVMathBox2D room;                 ///< area of each sheet inside its margins
    double overlap = 0.0;
    double scale = 1.0;
    double left = 0.0, top = 0.0;  ///< position of the page's corner relative to the first sheet
    double pageWidth = 0.0, pageHeight = 0.0;

    double SheetCount() const { return columns * rows; }
    double HorizontalStep() const { return room.xMax - room.xMin - overlap; }
    double VerticalStep() const { return room.yMax - room.yMin - overlap; }
    ORVPlacedPage Sheet(unsigned int row, unsigned int column) const;
    /// Rows are letters, columns numbers: A1, A2, B1; Z is followed by AA.
    static std::string Label(unsigned int row, unsigned int column);
};
std::optional<ORVPoster> ORVLayOutPoster(const ORVSheetLayout& layout, double width, double height);

/// A sheet divided into cells, filled row by row.
struct ORVSheetOfMany {
    double width = 0.0, height = 0.0;
    std::vector<ORVMathBox2D> cells;  ///< one per page
};
/// Arranges the cells to suit a page of the given size best.
ORVSheetOfMany ORVLayOutCells(const ORVSheetLayout& layout, double width, double height);
std::optional<ORVPlacedPage> ORVPlaceInCell(const ORVSheetLayout& layout, const ORVMathBox2D& cell,
                                            double width, double height);

/// Number of sheets for pages of these sizes. Inexact beyond kMostPosterSheets. Sizes are pairs of width and
/// height.
double ORVCountSheets(const ORVSheetLayout& layout, const std::vector<ORVPaperSize>& pages);
