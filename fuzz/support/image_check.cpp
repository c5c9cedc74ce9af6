// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/image_check.h"

#include <cstddef>
#include <cstdint>
#include <vector>

#include "fuzz/support/FuzzTarget.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

void CheckImageReader(ORVPixelImage* (*read)(const void* bytes, std::size_t size, int),
                      std::string_view file) {
    // A copy of the exact size, so that sanitizers detect reading past the end.
    const std::vector<char> bytes(file.begin(), file.end());
    const ORVRef<ORVPixelImage> image(read(bytes.data(), bytes.size(), 0));
    if (!image) return;
    Require(image->GetWidth() > 0 && image->GetHeight() > 0);
    Require(image->GetHorizontalResolution() >= 0.0 && image->GetVerticalResolution() >= 0.0);
    const auto count =
        static_cast<std::size_t>(image->GetWidth()) * static_cast<std::size_t>(image->GetHeight());
    Require(count <= ORVPixelImage::GetPixelLimit());
    const auto pixels = image->GetPixels();
    Require(pixels.size() == count * 4);
    bool hasAlpha = false;
    for (std::size_t i = 3; i < pixels.size(); i += 4) hasAlpha |= pixels[i] != 255;
    Require(hasAlpha == image->HasAlpha());
    if (const ORVJpegSource* jpeg = image->GetJpegSource())
        // The reader appends a missing end marker of two bytes.
        Require(jpeg->bytes.size() <= bytes.size() + 2 && jpeg->componentCount >= 1 &&
                jpeg->componentCount <= 4);

    const std::vector<std::uint8_t> before(pixels.begin(), pixels.end());
    image->ReleasePixels();
    const auto again = image->GetPixels();
    Require(std::vector<std::uint8_t>(again.begin(), again.end()) == before);
}
