// SPDX-License-Identifier: Apache-2.0

// The reader of JPEG files.

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/image_check.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

const FuzzTarget kTarget("jpeg",
                         [](std::string_view file) { CheckImageReader(ReadMemoryJPEGPixelImage, file); });

}  // namespace
