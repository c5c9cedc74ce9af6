// SPDX-License-Identifier: Apache-2.0
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
    /// @param pieces, dashes      receive the pieces
    PieceCutter(const RasterOperation& operation, std::uint32_t number, int firstRow, int lastRow,
                RasterSequence<RasterPiece>& pieces, RasterSequence<RasterDashes>& dashes);

    /// @param extent  that of the operation's outlines
    void CutOutlines(const RasterExtent& extent);
    /// @return the extent of the glyphs
    RasterExtent CutGlyphs(std::span<const RasterGlyphPlace> places);

private:
    void CutContour(std::uint32_t number);
    void CutDashedContour(std::uint32_t number);
    /// Adds verbs of a contour. @return false when no row has anything of them
    bool AddVerbs(const RasterContour& contour, const VerbRange& verbs, std::uint32_t pointCount);
    /// Adds the piece that was begun. @return false when it touches no row
    bool Add(double top, double bottom);

    const RasterOperation& operation_;
    const double reach_;
    const int firstRow_, lastRow_;
    RasterSequence<RasterPiece>& pieces_;
    RasterSequence<RasterDashes>& dashes_;
    RasterPiece piece_;
};
