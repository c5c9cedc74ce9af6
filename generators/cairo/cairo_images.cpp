#include "generators/cairo/cairo_images.h"

#include <cstdint>
#include <span>
#include <utility>

namespace {

// Converted images are forgotten, all together, when they take more than this (bytes).
constexpr std::size_t kCacheLimit = std::size_t{256} << 20U;

std::uint32_t Premultiply(std::uint32_t value, std::uint32_t alpha) { return (value * alpha + 127) / 255; }

// cairo has no larger surfaces; of an image beyond, every n-th pixel is taken.
constexpr int kLargestSide = 32767;

int Step(int size) { return (size + kLargestSide - 1) / kLargestSide; }

/// Straight RGBA bytes to cairo's words, premultiplied.
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

void ReleaseImage(void* image) { static_cast<const ORVPixelImage*>(image)->Release(); }

}  // namespace

cairo_surface_t* CairoImageCache::Keep(Entries& entries, const ORVPixelImage& image, CairoSurface surface,
                                       std::size_t bytes) {
    if (bytes_ + bytes > kCacheLimit) {
        pixels_.clear();
        files_.clear();
        bytes_ = 0;
    }
    bytes_ += bytes;
    Entry& entry = entries[&image];
    entry = {ORVRef<const ORVPixelImage>::Share(&image), std::move(surface)};
    return entry.surface.get();
}

cairo_surface_t* CairoImageCache::FindPixels(const ORVPixelImage& image) {
    if (const auto found = pixels_.find(&image); found != pixels_.end()) return found->second.surface.get();
    CairoSurface surface = CreateSurface(image);
    if (!surface) return nullptr;
    const std::span<const std::uint8_t> rgba = image.GetPixels();
    if (rgba.empty()) return nullptr;
    ConvertPixels(image, rgba, surface.get());
    image.ReleasePixels();
    const std::size_t bytes = static_cast<std::size_t>(cairo_image_surface_get_stride(surface.get())) *
                              static_cast<std::size_t>(cairo_image_surface_get_height(surface.get()));
    return Keep(pixels_, image, std::move(surface), bytes);
}

cairo_surface_t* CairoImageCache::FindEmbeddable(const ORVPixelImage& image) {
    const ORVJpegSource* jpeg = image.GetJpegSource();
    // Colours of these two mean the same everywhere; others depend on the reader, so their pixels are taken.
    const bool isPlain = jpeg && Step(image.GetWidth()) == 1 && Step(image.GetHeight()) == 1 &&
                         (jpeg->colourSpace == ORVJpegSource::ColourSpace::kGrey ||
                          jpeg->colourSpace == ORVJpegSource::ColourSpace::kYCbCr);
    if (!isPlain) return FindPixels(image);
    if (const auto found = files_.find(&image); found != files_.end()) return found->second.surface.get();

    // The pixels of this surface are never touched, so the system gives them no memory.
    CairoSurface surface = CreateSurface(image);
    if (!surface) return nullptr;
    image.AddRef();
    const cairo_status_t status =
        cairo_surface_set_mime_data(surface.get(), CAIRO_MIME_TYPE_JPEG, jpeg->bytes.data(),
                                    jpeg->bytes.size(), ReleaseImage, const_cast<ORVPixelImage*>(&image));
    if (status != CAIRO_STATUS_SUCCESS) {
        image.Release();
        return FindPixels(image);
    }
    return Keep(files_, image, std::move(surface), jpeg->bytes.size());
}
