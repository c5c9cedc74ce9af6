#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "generators/raster/ORVBandSink.h"
#include "generators/raster/coverage_buffer.h"
#include "generators/raster/display_list.h"
#include "generators/raster/picture_store.h"
#include "generators/raster/stroke_outline.h"

/// Draws bands of a page. One thread has one of its own.
class BandRenderer {
public:
    /// @param list, pictures  must outlive the renderer
    BandRenderer(const DisplayList& list, PictureStore& pictures, RasterPixels pixels, int bandRows);

    /// Draws the rows [firstRow, firstRow + rowCount).
    /// @param pieces  those that touch the band, in drawing order
    /// @return the band; valid until the next call
    RasterBand Render(int firstRow, int rowCount, std::span<const std::uint32_t> pieces);

private:
    class SolidColourPaint;
    class SolidGreyPaint;
    class AlphaPaint;

    void AddPiece(const RasterOperation& operation, const RasterPiece& piece);
    void AddContourFill(const RasterGeometry& geometry, const RasterContour& contour, std::uint32_t firstVerb,
                        std::uint32_t verbCount, std::uint32_t firstPoint);
    void AddContourStroke(const RasterOperation& operation, const RasterContour& contour);
    void AddVerbsStroke(const RasterOperation& operation, const RasterContour& contour,
                        const RasterPiece& piece);
    void AddGlyph(const RasterOperation& operation, const RasterGlyphPlace& place);
    void CollectVerbs(const RasterGeometry& geometry, const RasterContour& contour, std::uint32_t firstVerb,
                      std::uint32_t verbCount, std::uint32_t firstPoint);
    int PiecesOf(const ORVMathPoint2D& p0, const ORVMathPoint2D& p1, const ORVMathPoint2D& p2,
                 const ORVMathPoint2D& p3) const;
    void Paint(const RasterOperation& operation);
    template <CoverageRule kRule>
    void PaintWith(const RasterOperation& operation);
    void MakeMask(const RasterOperation& operation, const RasterGeometry& outline);
    void BlendRow(const RasterOperation& operation, int row, int begin, int end, std::uint8_t* alphas);

    std::uint8_t* BeginRow(int row);
    RasterBand Finish(int firstRow, int rowCount);
    void PackColours(int rowCount);
    void Dither(int firstRow, int rowCount);

    const DisplayList& list_;
    PictureStore& pictures_;
    const RasterPixels pixels_;
    const int width_;
    const std::size_t pixelBytes_;
    const std::size_t stride_, maskStride_;
    int firstRow_ = 0, rowCount_ = 0;

    CoverageBuffer coverage_;
    StrokeOutliner outliner_{coverage_};
    StrokeCourse course_;
    double penRadius_ = 0.0;  // of the pen that a course is collected for

    std::vector<std::uint8_t> rows_;
    std::vector<std::uint8_t> isDrawn_;  // something was drawn on the row
    std::vector<std::uint8_t> isWhite_;  // the row's memory is white
    std::vector<std::uint8_t> alphas_, colours_, mask_, bits_;
    PictureSource source_;
};
