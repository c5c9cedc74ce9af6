// SPDX-License-Identifier: Apache-2.0

// Adds clips and layers to a display list.

#include <algorithm>
#include <cmath>

#include "generators/common/map_measures.h"
#include "generators/raster/display_list.h"

namespace {

/// The pixels that are at least partly inside a clip.
RasterBounds PixelsOf(const RasterClip& clip) {
    return {PixelOf(std::max(clip.left, 0.0)), PixelOf(std::max(clip.top, 0.0)),
            PixelOf(std::ceil(clip.right)), PixelOf(std::ceil(clip.bottom))};
}

RasterClip WindowOn(const RasterBounds& bounds) {
    RasterClip window;
    window.isWindow = true;
    if (bounds.IsEmpty()) return window;
    window.left = bounds.left;
    window.top = bounds.top;
    window.right = bounds.right;
    window.bottom = bounds.bottom;
    return window;
}

/// Rounds a clip outwards to whole pixels, except for borders of the clips around it, which stay exact.
void WidenToPixels(RasterClip& clip, const RasterClip& outer) {
    clip.left = std::max(std::floor(clip.left), outer.left);
    clip.top = std::max(std::floor(clip.top), outer.top);
    clip.right = std::min(std::ceil(clip.right), outer.right);
    clip.bottom = std::min(std::ceil(clip.bottom), outer.bottom);
}

}  // namespace

// ---- Clips ------------------------------------------------------------------------------------------------

std::uint32_t DisplayList::AddClip(std::uint32_t outerNumber, RasterClip clip) {
    const RasterClip& outer = clips_[outerNumber];
    clip.left = std::max(clip.left, outer.left);
    clip.top = std::max(clip.top, outer.top);
    clip.right = std::min(clip.right, outer.right);
    clip.bottom = std::min(clip.bottom, outer.bottom);
    clip.mask = outer.mask;
    clips_.push_back(clip);
    return static_cast<std::uint32_t>(clips_.size() - 1);
}

RasterClip DisplayList::ClipOn(const ORVMathBox2D& box) const {
    // An empty box has reversed limits and contains nothing.
    RasterClip clip;
    clip.left = box.xMin * scale_;
    clip.top = box.yMin * scale_;
    clip.right = box.xMax * scale_;
    clip.bottom = box.yMax * scale_;
    return clip;
}

void DisplayList::BeginClip(const ORVMathBox2D& box) {
    openClips_.push_back(AddClip(openClips_.back(), ClipOn(box)));
}

void DisplayList::EndClip() {
    const std::size_t kept = openLayers_.empty() ? 1 : openLayers_.back().openClips;
    if (openClips_.size() > kept) openClips_.pop_back();
}

void DisplayList::BeginClipPath(const ORVPrintClipPath& clip) {
    const std::uint32_t outer = openClips_.back();
    for (const KnownClip& known : knownClips_)
        if (known.clip != 0 && known.outer == outer && known.evenOdd == clip.evenOdd &&
            known.toPage == clip.toPage && known.path.verbs == clip.path.verbs &&
            known.path.points == clip.path.points) {
            openClips_.push_back(known.clip);
            return;
        }
    const std::uint32_t made = AddClipPath(clip.path, ToDevice(clip.toPage), clip.evenOdd, false);
    KnownClip& kept = knownClips_[nextKnownClip_];
    nextKnownClip_ = (nextKnownClip_ + 1) % knownClips_.size();
    kept = {clip.path, clip.toPage, clip.evenOdd, outer, made};
    openClips_.push_back(made);
}

std::uint32_t DisplayList::AddClipPath(const ORVPrintPath& path, const ORVMathAffine2D& toDevice,
                                       bool evenOdd, bool keepsFractions) {
    RasterClip clip;
    RasterExtent extent;
    RasterGeometry geometry;
    const std::uint32_t outer = openClips_.back();
    if (!IsDrawable(toDevice) || !outlines_.Make(path, toDevice, PathUse::kFill, geometry, extent))
        return AddClip(outer, clip);  // an empty box
    clip.left = extent.left;
    clip.top = extent.top;
    clip.right = extent.right;
    clip.bottom = extent.bottom;
    const std::uint32_t number = AddClip(outer, clip);
    if (outlines_.IsBox()) return number;
    RasterClip& made = clips_[number];
    // The outline itself provides partial coverage.
    if (!keepsFractions) WidenToPixels(made, clips_[outer]);
    RasterClipMask mask;
    mask.outline = geometry;
    mask.evenOdd = evenOdd;
    mask.outer = made.mask;
    mask.depth = made.mask == 0 ? 0 : clipMasks_[made.mask].depth + 1;
    mask.bounds = PixelsOf(made);
    made.mask = static_cast<std::uint32_t>(clipMasks_.size());
    clipMasks_.push_back(mask);
    return number;
}

// ---- Layers -----------------------------------------------------------------------------------------------

void DisplayList::AddStep(RasterOperation operation, const RasterBounds& rows) {
    RasterPiece piece;
    piece.operation = static_cast<std::uint32_t>(operations_.GetSize());
    piece.firstRow = rows.top;
    piece.lastRow = std::max(rows.bottom - 1, rows.top);
    operations_.Append(operation);
    pieces_.Append(piece);
}

