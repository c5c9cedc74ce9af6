// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "interpreters/svg2/values/colour.h"
#include "interpreters/svg2/values/length.h"

namespace svg2 {

/// An entry of a filter list: a function, or a reference to a "filter" element.
struct FilterFunction {
    enum class Kind : std::uint8_t {
        kReference,
        kBlur,
        kBrightness,
        kContrast,
        kDropShadow,
        kGrayscale,
        kHueRotate,
        kInvert,
        kOpacity,
        kSaturate,
        kSepia,
    };
    Kind kind = Kind::kReference;
    std::string_view reference;    ///< identifier; empty for a reference to another document
    double amount = 1.0;           ///< 1 for 100 %; for kHueRotate, degrees
    double deviation = 0.0;        ///< of kBlur and kDropShadow, in px; not negative
    double dx = 0.0, dy = 0.0;     ///< of kDropShadow, in px
    std::optional<Colour> colour;  ///< of kDropShadow; empty for the current colour
};

/// Reads the value of the "filter" property; "none" is an empty list.
/// @return false if any part of it is invalid
bool ReadFilterList(std::string_view text, const UnitSizes& sizes, std::vector<FilterFunction>& list);

}  // namespace svg2
