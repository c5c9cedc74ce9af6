// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace svg2 {

class Scanner;

/// A length that may depend on a percentage resolved later.
struct Length {
    double px = 0.0;
    double percent = 0.0;

    /// @param base  the length of 100 %, in px
    double Resolve(double base) const { return px + percent * base / 100.0; }
    bool IsPercentage() const { return percent != 0.0; }
    friend bool operator==(const Length&, const Length&) = default;
};

/// The reference sizes of relative units, in px.
struct UnitSizes {
    double fontSize = 12.0;
    double rootFontSize = 12.0;
    double xHeight = 6.0;                              ///< of the font; half an em if unknown
    double zeroWidth = 6.0;                            ///< advance of the glyph "0"
    double viewportWidth = 0.0, viewportHeight = 0.0;  ///< of the root
};

/// Reads a length with or without unit: px, in, cm, mm, Q, pt, pc, em, ex, ch, rem, lh, vw, vh, vmin, vmax,
/// %, and calc(), min(), max(), clamp() of them. The default unit is px.
/// @return false if the next token is not a length; the scanner is then unchanged
bool TakeLength(Scanner& scanner, const UnitSizes& sizes, Length& length);

/// Reads a text that consists of one length; surrounding white space is ignored.
bool ReadLength(std::string_view text, const UnitSizes& sizes, Length& length);

/// Reads an angle in degrees, with or without unit (deg, grad, rad, turn).
bool TakeAngle(Scanner& scanner, double& degrees);

}  // namespace svg2
