// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_lighting.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <string>

#include "tests/generators/filters/filter_buffers.h"
#include "tests/support/named_rows.h"

namespace {

using Kind = FilterLight::Kind;
const FilterBox kInput{-4, 2, 13, 11};

// ---- Reference implementation with the nine kernels written out -------------------------------------------

struct Vector {
    double x, y, z;
};
double Dot(const Vector& a, const Vector& b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
Vector Unit(const Vector& v) {
    const double length = std::sqrt(Dot(v, v));
    return length > 0.0 ? Vector{v.x / length, v.y / length, v.z / length} : v;
}

struct Kernel {
    double factorX, factorY;
    int x[9], y[9];  // weights of the neighbours, row by row
};
// By row (top edge, inside, bottom edge), and in each row by column (left edge, inside, right edge).
const Kernel kKernels[9] = {
    {2 / 3.0, 2 / 3.0, {0, 0, 0, 0, -2, 2, 0, -1, 1}, {0, 0, 0, 0, -2, -1, 0, 2, 1}},
    {1 / 3.0, 1 / 2.0, {0, 0, 0, -2, 0, 2, -1, 0, 1}, {0, 0, 0, -1, -2, -1, 1, 2, 1}},
    {2 / 3.0, 2 / 3.0, {0, 0, 0, -2, 2, 0, -1, 1, 0}, {0, 0, 0, -1, -2, 0, 1, 2, 0}},
    {1 / 2.0, 1 / 3.0, {0, -1, 1, 0, -2, 2, 0, -1, 1}, {0, -2, -1, 0, 0, 0, 0, 2, 1}},
    {1 / 4.0, 1 / 4.0, {-1, 0, 1, -2, 0, 2, -1, 0, 1}, {-1, -2, -1, 0, 0, 0, 1, 2, 1}},
    {1 / 2.0, 1 / 3.0, {-1, 1, 0, -2, 2, 0, -1, 1, 0}, {-1, -2, 0, 0, 0, 0, 1, 2, 0}},
    {2 / 3.0, 2 / 3.0, {0, -1, 1, 0, -2, 2, 0, 0, 0}, {0, -2, -1, 0, 2, 1, 0, 0, 0}},
    {1 / 3.0, 1 / 2.0, {-1, 0, 1, -2, 0, 2, 0, 0, 0}, {-1, -2, -1, 1, 2, 1, 0, 0, 0}},
    {2 / 3.0, 2 / 3.0, {-1, 1, 0, -2, 2, 0, 0, 0, 0}, {-1, -2, 0, 1, 2, 0, 0, 0, 0}},
};

Vector SlowNormal(const FilterPixels& input, const FilterLighting& lighting, int x, int y) {
    const FilterBox& area = lighting.area;
    const auto edge = [](int place, int begin, int end) {
        return place == begin ? 0 : place == end - 1 ? 2 : 1;
    };
    const Kernel& kernel = kKernels[edge(y, area.top, area.Bottom()) * 3 + edge(x, area.left, area.Right())];
    double sumX = 0.0, sumY = 0.0;
    for (int i = 0; i < 9; ++i) {
        const double alpha = PlainAt(input, x + i % 3 - 1, y + i / 3 - 1)[3];
        sumX += kernel.x[i] * alpha;
        sumY += kernel.y[i] * alpha;
    }
    return Unit({-lighting.surfaceScale * kernel.factorX * sumX,
                 -lighting.surfaceScale * kernel.factorY * sumY, 1.0});
}

PlainPixel SlowLight(const FilterPixels& input, const FilterLighting& lighting, int x, int y) {
    const FilterLight& light = lighting.light;
    const double radians = std::numbers::pi / 180.0, a = light.azimuth * radians,
                 e = light.elevation * radians;
    Vector way{std::cos(a) * std::cos(e), std::sin(a) * std::cos(e), std::sin(e)};
    if (light.kind != Kind::kDistant)
        way = {light.x - x - 0.5, light.y - y - 0.5,
               light.z - lighting.surfaceScale * PlainAt(input, x, y)[3]};
    const Vector direction = Unit(way), normal = SlowNormal(input, lighting, x, y);
    double strength = 1.0;
    if (light.kind == Kind::kSpot) {
        const Vector axis =
            Unit({light.pointsAtX - light.x, light.pointsAtY - light.y, light.pointsAtZ - light.z});
        const double cosine = -Dot(direction, axis), cone = std::abs(light.coneAngle) * radians;
        strength = cosine > 0.0 ? std::pow(cosine, light.focus) : 0.0;
        if (light.hasCone)
            strength *= std::clamp(
                (cosine - std::cos(cone)) * std::sqrt(Dot(way, way)) / std::sin(cone) + 0.5, 0.0, 1.0);
    }
    double factor = lighting.constant * strength;
    if (lighting.isSpecular)
        factor *= std::pow(std::max(0.0, Dot(normal, Unit({direction.x, direction.y, direction.z + 1.0}))),
                           lighting.exponent);
    else
        factor *= std::max(0.0, Dot(normal, direction));
    const FilterColour& colour = lighting.colour;
    PlainPixel lit{factor * colour.red, factor * colour.green, factor * colour.blue, 1.0};
    for (double& channel : lit) channel = std::clamp(channel, 0.0, 1.0);
    if (lighting.isSpecular) lit[3] = std::max({lit[0], lit[1], lit[2]});
    return lit;
}

struct LightCase {
    const char* name;
    FilterLight light;
    double surfaceScale = 1.0;
    double constant = 1.0;
    double exponent = 0.0;  // 0 for diffuse lighting
};
FilterLighting LightingOf(const LightCase& row) {
    FilterLighting lighting;
    lighting.light = row.light;
    lighting.colour = {0.9, 0.6, 0.3, 0.5};
    lighting.surfaceScale = row.surfaceScale;
    lighting.constant = row.constant;
    lighting.isSpecular = row.exponent != 0.0;
    lighting.exponent = row.exponent;
    lighting.area = kInput;
    return lighting;
}
FilterLight Distant(double azimuth, double elevation) {
    FilterLight light;
    light.azimuth = azimuth;
    light.elevation = elevation;
    return light;
}
FilterLight Point(double x, double y, double z) {
    FilterLight light;
    light.kind = Kind::kPoint;
    light.x = x;
    light.y = y;
    light.z = z;
    return light;
}
FilterLight Spot(FilterLight light, double focus, bool hasCone, double cone) {
    light.kind = Kind::kSpot;
    light.pointsAtX = 3.0;
    light.pointsAtY = 8.0;
    light.focus = focus;
    light.hasCone = hasCone;
    light.coneAngle = cone;
    return light;
}

class FilterLightTest : public testing::TestWithParam<LightCase> {};
TEST_P(FilterLightTest, IsTheSlowLight) {
    const FilterPixels input = RandomFilterPixels(kInput, 1);
    const FilterLighting lighting = LightingOf(GetParam());
    for (const FilterBox& box : {kInput, FilterBox{-2, 5, 4, 3}, FilterBox{-4, 2, 1, 11}})
        ExpectPixels(LightFilterPixels(input, lighting, FilterColours::kSrgb, box), box, 12.0,
                     [&](int x, int y) { return SlowLight(input, lighting, x, y); });
}
INSTANTIATE_TEST_SUITE_P(
    Filter, FilterLightTest,
    testing::Values(LightCase{"Distant", Distant(30.0, 40.0)},
                    LightCase{"DistantFromAbove", Distant(0.0, 90.0), 3.0, 0.8},
                    LightCase{"HollowSurface", Distant(200.0, 30.0), -2.5, 1.5},
                    LightCase{"FlatSurface", Distant(10.0, 20.0), 0.0},
                    LightCase{"Point", Point(3.0, 8.0, 6.0), 2.0},
                    LightCase{"PointBelow", Point(3.0, 8.0, -6.0), 2.0},
                    LightCase{"Spot", Spot(Point(-3.0, 2.0, 9.0), 1.0, false, 0.0)},
                    LightCase{"FocusedSpot", Spot(Point(-3.0, 2.0, 9.0), 12.5, false, 0.0)},
                    LightCase{"Cone", Spot(Point(-3.0, 2.0, 9.0), 1.0, true, 20.0)},
                    LightCase{"NegativeCone", Spot(Point(-3.0, 2.0, 9.0), 1.0, true, -20.0)},
                    LightCase{"SpecularDistant", Distant(30.0, 40.0), 1.0, 1.2, 1.0},
                    LightCase{"SpecularPoint", Point(3.0, 8.0, 6.0), 2.0, 0.7, 20.0},
                    LightCase{"SpecularCone", Spot(Point(-3.0, 2.0, 9.0), 2.0, true, 25.0), 1.0, 2.0, 8.0},
                    LightCase{"NoConstant", Distant(30.0, 40.0), 1.0, 0.0}),
    kNameOfRow);

TEST(FilterLightTest, OnAFlatSurfaceIsTheSineOfItsElevation) {
    const FilterPixels flat(kInput);
    FilterLighting lighting = LightingOf({"", Distant(77.0, 30.0)});
    ExpectPixels(LightFilterPixels(flat, lighting, FilterColours::kSrgb, kInput), kInput, 1.0, [](int, int) {
        return PlainPixel{0.45, 0.3, 0.15, 1.0};
    });
    // The angle between the normal and the halfway vector is 30 degrees; its cosine is squared.
    lighting.isSpecular = true;
    lighting.exponent = 2.0;
    ExpectPixels(LightFilterPixels(flat, lighting, FilterColours::kSrgb, kInput), kInput, 1.0, [](int, int) {
        return PlainPixel{0.675, 0.45, 0.225, 0.675};
    });
}

TEST(FilterLightTest, ColourIsThatOfTheResult) {
    const FilterLighting lighting = LightingOf({"", Distant(0.0, 90.0)});
    const FilterPixels lit =
        LightFilterPixels(FilterPixels(kInput), lighting, FilterColours::kLinear, kInput);
    EXPECT_EQ(lit.GetColours(), FilterColours::kLinear);
    EXPECT_NEAR(lit.At(0, 5)[1], std::pow((0.6 + 0.055) / 1.055, 2.4) * 65535.0, 2.0);
}

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

class NoLightTest : public testing::TestWithParam<LightCase> {};
TEST_P(NoLightTest, IsTransparent) {
    const FilterPixels input = RandomFilterPixels(kInput, 1);
    ExpectPixels(LightFilterPixels(input, LightingOf(GetParam()), FilterColours::kSrgb, kInput), kInput, 0.0,
                 [](int, int) { return PlainPixel{}; });
}
INSTANTIATE_TEST_SUITE_P(Filter, NoLightTest,
                         testing::Values(LightCase{"SmallExponent", Distant(0.0, 90.0), 1.0, 1.0, 0.9},
                                         LightCase{"LargeExponent", Distant(0.0, 90.0), 1.0, 1.0, 128.5},
                                         LightCase{"ScaleOfNoNumber", Distant(0.0, 90.0), kNoNumber},
                                         LightCase{"InfiniteConstant", Distant(0.0, 90.0), 1.0, INFINITY},
                                         LightCase{"AzimuthOfNoNumber", Distant(kNoNumber, 90.0)},
                                         LightCase{"HugePlace", Point(1e300, 0.0, 0.0)},
                                         LightCase{"SpecularPointAtInfinity", Point(0.0, INFINITY, 0.0), 1.0,
                                                   1.0, 2.0}),
                         kNameOfRow);

TEST(FilterLightTest, OnOnePixelHasNoSlope) {
    FilterPixels input({0, 0, 1, 1});
    input.At(0, 0)[3] = 65535;
    FilterLighting lighting = LightingOf({"", Distant(0.0, 90.0), 100.0});
    lighting.area = {0, 0, 1, 1};
    ExpectPixels(LightFilterPixels(input, lighting, FilterColours::kSrgb, lighting.area), lighting.area, 1.0,
                 [](int, int) {
                     return PlainPixel{0.9, 0.6, 0.3, 1.0};
                 });
}

TEST(FilterLightTest, BrightensWithANegativeFocusWithoutHarm) {
    const FilterLighting lighting = LightingOf({"", Spot(Point(-3.0, 2.0, 9.0), -1e8, false, 0.0)});
    const FilterPixels lit =
        LightFilterPixels(RandomFilterPixels(kInput, 1), lighting, FilterColours::kSrgb, kInput);
    for (int x = -4; x < 9; ++x) EXPECT_EQ(lit.At(x, 7)[3], 65535);
}

}  // namespace
