// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cairo.h>

#include "generators/cairo/cairo_fonts.h"
#include "generators/cairo/cairo_images.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

struct ORVGlyphRun;

/// Draws shapes, texts and images with cairo, for formats of vectors: text remains text in embedded fonts.
/// Holds what is used again from page to page: fonts and converted images.
class ORVCairoCanvas {
public:
    /// Draws on `context` from now on; null for nothing. It must stay until the next call.
    /// @param scale  device units in one user unit
    void SetTarget(cairo_t* context, double scale);

    /// Each returns 1, or kDrawingFailed when cairo is in an error state.
    int BeginClip(const ORVMathBox2D& box);
    int EndClip();
    int BeginClipPath(const ORVPrintClipPath& clip);
    int DrawShape(const ORVPrintShape& shape);
    int DrawText(const ORVPrintText& text);
    int DrawImage(const ORVPrintImage& image);

    /// 1, or kDrawingFailed when cairo is in an error state.
    int Status() const;

private:
    cairo_matrix_t DeviceMatrix(const ORVMathAffine2D& toPage) const;
    ORVMathAffine2D ToDevice(const ORVMathAffine2D& toPage) const;
    void AddPath(const ORVPrintPath& path);
    /// Sets a paint. Works in page coordinates, so it comes before the shape's matrix.
    void SetFillSource(const ORVPrintFill& fill);
    void SetColour(const ORVPrintColour& colour);
    /// @return false when the gradient cannot be drawn; nothing was set then
    bool SetGradient(const ORVPrintGradient& gradient);
    void SetPagePattern(cairo_pattern_t* pattern, const ORVMathAffine2D& fromPage);
    /// Leaves the matrix that is `toPage`'s.
    void SetStroke(const ORVPrintStroke& stroke, const ORVMathAffine2D& toPage);
    /// Fills the current path.
    void Fill(const ORVPrintFill& fill);
    void DrawRun(const ORVPrintText& text, const ORVGlyphRun& run);
    bool ReachesTooFar(const ORVGlyphRun& run);
    /// Draws glyphs by their font. @return false when cairo cannot use the font
    bool ShowGlyphs(const ORVPrintText& text, const ORVGlyphRun& run);
    /// Makes the run's outlines the current path. @return false when its glyphs have none
    bool AddOutlines(const ORVPrintText& text, const ORVGlyphRun& run);

    cairo_t* cr_ = nullptr;
    double scale_ = 1.0;
    CairoFontCache fonts_;
    CairoImageCache images_;
    ORVPrintPath fitted_;    // of the shape at hand
    ORVPrintPath outlines_;  // of the glyphs at hand
};
