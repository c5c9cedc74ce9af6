// SPDX-License-Identifier: Apache-2.0

// Coverage of clip paths in a band.

#include <algorithm>
#include <cstring>
#include <utility>

#include "generators/common/lanes.h"
#include "generators/raster/band_renderer.h"

BandRenderer::MaskPlane& BandRenderer::PlaneOf(std::uint32_t mask) {
    // Deeply nested clip paths share the last plane.
    const std::uint32_t depth = list_.GetClipMasks()[mask].depth;
    return planes_[std::min<std::size_t>(depth, planes_.size() - 1)];
}

void BandRenderer::MakeMask(std::uint32_t mask, RasterBounds bounds) {
    const RasterBounds strip{0, stripTop_, width_, stripBottom_};
    wantedMasks_.clear();
    for (; mask != 0; mask = list_.GetClipMasks()[mask].outer) {
        // Outside its bounds, a clip path hides everything regardless of the mask.
        bounds = bounds.CutTo(list_.GetClipMasks()[mask].bounds);
        if (bounds.IsEmpty()) break;
        const MaskPlane& plane = PlaneOf(mask);
        if (plane.mask == mask) {
            if (plane.bounds.Holds(bounds)) break;
            // A second request suggests more to come elsewhere. There may be very many small shapes with a
            // clip each, or with one common clip.
            bounds = list_.GetClipMasks()[mask].bounds.CutTo(strip);
        }
        wantedMasks_.push_back({mask, bounds});
    }
    for (; !wantedMasks_.empty(); wantedMasks_.pop_back()) {
        const auto& [wanted, part] = wantedMasks_.back();
        MakePlane(wanted, part);
    }
}

void BandRenderer::MakePlane(std::uint32_t number, const RasterBounds& bounds) {
    /// Writes the coverage of a clip path.
    struct MaskPaint {
        BandRenderer& renderer;
        std::uint8_t* row = nullptr;
        MaskPaint& BeginRow(int y) {
            row = renderer.drawnMask_.data() + renderer.MaskOffset(y);
            return *this;
        }
        void EndRow() {}
        void Block(int x, const Lanes& alphas) {
            for (int i = 0; i < 4; ++i) row[x + i] = static_cast<std::uint8_t>(alphas[i]);
        }
        void Span(int begin, int end, unsigned int alpha) {
            std::memset(row + begin, static_cast<int>(alpha), static_cast<std::size_t>(end - begin));
        }
    };
    const RasterClipMask& mask = list_.GetClipMasks()[number];
    const std::size_t bytes = isDrawn_.size() * maskStride_;
    if (drawnMask_.empty()) {
        drawnMask_.resize(bytes);
        maskCoverage_.Resize(width_, static_cast<int>(isDrawn_.size()));
    }
    maskCoverage_.SetBand(stripTop_, stripBottom_ - stripTop_);
    maskCoverage_.SetWindow(bounds.left, bounds.top, bounds.right + 1, bounds.bottom);
    const auto width = static_cast<std::size_t>(bounds.right - bounds.left);
    const auto left = static_cast<std::size_t>(bounds.left);
    for (int row = bounds.top; row < bounds.bottom; ++row)
        std::memset(drawnMask_.data() + MaskOffset(row) + left, 0, width);
    std::swap(coverage_, maskCoverage_);
    for (std::uint32_t i = 0; i < mask.outline.contourCount; ++i)
        AddContourFill(mask.outline, mask.outline.contours[i], 0, mask.outline.contours[i].verbCount, 0);
    MaskPaint paint{*this};
    const bool smooths = pixels_ != RasterPixels::kBlack;
    if (mask.evenOdd) {
        if (smooths)
            coverage_.Sweep<CoverageRule::kEvenOdd>(paint);
        else
            coverage_.Sweep<CoverageRule::kHardEvenOdd>(paint);
    } else {
        if (smooths)
            coverage_.Sweep<CoverageRule::kNonZero>(paint);
        else
            coverage_.Sweep<CoverageRule::kHardNonZero>(paint);
    }
    std::swap(coverage_, maskCoverage_);
    if (mask.outer != 0) {
        const std::vector<std::uint8_t>& outer = PlaneOf(mask.outer).alphas;
        for (int row = bounds.top; row < bounds.bottom; ++row)
            ORVMultiplyAlphas(drawnMask_.data() + MaskOffset(row) + left,
                              outer.data() + MaskOffset(row) + left, bounds.right - bounds.left);
    }
    coverage_.AddWork(bounds.CountPixels());
    MaskPlane& plane = PlaneOf(number);
    if (plane.alphas.empty()) plane.alphas.resize(bytes);
    std::swap(plane.alphas, drawnMask_);
    plane.mask = number;
    plane.bounds = bounds;
}
