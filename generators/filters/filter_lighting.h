// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "generators/filters/filter_pixels.h"

/// A light source. Positions are in pixels: x to the right, y down, z towards the viewer.
struct FilterLight {
    enum class Kind : std::uint8_t { kDistant, kPoint, kSpot };
    Kind kind = Kind::kDistant;
    double azimuth = 0.0, elevation = 0.0;                     ///< kDistant: degrees
    double x = 0.0, y = 0.0, z = 0.0;                          ///< kPoint, kSpot
    double pointsAtX = 0.0, pointsAtY = 0.0, pointsAtZ = 0.0;  ///< kSpot
    double focus = 1.0;      ///< kSpot: exponent of the falloff from the axis
    bool hasCone = false;    ///< kSpot: nothing is lit outside the cone
    double coneAngle = 0.0;  ///< degrees from the axis; the sign is ignored
};

struct FilterLighting {
    FilterLight light;
    FilterColour colour;        ///< of the light; its opacity is ignored
    double surfaceScale = 1.0;  ///< height of full opacity, in pixels
    double constant = 1.0;      ///< kd or ks; negative counts as 0
    bool isSpecular = false;
    double exponent = 1.0;  ///< specular; outside 1..128 the result is transparent
    FilterBox area;         ///< The input's subregion; the edge kernels apply at its edges.
};
/// Lights the input's opacity as a height map. A diffuse result is opaque; a specular one is as opaque as it
/// is bright. Parameters that are not finite make the result transparent.
FilterPixels LightFilterPixels(const FilterPixels& input, const FilterLighting& lighting,
                               FilterColours colours, const FilterBox& box);
double FilterLightingWork(const FilterLighting& lighting, const FilterBox& box);
