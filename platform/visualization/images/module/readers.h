// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/visualization/images/module_images.h"

// Readers of the module liborvimages.so.

/// Reads the first frame of a GIF; areas of the screen outside the frame are transparent.
ModuleImageStatus ReadGif(std::span<const std::uint8_t> file, ModuleImagePixels& pixels);
/// Reads the first frame of a WebP file, placed on its canvas.
ModuleImageStatus ReadWebP(std::span<const std::uint8_t> file, ModuleImagePixels& pixels);
