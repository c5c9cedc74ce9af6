// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

struct RgbColour {
    std::uint8_t red = 0, green = 0, blue = 0;
};

/// Finds one of the 147 colour keywords of SVG 1.1, ignoring case.
/// @return false if `name` is not one of them
bool FindColourKeyword(std::string_view name, RgbColour& colour);
