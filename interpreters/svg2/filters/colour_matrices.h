// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>

namespace svg2 {

/// Four rows of factors for red, green, blue, opacity and 1.
using ColourMatrix = std::array<double, 20>;

ColourMatrix IdentityMatrix();
/// @param amount  1 leaves colours unchanged
ColourMatrix SaturateMatrix(double amount);
ColourMatrix HueRotateMatrix(double degrees);
ColourMatrix LuminanceToAlphaMatrix();
// Matrices of filter functions. Amounts must not be negative; those of grayscale, invert and sepia at most 1.
ColourMatrix BrightnessMatrix(double amount);
ColourMatrix ContrastMatrix(double amount);
ColourMatrix GrayscaleMatrix(double amount);
ColourMatrix InvertMatrix(double amount);
ColourMatrix OpacityMatrix(double amount);
ColourMatrix SepiaMatrix(double amount);
/// Keeps the opacity and makes all colours black.
ColourMatrix AlphaMatrix();

}  // namespace svg2
