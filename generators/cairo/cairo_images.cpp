// SPDX-License-Identifier: Apache-2.0
#include "generators/cairo/cairo_images.h"

#include <cstdint>
#include <new>
#include <span>
#include <utility>

namespace {

// Size in bytes at which the cache of converted images is cleared.
constexpr std::size_t kCacheLimit = std::size_t{256} << 20U;

std::uint32_t Premultiply(std::uint32_t value, std::uint32_t alpha) { return (value * alpha + 127) / 255; }

// Maximum size of cairo surfaces; larger images are subsampled.
constexpr int kLargestSide = 32767;

int Step(int size) { return (size + kLargestSide - 1) / kLargestSide; }

/// Converts straight RGBA bytes to cairo's premultiplied words.
void ConvertPixels(const ORVPixelImage& image, std::span<const std::uint8_t> rgba, cairo_surface_t* surface) {
    const auto stepX = static_cast<std::size_t>(Step(image.GetWidth()));
    const auto stepY = static_cast<std::size_t>(Step(image.GetHeight()));
    const auto rowBytes = static_cast<std::size_t>(image.GetWidth()) * 4;
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    const auto width = static_cast<std::size_t>(cairo_image_surface_get_width(surface));
    const auto height = static_cast<std::size_t>(cairo_image_surface_get_height(surface));
    cairo_surface_flush(surface);
    for (std::size_t y = 0; y < height; ++y) {
        const std::uint8_t* from = rgba.data() + y * stepY * rowBytes;
        auto* to = reinterpret_cast<std::uint32_t*>(cairo_image_surface_get_data(surface) + y * stride);
        for (std::size_t x = 0; x < width; ++x, from += 4 * stepX) {
            const std::uint32_t alpha = from[3];
            to[x] = alpha << 24U | Premultiply(from[0], alpha) << 16U | Premultiply(from[1], alpha) << 8U |
                    Premultiply(from[2], alpha);
        }
    }
    cairo_surface_mark_dirty(surface);
}

CairoSurface CreateSurface(const ORVPixelImage& image) {
    CairoSurface surface(cairo_image_surface_create(
        image.HasAlpha() ? CAIRO_FORMAT_ARGB32 : CAIRO_FORMAT_RGB24,
        image.GetWidth() / Step(image.GetWidth()), image.GetHeight() / Step(image.GetHeight())));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    return surface;
}

void Release(void* image) { static_cast<const ORVPixelImage*>(image)->Release(); }

/// Attaches the original JPEG file, for formats that can embed it.
void AttachJpeg(const ORVPixelImage& image, cairo_surface_t* surface) {
    const ORVJpegSource* jpeg = image.GetJpegSource();
    const bool isWhole = cairo_image_surface_get_width(surface) == image.GetWidth() &&
                         cairo_image_surface_get_height(surface) == image.GetHeight();
    if (!jpeg || !isWhole ||
        (jpeg->colourSpace != ORVJpegSource::ColourSpace::kGrey &&
         jpeg->colourSpace != ORVJpegSource::ColourSpace::kYCbCr))
        return;
    // The bytes belong to the image, so the surface holds a reference.
    image.AddRef();
    const cairo_status_t status =
        cairo_surface_set_mime_data(surface, CAIRO_MIME_TYPE_JPEG, jpeg->bytes.data(), jpeg->bytes.size(),
                                    Release, const_cast<ORVPixelImage*>(&image));
    if (status != CAIRO_STATUS_SUCCESS) image.Release();
}

}  // namespace

cairo_surface_t* CairoImageCache::Find(const ORVPixelImage& image) {
    if (const auto found = entries_.find(&image); found != entries_.end()) return found->second.surface.get();
    CairoSurface surface = CreateSurface(image);
    const std::span<const std::uint8_t> rgba = surface ? image.GetPixels() : std::span<const std::uint8_t>();
    if (rgba.empty()) throw std::bad_alloc();
    ConvertPixels(image, rgba, surface.get());
    AttachJpeg(image, surface.get());
    image.ReleasePixels();

    const std::size_t bytes = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get())) *
                              static_cast<std::size_t>(cairo_image_surface_get_height(surface.get()));
    if (bytes_ + bytes > kCacheLimit) {
        entries_.clear();
        bytes_ = 0;
    }
    bytes_ += bytes;
    Entry& entry = entries_[&image];
    entry = {ORVRef<const ORVPixelImage>::Share(&image), std::move(surface)};
    return entry.surface.get();
}
