// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

namespace svg2 {

/// An sRGB colour.
struct Colour {
    std::uint8_t red = 0, green = 0, blue = 0;
    float opacity = 1.0F;  ///< from 0 to 1
    friend bool operator==(const Colour&, const Colour&) = default;
};

class Scanner;

/// Reads a colour: a name, "#rgb" and its variants, rgb(), rgba(), hsl() or hsla() in all their notations,
/// hwb(), lab(), lch(), oklab(), oklch() and color(), clipped to sRGB; system colours (black, or white for
/// backgrounds); light-dark() (the light colour). "currentColor" is not accepted.
/// @return false if the next token is not a colour; the scanner is then unchanged
bool TakeColour(Scanner& scanner, Colour& colour);

/// Reads a text that consists of one colour; an ICC colour after it is ignored.
bool ReadColour(std::string_view text, Colour& colour);

}  // namespace svg2
