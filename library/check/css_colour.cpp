// SPDX-License-Identifier: Apache-2.0
#include "library/check/css_colour.h"

#include <cmath>

#include "interpreters/svg2/values/colour.h"

bool ReadCssColour(std::string_view text, ORVPrintColour& colour) {
    svg2::Colour read;
    if (!svg2::ReadColour(text, read)) return false;
    colour = {read.red, read.green, read.blue,
              static_cast<std::uint8_t>(std::lround(255.0 * static_cast<double>(read.opacity)))};
    return true;
}
