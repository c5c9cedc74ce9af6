// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string_view>

namespace svg2 {

/// Three components: of sRGB from 0 to 1, of other spaces in their own units.
using Components = std::array<double, 3>;

// Conversions to sRGB; components outside the range 0 to 1 are outside its gamut.

/// @param hwb  hue in degrees, whiteness and blackness from 0 to 1
Components HwbToRgb(const Components& hwb);
/// @param lab  lightness from 0 to 100, and the two axes
Components LabToRgb(const Components& lab);
/// @param oklab  lightness from 0 to 1, and the two axes
Components OklabToRgb(const Components& oklab);
/// Converts (lightness, chroma, hue in degrees) to lightness and two axes.
Components FromPolar(const Components& polar);
/// Converts from a colour space of color(): srgb, srgb-linear, display-p3, xyz and its variants.
/// @return false if the space is unknown; the components are then unchanged
bool ToRgb(std::string_view space, Components& components);

}  // namespace svg2
