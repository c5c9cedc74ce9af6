// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/ORVFlattener.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <exception>
#include <limits>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "generators/common/exception_text.h"
#include "generators/common/generator_status.h"
#include "generators/common/gradient_measures.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

constexpr double kUserUnitsPerInch = 90.0;
// Maximum pixels of an image; a finer resolution would be invisible.
constexpr double kMostPixels = 5e7;
// Pixels beyond which a part becomes several images below each other, and those of each: formats need several
// times the memory of an image to write it.
constexpr double kMostPixelsOfOne = 1.25e7, kPixelsOfEach = 4e6;
// Tolerance for rounding errors, in pixels.
constexpr double kUnseen = 1e-4;
// Maximum number of images per page. For each, the whole page is searched for what lies below; their pixels
// are kept in memory until the page ends.
constexpr unsigned int kMostImages = 256;
// Maximum number of areas waiting to be drawn, and the excess area an image may cover when areas are joined
// (square user units).
constexpr std::size_t kMostAwaited = 16;
constexpr double kSmallArea = 400.0;

bool Touch(const ORVMathBox2D& a, const ORVMathBox2D& b) {
    return a.xMin <= b.xMax && a.xMax >= b.xMin && a.yMin <= b.yMax && a.yMax >= b.yMin;
}

bool TouchAny(const ORVMathBox2D& box, const std::vector<ORVMathBox2D>& others) {
    return std::any_of(others.begin(), others.end(),
                       [&](const ORVMathBox2D& other) { return Touch(box, other); });
}

double Area(const ORVMathBox2D& box) { return (box.xMax - box.xMin) * (box.yMax - box.yMin); }

ORVMathBox2D Union(ORVMathBox2D box, const ORVMathBox2D& other) {
    box.Add({other.xMin, other.yMin});
    box.Add({other.xMax, other.yMax});
    return box;
}

ORVRasterOptions RasterOptions(const ORVFlattenOptions& options) {
    ORVRasterOptions raster;
    raster.dotsPerInch = kUserUnitsPerInch;  // pages are measured in pixels
    raster.colourMode = options.colourMode;
    raster.pixelLimit = options.pixelLimit;
    raster.outputPixelLimit = options.outputPixelLimit;
    raster.paintLimit = options.paintLimit;
    raster.threads = options.threads;
    return raster;
}

bool IsLink(const ORVPrintGroup& group) { return !group.linkURL.empty() || !group.linkElementId.empty(); }

}  // namespace

ORVFlattener::ORVFlattener(ORVPrintGenerator& target, const ORVFlattenOptions& options)
    : target_(target),
      options_(options),
      powers_(target.GetPowers()),
      raster_(std::make_unique<FlatPixelSink>(pixels_), RasterOptions(options)) {}

template <class Action>
int ORVFlattener::Guard(Action action) {
    try {
        return action();
    } catch (const std::exception&) {
        ORVNameException(failure_);
        return kDrawingFailed;
    }
}

bool ORVFlattener::Takes(const ORVPrintColour& colour, const ORVPrintGradient* gradient) const {
    if (gradient && (powers_ & kGradients) == 0) return true;
    if ((powers_ & kLayers) != 0) return false;
    return gradient ? !ORVIsOpaque(*gradient) : colour.opacity < 255;
}

int ORVFlattener::BeginPage(const ORVPrintPageInfo& info) {
    return Guard([&] {
        soFar_.emplace();
        parts_.clear();
        groups_.clear();
        page_ = {};
        awaited_.clear();
        page_.Add({0.0, 0.0});
        page_.Add({info.width, info.height});
        pageNumber_ = info.number;
        images_ = 0;
        imagePixels_ = 0.0;
        isJoined_ = false;
        return target_.BeginPage(info);
    });
}

// Groups paint nothing and are passed on; in a layer they are empty, because the image is drawn when the
// layer has ended.
int ORVFlattener::BeginGroup(const ORVPrintGroup& group) {
    return Guard([&] {
        groups_.push_back(IsLink(group));
        const int result = groups_.back() && !IsTaking() ? Flush() : static_cast<int>(kGeneratorDone);
        return result == kGeneratorDone ? target_.BeginGroup(group) : result;
    });
}

int ORVFlattener::EndGroup() {
    return Guard([&] {
        if (groups_.empty()) return static_cast<int>(kDrawingFailed);
        const bool isLink = groups_.back();
        groups_.pop_back();
        const int result = isLink && !IsTaking() ? Flush() : static_cast<int>(kGeneratorDone);
        return result == kGeneratorDone ? target_.EndGroup() : result;
    });
}

/// Begins a part. Areas taken before it must not be clipped to it, so they are drawn first.
/// @return 1, or an error
int ORVFlattener::Open(const ORVMathBox2D& box, bool isTaken, bool isPlain) {
    const int result = IsTaking() || isTaken ? static_cast<int>(kGeneratorDone) : Flush();
    parts_.push_back({Shown().Overlap(box), isTaken || IsTaking(), isPlain});
    return result;
}

