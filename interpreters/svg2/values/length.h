// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace svg2 {

class Scanner;

/// A length of which a part may depend on a size that is known later.
struct Length {
    double px = 0.0;
    double percent = 0.0;

    /// @param base  what 100 % are, in px
    double Resolve(double base) const { return px + percent * base / 100.0; }
    bool IsPercentage() const { return percent != 0.0; }
    friend bool operator==(const Length&, const Length&) = default;
};

/// What relative units refer to, in px.
struct UnitSizes {
    double fontSize = 12.0;
    double rootFontSize = 12.0;
    double xHeight = 6.0;                              ///< of the font; half an em when unknown
    double zeroWidth = 6.0;                            ///< advance of the font's "0"
    double viewportWidth = 0.0, viewportHeight = 0.0;  ///< of the root
};

/// Reads a length with or without unit: px, in, cm, mm, Q, pt, pc, em, ex, ch, rem, lh, vw, vh, vmin, vmax,
/// %, and calc(), min(), max(), clamp() of them. Without unit it is px.
/// @return false when none comes next; the scanner then stands where it stood
bool TakeLength(Scanner& scanner, const UnitSizes& sizes, Length& length);

/// A text that is one length and nothing else but white space around it.
bool ReadLength(std::string_view text, const UnitSizes& sizes, Length& length);

/// Reads an angle in degrees, with or without unit (deg, grad, rad, turn).
bool TakeAngle(Scanner& scanner, double& degrees);

}  // namespace svg2
