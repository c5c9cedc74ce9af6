// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "generators/raster/glyph_store.h"
#include "generators/raster/raster_gradient.h"
#include "generators/raster/raster_layer.h"
#include "generators/raster/raster_outline.h"
#include "generators/raster/stroke_dashes.h"
#include "generators/raster/stroke_pen.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

// Elements of a display list. All coordinates are in device space.

struct RasterGlyphPlace {
    const RasterGlyph* glyph = nullptr;
    float x = 0.0F, y = 0.0F;  // from the operation's origin
};

/// An image used as paint.
struct PlacedImage {
    ORVRef<const ORVPixelImage> image;
    ORVMathAffine2D toDevice;  // from image pixels
    bool repeats = false;      // otherwise the edge pixels extend without end
    bool isSmooth = true;      // otherwise each pixel is an area of one colour
};

/// A clip: a rectangle in device space, including fractions of pixels, and optionally a clip path.
struct RasterClip {
    double left = 0.0, top = 0.0, right = 0.0, bottom = 0.0;
    std::uint32_t mask = 0;  ///< index of the innermost clip path; 0 for none
    bool isWindow = false;   ///< whole pixels only; there is no memory outside
};

/// A clip path, linked to those around it.
struct RasterClipMask {
    RasterGeometry outline;
    bool evenOdd = false;
    std::uint32_t outer = 0;  ///< index of the clip path around it; 0 for none
    std::uint32_t depth = 0;  ///< number of clip paths around it
    RasterBounds bounds;      ///< nothing shows outside
};

/// Kind of an operation: kPaint paints, the others begin and end layers and masks.
enum class RasterStep : std::uint8_t { kPaint, kBeginLayer, kBeginMask, kEndMask, kEndLayer };

/// One paint applied to one area: all its outlines are drawn together.
struct RasterOperation {
    RasterGeometry geometry;                   // for paths
    const RasterGlyphPlace* glyphs = nullptr;  // for glyphs
    const StrokePen* pen = nullptr;            // strokes the outlines; null to fill only
    const PlacedImage* image = nullptr;        // painted instead of the colour
    const RasterGradient* gradient = nullptr;  // painted instead of the colour
    std::uint32_t clip = 0;
    ORVPrintColour colour;
    RasterStep step = RasterStep::kPaint;
    bool fills : 1 = true;
    bool evenOdd : 1 = false;
    bool smooths : 1 = true;    // false: no antialiasing
    bool isCrisp : 1 = false;   // the drawing asks for no antialiasing on a page that has it
    bool overlaps : 1 = false;  // its outlines may overlap within pixels, which must not show
    bool clipped : 1 = false;   // part of it may lie outside the clip
    std::uint32_t layer = 0;    // index of the layer to paint on, or to begin or end
    int left = 0, right = 0;    // pixel columns that may be touched, [left, right)

    /// Pixels that it may extend beyond its outlines.
    double GetReach() const { return pen ? pen->reach : 0.0; }
};

/// A part of an operation, small enough to be processed as a whole in every band it touches.
struct RasterPiece {
    static constexpr std::uint32_t kAll = 0xFFFFFFFFU, kDashes = 0xFFFFFFFEU;
    std::uint32_t operation = 0;
    int firstRow = 0, lastRow = 0;  // page rows it may touch
    std::uint32_t contour = kAll;   // index of a contour, or kAll or kDashes
    std::uint32_t firstVerb = 0, verbCount = 0;
    // Index of the first verb's start point, of the first glyph, or of a RasterDashes.
    std::uint32_t firstPoint = 0;
};

/// A part of a long dashed contour.
struct RasterDashes {
    std::uint32_t contour = 0;
    VerbRange verbs;
    DashedPart part;
};
