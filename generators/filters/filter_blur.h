// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/filters/filter_pixels.h"

/// Standard deviations in pixels. Negative ones and those that are no numbers count as 0, which leaves their
/// axis as it is; ones past kLargestFilterSigma count as that.
struct FilterBlur {
    double sigmaX = 0.0, sigmaY = 0.0;
};

inline constexpr double kLargestFilterSigma = 4900.0;

/// How far a blur carries a pixel, at most: by so much an input should be larger than what is asked for.
int FilterBlurReach(double sigma);

/// Gaussian blur: exact weights below a standard deviation of 3, above it three running means. What lies
/// outside the input is transparent. Give an input that is not needed again by std::move: if its box is
/// `box`, it is blurred in place.
/// @param box  of the result
FilterPixels BlurFilterPixels(FilterPixels input, const FilterBlur& blur, const FilterBox& box);
/// Pixels that it touches, as the unit of a budget of work.
double FilterBlurWork(const FilterBox& input, const FilterBlur& blur, const FilterBox& box);
