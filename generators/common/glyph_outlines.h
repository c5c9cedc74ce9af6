// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintPath.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

/// Appends glyph outlines to a path, translated to their positions.
class ORVGlyphOutlineCollector final : public ORVGlyphOutlineSink {
public:
    /// @param path       receives the outlines; must outlive the collector
    /// @param expansion  horizontal scale of the glyphs
    ORVGlyphOutlineCollector(ORVPrintPath& path, double expansion) : path_(path), expansion_(expansion) {}

    /// Sets the position of the next glyph's origin.
    void SetOrigin(double x, double y) { originX_ = x, originY_ = y; }

    void MoveTo(double x, double y) override { path_.MoveTo(current_ = Place(x, y)); }
    void LineTo(double x, double y) override { path_.LineTo(current_ = Place(x, y)); }
    void QuadTo(double controlX, double controlY, double x, double y) override {
        const ORVMathPoint2D control = Place(controlX, controlY), end = Place(x, y);
        path_.CubicTo(TwoThirds(current_, control), TwoThirds(end, control), end);
        current_ = end;
    }
    void CubicTo(double control1X, double control1Y, double control2X, double control2Y, double x,
                 double y) override {
        path_.CubicTo(Place(control1X, control1Y), Place(control2X, control2Y), current_ = Place(x, y));
    }
    void Close() override { path_.Close(); }

private:
    ORVMathPoint2D Place(double x, double y) const { return {originX_ + x * expansion_, originY_ + y}; }
    static ORVMathPoint2D TwoThirds(const ORVMathPoint2D& from, const ORVMathPoint2D& to) {
        return {from.x + (to.x - from.x) * 2.0 / 3.0, from.y + (to.y - from.y) * 2.0 / 3.0};
    }

    ORVPrintPath& path_;
    const double expansion_;
    double originX_ = 0.0, originY_ = 0.0;
    ORVMathPoint2D current_;
};

/// Replaces `path` by the outlines of a glyph run, in the coordinates of the layout.
inline void ORVCollectOutlines(const ORVGlyphRun& run, ORVPrintPath& path) {
    path.Clear();
    ORVGlyphOutlineCollector collector(path, run.expansion);
    for (const ORVGlyph& glyph : run.glyphs) {
        collector.SetOrigin(glyph.x, glyph.y);
        run.face->DrawGlyph(glyph.index, run.size, collector);
    }
}
