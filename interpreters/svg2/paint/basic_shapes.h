// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string_view>

#include "interpreters/svg2/values/length.h"
#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// Reference boxes of CSS shapes.
enum class ShapeBox : std::uint8_t { kFill, kStroke, kView };

/// Adds the outline of inset(), circle(), ellipse(), polygon() or path() in its reference box, or the box
/// itself if only that is given.
/// @param boxOf  returns reference boxes in user units
/// @return false if the text is none of these
bool AddBasicShape(std::string_view text, const UnitSizes& sizes,
                   const std::function<ORVMathBox2D(ShapeBox)>& boxOf, ORVPrintPath& path, bool& isEvenOdd);

}  // namespace svg2
