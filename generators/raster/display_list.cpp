// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/display_list.h"

#include <algorithm>
#include <cmath>

#include "generators/common/map_measures.h"

namespace {

bool IsGreyPaint(const RasterOperation& operation) {
    if (operation.gradient) return operation.gradient->stops->isGrey;
    const ORVPrintColour& colour = operation.colour;
    return !operation.image && colour.red == colour.green && colour.green == colour.blue;
}

// The rows inside a clip.
int FirstRowOf(const RasterClip& clip) { return PixelOf(std::max(clip.top, 0.0)); }
int LastRowOf(const RasterClip& clip) { return PixelOf(std::ceil(clip.bottom)) - 1; }

}  // namespace

void DisplayList::Begin(int width, int height, double scale, double thinnest, bool smooths) {
    Clear();
    width_ = width;
    height_ = height;
    scale_ = scale;
    thinnest_ = thinnest;
    smooths_ = smooths;
    clips_.push_back({0.0, 0.0, static_cast<double>(width), static_cast<double>(height), 0, true});
    clipMasks_.emplace_back();
    layers_.emplace_back();
    openClips_.push_back(0);
}

void DisplayList::Clear() {
    // New vectors, to release the memory of the previous page.
    operations_ = {};
    pieces_ = {};
    dashes_ = {};
    clips_ = {};
    openClips_ = {};
    clipMasks_ = {};
    knownClips_ = {};
    layers_ = {};
    openLayers_ = {};
    layer_ = 0;
    layerRowBytes_ = 0;
    pens_.Clear();
    images_.clear();
    glyphs_.Clear();
    gradients_.Clear();
    arena_.Clear();
    isGrey_ = true;
}

ORVMathAffine2D DisplayList::ToDevice(const ORVMathAffine2D& toPage) const {
    return ORVMathAffine2D::Scaling(scale_, scale_) * toPage;
}

// ---- Shapes and images ------------------------------------------------------------------------------------

void DisplayList::AddShape(const ORVPrintShape& shape) {
    const ORVMathAffine2D toDevice = ToDevice(shape.toPage);
    if (IsDrawable(toDevice)) AddPath(shape.path, toDevice, shape.fill, shape.stroke);
}

double DisplayList::ThinnestOf(const ORVPrintStroke& stroke) const {
    // What rounding to parts of pixels leaves of a line.
    constexpr double kThinnestExact = 1.0 / 64.0;
    // Without antialiasing, lines thinner than a pixel would have gaps.
    if (stroke.isCrisp) return std::max(thinnest_, 1.0);
    return stroke.isExact && smooths_ ? kThinnestExact : thinnest_;
}

void DisplayList::AddPath(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, const ORVPrintFill* fill,
                          const ORVPrintStroke* stroke) {
    RasterGeometry geometry;
    RasterExtent extent;
    const bool isNear = outlines_.Collect(path, toDevice);
    if (isNear) {
        if (!outlines_.HasContours()) return;
        geometry = outlines_.Keep(extent);
    }
    if (fill && (isNear || outlines_.Make(path, toDevice, PathUse::kFill, geometry, extent))) {
        RasterOperation operation = NewOperation(fill->colour);
        operation.geometry = geometry;
        operation.evenOdd = fill->evenOdd;
        operation.isCrisp = operation.smooths && fill->isCrisp;
        operation.smooths = operation.smooths && !fill->isCrisp;
        operation.overlaps = operation.smooths && fill->isExact && ORVRepeatsEdges(geometry, seenEdges_);
        if (fill->pattern) operation.image = KeepImage(*fill->pattern, ToDevice(fill->patternToPage), true);
        SetGradient(fill->gradient, operation);
        AddOperation(operation, extent);
    }
    if (stroke && (isNear || outlines_.Make(path, toDevice, PathUse::kStroke, geometry, extent))) {
        RasterOperation operation = NewOperation(stroke->colour);
        operation.geometry = geometry;
        operation.fills = false;
        operation.isCrisp = operation.smooths && stroke->isCrisp;
        operation.smooths = operation.smooths && !stroke->isCrisp;
        operation.pen = pens_.Find(*stroke, toDevice, ThinnestOf(*stroke));
        operation.overlaps = operation.smooths && stroke->isExact && ORVTurnsBack(geometry, *operation.pen);
        SetGradient(stroke->gradient, operation);
        AddOperation(operation, extent);
    }
}

