// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "interpreters/svg2/css/Style.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// A straight line beside text, in px along and across it, y pointing up.
struct DecorationPlace {
    /// Where a thicker line, a second one or a wave has its place.
    enum class Grows : std::uint8_t { kDown, kUp, kBothWays };
    double middle = 0.0;     ///< of a plain line of the font's own thickness
    double thickness = 0.0;  ///< of that line
    double length = 0.0;
    Grows grows = Grows::kBothWays;
};

/// Adds the outline of a line.
/// @param thickness  that is to be drawn
void AddDecorationLine(ORVPrintPath& path, const DecorationPlace& place, DecorationStyle style,
                       double thickness);

}  // namespace svg2
