// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

class ORVPixelImage;

/// Reads an image with a reader and requires that what it made is whole: as many pixels as the sizes say, the
/// same after they were given back, and alpha only where that was announced.
void CheckImageReader(ORVPixelImage* (*read)(const void* bytes, std::size_t size, int),
                      std::string_view file);
