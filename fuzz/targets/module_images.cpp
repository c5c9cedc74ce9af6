// SPDX-License-Identifier: Apache-2.0

// The readers of GIF and WebP files.

#include "platform/visualization/images/module_images.h"
#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/image_check.h"

namespace {

ORVPixelImage* Read(const void* bytes, std::size_t size, int /*flags*/) {
    return ReadMemoryModuleImage(bytes, size);
}

const FuzzTarget kTarget("module_images", [](std::string_view file) { CheckImageReader(Read, file); });

}  // namespace
