// SPDX-License-Identifier: Apache-2.0

// Painting of layers and masks of a band, and compositing them.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "generators/common/lanes.h"
#include "generators/raster/band_renderer.h"
#include "generators/raster/blend_modes.h"

namespace {

// Work per pixel, in pixels filled with one colour: to clear and composite a layer; for its mask; to blend
// colours with the backdrop; and for each layer that the backdrop is gathered from.
constexpr std::uint64_t kLayerPixelWork = 8, kMaskedPixelWork = 4, kMixedColourWork = 60, kGatheredWork = 5;

/// The 256 values of sRGB as linear light, in units of 1/65535.
constexpr std::uint32_t kFullLight = 65535;
std::array<std::uint32_t, 256> MakeLightTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::size_t i = 0; i < table.size(); ++i) {
        const double value = static_cast<double>(i) / 255.0;
        const double light = value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        table[i] = static_cast<std::uint32_t>(std::lround(light * kFullLight));
    }
    return table;
}

/// As MeasureMask, for luminance in linear RGB.
void MeasureLinearMask(const std::uint8_t* from, int count, std::uint8_t* to) {
    static const std::array<std::uint32_t, 256> kLight = MakeLightTable();
    for (int i = 0; i < count; ++i, from += 4, ++to) {
        const std::uint32_t opacity = from[3];
        if (opacity == 0) {
            *to = 0;
            continue;
        }
        const auto lightOf = [&](std::size_t part) {
            return kLight[std::min(255U, (from[part] * 255U + opacity / 2) / opacity)];
        };
        const std::uint32_t light = (lightOf(0) * 2125 + lightOf(1) * 7154 + lightOf(2) * 721) / 10000;
        *to = static_cast<std::uint8_t>((light * opacity + kFullLight / 2) / kFullLight);
    }
}

/// The mask values of pixels.
template <ORVPrintMask::Kind kKind>
void MeasureMask(const std::uint8_t* from, int count, std::uint8_t* to) {
    for (int i = 0; i < count; i += 4, from += 16, to += 4) {
        const auto pixels = LoadLanes<Lanes>(from);
        Lanes shown = pixels >> 24;
        if constexpr (kKind == ORVPrintMask::Kind::kLuminance)
            // 0.2125, 0.7154 and 0.0721 in units of 1/65536; colours are premultiplied.
            shown = ((pixels & 255) * 13926 + (pixels >> 8 & 255) * 46885 + (pixels >> 16 & 255) * 4725 +
                     32768) >>
                    16;
        const std::uint32_t bytes = PackBytes(shown);
        std::memcpy(to, &bytes, static_cast<std::size_t>(std::min(count - i, 4)));
    }
}

using MaskMeasurer = void (*)(const std::uint8_t* from, int count, std::uint8_t* to);

MaskMeasurer MeasurerOf(ORVPrintMask::Kind kind) {
    switch (kind) {
        case ORVPrintMask::Kind::kLuminance: return MeasureMask<ORVPrintMask::Kind::kLuminance>;
        case ORVPrintMask::Kind::kOpacity: return MeasureMask<ORVPrintMask::Kind::kOpacity>;
        case ORVPrintMask::Kind::kLinearLuminance: break;
    }
    return MeasureLinearMask;
}

}  // namespace

void BandRenderer::TakeStep(const RasterOperation& operation) {
    switch (operation.step) {
        case RasterStep::kBeginLayer:
        case RasterStep::kBeginMask: return BeginSurface(operation.layer);
        case RasterStep::kEndMask: return EndMask(operation.layer);
        case RasterStep::kEndLayer: return EndLayer(operation);
        case RasterStep::kPaint: return;
    }
}

void BandRenderer::BeginSurface(std::uint32_t number) {
    const RasterLayer& layer = list_.GetLayers()[number];
    // A layer outside the band was not begun, and neither were the layers in it.
    Surface surface = surfaces_.back();
    if (layer.outer != surface.layer) return;
    surface.layer = number;
    surface.bounds = layer.bounds.CutTo(surface.bounds);
    if (surface.bounds.IsEmpty()) return;
    surface.memory = layerMemoryUsed_;
    surface.isPlain = layer.isPlain;
    if (!layer.isPlain) TakeMemory(layer, surface);
    surfaces_.push_back(surface);
}

