// SPDX-License-Identifier: Apache-2.0

// Filters on an A4 page at 300 dpi: conversion of its pixels, and the filter primitives.

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "generators/filters/filter_blur.h"
#include "generators/filters/filter_colour.h"
#include "generators/filters/filter_compose.h"
#include "generators/filters/filter_lighting.h"
#include "generators/filters/filter_neighbours.h"
#include "generators/filters/filter_turbulence.h"

namespace {

constexpr FilterBox kPage{0, 0, 2480, 3508};
constexpr std::size_t kStride = std::size_t{4} * 2480;

/// A disc of varying colour on a transparent page.
std::vector<std::uint8_t> DiscBytes() {
    std::vector<std::uint8_t> bytes(kStride * 3508);
    for (int y = 0; y < kPage.height; ++y)
        for (int x = 0; x < kPage.width; ++x) {
            if ((x - 1240) * (x - 1240) + (y - 1754) * (y - 1754) > 1200 * 1200) continue;
            std::uint8_t* pixel =
                bytes.data() + static_cast<std::size_t>(y) * kStride + static_cast<std::size_t>(x) * 4;
            pixel[0] = static_cast<std::uint8_t>(x / 10);
            pixel[1] = static_cast<std::uint8_t>(y / 14);
            pixel[2] = 128;
            pixel[3] = 255;
        }
    return bytes;
}
FilterPixels Disc() {
    const std::vector<std::uint8_t> bytes = DiscBytes();
    return LoadFilterPixels(bytes.data(), kStride, kPage, FilterColours::kLinear);
}

void Load(benchmark::State& state) {
    const std::vector<std::uint8_t> bytes = DiscBytes();
    for (auto _ : state)
        benchmark::DoNotOptimize(LoadFilterPixels(bytes.data(), kStride, kPage, FilterColours::kLinear));
}
BENCHMARK(Load)->Unit(benchmark::kMillisecond);

void Store(benchmark::State& state) {
    std::vector<std::uint8_t> bytes = DiscBytes();
    const FilterPixels disc = BlurFilterPixels(Disc(), {20.0, 20.0}, kPage);
    for (auto _ : state) StoreFilterPixels(disc, kPage, bytes.data(), kStride);
}
BENCHMARK(Store)->Unit(benchmark::kMillisecond);

/// Arguments: the standard deviation in tenths of a pixel; 1 to blur the alpha channel only.
void Blur(benchmark::State& state) {
    const double sigma = static_cast<double>(state.range(0)) / 10.0;
    FilterPixels pixels = state.range(1) == 1 ? AlphaOfFilterPixels(Disc()) : Disc();
    for (auto _ : state) pixels = BlurFilterPixels(std::move(pixels), {sigma, sigma}, kPage);
}
BENCHMARK(Blur)->ArgsProduct({{10, 29, 50, 200, 600}, {0, 1}})->Unit(benchmark::kMillisecond);

void Shadow(benchmark::State& state) {
    const FilterPixels disc = Disc();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            ShadowFilterPixels(disc, {{20.0, 20.0}, 30, 30, {0.0, 0.0, 0.0, 0.5}}, kPage));
}
BENCHMARK(Shadow)->Unit(benchmark::kMillisecond);

void Blend(benchmark::State& state) {
    const FilterPixels disc = Disc();
    const auto mode = static_cast<ORVPrintBlendMode>(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(BlendFilterPixels(disc, disc, mode, kPage));
}
BENCHMARK(Blend)
    ->Arg(static_cast<int>(ORVPrintBlendMode::kMultiply))
    ->Arg(static_cast<int>(ORVPrintBlendMode::kLuminosity))
    ->Unit(benchmark::kMillisecond);

void Compose(benchmark::State& state) {
    const FilterPixels disc = Disc();
    for (auto _ : state)
        benchmark::DoNotOptimize(ComposeFilterPixels(disc, disc, {FilterOperator::kIn, {}}, kPage));
}
BENCHMARK(Compose)->Unit(benchmark::kMillisecond);

void Matrix(benchmark::State& state) {
    FilterPixels disc = Disc();
    for (auto _ : state) disc = ApplyFilterMatrix(std::move(disc), HueRotationMatrix(30.0), kPage);
}
BENCHMARK(Matrix)->Unit(benchmark::kMillisecond);

void Transfer(benchmark::State& state) {
    FilterPixels disc = Disc();
    FilterTransfer gamma;
    gamma.kind = FilterTransfer::Kind::kGamma;
    gamma.exponent = 0.9;
    for (auto _ : state) disc = ApplyFilterTransfer(std::move(disc), {gamma, gamma, gamma, {}}, kPage);
}
BENCHMARK(Transfer)->Unit(benchmark::kMillisecond);

void Convolve(benchmark::State& state) {
    const FilterPixels disc = Disc();
    FilterConvolution sharpen;
    sharpen.kernel = {0, -1, 0, -1, 5, -1, 0, -1, 0};
    sharpen.area = kPage;
    for (auto _ : state) benchmark::DoNotOptimize(ConvolveFilterPixels(disc, sharpen, kPage));
}
BENCHMARK(Convolve)->Unit(benchmark::kMillisecond);

/// Argument: the radius in pixels.
void Morph(benchmark::State& state) {
    const FilterPixels disc = Disc();
    const int radius = static_cast<int>(state.range(0));
    for (auto _ : state) benchmark::DoNotOptimize(MorphFilterPixels(disc, {true, radius, radius}, kPage));
}
BENCHMARK(Morph)->Arg(2)->Arg(50)->Unit(benchmark::kMillisecond);

void Turbulence(benchmark::State& state) {
    FilterTurbulence turbulence;
    turbulence.frequencyX = turbulence.frequencyY = 0.02;
    for (auto _ : state)
        benchmark::DoNotOptimize(MakeFilterTurbulence(turbulence, FilterColours::kLinear, kPage));
}
BENCHMARK(Turbulence)->Unit(benchmark::kMillisecond);

/// Argument: 1 for specular lighting, 0 for diffuse.
void Light(benchmark::State& state) {
    const FilterPixels disc = Disc();
    FilterLighting lighting;
    lighting.light.kind = FilterLight::Kind::kPoint;
    lighting.light.z = 200.0;
    lighting.colour = {1.0, 1.0, 1.0, 1.0};
    lighting.isSpecular = state.range(0) == 1;
    lighting.exponent = 20.0;
    lighting.area = kPage;
    for (auto _ : state)
        benchmark::DoNotOptimize(LightFilterPixels(disc, lighting, FilterColours::kLinear, kPage));
}
BENCHMARK(Light)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
