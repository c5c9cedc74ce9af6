// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

namespace svg2 {

/// Rows of factors for red, green, blue, opacity and 1.
using ColourMatrix = std::array<double, 20>;

ColourMatrix IdentityMatrix();
/// @param amount  1 for colours as they are
ColourMatrix SaturateMatrix(double amount);
ColourMatrix HueRotateMatrix(double degrees);
ColourMatrix LuminanceToAlphaMatrix();
// Of the filter functions; amounts are not negative, and those of grayscale, invert and sepia at most 1.
ColourMatrix BrightnessMatrix(double amount);
ColourMatrix ContrastMatrix(double amount);
ColourMatrix GrayscaleMatrix(double amount);
ColourMatrix InvertMatrix(double amount);
ColourMatrix OpacityMatrix(double amount);
ColourMatrix SepiaMatrix(double amount);
/// Only opacity remains, in black.
ColourMatrix AlphaMatrix();

}  // namespace svg2