void BandRenderer::TakeMemory(const RasterLayer& layer, Surface& surface) {
    const RasterBounds& bounds = surface.bounds;
    const auto rows = static_cast<std::size_t>(bounds.bottom - bounds.top);
    const int width = bounds.right - bounds.left;
    if (layerMemory_.empty())
        layerMemory_.resize(list_.GetLayerRowBytes() * static_cast<std::size_t>(stripRows_));
    const auto take = [&](std::size_t bytes) {
        std::uint8_t* taken = layerMemory_.data() + layerMemoryUsed_;
        layerMemoryUsed_ += bytes;
        return taken;
    };
    surface.isIsolated = layer.isIsolated;
    surface.firstRow = bounds.top;
    surface.firstColumn = bounds.left & ~3;  // blocks are painted as a whole
    surface.stride = RasterLayer::PixelStride(width);
    surface.pixels = take(surface.stride * rows);
    surface.isDrawn = take(rows);
    std::memset(surface.isDrawn, 0, rows);
    surface.mask = nullptr;
    if (!layer.hasMask) return;
    surface.maskStride = RasterLayer::MaskStride(width);
    surface.mask = take(surface.maskStride * rows);
    std::memset(surface.mask, 0, surface.maskStride * rows);
}

std::uint8_t* BandRenderer::BeginLayerRow(const Surface& surface, int row) {
    const auto index = static_cast<std::size_t>(row - surface.firstRow);
    std::uint8_t* pixels = surface.pixels + index * surface.stride;
    if (surface.isDrawn[index] == 0) {
        std::memset(pixels, 0, surface.stride);
        surface.isDrawn[index] = 1;
    }
    return AtPageEdge(surface, pixels);
}

std::uint8_t* BandRenderer::AtPageEdge(const Surface& surface, std::uint8_t* row) {
    // Columns are counted from the page's edge, where a layer has no memory. Pointer arithmetic to that
    // address would be undefined, so integers are used.
    const auto before = static_cast<std::uintptr_t>(surface.firstColumn) * kColourBytes;
    return reinterpret_cast<std::uint8_t*>(reinterpret_cast<std::uintptr_t>(row) - before);
}

std::uint8_t* BandRenderer::FindRow(const Surface& surface, int row) {
    if (!surface.pixels) return BeginPageRow(row);
    const auto index = static_cast<std::size_t>(row - surface.firstRow);
    if (surface.isDrawn[index] == 0) return nullptr;
    return AtPageEdge(surface, surface.pixels + index * surface.stride);
}

void BandRenderer::EndMask(std::uint32_t number) {
    const Surface mask = surfaces_.back();
    // A mask outside the band hides everything; its layer recorded that when it began.
    if (mask.layer != number) return;
    surfaces_.pop_back();
    layerMemoryUsed_ = mask.memory;
    const Surface& layer = surfaces_.back();
    const RasterBounds& bounds = mask.bounds;
    const int width = bounds.right - bounds.left;
    const auto measure = MeasurerOf(list_.GetLayers()[number].maskKind);
    for (int row = bounds.top; row < bounds.bottom; ++row) {
        const std::uint8_t* from = FindRow(mask, row);
        if (!from) continue;
        std::uint8_t* to = layer.mask + static_cast<std::size_t>(row - layer.firstRow) * layer.maskStride +
                           static_cast<std::size_t>(bounds.left - layer.bounds.left);
        measure(from + static_cast<std::size_t>(bounds.left) * kColourBytes, width, to);
    }
    coverage_.AddWork(bounds.CountPixels() * (kLayerPixelWork + kMaskedPixelWork));
}

