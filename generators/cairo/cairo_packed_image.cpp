// SPDX-License-Identifier: Apache-2.0
#include "generators/cairo/cairo_packed_image.h"

#include <libdeflate.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <new>
#include <span>
#include <vector>

#include "generators/common/deflate_chunk.h"

namespace {

// Minimum number of pixels of a packed image.
constexpr std::size_t kFewestPixels = std::size_t{1} << 16U;
// Maximum size of cairo surfaces.
constexpr int kLargestSide = 32767;
// Approximate size in bytes of what is compressed at once.
constexpr std::size_t kBlockBytes = std::size_t{1} << 20U;
constexpr std::size_t kColourBytes = 3;

/// Compressed pixels, shared by copies of a pattern.
struct PackedPixels {
    std::atomic<unsigned int> owners = 1;
    int width = 0, height = 0;
    int blockRows = 1;
    std::vector<std::vector<std::uint8_t>> blocks;

    std::size_t RowBytes() const { return static_cast<std::size_t>(width) * kColourBytes; }
};

void PackRow(const std::uint8_t* rgba, int width, std::uint8_t* to) {
    for (int x = 0; x < width; ++x, rgba += 4, to += kColourBytes) std::copy_n(rgba, kColourBytes, to);
}

void UnpackRow(const std::uint8_t* from, int width, std::uint32_t* to) {
    for (int x = 0; x < width; ++x, from += kColourBytes)
        to[x] = 0xFF000000U | std::uint32_t{from[0]} << 16U | std::uint32_t{from[1]} << 8U | from[2];
}

struct FreeDecompressor {
    void operator()(libdeflate_decompressor* object) const { libdeflate_free_decompressor(object); }
};

bool Unpack(const PackedPixels& pixels, cairo_surface_t* surface) {
    const std::unique_ptr<libdeflate_decompressor, FreeDecompressor> decompressor(
        libdeflate_alloc_decompressor());
    if (!decompressor) return false;
    std::vector<std::uint8_t> rows(pixels.RowBytes() * static_cast<std::size_t>(pixels.blockRows));
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    std::uint8_t* to = cairo_image_surface_get_data(surface);
    int row = 0;
    for (const std::vector<std::uint8_t>& block : pixels.blocks) {
        const int count = std::min(pixels.blockRows, pixels.height - row);
        const std::size_t bytes = pixels.RowBytes() * static_cast<std::size_t>(count);
        if (libdeflate_zlib_decompress(decompressor.get(), block.data(), block.size(), rows.data(), bytes,
                                       nullptr) != LIBDEFLATE_SUCCESS)
            return false;
        for (int i = 0; i < count; ++i, to += stride)
            UnpackRow(rows.data() + pixels.RowBytes() * static_cast<std::size_t>(i), pixels.width,
                      reinterpret_cast<std::uint32_t*>(to));
        row += count;
    }
    return true;
}

// Exceptions must not pass through cairo. It takes null for a lack of memory.
cairo_surface_t* Acquire(cairo_pattern_t* /*pattern*/, void* data, cairo_surface_t* /*target*/,
                         const cairo_rectangle_int_t* /*extents*/) {
    const auto& pixels = *static_cast<const PackedPixels*>(data);
    CairoSurface surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, pixels.width, pixels.height));
    if (cairo_surface_status(surface.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    try {
        cairo_surface_flush(surface.get());
        if (!Unpack(pixels, surface.get())) return nullptr;
        cairo_surface_mark_dirty(surface.get());
        return surface.release();
    } catch (const std::exception&) {
        return nullptr;
    }
}

void Release(cairo_pattern_t* /*pattern*/, void* /*data*/, cairo_surface_t* surface) {
    cairo_surface_destroy(surface);
}

cairo_status_t Share(cairo_pattern_t* /*pattern*/, void* data, const cairo_pattern_t* /*other*/) {
    ++static_cast<PackedPixels*>(data)->owners;
    return CAIRO_STATUS_SUCCESS;
}

void Abandon(cairo_pattern_t* /*pattern*/, void* data) {
    auto* pixels = static_cast<PackedPixels*>(data);
    if (--pixels->owners == 0) delete pixels;
}

}  // namespace

bool ORVShouldPack(const ORVPixelImage& image) {
    const auto width = static_cast<std::size_t>(image.GetWidth());
    const auto height = static_cast<std::size_t>(image.GetHeight());
    return image.GetFileSize() == 0 && !image.HasAlpha() && width * height >= kFewestPixels &&
           std::max(width, height) <= kLargestSide;
}

CairoPattern ORVPackImage(const ORVPixelImage& image) {
    auto pixels = std::make_unique<PackedPixels>();
    pixels->width = image.GetWidth();
    pixels->height = image.GetHeight();
    const std::size_t rowBytes = pixels->RowBytes();
    pixels->blockRows = static_cast<int>(std::max<std::size_t>(kBlockBytes / rowBytes, 1));
    const std::span<const std::uint8_t> rgba = image.GetPixels();
    if (rgba.empty()) throw std::bad_alloc();
    std::vector<std::uint8_t> rows;
    for (int row = 0; row < pixels->height; row += pixels->blockRows) {
        const int count = std::min(pixels->blockRows, pixels->height - row);
        rows.resize(rowBytes * static_cast<std::size_t>(count));
        for (int i = 0; i < count; ++i)
            PackRow(
                rgba.data() + static_cast<std::size_t>(row + i) * static_cast<std::size_t>(pixels->width) * 4,
                pixels->width, rows.data() + rowBytes * static_cast<std::size_t>(i));
        std::vector<std::uint8_t> block;
        if (!ORVDeflateWhole(rows, block)) throw std::bad_alloc();
        block.shrink_to_fit();
        pixels->blocks.push_back(std::move(block));
    }
    CairoPattern pattern(
        cairo_pattern_create_raster_source(pixels.get(), CAIRO_CONTENT_COLOR, pixels->width, pixels->height));
    if (cairo_pattern_status(pattern.get()) != CAIRO_STATUS_SUCCESS) throw std::bad_alloc();
    cairo_raster_source_pattern_set_acquire(pattern.get(), Acquire, Release);
    cairo_raster_source_pattern_set_copy(pattern.get(), Share);
    cairo_raster_source_pattern_set_finish(pattern.get(), Abandon);
    // From here on the pattern owns them.
    static_cast<void>(pixels.release());
    return pattern;
}
