// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/filters/filter_pixels.h"
#include "platform/mathematics/geometry.h"

struct FilterTurbulence {
    double frequencyX = 0.0, frequencyY = 0.0;  ///< per user unit; negative or not finite gives transparency
    int octaves = 1;                            ///< none: 0 everywhere; only the first 16 can be seen
    double seed = 0.0;                          ///< cut to a whole number
    bool isFractal = false;                     ///< fractalNoise, else turbulence
    bool isStitched = false;                    ///< meets itself at the edges of `tile`
    ORVMathBox2D tile;                          ///< in user space
    /// From the left top corner of a pixel to user space; other points of it are reached by moving the map.
    ORVMathAffine2D toUser;
};
/// Perlin's noise as filters define it, taken as numbers of `colours`.
FilterPixels MakeFilterTurbulence(const FilterTurbulence& turbulence, FilterColours colours,
                                  const FilterBox& box);
double FilterTurbulenceWork(const FilterTurbulence& turbulence, const FilterBox& box);
