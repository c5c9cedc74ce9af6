// SPDX-License-Identifier: Apache-2.0

// The module liborvimages.so: GIF and WebP images by giflib and libwebp.

#include <exception>
#include <type_traits>

#include "platform/visualization/images/module/readers.h"

extern "C" __attribute__((visibility("default"))) ModuleImageStatus orvReadImage(
    std::span<const std::uint8_t> file, ModuleImagePixels& pixels) {
    try {
        return file[0] == 'G' ? ReadGif(file, pixels) : ReadWebP(file, pixels);
    } catch (const std::exception&) {
        return ModuleImageStatus::kOutOfMemory;
    }
}
static_assert(std::is_same_v<decltype(&orvReadImage), ModuleImageReader>);
