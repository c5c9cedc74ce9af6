// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/visualization/images/module_images.h"

// The readers of the module liborvimages.so.

/// Draws the first frame of a GIF on its screen; what the frame leaves free is transparent.
ModuleImageStatus ReadGif(std::span<const std::uint8_t> file, ModuleImagePixels& pixels);
/// Draws the first frame of a WebP file on its canvas.
ModuleImageStatus ReadWebP(std::span<const std::uint8_t> file, ModuleImagePixels& pixels);
