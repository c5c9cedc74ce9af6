// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/filters/filter_pixels.h"

/// Standard deviations in pixels. Negative values and NaN count as 0, which leaves that axis unchanged;
/// values above kLargestFilterSigma are reduced to it.
struct FilterBlur {
    double sigmaX = 0.0, sigmaY = 0.0;
};

inline constexpr double kLargestFilterSigma = 4900.0;

/// How far a blur spreads a pixel at most: the margin by which an input should exceed the requested box.
int FilterBlurReach(double sigma);

/// Gaussian blur: exact weights below a standard deviation of 3, three running means above. Outside the input
/// is transparent. Pass an input that is not needed again by std::move: if its box is `box`, it is blurred in
/// place.
/// @param box  of the result
FilterPixels BlurFilterPixels(FilterPixels input, const FilterBlur& blur, const FilterBox& box);
/// Pixels touched, the unit of a budget of work.
double FilterBlurWork(const FilterBox& input, const FilterBlur& blur, const FilterBox& box);
