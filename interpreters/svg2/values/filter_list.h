// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "interpreters/svg2/values/colour.h"
#include "interpreters/svg2/values/length.h"

namespace svg2 {

/// An entry of a list of filters: a function, or a reference to a "filter" element.
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
    std::string_view reference;    ///< identifier; empty when it leads out of the document
    double amount = 1.0;           ///< 1 for 100 %; of kHueRotate, degrees
    double deviation = 0.0;        ///< of kBlur and kDropShadow, px, not negative
    double dx = 0.0, dy = 0.0;     ///< of kDropShadow, px
    std::optional<Colour> colour;  ///< of kDropShadow; nothing for the current one
};

/// Reads the value of the "filter" property; "none" is an empty list.
/// @return false when something in it cannot be read
bool ReadFilterList(std::string_view text, const UnitSizes& sizes, std::vector<FilterFunction>& list);

}  // namespace svg2
