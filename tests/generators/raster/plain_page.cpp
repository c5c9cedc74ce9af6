// SPDX-License-Identifier: Apache-2.0
#include "tests/generators/raster/plain_page.h"

#include <algorithm>
#include <cmath>

namespace {

using Rgb = std::array<double, 3>;

double LightOf(const Rgb& c) { return 0.3 * c[0] + 0.59 * c[1] + 0.11 * c[2]; }
double SaturationOf(const Rgb& c) {
    return *std::max_element(c.begin(), c.end()) - *std::min_element(c.begin(), c.end());
}

Rgb ClipColour(Rgb c) {
    const double l = LightOf(c), n = *std::min_element(c.begin(), c.end()),
                 x = *std::max_element(c.begin(), c.end());
    for (double& channel : c) {
        if (n < 0.0) channel = l + (channel - l) * l / (l - n);
        if (x > 1.0) channel = l + (channel - l) * (1.0 - l) / (x - l);
    }
    return c;
}

Rgb SetLight(Rgb c, double light) {
    const double d = light - LightOf(c);
    for (double& channel : c) channel += d;
    return ClipColour(c);
}

Rgb SetSaturation(const Rgb& c, double saturation) {
    std::array<std::size_t, 3> order{0, 1, 2};
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return c[a] < c[b]; });
    Rgb result{};
    const auto [least, middle, most] = order;
    if (c[most] > c[least]) {
        result[middle] = (c[middle] - c[least]) * saturation / (c[most] - c[least]);
        result[most] = saturation;
    }
    return result;
}

double BlendChannel(ORVPrintBlendMode mode, double b, double s) {
    switch (mode) {
        case ORVPrintBlendMode::kMultiply: return b * s;
        case ORVPrintBlendMode::kScreen: return 1.0 - (1.0 - b) * (1.0 - s);
        case ORVPrintBlendMode::kOverlay: return BlendChannel(ORVPrintBlendMode::kHardLight, s, b);
        case ORVPrintBlendMode::kDarken: return std::min(b, s);
        case ORVPrintBlendMode::kLighten: return std::max(b, s);
        case ORVPrintBlendMode::kColourDodge:
            if (b == 0.0) return 0.0;
            return s == 1.0 ? 1.0 : std::min(1.0, b / (1.0 - s));
        case ORVPrintBlendMode::kColourBurn:
            if (b == 1.0) return 1.0;
            return s == 0.0 ? 0.0 : 1.0 - std::min(1.0, (1.0 - b) / s);
        case ORVPrintBlendMode::kHardLight:
            return s <= 0.5 ? b * 2.0 * s : 1.0 - (1.0 - b) * (1.0 - (2.0 * s - 1.0));
        case ORVPrintBlendMode::kSoftLight: {
            if (s <= 0.5) return b - (1.0 - 2.0 * s) * b * (1.0 - b);
            const double d = b <= 0.25 ? ((16.0 * b - 12.0) * b + 4.0) * b : std::sqrt(b);
            return b + (2.0 * s - 1.0) * (d - b);
        }
        case ORVPrintBlendMode::kDifference: return std::fabs(b - s);
        case ORVPrintBlendMode::kExclusion: return b + s - 2.0 * b * s;
        default: return s;
    }
}

}  // namespace

Rgb PlainBlend(ORVPrintBlendMode mode, const Rgb& below, const Rgb& over) {
    switch (mode) {
        case ORVPrintBlendMode::kHue:
            return SetLight(SetSaturation(over, SaturationOf(below)), LightOf(below));
        case ORVPrintBlendMode::kSaturation:
            return SetLight(SetSaturation(below, SaturationOf(over)), LightOf(below));
        case ORVPrintBlendMode::kColour: return SetLight(over, LightOf(below));
        case ORVPrintBlendMode::kLuminosity: return SetLight(below, LightOf(over));
        default: break;
    }
    Rgb mixed{};
    for (std::size_t i = 0; i < 3; ++i) mixed[i] = BlendChannel(mode, below[i], over[i]);
    return mixed;
}

PlainPage::PlainPage(int width, int height) : width_(width), height_(height) {
    levels_.push_back(NewLevel(true));
    for (Pixel& pixel : levels_[0].seen) pixel = {{1.0, 1.0, 1.0}, 1.0};
}

PlainPage::Level PlainPage::NewLevel(bool isIsolated) const {
    const auto count = static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_);
    Level level;
    level.seen.resize(count);
    if (!isIsolated) level.seen = levels_.back().seen;
    level.before = level.seen;
    level.group.resize(count, 0.0);
    level.shown.resize(count, 1.0);
    return level;
}

