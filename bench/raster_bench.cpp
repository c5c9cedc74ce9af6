// SPDX-License-Identifier: Apache-2.0

// Painting pages with gradients, layers, masks and clips. Nothing is encoded.

#include <benchmark/benchmark.h>

#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "generators/raster/ORVRasterGenerator.h"
#include "platform/print/ORVPrintPath.h"

namespace {

constexpr double kWidth = 744.0, kHeight = 1052.0;  // A4 in user units

/// Discards all bands.
class NoSink final : public ORVBandSink {
public:
    int BeginPage(const RasterPageInfo& /*page*/) override { return 1; }
    void EncodeBand(const RasterBand& /*band*/, std::vector<std::uint8_t>& /*bytes*/) const override {}
    int WriteBand(const RasterBand& /*band*/, const std::vector<std::uint8_t>& /*bytes*/) override {
        return 1;
    }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }
};

ORVPrintPath Rectangle(double x, double y, double width, double height) {
    ORVPrintPath path;
    path.MoveTo({x, y});
    path.LineTo({x + width, y});
    path.LineTo({x + width, y + height});
    path.LineTo({x, y + height});
    path.Close();
    return path;
}

ORVPrintPath Star(double x, double y, double radius) {
    ORVPrintPath path;
    for (int i = 0; i < 5; ++i) {
        const double angle = i * 2.513;
        const ORVMathPoint2D p{x + radius * std::sin(angle), y - radius * std::cos(angle)};
        i == 0 ? path.MoveTo(p) : path.LineTo(p);
    }
    path.Close();
    return path;
}

/// Draws one page per iteration, at 300 dpi on one thread.
template <class Draw>
void DrawPages(benchmark::State& state, Draw draw) {
    ORVRasterOptions options;
    options.dotsPerInch = 300.0;
    options.threads = 1;
    for (auto _ : state) {
        ORVRasterGenerator generator(std::make_unique<NoSink>(), options);
        ORVPrintPageInfo page;
        page.number = 1;
        page.width = kWidth;
        page.height = kHeight;
        int status = generator.BeginDocument({"", 1});
        if (status == 1) status = generator.BeginPage(page);
        if (status == 1) draw(generator);
        if (status == 1) status = generator.EndPage();
        if (status == 1) status = generator.EndDocument();
        if (status != 1) state.SkipWithError(generator.GetError().c_str());
    }
}

constexpr std::array kStops{ORVPrintGradientStop{0.0, {255, 60, 0}},
                            ORVPrintGradientStop{0.4, {250, 250, 60}},
                            ORVPrintGradientStop{1.0, {20, 40, 200}}};

/// Argument: 0 diagonal linear, 1 vertical linear, 2 radial, 3 radial with different start and end centres.
void FullPageGradient(benchmark::State& state) {
    const long kind = state.range(0);
    ORVPrintGradient gradient;
    gradient.kind = kind < 2 ? ORVPrintGradient::Kind::kLinear : ORVPrintGradient::Kind::kRadial;
    gradient.stops = kStops;
    gradient.start = kind == 3 ? ORVMathPoint2D{300.0, 450.0} : ORVMathPoint2D{370.0, 500.0};
    gradient.end =
        kind == 0 ? ORVMathPoint2D{744.0, 1052.0} : ORVMathPoint2D{370.0, kind == 1 ? 1052.0 : 500.0};
    gradient.endRadius = 600.0;
    ORVPrintFill fill;
    fill.gradient = &gradient;
    const ORVPrintPath path = Rectangle(0.0, 0.0, kWidth, kHeight);
    DrawPages(state, [&](ORVRasterGenerator& generator) {
        benchmark::DoNotOptimize(generator.DrawShape({path, {}, &fill, nullptr}));
    });
}
BENCHMARK(FullPageGradient)->DenseRange(0, 3)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

