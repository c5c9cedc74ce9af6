// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/filters/filter_pixels.h"
#include "platform/mathematics/geometry.h"

struct FilterTurbulence {
    double frequencyX = 0.0, frequencyY = 0.0;  ///< per user unit; transparent if negative or not finite
    int octaves = 1;                            ///< 0 or less: 0 everywhere; only the first 16 are visible
    double seed = 0.0;                          ///< truncated to an integer
    bool isFractal = false;                     ///< fractalNoise, otherwise turbulence
    bool isStitched = false;                    ///< continuous across the edges of `tile`
    ORVMathBox2D tile;                          ///< in user space
    /// From the top left corner of a pixel to user space. Other points of a pixel require a translated
    /// matrix.
    ORVMathAffine2D toUser;
};
/// Perlin noise as filter effects define it; its values are in the colour space `colours`.
FilterPixels MakeFilterTurbulence(const FilterTurbulence& turbulence, FilterColours colours,
                                  const FilterBox& box);
double FilterTurbulenceWork(const FilterTurbulence& turbulence, const FilterBox& box);
