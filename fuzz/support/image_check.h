// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

class ORVPixelImage;

/// Reads an image and requires a consistent result: as many pixels as its size says, the same pixels after
/// they were released, and an alpha channel exactly if one is reported.
void CheckImageReader(ORVPixelImage* (*read)(const void* bytes, std::size_t size, int),
                      std::string_view file);
