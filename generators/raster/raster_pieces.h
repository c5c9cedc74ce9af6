#pragma once

#include <cstdint>
#include <span>

#include "generators/raster/raster_memory.h"
#include "generators/raster/raster_operation.h"

/// Cuts operations into pieces and notes which rows each may touch.
class PieceCutter {
public:
    /// @param operation           number of the operation that the pieces are of
    /// @param firstRow, lastRow   pieces that touch none of these rows are left out
    /// @param pieces              receives the pieces
    PieceCutter(const RasterOperation& operation, std::uint32_t number, int firstRow, int lastRow,
                RasterSequence<RasterPiece>& pieces);

    /// @param extent  that of the operation's outlines
    void CutOutlines(const RasterExtent& extent);
    /// @return the extent of the glyphs
    RasterExtent CutGlyphs(std::span<const RasterGlyphPlace> places);

private:
    void CutContour(const RasterContour& contour, std::uint32_t mostVerbs);
    /// Adds the piece that was begun.
    void Add(double top, double bottom);

    const RasterOperation& operation_;
    const double reach_;
    const int firstRow_, lastRow_;
    RasterSequence<RasterPiece>& pieces_;
    RasterPiece piece_;
};