int ORVFlattener::BeginClip(const ORVMathBox2D& box) {
    return Guard([&] {
        int result = Open(box, false);
        if (result == kGeneratorDone) result = soFar_->BeginClip(box);
        return result == kGeneratorDone && !parts_.back().isTaken ? target_.BeginClip(box) : result;
    });
}

int ORVFlattener::EndClip() {
    return Guard([&] { return Close([](ORVPrintGenerator& to) { return to.EndClip(); }); });
}

int ORVFlattener::BeginClipPath(const ORVPrintClipPath& clip) {
    return Guard([&] {
        ORVMathBox2D box;
        for (const ORVMathPoint2D& point : clip.path.points) box.Add(clip.toPage(point));
        int result = Open(box, (powers_ & kClipPaths) == 0);
        if (result == kGeneratorDone) result = soFar_->BeginClipPath(clip);
        return result == kGeneratorDone && !parts_.back().isTaken ? target_.BeginClipPath(clip) : result;
    });
}

int ORVFlattener::EndClipPath() {
    return Guard([&] { return Close([](ORVPrintGenerator& to) { return to.EndClipPath(); }); });
}

int ORVFlattener::BeginLayer(const ORVPrintLayer& layer) {
    // A layer with full opacity, normal blending and no mask only clips to its box.
    const bool isPlain = layer.opacity == 1.0 && layer.blend == ORVPrintBlendMode::kNormal &&
                         !layer.isIsolated && !layer.hasMask;
    return Guard([&] {
        int result = Open(layer.box, !isPlain, isPlain);
        if (result == kGeneratorDone)
            result = isPlain ? soFar_->BeginClip(layer.box) : soFar_->BeginLayer(layer);
        return result == kGeneratorDone && !parts_.back().isTaken ? target_.BeginClip(layer.box) : result;
    });
}

int ORVFlattener::EndLayer() {
    if (!parts_.empty() && parts_.back().isPlain) return EndClip();
    return Guard([&] { return Close([](ORVPrintGenerator& to) { return to.EndLayer(); }); });
}

int ORVFlattener::BeginMask(const ORVPrintMask& mask) {
    return Guard([&] {
        parts_.push_back({{}, true, false});
        return soFar_->BeginMask(mask);
    });
}

int ORVFlattener::EndMask() {
    return Guard([&] {
        if (parts_.empty()) return static_cast<int>(kDrawingFailed);
        parts_.pop_back();
        return soFar_->EndMask();
    });
}

/// Ends a part.
template <class End>
int ORVFlattener::Close(End end) {
    if (parts_.empty()) return kDrawingFailed;
    const Part part = parts_.back();
    int result = part.isTaken ? static_cast<int>(kGeneratorDone) : Flush();
    if (result == kGeneratorDone) result = end(*soFar_);
    parts_.pop_back();
    return result == kGeneratorDone && !part.isTaken ? end(target_) : result;
}

template <class Call>
int ORVFlattener::DrawCall(const Call& call, bool isTaken, int (ORVPrintGenerator::*draw)(const Call&)) {
    if (isTaken || IsTaking()) {
        const int result = ((*soFar_).*draw)(call);
        Await(ORVPageRecording::BoxOf(call).Overlap(Shown()));
        return result;
    }
    if (!awaited_.empty() && TouchAny(ORVPageRecording::BoxOf(call), awaited_)) {
        if (const int result = Flush(); result != kGeneratorDone) return result;
        if (isJoined_) return DrawCall(call, true, draw);
    }
    const int result = ((*soFar_).*draw)(call);
    return result == kGeneratorDone ? (target_.*draw)(call) : result;
}

int ORVFlattener::DrawShape(const ORVPrintShape& shape) {
    return Guard([&] {
        constexpr auto kDraw = &ORVPrintGenerator::DrawShape;
        const bool takesFill = shape.fill && Takes(shape.fill->colour, shape.fill->gradient);
        const bool takesStroke = shape.stroke && Takes(shape.stroke->colour, shape.stroke->gradient);
        if (takesFill == takesStroke || !shape.fill || !shape.stroke)
            return DrawCall(shape, takesFill || takesStroke, kDraw);
        // Outlines are kept as such where possible.
        const int result = DrawCall<ORVPrintShape>({shape.path, shape.toPage, shape.fill, nullptr, shape.id},
                                                   takesFill, kDraw);
        if (result != kGeneratorDone) return result;
        return DrawCall<ORVPrintShape>({shape.path, shape.toPage, nullptr, shape.stroke}, takesStroke, kDraw);
    });
}

int ORVFlattener::DrawText(const ORVPrintText& text) {
    return Guard([&] {
        const bool isTaken = (text.fill && Takes(text.fill->colour, text.fill->gradient)) ||
                             (text.stroke && Takes(text.stroke->colour, text.stroke->gradient));
        return DrawCall(text, isTaken, &ORVPrintGenerator::DrawText);
    });
}

