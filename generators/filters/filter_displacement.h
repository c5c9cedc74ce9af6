// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/filters/filter_pixels.h"

struct FilterDisplacement {
    double scaleX = 0.0, scaleY = 0.0;  ///< displacement in pixels between an empty and a full channel
    int channelX = 3, channelY = 3;     ///< channels of the map: 0 red, 1 green, 2 blue, 3 opacity
};
/// Each pixel of the result is the input's pixel at the offset given by the map's channels, not
/// premultiplied. The map is used in its own colour space, which may differ from the input's. A scale that is
/// not finite counts as 0.
FilterPixels DisplaceFilterPixels(const FilterPixels& input, const FilterPixels& map,
                                  const FilterDisplacement& displacement, const FilterBox& box);
double FilterDisplacementWork(const FilterBox& box);
