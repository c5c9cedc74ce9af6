// SPDX-License-Identifier: Apache-2.0
#include "generators/flatten/filter_operations.h"

#include <algorithm>
#include <cmath>

namespace {

// Offsets beyond this have left every image.
constexpr double kFarthest = 1 << 28;
// Tolerance for rounding errors, in pixels.
constexpr double kUnseen = 1e-4;

int Round(double pixels) {
    return std::isfinite(pixels) ? static_cast<int>(std::lround(std::clamp(pixels, -kFarthest, kFarthest)))
                                 : 0;
}

}  // namespace

FilterBlur InPixels(const ORVFilterBlur& blur, const FilterGrid& grid) {
    return {blur.xDeviation * grid.xScale, blur.yDeviation * grid.yScale};
}

FilterShift InPixels(const ORVFilterOffset& offset, const FilterGrid& grid) {
    return {Round(offset.dx * grid.xScale), Round(offset.dy * grid.yScale)};
}

FilterShadow InPixels(const ORVFilterShadow& shadow, const FilterGrid& grid) {
    const FilterShift shift = InPixels(shadow.offset, grid);
    return {InPixels(shadow.blur, grid), shift.columns, shift.rows, ColourOf(shadow.colour)};
}

FilterMorphology InPixels(const ORVFilterMorphology& morphology, const FilterGrid& grid) {
    // A radius greater than 0 is at least one pixel.
    const auto reach = [](double radius) { return Round(std::ceil(radius - kUnseen)); };
    return {morphology.dilates, reach(morphology.xRadius * grid.xScale),
            reach(morphology.yRadius * grid.yScale)};
}

FilterDisplacement InPixels(const ORVFilterDisplacement& displacement, const FilterGrid& grid) {
    return {displacement.scale * grid.xScale, displacement.scale * grid.yScale,
            static_cast<int>(displacement.x), static_cast<int>(displacement.y)};
}

FilterTurbulence InPixels(const ORVFilterTurbulence& turbulence, const FilterGrid& grid,
                          const ORVMathBox2D& tile) {
    FilterTurbulence noise;
    noise.frequencyX = turbulence.xFrequency;
    noise.frequencyY = turbulence.yFrequency;
    noise.octaves = turbulence.octaves;
    noise.seed = turbulence.seed;
    noise.isFractal = turbulence.isNoise;
    noise.isStitched = turbulence.isStitched;
    noise.tile = tile;
    noise.toUser = ORVMathAffine2D::Scaling(1.0 / grid.xScale, 1.0 / grid.yScale) *
                   ORVMathAffine2D::Translation(-grid.fromUser.dx, -grid.fromUser.dy);
    return noise;
}

FilterConvolution InPixels(const ORVFilterConvolution& convolution, const FilterBox& area) {
    FilterConvolution made;
    made.columns = convolution.columns;
    made.rows = convolution.rows;
    made.kernel = convolution.kernel;
    made.divisor = convolution.divisor;
    made.bias = convolution.bias;
    made.targetColumn = convolution.targetX;
    made.targetRow = convolution.targetY;
    made.edge = static_cast<FilterEdge>(convolution.edges);
    made.area = area;
    made.preservesAlpha = convolution.keepsAlpha;
    return made;
}

FilterLighting InPixels(const ORVFilterLighting& lighting, const FilterGrid& grid, const FilterBox& area) {
    FilterLighting made;
    const ORVMathPoint2D place = grid.fromUser({lighting.x, lighting.y});
    const ORVMathPoint2D aim = grid.fromUser({lighting.pointsAtX, lighting.pointsAtY});
    // Heights have no axis, so the mean scale of both axes is used.
    const double zScale = std::sqrt((grid.xScale * grid.xScale + grid.yScale * grid.yScale) / 2.0);
    FilterLight& light = made.light;
    light.kind = static_cast<FilterLight::Kind>(lighting.light);
    light.azimuth = lighting.azimuth;
    light.elevation = lighting.elevation;
    light.x = place.x;
    light.y = place.y;
    light.z = lighting.z * zScale;
    light.pointsAtX = aim.x;
    light.pointsAtY = aim.y;
    light.pointsAtZ = lighting.pointsAtZ * zScale;
    light.focus = lighting.spotExponent;
    light.hasCone = std::isfinite(lighting.coneAngle);
    light.coneAngle = light.hasCone ? lighting.coneAngle : 0.0;
    made.colour = ColourOf(lighting.colour);
    // Slopes are differences between pixels and thus flatter on finer devices. The surface is lit as it would
    // be on a screen.
    made.surfaceScale = lighting.surfaceScale * grid.pixelsInPx;
    made.constant = lighting.constant;
    made.isSpecular = lighting.isSpecular;
    made.exponent = lighting.exponent;
    made.area = area;
    return made;
}

FilterColour ColourOf(const ORVPrintColour& colour) {
    return {colour.red / 255.0, colour.green / 255.0, colour.blue / 255.0, colour.opacity / 255.0};
}
