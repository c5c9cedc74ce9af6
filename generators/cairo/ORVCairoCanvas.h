// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cairo.h>

#include "generators/cairo/cairo_fonts.h"
#include "generators/cairo/cairo_images.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

struct ORVGlyphRun;

/// Draws shapes, texts and images with cairo, for vector formats: text stays text in embedded fonts. Caches
/// fonts and converted images across pages.
class ORVCairoCanvas {
public:
    /// Sets the context for the following calls; null for none. It must live until the next call of
    /// SetTarget.
    /// @param scale  device units per user unit
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
    /// Sets a paint. Uses page coordinates, so it must be called before the shape's matrix is set.
    void SetFillSource(const ORVPrintFill& fill);
    void SetColour(const ORVPrintColour& colour);
    /// @return false if the gradient cannot be drawn; no source is set then
    bool SetGradient(const ORVPrintGradient& gradient);
    void SetPagePattern(cairo_pattern_t* pattern, const ORVMathAffine2D& fromPage);
    /// Sets the matrix to `toPage` as a side effect.
    void SetStroke(const ORVPrintStroke& stroke, const ORVMathAffine2D& toPage);
    /// Fills the current path.
    void Fill(const ORVPrintFill& fill);
    void DrawRun(const ORVPrintText& text, const ORVGlyphRun& run);
    bool ReachesTooFar(const ORVGlyphRun& run);
    /// Draws glyphs from their font. @return false if cairo cannot use the font
    bool ShowGlyphs(const ORVPrintText& text, const ORVGlyphRun& run);
    /// Makes the outlines of a run the current path. @return false if its glyphs have no outlines
    bool AddOutlines(const ORVPrintText& text, const ORVGlyphRun& run);

    cairo_t* cr_ = nullptr;
    double scale_ = 1.0;
    CairoFontCache fonts_;
    CairoImageCache images_;
    ORVPrintPath fitted_;    // of the current shape
    ORVPrintPath outlines_;  // of the current glyphs
};
