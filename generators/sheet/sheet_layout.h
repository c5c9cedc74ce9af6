// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "generators/sheet/paper_sizes.h"
#include "platform/mathematics/geometry.h"

enum class ORVSheetOrientation {
    kAuto,  ///< as the paper is fed or turned, whichever shows the drawing larger
    kPortrait,
    kLandscape,
};

struct ORVSheetScale {
    enum class Kind {
        kAutomatic,  ///< natural size, reduced where the place is too small; fits when a sheet takes many
                     ///< pages
        kFactor,
        kFit,     ///< as large as the place allows
        kFill,    ///< as small as covers the place; what is too much is cut off
        kWithin,  ///< without a paper: as large as a box allows, whose size is known
    };
    Kind kind = Kind::kAutomatic;
    double factor = 1.0;  ///< of kFactor: 1 for the natural size
    /// Of kWithin, in user units: of the box. Infinite for a side that does not matter; not both.
    double width = 0.0, height = 0.0;
};

/// User units, not negative.
struct ORVSheetMargins {
    double top = 0.0, right = 0.0, bottom = 0.0, left = 0.0;
};

/// How pages of drawings come onto sheets. What is said of a place is true of the sheet within its margins,
/// and, where a sheet takes many pages, of each of its cells.
struct ORVSheetLayout {
    /// Without a paper, a sheet is as large as the scaled drawing and the margins.
    std::optional<ORVPaperSize> paper;
    ORVSheetOrientation orientation = ORVSheetOrientation::kAuto;
    ORVSheetScale scale;
    std::optional<ORVSheetMargins> margins;  ///< those of the kind of sheet when not said
    /// Where in its place a drawing lies, 0 for left and top, 1 for right and bottom. When not said, in the
    /// middle; parts of a poster begin left and at the top.
    std::optional<double> horizontalAlign, verticalAlign;
    bool isPoster = false;           ///< large drawings go over several sheets
    std::optional<double> overlap;   ///< of a poster's neighbouring sheets, user units
    unsigned int pagesPerSheet = 1;  ///< greater than 1: pages share a sheet

    ORVSheetMargins Margins() const;
    double Overlap() const;
};

/// The most pages that a sheet takes.
inline constexpr unsigned int kMostPagesPerSheet = 400;
/// The most sheets over which the pages of a document may go.
inline constexpr double kMostPosterSheets = 10'000.0;

/// Finds out whether a layout can work for any drawing at all.
/// @return empty when it can, else why not, in the words of a message
std::string ORVCheckSheetLayout(const ORVSheetLayout& layout);

/// A page in its place on a sheet.
struct ORVPlacedPage {
    ORVMathBox2D place;            ///< what of the sheet shows the page; nothing shows outside of it
    double scale = 1.0;            ///< from page to sheet
    double left = 0.0, top = 0.0;  ///< of the page's corner on the sheet
    bool isCut = true;             ///< whether the place has to be kept by a clip
    ORVMathAffine2D ToSheet() const { return {scale, 0.0, 0.0, scale, left, top}; }
};

/// A sheet for one page or a place for it.
struct ORVSheetOfOne {
    double width = 0.0, height = 0.0;
    ORVPlacedPage page;
};
/// @param width, height  of the page, positive and finite
/// @return nothing when the numbers leave what can be counted
std::optional<ORVSheetOfOne> ORVLayOutPage(const ORVSheetLayout& layout, double width, double height);

/// The sheets of a poster. Rows are counted from the top, columns from the left, both from 0.
struct ORVPoster {
    double width = 0.0, height = 0.0;  ///< of each sheet
    double columns = 1.0, rows = 1.0;  ///< whole numbers, perhaps past all bounds
    ORVMathBox2D room;                 ///< of each sheet, within its margins
    double overlap = 0.0;
    double scale = 1.0;
    double left = 0.0, top = 0.0;  ///< of the page's corner, as the first sheet counts
    double pageWidth = 0.0, pageHeight = 0.0;

    double SheetCount() const { return columns * rows; }
    double HorizontalStep() const { return room.xMax - room.xMin - overlap; }
    double VerticalStep() const { return room.yMax - room.yMin - overlap; }
    ORVPlacedPage Sheet(unsigned int row, unsigned int column) const;
    /// Row as letters, column as a number: A1, A2, B1; Z is followed by AA.
    static std::string Label(unsigned int row, unsigned int column);
};
std::optional<ORVPoster> ORVLayOutPoster(const ORVSheetLayout& layout, double width, double height);

/// A sheet of cells, filled by rows.
struct ORVSheetOfMany {
    double width = 0.0, height = 0.0;
    std::vector<ORVMathBox2D> cells;  ///< as many as pages go onto it
};
/// Lays the cells out as they suit a page of the given size best.
ORVSheetOfMany ORVLayOutCells(const ORVSheetLayout& layout, double width, double height);
std::optional<ORVPlacedPage> ORVPlaceInCell(const ORVSheetLayout& layout, const ORVMathBox2D& cell,
                                            double width, double height);

/// Sheets that pages of these sizes take in all; not a whole number that can be counted on past
/// kMostPosterSheets. Sizes are pairs of width and height.
double ORVCountSheets(const ORVSheetLayout& layout, const std::vector<ORVPaperSize>& pages);
