// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "generators/filters/filter_pixels.h"

/// Four rows of five numbers for red, green, blue and opacity from 0 to 1, not premultiplied; the fifth
/// number is added. The default is the identity.
struct FilterMatrix {
    std::array<double, 20> numbers{1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0};
};
// Matrices of feColorMatrix. Amounts are not limited.
FilterMatrix SaturationMatrix(double amount);
FilterMatrix HueRotationMatrix(double degrees);
FilterMatrix LuminanceToAlphaMatrix();
// Matrices of CSS filter functions. An amount of 1 is 100 %; negative ones count as 0, and those above 1 as 1
// for greyscale, invert, opacity and sepia. For saturate() use SaturationMatrix, for hue-rotate()
// HueRotationMatrix.
FilterMatrix BrightnessMatrix(double amount);
FilterMatrix ContrastMatrix(double amount);
FilterMatrix GreyscaleMatrix(double amount);
FilterMatrix InversionMatrix(double amount);
FilterMatrix OpacityMatrix(double amount);
FilterMatrix SepiaMatrix(double amount);

/// Applies a matrix to every pixel of the box, including transparent ones. Numbers that are not finite count
/// as 0. The result is clamped to 0..1. An input passed by std::move may be changed in place.
FilterPixels ApplyFilterMatrix(FilterPixels input, const FilterMatrix& matrix, const FilterBox& box);

/// Transfer function of one channel, from 0 to 1, not premultiplied.
struct FilterTransfer {
    enum class Kind : std::uint8_t { kIdentity, kTable, kDiscrete, kLinear, kGamma };
    Kind kind = Kind::kIdentity;
    std::vector<double> values;  ///< for kTable and kDiscrete; if empty, as kIdentity
    double slope = 1.0, intercept = 0.0;
    double amplitude = 1.0, exponent = 1.0, offset = 0.0;
    /// The value for `c`, clamped to 0..1; NaN becomes 0.
    double operator()(double c) const;
};
/// Applies functions for red, green, blue and opacity to every pixel of the box, including transparent ones.
FilterPixels ApplyFilterTransfer(FilterPixels input, const std::array<FilterTransfer, 4>& functions,
                                 const FilterBox& box);

/// Pixels that either function touches.
double FilterColourWork(const FilterBox& box);
