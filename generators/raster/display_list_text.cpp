// SPDX-License-Identifier: Apache-2.0

// Adds text to a display list.

#include <algorithm>
#include <memory>
#include <new>

#include "generators/common/glyph_outlines.h"
#include "generators/common/map_measures.h"
#include "generators/raster/display_list.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/fonts/glyph_bitmap.h"

namespace {

// Larger glyphs, in pixels per em, are drawn as paths, which may extend farther.
constexpr double kLargestGlyph = 20'000.0;
// Smaller glyphs are invisible.
constexpr double kSmallestGlyph = 1e-5;

/// The stroke that emboldens the glyphs of a run.
ORVPrintStroke BoldStrokeOf(const ORVGlyphRun& run) {
    ORVPrintStroke bold;
    bold.width = ORVFontFace::kSyntheticBoldStroke * run.size;
    bold.join = ORVPrintStroke::Join::kRound;
    return bold;
}

}  // namespace

void DisplayList::AddText(const ORVPrintText& text) {
    const ORVMathAffine2D toDevice = ToDevice(text.toPage);
    if (!IsDrawable(toDevice)) return;
    openClips_.push_back(text.clip ? AddClipPath(*text.clip, ToDevice({}), false, true) : openClips_.back());
    for (const ORVGlyphRun& run : text.layout.runs) AddRun(text, run, toDevice);
    openClips_.pop_back();
}

void DisplayList::AddRun(const ORVPrintText& text, const ORVGlyphRun& run, const ORVMathAffine2D& toDevice) {
    const double pixels = run.size * toDevice.Enlargement() * std::max(run.expansion, 1.0);
    if (!(pixels > kSmallestGlyph) || run.glyphs.empty()) return;
    if (pixels > kLargestGlyph) {
        AddRunOutlines(text, run, toDevice);
        return;
    }
    RasterOperation operation = NewOperation({});
    const bool hasBitmaps = !CollectPlaces(run, toDevice, operation.geometry);
    if (text.fill && hasBitmaps) AddGlyphBitmaps(run, toDevice, *text.fill);
    if (places_.empty()) return;
    auto* kept = arena_.Make<RasterGlyphPlace>(places_.size());
    std::uninitialized_copy(places_.begin(), places_.end(), kept);
    operation.glyphs = kept;
    if (text.fill) {
        operation.colour = text.fill->colour;
        if (text.fill->pattern)
            operation.image = KeepImage(*text.fill->pattern, ToDevice(text.fill->patternToPage), true);
        SetGradient(text.fill->gradient, operation);
        if (run.syntheticBold) operation.pen = pens_.Find(BoldStrokeOf(run), toDevice, thinnest_);
        AddGlyphs(operation);
    }
    if (text.stroke) {
        operation.colour = text.stroke->colour;
        operation.image = nullptr;
        operation.fills = false;
        operation.pen = pens_.Find(*text.stroke, toDevice, ThinnestOf(*text.stroke));
        SetGradient(text.stroke->gradient, operation);
        AddGlyphs(operation);
    }
}

void DisplayList::AddRunOutlines(const ORVPrintText& text, const ORVGlyphRun& run,
                                 const ORVMathAffine2D& toDevice) {
    ORVCollectOutlines(run, path_);
    ORVPrintStroke bold = BoldStrokeOf(run);
    const bool isBold = text.fill && run.syntheticBold;
    if (isBold) {
        bold.colour = text.fill->colour;
        bold.gradient = text.fill->gradient;
    }
    AddPath(path_, toDevice, text.fill, isBold ? &bold : nullptr);
    AddPath(path_, toDevice, nullptr, text.stroke);
}

bool DisplayList::CollectPlaces(const ORVGlyphRun& run, const ORVMathAffine2D& toDevice,
                                RasterGeometry& origin) {
    const double across = run.size * run.expansion;
    const GlyphStore::Map map{run.face, toDevice.m11 * across, toDevice.m12 * run.size, toDevice.m21 * across,
                              toDevice.m22 * run.size};
    places_.clear();
    bool haveOutlines = true;
    for (const ORVGlyph& glyph : run.glyphs) {
        const ORVMathPoint2D p = toDevice({glyph.x, glyph.y});
        if (!IsWithinLimit(p)) continue;
        const RasterGlyph* outline = glyphs_.Find(map, glyph.index);
        if (outline->IsEmpty()) {
            haveOutlines = false;
            continue;
        }
        if (places_.empty()) {
            origin.originX = PixelOf(p.x);
            origin.originY = PixelOf(p.y);
        }
        places_.push_back(
            {outline, static_cast<float>(p.x - origin.originX), static_cast<float>(p.y - origin.originY)});
    }
    return haveOutlines;
}

void DisplayList::AddGlyphBitmaps(const ORVGlyphRun& run, const ORVMathAffine2D& toDevice,
                                  const ORVPrintFill& fill) {
    const double pixelsPerEm = run.size * toDevice.Enlargement();
    const double across = run.size * run.expansion;
    for (const ORVGlyph& glyph : run.glyphs) {
        const ORVGlyphBitmap bitmap = ORVMakeGlyphBitmap(
            *run.face, glyph.index, pixelsPerEm, {fill.colour.red, fill.colour.green, fill.colour.blue});
        if (!bitmap.image) continue;
        const ORVMathAffine2D box{bitmap.width * across,
                                  0.0,
                                  0.0,
                                  -bitmap.height * run.size,
                                  glyph.x + bitmap.left * across,
                                  glyph.y + bitmap.top * run.size};
        AddPixels(*bitmap.image, toDevice * box, fill.colour.opacity);
    }
}