void BandRenderer::EndLayer(const RasterOperation& operation) {
    const Surface surface = surfaces_.back();
    if (surface.layer != operation.layer) return;
    surfaces_.pop_back();
    if (surface.isPlain) return;
    layerMemoryUsed_ = surface.memory;  // free memory; it is not written before all rows are read
    const RasterLayer& layer = list_.GetLayers()[operation.layer];
    RasterBounds bounds = surface.bounds;
    bounds.left = std::max(bounds.left, operation.left);
    bounds.right = std::min(bounds.right, operation.right);
    if (bounds.IsEmpty()) return;
    const bool isNormal = layer.blend == ORVPrintBlendMode::kNormal;
    coverage_.AddWork(bounds.CountPixels() * (kLayerPixelWork + (surface.mask ? kMaskedPixelWork : 0) +
                                              (isNormal ? 0 : kMixedColourWork)));
    if (operation.clipped) MakeMask(list_.GetClips()[operation.clip].mask, bounds);
    alphas_.resize(maskStride_, 0);
    const int width = bounds.right - bounds.left;
    for (int row = bounds.top; row < bounds.bottom; ++row) {
        const std::uint8_t* from = FindRow(surface, row);
        if (!from) continue;
        std::uint8_t* alphas = alphas_.data() + bounds.left;
        std::memset(alphas, layer.opacity, static_cast<std::size_t>(width));
        if (surface.mask)
            ORVMultiplyAlphas(alphas,
                              surface.mask +
                                  static_cast<std::size_t>(row - surface.firstRow) * surface.maskStride +
                                  static_cast<std::size_t>(bounds.left - surface.bounds.left),
                              width);
        if (!operation.clipped || CutOff(operation, row, bounds.left, bounds.right, alphas_.data()))
            LayRow(layer, row, bounds, from + static_cast<std::size_t>(bounds.left) * kColourBytes);
        std::memset(alphas, 0, static_cast<std::size_t>(width));
    }
}

void BandRenderer::LayRow(const RasterLayer& layer, int row, const RasterBounds& bounds,
                          const std::uint8_t* from) {
    std::uint8_t* pixels = BeginRow(row);
    if (layer.blend != ORVPrintBlendMode::kNormal) {
        const int width = bounds.right - bounds.left;
        colours_.resize(std::max(colours_.size(), (static_cast<std::size_t>(width) + 4) * kColourBytes));
        const std::uint8_t* below = surfaces_.back().isIsolated
                                        ? pixels + static_cast<std::size_t>(bounds.left) * kColourBytes
                                        : GatherBelow(row, bounds);
        ORVMixPixels(layer.blend, from, below, width, colours_.data());
        from = colours_.data();
    }
    LayPixels(from, pixels, bounds.left, bounds.right, alphas_.data());
}

const std::uint8_t* BandRenderer::GatherBelow(int row, const RasterBounds& bounds) {
    // Starts from the layer that is independent of its backdrop.
    std::size_t i = surfaces_.size() - 1;
    while (!surfaces_[i].isIsolated) --i;
    const std::size_t bytes =
        (static_cast<std::size_t>(bounds.right - bounds.left) + 3) / 4 * 4 * kColourBytes;
    const std::size_t offset = static_cast<std::size_t>(bounds.left) * kColourBytes;
    below_.resize(std::max(below_.size(), bytes));
    const std::uint8_t* ground = FindRow(surfaces_[i], row);
    if (ground)
        std::memcpy(below_.data(), ground + offset, bytes);
    else
        std::memset(below_.data(), 0, bytes);
    const ShortLanes opaque = ShortLanes{} + 255;
    while (++i < surfaces_.size()) {
        const std::uint8_t* over = surfaces_[i].isPlain ? nullptr : FindRow(surfaces_[i], row);
        if (!over) continue;
        for (std::size_t at = 0; at < bytes; at += sizeof opaque)
            StoreLanes(below_.data() + at, LayOver(LoadLanes<ShortLanes>(below_.data() + at),
                                                   LoadLanes<ShortLanes>(over + offset + at), opaque));
        coverage_.AddWork(static_cast<std::uint64_t>(bounds.right - bounds.left) * kGatheredWork);
    }
    return below_.data();
}
