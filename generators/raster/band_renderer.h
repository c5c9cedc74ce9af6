// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "generators/raster/ORVBandSink.h"
#include "generators/raster/coverage_buffer.h"
#include "generators/raster/display_list.h"
#include "generators/raster/gradient_source.h"
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

    /// Rows of a band that are painted at a time, so that the layers of a page find room.
    static int RowsOfStrip(const DisplayList& list, int bandRows);
    /// What a row of all layers may take (bytes): pages whose layers take more are not drawn.
    static constexpr std::size_t kMostLayerRowBytes = std::size_t{64} << 20U;

private:
    // Pixels that painting may touch beyond the end of a row.
    static constexpr std::size_t kRowPadding = 16;
    // Of a pixel while it is painted. One is of no use but that four pixels are painted at a time.
    static constexpr std::size_t kColourBytes = 4;

    class SolidColourPaint;
    class SolidGreyPaint;
    class AlphaPaint;

    /// What is painted on: the page, or memory for a layer or a mask.
    struct Surface {
        std::uint32_t layer = 0;         // its number
        RasterBounds bounds;             // that may be painted
        std::uint8_t* pixels = nullptr;  // premultiplied RGBA of the rows from firstRow on; null for the page
        std::uint8_t* isDrawn = nullptr;  // of each row
        std::uint8_t* mask = nullptr;     // what of the layer shows; null for all
        std::size_t stride = 0, maskStride = 0, memory = 0;
        int firstRow = 0, firstColumn = 0;
        bool isIsolated = true;
        bool isPlain = false;  // paints where the surface below does
    };
    /// How much a clip's outlines let through.
    struct MaskPlane {
        std::uint32_t mask = 0;  // its number, 0 for none
        RasterBounds bounds;     // where it is known
        std::vector<std::uint8_t> alphas;
    };
    struct WantedMask {
        std::uint32_t mask = 0;
        RasterBounds bounds;
    };

    /// @return false when the budget is used up
    bool PaintRows(int top, int bottom, std::span<const std::uint32_t> pieces);
    void FetchAhead(std::span<const std::uint32_t> pieces, std::size_t i) const;
    void FetchPixels() const;
    /// Where an operation may paint on the present surface. @return false when that is nowhere
    bool SetWindow(const RasterOperation& operation, const RasterPiece* onlyPiece);
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
    /// Leaves of a row's alphas what the clip does. @return false when nothing is left
    bool CutOff(const RasterOperation& operation, int row, int begin, int end, std::uint8_t* alphas) const;

    // Outlines of clips, in band_masks.cpp.
    void MakeMask(std::uint32_t mask, RasterBounds bounds);
    void MakePlane(std::uint32_t number, const RasterBounds& bounds);
    MaskPlane& PlaneOf(std::uint32_t mask);
    std::size_t MaskOffset(int row) const { return static_cast<std::size_t>(row - firstRow_) * maskStride_; }

    // Layers, in band_layers.cpp.
    void TakeStep(const RasterOperation& operation);
    void BeginSurface(std::uint32_t number);
    void TakeMemory(const RasterLayer& layer, Surface& surface);
    void EndMask(std::uint32_t number);
    void EndLayer(const RasterOperation& operation);
    void LayRow(const RasterLayer& layer, int row, const RasterBounds& bounds, const std::uint8_t* from);
    const std::uint8_t* GatherBelow(int row, const RasterBounds& bounds);
    static std::uint8_t* BeginLayerRow(const Surface& surface, int row);
    static std::uint8_t* AtPageEdge(const Surface& surface, std::uint8_t* row);
    /// @return null for a row of a layer that nothing was painted on
    std::uint8_t* FindRow(const Surface& surface, int row);

    void BlendRow(const RasterOperation& operation, int row, int begin, int end, std::uint8_t* alphas);
    void BlendColour(const ORVPrintColour& colour, std::uint8_t* pixels, int begin, int end,
                     const std::uint8_t* alphas) const;
    void LayPixels(const std::uint8_t* from, std::uint8_t* pixels, int begin, int end,
                   const std::uint8_t* alphas) const;

    /// The row, ready to be painted on; columns are counted from the page's edge.
    std::uint8_t* BeginRow(int row) {
        const Surface& surface = surfaces_.back();
        return surface.pixels ? BeginLayerRow(surface, row) : BeginPageRow(row);
    }
    std::uint8_t* BeginPageRow(int row);
    RasterBand Finish(int firstRow, int rowCount);
    void ClearUndrawnRows(int rowCount);
    void PackColours(RasterBand& band);
    void MakeGrey(int rowCount);
    void Dither(int firstRow, int rowCount);

    const DisplayList& list_;
    PictureStore& pictures_;
    PaintBudget& budget_;
    const RasterPixels pixels_;
    const int paper_;  // all bytes of a pixel that nothing is painted on
    const int width_;
    const std::size_t pixelBytes_;
    const std::size_t stride_, maskStride_;
    const int stripRows_;  // that are painted at a time
    int firstRow_ = 0, stripTop_ = 0, stripBottom_ = 0;
    int left_ = 0, right_ = 0;  // columns that the present operation may paint

    CoverageBuffer coverage_;
    StrokeOutliner outliner_{coverage_};
    StrokeDasher dasher_{outliner_};
    StrokeCourse course_;

    // Memory of rows is not touched before they are.
    std::unique_ptr<std::uint8_t[]> rows_;
    std::vector<std::uint8_t> isDrawn_;  // something was drawn on the row
    std::vector<std::uint8_t> isWhite_;  // the row's memory is paper
    // Of pages in colour: rows of three bytes a pixel, as encoders take them, and which of them are paper.
    std::unique_ptr<std::uint8_t[]> packed_;
    std::vector<std::uint8_t> isPackedWhite_;
    std::vector<std::uint8_t> alphas_, colours_, bits_;
    // Of clips; empty until there is one. A mask is drawn apart, and multiplied by the ones around it.
    std::array<MaskPlane, 4> planes_;
    std::vector<std::uint8_t> drawnMask_;
    CoverageBuffer maskCoverage_;
    std::vector<WantedMask> wantedMasks_;

    std::vector<Surface> surfaces_;  // from the page on
    std::vector<std::uint8_t> layerMemory_, below_;
    std::size_t layerMemoryUsed_ = 0;
    PictureSource source_;
    GradientSource gradient_;
};
