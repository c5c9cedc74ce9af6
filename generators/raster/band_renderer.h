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
#include "generators/raster/image_store.h"
#include "generators/raster/paint_budget.h"
#include "generators/raster/stroke_dashes.h"
#include "generators/raster/stroke_outline.h"

/// Renders bands of a page. Not thread-safe: each thread needs its own renderer.
class BandRenderer {
public:
    /// @param list, images, budget  must outlive the renderer
    BandRenderer(const DisplayList& list, ImageStore& images, PaintBudget& budget, RasterPixels pixels,
                 int bandRows);

    /// Renders the rows [firstRow, firstRow + rowCount). The result is incomplete if the budget is used up.
    /// @param pieces  indices of the pieces that touch the band, in drawing order
    /// @return the band; valid until the next call
    RasterBand Render(int firstRow, int rowCount, std::span<const std::uint32_t> pieces);

    /// Rows of a band that are painted at once. Fewer if the page has layers, to limit their memory.
    static int RowsOfStrip(const DisplayList& list, int bandRows);
    /// Maximum bytes for one row of all layers; pages that need more are not drawn.
    static constexpr std::size_t kMostLayerRowBytes = std::size_t{64} << 20U;

private:
    // Pixels past the end of a row that painting may write to.
    static constexpr std::size_t kRowPadding = 16;
    // Bytes of a pixel while it is painted. The fourth is unused; it aligns pixels so that four fit a vector.
    static constexpr std::size_t kColourBytes = 4;

    class SolidColourPaint;
    class SolidGreyPaint;
    class AlphaPaint;

    /// A target for painting: the page, or the memory of a layer or a mask.
    struct Surface {
        std::uint32_t layer = 0;         // its index
        RasterBounds bounds;             // area that may be painted
        std::uint8_t* pixels = nullptr;  // premultiplied RGBA of the rows from firstRow on; null for the page
        std::uint8_t* isDrawn = nullptr;  // for each row
        std::uint8_t* mask = nullptr;     // alpha mask of the layer; null for none
        std::size_t stride = 0, maskStride = 0, memory = 0;
        int firstRow = 0, firstColumn = 0;
        bool isIsolated = true;
        bool isPlain = false;  // paints directly on the surface below
    };
    /// Coverage of a clip path.
    struct MaskPlane {
        std::uint32_t mask = 0;  // its index, 0 for none
        RasterBounds bounds;     // area that `alphas` is valid for
        std::vector<std::uint8_t> alphas;
    };
    struct WantedMask {
        std::uint32_t mask = 0;
        RasterBounds bounds;
    };

    /// @return false if the budget is used up
    bool PaintRows(int top, int bottom, std::span<const std::uint32_t> pieces);
    void FetchAhead(std::span<const std::uint32_t> pieces, std::size_t i) const;
    void FetchPixels() const;
    /// Sets the area that an operation may paint on the current surface. @return false if it is empty
    bool SetWindow(const RasterOperation& operation, const RasterPiece* onlyPiece);
    /// @return false if the budget is used up
    bool TellWork();
    void AddPiece(const RasterOperation& operation, const RasterPiece& piece);
    void AddContourFill(const RasterGeometry& geometry, const RasterContour& contour, std::uint32_t firstVerb,
                        std::uint32_t verbCount, std::uint32_t firstPoint);
    void AddContourStroke(const RasterOperation& operation, const RasterContour& contour);
    /// @param dashes  known part of a dashed contour; null for a solid one
    void AddVerbsStroke(const RasterOperation& operation, const RasterContour& contour,
                        const VerbRange& verbs, const DashedPart* dashes);
    void AddGlyph(const RasterOperation& operation, const RasterGlyphPlace& place);
    void Paint(const RasterOperation& operation);
    template <CoverageRule kRule>
    void PaintWith(const RasterOperation& operation);
    std::uint64_t WorkOfPixel(const RasterOperation& operation) const;
    /// Multiplies the alphas of a row by the coverage of the clip path. @return false if nothing is left
    bool CutOff(const RasterOperation& operation, int row, int begin, int end, std::uint8_t* alphas) const;

    // Clip paths, in band_masks.cpp.
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
    /// @return null for a row of a layer on which nothing was painted
    std::uint8_t* FindRow(const Surface& surface, int row);

    void BlendRow(const RasterOperation& operation, int row, int begin, int end, std::uint8_t* alphas);
    void BlendColour(const ORVPrintColour& colour, std::uint8_t* pixels, int begin, int end,
                     const std::uint8_t* alphas) const;
    void LayPixels(const std::uint8_t* from, std::uint8_t* pixels, int begin, int end,
                   const std::uint8_t* alphas) const;

    /// The row prepared for painting; columns are counted from the left edge of the page.
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
    ImageStore& images_;
    PaintBudget& budget_;
    const RasterPixels pixels_;
    const int paper_;  // byte value of unpainted pixels
    const int width_;
    const std::size_t pixelBytes_;
    const std::size_t stride_, maskStride_;
    const int stripRows_;  // painted at once
    int firstRow_ = 0, stripTop_ = 0, stripBottom_ = 0;
    int left_ = 0, right_ = 0;  // columns that the current operation may paint

    CoverageBuffer coverage_;
    StrokeOutliner outliner_{coverage_};
    StrokeDasher dasher_{outliner_};
    StrokeCourse course_;

    // Memory of rows is not touched before they are.
    std::unique_ptr<std::uint8_t[]> rows_;
    std::vector<std::uint8_t> isDrawn_;  // whether something was drawn on the row
    std::vector<std::uint8_t> isWhite_;  // whether the row's memory is all paper
    // Of pages in colour: rows of three bytes a pixel, as encoders take them, and which of them are paper.
    std::unique_ptr<std::uint8_t[]> packed_;
    std::vector<std::uint8_t> isPackedWhite_;
    std::vector<std::uint8_t> alphas_, colours_, bits_;
    // For clip paths; empty until there is one. Each mask is rendered separately and multiplied by those
    // around it.
    std::array<MaskPlane, 4> planes_;
    std::vector<std::uint8_t> drawnMask_;
    CoverageBuffer maskCoverage_;
    std::vector<WantedMask> wantedMasks_;

    std::vector<Surface> surfaces_;  // the first one is the page
    std::vector<std::uint8_t> layerMemory_, below_;
    std::size_t layerMemoryUsed_ = 0;
    ImageSampler source_;
    GradientSource gradient_;
};
