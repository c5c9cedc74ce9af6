// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "interpreters/svg2/values/length.h"
#include "platform/mathematics/geometry.h"

namespace svg2 {

/// Reads a transform list in attribute syntax: numbers without units, separated by white space and commas.
/// @return false if any part of it is invalid
bool ReadTransformAttribute(std::string_view text, ORVMathAffine2D& transform);

/// Reads a transform list in CSS syntax: lengths, angles with units, commas between arguments; "none" is the
/// identity. 3D transforms that leave the plane are rejected.
/// @param width, height  reference of percentages, in px
/// @return false if any part of it is invalid
bool ReadTransformProperty(std::string_view text, const UnitSizes& sizes, double width, double height,
                           ORVMathAffine2D& transform);

ORVMathAffine2D Rotation(double degrees);

}  // namespace svg2
