// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string_view>

namespace svg2 {

/// Three components: of sRGB from 0 to 1, of others in their own units.
using Components = std::array<double, 3>;

// Colours of other spaces, in sRGB; those that it does not have lie outside of 0 to 1.

/// @param hue in degrees; whiteness and blackness from 0 to 1
Components HwbToRgb(const Components& hwb);
/// @param lab  lightness from 0 to 100, and the two axes
Components LabToRgb(const Components& lab);
/// @param oklab  lightness from 0 to 1, and the two axes
Components OklabToRgb(const Components& oklab);
/// Two axes from a chroma and a hue in degrees, which stand behind a lightness.
Components FromPolar(const Components& polar);
/// Converts from a space that color() names: srgb, srgb-linear, display-p3, xyz and its kin.
/// @return false when it is none of these; the components are then as they were
bool ToRgb(std::string_view space, Components& components);

}  // namespace svg2
