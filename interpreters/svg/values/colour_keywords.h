// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

struct RgbColour {
    std::uint8_t red = 0, green = 0, blue = 0;
};

/// The 147 colour keywords of SVG 1.1, without regard to case. @return false when `name` is none of them
bool FindColourKeyword(std::string_view name, RgbColour& colour);
