// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/filters/filter_pixels.h"

struct FilterDisplacement {
    double scaleX = 0.0, scaleY = 0.0;  ///< pixels by which a full channel differs from an empty one
    int channelX = 3, channelY = 3;     ///< of the map: 0 red, 1 green, 2 blue, 3 opacity
};
/// Each pixel shows the input's pixel that lies where the map's channels say, which are taken without their
/// opacity. The map counts in the colours that it is in, which need not be the input's. A scale that is not
/// finite counts as 0.
FilterPixels DisplaceFilterPixels(const FilterPixels& input, const FilterPixels& map,
                                  const FilterDisplacement& displacement, const FilterBox& box);
double FilterDisplacementWork(const FilterBox& box);
