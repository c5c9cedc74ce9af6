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

// What a display list consists of. All of it is in device space.

struct RasterGlyphPlace {
    const RasterGlyph* glyph = nullptr;
    float x = 0.0F, y = 0.0F;  // from the operation's origin
};

/// Pixels that paint an inside.
struct RasterPicture {
    ORVRef<const ORVPixelImage> image;
    ORVMathAffine2D toDevice;  // from the image's pixels
    bool repeats = false;      // else the image's border goes on without end
    bool isSmooth = true;      // else each pixel is an area of one colour
};

/// What cuts a drawing off: a box in device space, fractions of pixels included, and perhaps outlines.
struct RasterClip {
    double left = 0.0, top = 0.0, right = 0.0, bottom = 0.0;
    std::uint32_t mask = 0;  ///< number of the innermost outline; 0 for none
    bool isWindow = false;   ///< whole pixels, beyond which there is no memory either
};

/// An outline that cuts a drawing off, together with those around it.
struct RasterClipMask {
    RasterGeometry outline;
    bool evenOdd = false;
    std::uint32_t outer = 0;  ///< number of the outline around it; 0 for none
    std::uint32_t depth = 0;  ///< how many lie around it
    RasterBounds bounds;      ///< beyond which it leaves nothing
};

/// What an operation does: all but painting is about layers.
enum class RasterStep : std::uint8_t { kPaint, kBeginLayer, kBeginMask, kEndMask, kEndLayer };

/// One paint on one area: all its outlines together, drawn once.
struct RasterOperation {
    RasterGeometry geometry;                   // of paths
    const RasterGlyphPlace* glyphs = nullptr;  // or of glyphs
    const StrokePen* pen = nullptr;            // draws the outlines; null for none
    const RasterPicture* picture = nullptr;    // paints instead of the colour
    const RasterGradient* gradient = nullptr;  // does, too
    std::uint32_t clip = 0;
    ORVPrintColour colour;
    RasterStep step = RasterStep::kPaint;
    bool fills : 1 = true;
    bool evenOdd : 1 = false;
    bool smooths : 1 = true;   // false: no levels of coverage
    bool clipped : 1 = false;  // something of it may lie outside of the clip
    std::uint32_t layer = 0;   // number of the one that it paints on, or that the step is about
    int left = 0, right = 0;   // pixel columns that may be touched, [left, right)

    /// Pixels that it may extend from its outlines.
    double GetReach() const { return pen ? pen->reach : 0.0; }
};

/// A part of an operation, small enough to be looked at as a whole in every band that it touches.
struct RasterPiece {
    static constexpr std::uint32_t kAll = 0xFFFFFFFFU, kDashes = 0xFFFFFFFEU;
    std::uint32_t operation = 0;
    int firstRow = 0, lastRow = 0;  // rows that it may touch, on the page
    std::uint32_t contour = kAll;   // all of the operation's contours, or verbs of one, or dashes
    std::uint32_t firstVerb = 0, verbCount = 0;
    // Where the first verb starts; of glyphs: the first one; of dashes: the number of a RasterDashes.
    std::uint32_t firstPoint = 0;
};

/// A part of a long dashed contour.
struct RasterDashes {
    std::uint32_t contour = 0;
    VerbRange verbs;
    DashedPart part;
};
