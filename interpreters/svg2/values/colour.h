// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace svg2 {

/// A colour of sRGB.
struct Colour {
    std::uint8_t red = 0, green = 0, blue = 0;
    float opacity = 1.0F;  ///< 0 to 1
    friend bool operator==(const Colour&, const Colour&) = default;
};

class Scanner;

/// Reads a colour: a name, "#rgb" and its kin, rgb(), rgba(), hsl() or hsla() in any of their notations,
/// hwb(), lab(), lch(), oklab(), oklch() and color(), whose colours are cut to those of sRGB, a
/// system colour (black, but for backgrounds, which are white), light-dark() (the light one).
/// "currentColor" is none.
/// @return false when none comes next; the scanner then stands where it stood
bool TakeColour(Scanner& scanner, Colour& colour);

/// A text that is a colour and nothing else; a colour of a profile behind it is passed over.
bool ReadColour(std::string_view text, Colour& colour);

}  // namespace svg2