void DisplayList::OpenLayer(RasterLayer layer, std::uint32_t clip, RasterStep step) {
    OpenedLayer opened;
    opened.number = static_cast<std::uint32_t>(layers_.size());
    opened.firstOperation = operations_.GetSize();
    opened.firstPiece = pieces_.GetSize();
    opened.clip = clip;
    layer.outer = layer_;
    layers_.push_back(layer);
    layer_ = opened.number;
    RasterOperation operation;
    operation.step = step;
    operation.layer = opened.number;
    AddStep(operation, {});
    // The clip is applied to the layer as a whole; its content only needs a clip to whole pixels.
    openClips_.push_back(AddClip(0, WindowOn(PixelsOf(clips_[clip]))));
    opened.openClips = openClips_.size();
    openLayers_.push_back(opened);
}

DisplayList::OpenedLayer DisplayList::CloseLayer() {
    const OpenedLayer opened = openLayers_.back();
    openLayers_.pop_back();
    openClips_.resize(opened.openClips - 1);
    layer_ = layers_[opened.number].outer;
    return opened;
}

void DisplayList::BeginLayer(const ORVPrintLayer& layer) {
    RasterLayer made;
    made.opacity = static_cast<std::uint8_t>(
        layer.opacity > 0.0 ? std::lround(std::min(layer.opacity, 1.0) * 255.0) : 0);
    made.blend = layer.blend;
    made.isIsolated = layer.isIsolated;
    OpenLayer(made, AddClip(openClips_.back(), ClipOn(layer.box)), RasterStep::kBeginLayer);
}

void DisplayList::BeginMask(const ORVPrintMask& mask) {
    OpenedLayer& layer = openLayers_.back();
    layers_[layer.number].hasMask = true;
    layer.clip = AddClip(layer.clip, ClipOn(mask.box));
    layer.maskBegin = pieces_.GetSize();
    RasterLayer made;
    made.maskKind = mask.kind;
    OpenLayer(made, layer.clip, RasterStep::kBeginMask);
}

void DisplayList::EndMask() {
    const OpenedLayer closed = CloseLayer();
    RasterLayer& mask = layers_[closed.number];
    mask.bounds = closed.content;
    OpenedLayer& layer = openLayers_.back();
    layer.maskEnd = pieces_.GetSize();
    layer.innerRowBytes = std::max(layer.innerRowBytes, mask.GetRowBytes() + closed.innerRowBytes);
    RasterOperation operation;
    operation.step = RasterStep::kEndMask;
    operation.layer = closed.number;
    AddStep(operation, {});
    // Content that the mask hides need not be drawn.
    openClips_.back() = AddClip(0, WindowOn(closed.content.CutTo(PixelsOf(clips_[layer.clip]))));
}

void DisplayList::EndLayer() {
    const OpenedLayer closed = CloseLayer();
    RasterLayer& layer = layers_[closed.number];
    const RasterBounds& content = closed.content;
    RasterOperation end;
    end.step = RasterStep::kEndLayer;
    end.layer = closed.number;
    end.clip = closed.clip;
    end.smooths = smooths_;
    const RasterExtent extent{static_cast<double>(content.left), static_cast<double>(content.top),
                              static_cast<double>(content.right), static_cast<double>(content.bottom)};
    if (content.IsEmpty() || layer.opacity == 0 || !FitToClip(end, extent)) {
        operations_.Truncate(closed.firstOperation);
        pieces_.Truncate(closed.firstPiece);
        return;
    }
    layer.bounds = content.CutTo(PixelsOf(clips_[closed.clip]));
    // Blend modes inside an isolated layer must not see its backdrop.
    layer.isPlain = layer.opacity == 255 && layer.blend == ORVPrintBlendMode::kNormal && !layer.hasMask &&
                    !end.clipped && !(layer.isIsolated && closed.blends);
    const std::size_t steps[]{closed.firstPiece, closed.maskBegin, closed.maskEnd};
    for (const std::size_t step : std::span(steps).first(layer.hasMask ? 3 : 1)) {
        pieces_[step].firstRow = layer.bounds.top;
        pieces_[step].lastRow = layer.bounds.bottom - 1;
    }
    AddStep(end, layer.bounds);
    const std::size_t rowBytes = layer.GetRowBytes() + closed.innerRowBytes;
    if (openLayers_.empty()) {
        layerRowBytes_ = std::max(layerRowBytes_, rowBytes);
        return;
    }
    OpenedLayer& outer = openLayers_.back();
    outer.content.Add(layer.bounds);
    outer.innerRowBytes = std::max(outer.innerRowBytes, rowBytes);
    outer.blends =
        outer.blends || layer.blend != ORVPrintBlendMode::kNormal || (closed.blends && !layer.isIsolated);
}

void DisplayList::NoteContent(const RasterOperation& operation, std::size_t firstPiece) {
    RasterBounds bounds{operation.left, pieces_[firstPiece].firstRow, std::min(operation.right, width_),
                        pieces_[firstPiece].lastRow + 1};
    for (std::size_t i = firstPiece + 1; i < pieces_.GetSize(); ++i) {
        bounds.top = std::min(bounds.top, pieces_[i].firstRow);
        bounds.bottom = std::max(bounds.bottom, pieces_[i].lastRow + 1);
    }
    openLayers_.back().content.Add(bounds);
}