/// Calls `draw` with the same 1,000 positions and radii each time.
template <class Draw>
void AtThousandPlaces(Draw draw) {
    for (int i = 0; i < 1000; ++i) draw(i * 611 % 744, i * 379 % 1052, 10 + i * 37 % 50);
}

void GradientShapes(benchmark::State& state) {
    ORVPrintGradient gradient;
    gradient.stops = kStops;
    gradient.start = {-1.0, -0.3};
    gradient.end = {1.0, 0.5};
    ORVPrintFill fill;
    fill.gradient = &gradient;
    DrawPages(state, [&](ORVRasterGenerator& generator) {
        AtThousandPlaces([&](double x, double y, double radius) {
            gradient.toPage = {radius, 0.0, 0.0, radius, x, y};
            benchmark::DoNotOptimize(generator.DrawShape({Star(x, y, radius), {}, &fill, nullptr}));
        });
    });
}
BENCHMARK(GradientShapes)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

/// Argument: an ORVPrintBlendMode.
void Layers(benchmark::State& state) {
    ORVPrintFill fill;
    DrawPages(state, [&](ORVRasterGenerator& generator) {
        AtThousandPlaces([&](double x, double y, double radius) {
            ORVPrintLayer layer;
            layer.opacity = 0.6;
            layer.blend = static_cast<ORVPrintBlendMode>(state.range(0));
            layer.box = {x - radius, x + radius, y - radius, y + radius};
            benchmark::DoNotOptimize(generator.BeginLayer(layer));
            fill.colour = {0, 120, 220};
            benchmark::DoNotOptimize(generator.DrawShape({Star(x, y, radius), {}, &fill, nullptr}));
            benchmark::DoNotOptimize(generator.EndLayer());
        });
    });
}
BENCHMARK(Layers)
    ->Arg(static_cast<int>(ORVPrintBlendMode::kNormal))
    ->Arg(static_cast<int>(ORVPrintBlendMode::kMultiply))
    ->Arg(static_cast<int>(ORVPrintBlendMode::kLuminosity))
    ->Unit(benchmark::kMillisecond)
    ->MeasureProcessCPUTime();

void MaskedGroups(benchmark::State& state) {
    const ORVPrintFill fill;
    ORVPrintFill light;
    light.colour = {200, 200, 200};
    DrawPages(state, [&](ORVRasterGenerator& generator) {
        AtThousandPlaces([&](double x, double y, double radius) {
            ORVPrintLayer layer;
            layer.hasMask = true;
            layer.box = {x - radius, x + radius, y - radius, y + radius};
            benchmark::DoNotOptimize(generator.BeginLayer(layer));
            benchmark::DoNotOptimize(generator.BeginMask({ORVPrintMask::Kind::kLuminance, layer.box}));
            benchmark::DoNotOptimize(generator.DrawShape({Star(x, y, radius), {}, &light, nullptr}));
            benchmark::DoNotOptimize(generator.EndMask());
            const ORVPrintPath path = Rectangle(x - radius, y - radius, 2.0 * radius, 2.0 * radius);
            benchmark::DoNotOptimize(generator.DrawShape({path, {}, &fill, nullptr}));
            benchmark::DoNotOptimize(generator.EndLayer());
        });
    });
}
BENCHMARK(MaskedGroups)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

void ClippedShapes(benchmark::State& state) {
    const ORVPrintFill fill;
    DrawPages(state, [&](ORVRasterGenerator& generator) {
        AtThousandPlaces([&](double x, double y, double radius) {
            const ORVPrintPath star = Star(x, y, radius);
            const ORVPrintPath path = Rectangle(x - radius, y - radius, 2.0 * radius, 2.0 * radius);
            benchmark::DoNotOptimize(generator.BeginClipPath({star, {}}));
            benchmark::DoNotOptimize(generator.DrawShape({path, {}, &fill, nullptr}));
            benchmark::DoNotOptimize(generator.EndClipPath());
        });
    });
}
BENCHMARK(ClippedShapes)->Unit(benchmark::kMillisecond)->MeasureProcessCPUTime();

}  // namespace