void PlainPage::Paste(Level& level, std::size_t i, ORVPrintBlendMode mode, const PlainColour& colour) const {
    Pixel& below = level.seen[i];
    const double s = colour.opacity, b = below.opacity, united = s + b - s * b;
    const Rgb mixed = PlainBlend(mode, below.rgb, colour.rgb);
    for (std::size_t k = 0; k < 3 && united > 0.0; ++k)
        below.rgb[k] =
            (1.0 - s / united) * below.rgb[k] + s / united * ((1.0 - b) * colour.rgb[k] + b * mixed[k]);
    below.opacity = united;
    level.group[i] += s - level.group[i] * s;
}

void PlainPage::Draw(const Map& coverage, const Paint& paint) {
    Level& level = levels_.back();
    for (std::size_t i = 0; i < coverage.size(); ++i) {
        const auto width = static_cast<std::size_t>(width_);
        PlainColour colour = paint(static_cast<int>(i % width), static_cast<int>(i / width));
        colour.opacity *= coverage[i];
        colour.opacity *= LeftOf(level, i, nullptr);
        Paste(level, i, ORVPrintBlendMode::kNormal, colour);
    }
}

double PlainPage::LeftOf(const Level& level, std::size_t pixel, const Level* ended) const {
    ORVMathBox2D box{0.0, static_cast<double>(width_), 0.0, static_cast<double>(height_)};
    const auto cut = [&](const ORVMathBox2D& other) {
        box = {std::max(box.xMin, other.xMin), std::min(box.xMax, other.xMax), std::max(box.yMin, other.yMin),
               std::min(box.yMax, other.yMax)};
    };
    double left = 1.0;
    for (const Clip& clip : level.clips) {
        if (clip.coverage.empty())
            cut(clip.box);
        else
            left *= clip.coverage[pixel];
    }
    if (ended) cut(ended->layer.box);
    if (ended && ended->layer.hasMask) cut(ended->mask.box);
    const auto overlap = [](double least, double most, double at) {
        return std::clamp(std::min(most, at + 1.0) - std::max(least, at), 0.0, 1.0);
    };
    const auto width = static_cast<std::size_t>(width_);
    return left * overlap(box.xMin, box.xMax, static_cast<double>(pixel % width)) *
           overlap(box.yMin, box.yMax, static_cast<double>(pixel / width));
}

void PlainPage::BeginClip(const Map& coverage) { levels_.back().clips.push_back({coverage, {}}); }
void PlainPage::BeginBoxClip(const ORVMathBox2D& box) { levels_.back().clips.push_back({{}, box}); }
void PlainPage::EndClip() { levels_.back().clips.pop_back(); }

void PlainPage::BeginLayer(const ORVPrintLayer& layer) {
    levels_.push_back(NewLevel(layer.isIsolated));
    levels_.back().layer = layer;
}

void PlainPage::BeginMask(const ORVPrintMask& mask) {
    levels_.back().mask = mask;
    levels_.push_back(NewLevel(true));
    levels_.back().mask = mask;
}

void PlainPage::EndMask() {
    const Level mask = levels_.back();
    levels_.pop_back();
    for (std::size_t i = 0; i < mask.seen.size(); ++i) {
        const Pixel& pixel = mask.seen[i];
        const double light = 0.2125 * pixel.rgb[0] + 0.7154 * pixel.rgb[1] + 0.0721 * pixel.rgb[2];
        const double shown =
            mask.mask.kind == ORVPrintMask::Kind::kLuminance ? light * pixel.opacity : pixel.opacity;
        levels_.back().shown[i] *= shown;
    }
}

void PlainPage::EndLayer() {
    const Level ended = levels_.back();
    levels_.pop_back();
    Level& level = levels_.back();
    for (std::size_t i = 0; i < ended.seen.size(); ++i) {
        const double group = ended.group[i];
        if (group <= 0.0) continue;
        const Pixel &last = ended.seen[i], &first = ended.before[i];
        PlainColour colour;
        // Removes the backdrop from the colour.
        for (std::size_t k = 0; k < 3; ++k)
            colour.rgb[k] = std::clamp(
                last.rgb[k] + (last.rgb[k] - first.rgb[k]) * (first.opacity / group - first.opacity), 0.0,
                1.0);
        colour.opacity = group * ended.layer.opacity * ended.shown[i] * LeftOf(level, i, &ended);
        Paste(level, i, ended.layer.blend, colour);
    }
}

Rgb PlainPage::GetColour(int x, int y) const {
    return levels_[0]
        .seen[static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)]
        .rgb;
}
