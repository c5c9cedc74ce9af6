// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <span>

#include "generators/raster/raster_memory.h"
#include "generators/raster/raster_operation.h"

/// Splits operations into pieces and records which rows each may touch.
class PieceCutter {
public:
    /// @param number            index of the operation that the pieces belong to
    /// @param firstRow, lastRow  pieces that touch none of these rows are dropped
    /// @param pieces, dashes     receive the pieces
    PieceCutter(const RasterOperation& operation, std::uint32_t number, int firstRow, int lastRow,
                RasterSequence<RasterPiece>& pieces, RasterSequence<RasterDashes>& dashes);

    /// @param extent  bounding box of the operation's outlines
    void CutOutlines(const RasterExtent& extent);
    /// @return the bounding box of the glyphs
    RasterExtent CutGlyphs(std::span<const RasterGlyphPlace> places);

private:
    void CutContour(std::uint32_t number);
    void CutDashedContour(std::uint32_t number);
    /// Adds verbs of a contour. @return false if they touch no row
    bool AddVerbs(const RasterContour& contour, const VerbRange& verbs, std::uint32_t pointCount);
    /// Adds the current piece. @return false if it touches no row
    bool Add(double top, double bottom);

    const RasterOperation& operation_;
    const double reach_;
    const int firstRow_, lastRow_;
    RasterSequence<RasterPiece>& pieces_;
    RasterSequence<RasterDashes>& dashes_;
    RasterPiece piece_;
};