void DisplayList::SetGradient(const ORVPrintGradient* gradient, RasterOperation& operation) {
    operation.gradient = gradient ? gradients_.Find(*gradient, ToDevice(gradient->toPage)) : nullptr;
    if (!operation.gradient) return;
    operation.image = nullptr;
    operation.colour.opacity = 255;  // the colours have their own opacity
}

void DisplayList::AddImage(const ORVPrintImage& image) {
    AddPixels(image.image, ToDevice(image.toPage), 255, image.isSmooth);
}

void DisplayList::AddPixels(const ORVPixelImage& image, const ORVMathAffine2D& squareToDevice,
                            std::uint8_t opacity, bool isSmooth) {
    if (!IsDrawable(squareToDevice)) return;
    path_.Clear();
    path_.MoveTo({0.0, 0.0});
    path_.LineTo({1.0, 0.0});
    path_.LineTo({1.0, 1.0});
    path_.LineTo({0.0, 1.0});
    path_.Close();
    RasterOperation operation = NewOperation({0, 0, 0, opacity});
    RasterExtent extent;
    if (!outlines_.Make(path_, squareToDevice, PathUse::kFill, operation.geometry, extent)) return;
    operation.image = KeepImage(
        image, squareToDevice * ORVMathAffine2D::Scaling(1.0 / image.GetWidth(), 1.0 / image.GetHeight()),
        false, isSmooth);
    AddOperation(operation, extent);
}

const PlacedImage* DisplayList::KeepImage(const ORVPixelImage& image, const ORVMathAffine2D& toDevice,
                                          bool repeats, bool isSmooth) {
    // Consecutive shapes often share a pattern.
    if (repeats && !images_.empty() && images_.back().repeats && images_.back().image.get() == &image &&
        images_.back().toDevice == toDevice)
        return &images_.back();
    images_.push_back({ORVRef<const ORVPixelImage>::Share(&image), toDevice, repeats, isSmooth});
    return &images_.back();
}

// ---- Operations -------------------------------------------------------------------------------------------

RasterOperation DisplayList::NewOperation(const ORVPrintColour& colour) const {
    RasterOperation operation;
    operation.colour = colour;
    operation.clip = openClips_.back();
    operation.smooths = smooths_;
    operation.layer = layer_;
    return operation;
}

PieceCutter DisplayList::CutterFor(const RasterOperation& operation) {
    const RasterClip& clip = clips_[operation.clip];
    return {operation,        static_cast<std::uint32_t>(operations_.GetSize()),
            FirstRowOf(clip), LastRowOf(clip),
            pieces_,          dashes_};
}

bool DisplayList::FitToClip(RasterOperation& operation, const RasterExtent& extent) const {
    const RasterClip& clip = clips_[operation.clip];
    const double reach = operation.GetReach();
    const RasterExtent touched{extent.left - reach, extent.top - reach, extent.right + reach,
                               extent.bottom + reach};
    operation.clipped =
        clip.mask != 0 || (!clip.isWindow && (touched.left < clip.left || touched.right > clip.right ||
                                              touched.top < clip.top || touched.bottom > clip.bottom));
    operation.left = std::max({PixelOf(touched.left), PixelOf(clip.left), 0});
    operation.right = std::min(PixelOf(touched.right) + 1, PixelOf(std::ceil(clip.right)));
    return operation.left < operation.right && PixelOf(touched.top) <= LastRowOf(clip) &&
           PixelOf(touched.bottom) >= FirstRowOf(clip);
}

void DisplayList::AddOperation(RasterOperation operation, const RasterExtent& extent) {
    if (!FitToClip(operation, extent)) return;
    if (!IsGreyPaint(operation)) isGrey_ = false;
    const std::size_t before = pieces_.GetSize();
    CutterFor(operation).CutOutlines(extent);
    if (pieces_.GetSize() == before) return;
    operations_.Append(operation);
    if (!openLayers_.empty()) NoteContent(operation, before);
}

void DisplayList::AddGlyphs(RasterOperation operation) {
    const std::size_t before = pieces_.GetSize();
    const RasterExtent extent = CutterFor(operation).CutGlyphs(places_);
    if (!FitToClip(operation, extent)) pieces_.Truncate(before);
    if (pieces_.GetSize() == before) return;
    if (!IsGreyPaint(operation)) isGrey_ = false;
    operations_.Append(operation);
    if (!openLayers_.empty()) NoteContent(operation, before);
}
