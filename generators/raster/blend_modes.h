// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/print/ORVPrintGenerator.h"

/// Mixes colours with those below them, before they are laid over them. Pixels are premultiplied (RGBA) and
/// handled four at a time: all three rows have room for three more.
/// @param source   what is painted
/// @param below    what lies below; one of its pixels a pixel
/// @param mixed    receives the source with its opacity and the colours of the mode
void ORVMixPixels(ORVPrintBlendMode mode, const std::uint8_t* source, const std::uint8_t* below, int count,
                  std::uint8_t* mixed);
