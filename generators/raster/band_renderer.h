#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "generators/raster/ORVBandSink.h"
#include "generators/raster/coverage_buffer.h"
#include "generators/raster/display_list.h"
#include "generators/raster/paint_budget.h"
#include "generators/raster/picture_store.h"
#include "generators/raster/stroke_dashes.h"
#include "generators/raster/stroke_outline.h"

/// Draws bands of a page. One thread has one of its own.
class BandRenderer {
public:
    /// @param list, pictures, budget  must outlive the renderer
    BandRenderer(const DisplayList& list, PictureStore& pictures, PaintBudget& budget, RasterPixels pixels,
                 int bandRows);

    /// Draws the rows [firstRow, firstRow + rowCount); something is missing when the budget is used up.
    /// @param pieces  those that touch the band, in drawing order
    /// @return the band; valid until the next call
    RasterBand Render(int firstRow, int rowCount, std::span<const std::uint32_t> pieces);

private:
    // Pixels that painting may touch beyond the end of a row.
    static constexpr std::size_t kRowPadding = 16;
    // Of a pixel while it is painted. One is of no use but that four pixels are painted at a time.
    static constexpr std::size_t kColourBytes = 4;

    class SolidColourPaint;
    class SolidGreyPaint;
    class AlphaPaint;

    /// @return false when the budget is used up
    bool TellWork();
    void AddPiece(const RasterOperation& operation, const RasterPiece& piece);
    void AddContourFill(const RasterGeometry& geometry, const RasterContour& contour, std::uint32_t firstVerb,
                        std::uint32_t verbCount, std::uint32_t firstPoint);
    void AddContourStroke(const RasterOperation& operation, const RasterContour& contour);
    /// @param dashes  what is known of a part of a dashed contour; null for a solid one
    void AddVerbsStroke(const RasterOperation& operation, const RasterContour& contour,
                        const VerbRange& verbs, const DashedPart* dashes);
    void AddGlyph(const RasterOperation& operation, const RasterGlyphPlace& place);
    void Paint(const RasterOperation& operation);
    template <CoverageRule kRule>
    void PaintWith(const RasterOperation& operation);
    std::uint64_t WorkOfPixel(const RasterOperation& operation) const;
    void MakeMask(const RasterOperation& operation, const RasterGeometry& outline);
    void BlendRow(const RasterOperation& operation, int row, int begin, int end, std::uint8_t* alphas);
    void BlendColour(const ORVPrintColour& colour, std::uint8_t* pixels, int begin, int end,
                     const std::uint8_t* alphas) const;
    void BlendPicture(std::uint8_t* pixels, int begin, int end, const std::uint8_t* alphas) const;

    std::uint8_t* BeginRow(int row);
    RasterBand Finish(int firstRow, int rowCount);
    void PackColours(int rowCount);
    void Dither(int firstRow, int rowCount);

    const DisplayList& list_;
    PictureStore& pictures_;
    PaintBudget& budget_;
    const RasterPixels pixels_;
    const int width_;
    const std::size_t pixelBytes_;
    const std::size_t stride_, maskStride_;
    int firstRow_ = 0, rowCount_ = 0;

    CoverageBuffer coverage_;
    StrokeOutliner outliner_{coverage_};
    StrokeDasher dasher_{outliner_};
    StrokeCourse course_;

    std::vector<std::uint8_t> rows_;
    std::vector<std::uint8_t> isDrawn_;  // something was drawn on the row
    std::vector<std::uint8_t> isWhite_;  // the row's memory is white
    std::vector<std::uint8_t> alphas_, colours_, bits_;
    std::vector<std::uint8_t> mask_;  // of the present clip, with what makes it; empty until there is one
    CoverageBuffer maskCoverage_;
    PictureSource source_;
};
