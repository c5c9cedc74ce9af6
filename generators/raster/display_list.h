#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "generators/raster/glyph_store.h"
#include "generators/raster/outline_collector.h"
#include "generators/raster/pen_store.h"
#include "generators/raster/raster_memory.h"
#include "generators/raster/raster_operation.h"
#include "generators/raster/raster_pieces.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

struct ORVGlyphRun;

/// What a page shows, in device space and in drawing order. Its size goes with the drawing's content, not
/// with the page's resolution.
class DisplayList {
public:
    /// @param scale     pixels in a user unit
    /// @param thinnest  lines are at least so wide, in pixels
    void Begin(int width, int height, double scale, double thinnest, bool smooths);
    void Clear();

    void BeginClip(const ORVMathBox2D& box);
    void EndClip();
    void AddShape(const ORVPrintShape& shape);
    void AddText(const ORVPrintText& text);
    void AddImage(const ORVPrintImage& image);

    const RasterSequence<RasterOperation>& GetOperations() const { return operations_; }
    const RasterSequence<RasterPiece>& GetPieces() const { return pieces_; }
    const RasterSequence<RasterDashes>& GetDashes() const { return dashes_; }
    const std::vector<RasterClip>& GetClips() const { return clips_; }
    int GetWidth() const { return width_; }
    int GetHeight() const { return height_; }
    /// True while nothing but black, white and greys was drawn.
    bool IsGrey() const { return isGrey_; }

private:
    ORVMathAffine2D ToDevice(const ORVMathAffine2D& toPage) const;
    RasterOperation NewOperation(const ORVPrintColour& colour) const;
    void AddPath(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, const ORVPrintFill* fill,
                 const ORVPrintStroke* stroke);
    /// Draws an image on the unit square.
    void AddPixels(const ORVPixelImage& image, const ORVMathAffine2D& squareToDevice, std::uint8_t opacity);
    /// Finds out which columns an operation may touch, and whether its clip cuts anything off.
    /// @return false when nothing of it is left
    bool FitToClip(RasterOperation& operation, const RasterExtent& extent) const;
    /// Adds an operation on outlines.
    void AddOperation(RasterOperation operation, const RasterExtent& extent);
    /// Adds an operation on the glyphs that were collected.
    void AddGlyphs(RasterOperation operation);
    PieceCutter CutterFor(const RasterOperation& operation);

    // Text, in display_list_text.cpp.
    std::uint32_t ClipText(const ORVPrintPath& path);
    void AddRun(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& toDevice);
    void AddRunOutlines(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& toDevice);
    /// Collects the glyphs of a run that have outlines. @return false when some have none
    bool CollectPlaces(const ORVGlyphRun& run, const ORVMathAffine2D& toDevice, RasterGeometry& origin);
    void AddGlyphPictures(const ORVGlyphRun& run, const ORVMathAffine2D& toDevice, const ORVPrintFill& fill);

    const RasterPicture* KeepPicture(const ORVPixelImage& image, const ORVMathAffine2D& toDevice,
                                     bool repeats);
    std::uint32_t AddClip(RasterClip clip);

    int width_ = 0, height_ = 0;
    double scale_ = 1.0, thinnest_ = 0.0;
    bool smooths_ = true, isGrey_ = true;

    RasterArena arena_;
    RasterSequence<RasterOperation> operations_;
    RasterSequence<RasterPiece> pieces_;
    RasterSequence<RasterDashes> dashes_;
    std::vector<RasterClip> clips_;
    std::vector<std::uint32_t> openClips_;
    PenStore pens_;
    GlyphStore glyphs_;
    std::deque<RasterPicture> pictures_;

    OutlineCollector outlines_{arena_};
    // Kept between calls for their memory.
    std::vector<RasterGlyphPlace> places_;
    ORVPrintPath path_;
};
