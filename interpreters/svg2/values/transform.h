// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg2/values/length.h"
#include "platform/mathematics/geometry.h"

namespace svg2 {

/// Reads a list of transforms as attributes have it: numbers without units, separated by white space and
/// commas.
/// @return false when something in it cannot be read
bool ReadTransformAttribute(std::string_view text, ORVMathAffine2D& transform);

/// Reads a list of transforms as style sheets have it: lengths, angles with units, commas between arguments;
/// "none" is the identity. Transforms of space that leave the plane are not read.
/// @param width, height  that percentages refer to, in px
/// @return false when something in it cannot be read
bool ReadTransformProperty(std::string_view text, const UnitSizes& sizes, double width, double height,
                           ORVMathAffine2D& transform);

ORVMathAffine2D Rotation(double degrees);

}  // namespace svg2
