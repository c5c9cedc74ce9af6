// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <vector>

#include "generators/raster/glyph_store.h"
#include "generators/raster/gradient_store.h"
#include "generators/raster/outline_collector.h"
#include "generators/raster/outline_overlaps.h"
#include "generators/raster/pen_store.h"
#include "generators/raster/raster_memory.h"
#include "generators/raster/raster_operation.h"
#include "generators/raster/raster_pieces.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

struct ORVGlyphRun;

/// Contents of a page in device space, in drawing order. Its size depends on the content of the drawing, not
/// on the resolution.
class DisplayList {
public:
    /// @param scale     pixels per user unit
    /// @param thinnest  minimum line width, in pixels
    void Begin(int width, int height, double scale, double thinnest, bool smooths);
    void Clear();

    void BeginClip(const ORVMathBox2D& box);
    void BeginClipPath(const ORVPrintClipPath& clip);
    void EndClip();
    void BeginLayer(const ORVPrintLayer& layer);
    void EndLayer();
    void BeginMask(const ORVPrintMask& mask);
    void EndMask();
    void AddShape(const ORVPrintShape& shape);
    void AddText(const ORVPrintText& text);
    void AddImage(const ORVPrintImage& image);

    const RasterSequence<RasterOperation>& GetOperations() const { return operations_; }
    const RasterSequence<RasterPiece>& GetPieces() const { return pieces_; }
    const RasterSequence<RasterDashes>& GetDashes() const { return dashes_; }
    const std::vector<RasterClip>& GetClips() const { return clips_; }
    const std::vector<RasterClipMask>& GetClipMasks() const { return clipMasks_; }
    const std::vector<RasterLayer>& GetLayers() const { return layers_; }
    bool HasLayers() const { return layers_.size() > 1; }
    /// Maximum bytes of a row of all layers that are open at the same time.
    std::size_t GetLayerRowBytes() const { return layerRowBytes_; }
    int GetWidth() const { return width_; }
    int GetHeight() const { return height_; }
    /// True while only black, white and greys have been drawn.
    bool IsGrey() const { return isGrey_; }

private:
    ORVMathAffine2D ToDevice(const ORVMathAffine2D& toPage) const;
    RasterOperation NewOperation(const ORVPrintColour& colour) const;
    /// Minimum width of a line, in pixels.
    double ThinnestOf(const ORVPrintStroke& stroke) const;
    void AddPath(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, const ORVPrintFill* fill,
                 const ORVPrintStroke* stroke);
    /// Paints with a gradient instead of the colour, if that is possible.
    void SetGradient(const ORVPrintGradient* gradient, RasterOperation& operation);
    /// Draws an image on the unit square.
    void AddPixels(const ORVPixelImage& image, const ORVMathAffine2D& squareToDevice, std::uint8_t opacity,
                   bool isSmooth = true);
    /// Determines which columns an operation may touch, and whether its clip cuts anything off.
    /// @return false if nothing is left
    bool FitToClip(RasterOperation& operation, const RasterExtent& extent) const;
    /// Adds an operation on outlines.
    void AddOperation(RasterOperation operation, const RasterExtent& extent);
    /// Adds an operation on the collected glyphs.
    void AddGlyphs(RasterOperation operation);
    PieceCutter CutterFor(const RasterOperation& operation);

    // Clips and layers, in display_list_layers.cpp.
    struct KnownClip {
        ORVPrintPath path;
        ORVMathAffine2D toPage;
        bool evenOdd = false;
        std::uint32_t outer = 0, clip = 0;
    };
    /// A layer or mask that has begun but not ended.
    struct OpenedLayer {
        std::uint32_t number = 0;
        std::uint32_t clip = 0;                          // clips the whole layer
        std::size_t firstOperation = 0, firstPiece = 0;  // where it begins
        std::size_t maskBegin = 0, maskEnd = 0;          // indices of its mask's pieces
        std::size_t openClips = 0;                       // clips open around it, counting its window
        std::size_t innerRowBytes = 0;                   // bytes of a row of the layers inside
        RasterBounds content;                            // bounds of what was painted so far
        bool blends = false;                             // something in it uses the backdrop
    };
    RasterClip ClipOn(const ORVMathBox2D& box) const;
    /// Adds a clip inside another one.
    std::uint32_t AddClip(std::uint32_t outerNumber, RasterClip clip);
    /// @param keepsFractions  whether the bounding box also clips, including fractions of pixels, as for text
    std::uint32_t AddClipPath(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, bool evenOdd,
                              bool keepsFractions);
    void AddStep(RasterOperation operation, const RasterBounds& rows);
    void OpenLayer(RasterLayer layer, std::uint32_t clip, RasterStep step);
    OpenedLayer CloseLayer();
    void NoteContent(const RasterOperation& operation, std::size_t firstPiece);

    // Text, in display_list_text.cpp.
    void AddRun(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& toDevice);
    void AddRunOutlines(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& toDevice);
    /// Collects the glyphs of a run that have outlines. @return false if some have none
    bool CollectPlaces(const ORVGlyphRun& run, const ORVMathAffine2D& toDevice, RasterGeometry& origin);
    void AddGlyphBitmaps(const ORVGlyphRun& run, const ORVMathAffine2D& toDevice, const ORVPrintFill& fill);

    const PlacedImage* KeepImage(const ORVPixelImage& image, const ORVMathAffine2D& toDevice, bool repeats,
                                 bool isSmooth = true);

    int width_ = 0, height_ = 0;
    double scale_ = 1.0, thinnest_ = 0.0;
    bool smooths_ = true, isGrey_ = true;

    RasterArena arena_;
    RasterSequence<RasterOperation> operations_;
    RasterSequence<RasterPiece> pieces_;
    RasterSequence<RasterDashes> dashes_;
    std::vector<RasterClip> clips_;
    std::vector<std::uint32_t> openClips_;
    std::vector<RasterClipMask> clipMasks_;  // the first one means no mask
    std::array<KnownClip, 4> knownClips_;
    std::size_t nextKnownClip_ = 0;
    std::vector<RasterLayer> layers_;  // the first one is the page
    std::vector<OpenedLayer> openLayers_;
    std::uint32_t layer_ = 0;  // the one being painted on
    std::size_t layerRowBytes_ = 0;
    PenStore pens_;
    GlyphStore glyphs_;
    GradientStore gradients_{arena_};
    std::deque<PlacedImage> images_;

    OutlineCollector outlines_{arena_};
    // Members to reuse their memory between calls.
    SeenEdges seenEdges_;
    std::vector<RasterGlyphPlace> places_;
    ORVPrintPath path_;
};