int ORVFlattener::DrawImage(const ORVPrintImage& image) {
    return Guard([&] { return DrawCall(image, false, &ORVPrintGenerator::DrawImage); });
}

/// Records that an area of the page has to be drawn as an image. It is joined with a waiting area if that
/// adds little excess area.
void ORVFlattener::Await(ORVMathBox2D box) {
    if (box.IsEmpty()) return;
    for (bool isMerged = true; isMerged;) {
        isMerged = false;
        double least = std::numeric_limits<double>::infinity();
        std::size_t best = 0;
        for (std::size_t i = 0; i < awaited_.size(); ++i) {
            const double sum = Area(awaited_[i]) + Area(box);
            const double waste = Area(Union(awaited_[i], box)) - sum;
            if (waste >= least) continue;
            least = waste;
            best = i;
            isMerged = waste <= kSmallArea + sum / 2.0;
        }
        isMerged = isMerged || awaited_.size() == kMostAwaited;
        if (!isMerged) break;
        box = Union(awaited_[best], box);
        awaited_.erase(awaited_.begin() + static_cast<std::ptrdiff_t>(best));
    }
    awaited_.push_back(box);
}

/// Draws the waiting areas, unless the rest of the page is joined into one image at its end.
int ORVFlattener::Flush() {
    if (awaited_.empty() || isJoined_) return kGeneratorDone;
    if (images_ >= kMostImages || imagePixels_ > kMostPixels) {
        isJoined_ = true;
        return kGeneratorDone;
    }
    return DrawAwaited();
}

int ORVFlattener::DrawAwaited() {
    const std::vector<ORVMathBox2D> parts = std::move(awaited_);
    awaited_.clear();
    for (const ORVMathBox2D& part : parts)
        if (const int result = DrawPart(part); result != kGeneratorDone) return result;
    return kGeneratorDone;
}

int ORVFlattener::DrawPart(const ORVMathBox2D& part) {
    const double most = std::min(kMostPixels, static_cast<double>(ORVPixelImage::GetPixelLimit()));
    const double finest = options_.dotsPerInch / kUserUnitsPerInch;
    const double scale = std::min(finest, std::sqrt(most / Area(part)));
    if (scale < finest) lowered_.Add(scale * kUserUnitsPerInch);
    // Whole pixels of the page.
    const double left = std::floor(part.xMin * scale + kUnseen),
                 top = std::floor(part.yMin * scale + kUnseen);
    const double width = std::max(1.0, std::ceil(part.xMax * scale - kUnseen) - left);
    const double height = std::max(1.0, std::ceil(part.yMax * scale - kUnseen) - top);
    if (!(width * height <= static_cast<double>(options_.pixelLimit))) {
        failure_ = ORVFailure::Of(ORVFailureReason::kNotDrawn,
                                  "on page " + std::to_string(pageNumber_) +
                                      ", a transparent part would have too many pixels (at most " +
                                      std::to_string(options_.pixelLimit) + "); use a lower --flatten-dpi");
        return kPageTooLarge;
    }
    ++images_;
    imagePixels_ += width * height;
    const double rows =
        width * height <= kMostPixelsOfOne ? height : std::max(1.0, std::floor(kPixelsOfEach / width));
    for (double row = 0.0; row < height; row += rows)
        if (const int result = DrawRows(left, top + row, width, std::min(rows, height - row), scale);
            result != kGeneratorDone)
            return result;
    return kGeneratorDone;
}

int ORVFlattener::DrawRows(double left, double top, double width, double height, double scale) {
    ORVMathBox2D shown;
    shown.Add({left / scale, top / scale});
    shown.Add({(left + width) / scale, (top + height) / scale});

    ORVPrintPageInfo info;
    info.number = pageNumber_;
    info.width = width;
    info.height = height;
    int result = kGeneratorDone;
    if (!isDrawing_) result = raster_.BeginDocument({});
    isDrawing_ = true;
    if (result == kGeneratorDone) result = raster_.BeginPage(info);
    if (result == kGeneratorDone)
        result = soFar_->ReplaySoFar(raster_, shown, {scale, 0.0, 0.0, scale, -left, -top});
    if (result == kGeneratorDone) result = raster_.EndPage();
    if (result != kGeneratorDone) {
        failure_ = raster_.GetFailure();
        return result;
    }
    const ORVRef<ORVPixelImage> image(
        ORVPixelImage::CreateFromPixels(pixels_.width, pixels_.height, pixels_.rgba));
    pixels_.rgba = {};
    if (!image) throw std::bad_alloc();
    return target_.DrawImage(
        {*image, {shown.xMax - shown.xMin, 0.0, 0.0, shown.yMax - shown.yMin, shown.xMin, shown.yMin}});
}

int ORVFlattener::EndPage() {
    return Guard([&] {
        const int result = DrawAwaited();
        soFar_.reset();
        return result == kGeneratorDone ? target_.EndPage() : result;
    });
}

int ORVFlattener::EndDocument() {
    soFar_.reset();
    return target_.EndDocument();
}
