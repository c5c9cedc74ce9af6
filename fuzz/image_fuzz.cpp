// Feeds any bytes to one of the image readers; the first byte chooses which.

#include <cstddef>
#include <cstdint>
#include <cstdlib>

#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

void Require(bool condition) {
    if (!condition) std::abort();
}

// What is read must be whole: as many pixels as the sizes say, with alpha only where that was announced.
void CheckImage(const ORVPixelImage& image) {
    Require(image.GetWidth() > 0 && image.GetHeight() > 0);
    const auto pixels = image.GetPixels();
    const auto count =
        static_cast<std::size_t>(image.GetWidth()) * static_cast<std::size_t>(image.GetHeight());
    Require(pixels.size() == count * 4 && count <= ORVPixelImage::GetPixelLimit());
    bool hasAlpha = false;
    for (std::size_t i = 3; i < pixels.size(); i += 4) hasAlpha |= pixels[i] != 255;
    Require(hasAlpha == image.HasAlpha());
    Require(image.GetHorizontalResolution() >= 0.0 && image.GetVerticalResolution() >= 0.0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    ORVPixelImage::SetPixelLimit(1 << 20);
    constexpr decltype(&ReadMemoryPNGPixelImage) kReaders[] = {
        ReadMemoryPNGPixelImage, ReadMemoryJPEGPixelImage, ReadMemBMPPixelImage};
    const ORVRef<ORVPixelImage> image(kReaders[data[0] % 3](data + 1, size - 1, 0));
    if (image) CheckImage(*image);
    return 0;
}
