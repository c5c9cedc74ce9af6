// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/print/ORVPrintGenerator.h"

/// Applies a blend mode to colours before they are composited over a backdrop. Pixels are premultiplied RGBA
/// and processed four at a time, so all three rows need room for three more.
/// @param source   colours to paint
/// @param below    backdrop, pixel by pixel
/// @param mixed    receives the blended colours with the opacity of the source
void ORVMixPixels(ORVPrintBlendMode mode, const std::uint8_t* source, const std::uint8_t* below, int count,
                  std::uint8_t* mixed);
