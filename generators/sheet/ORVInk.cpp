// SPDX-License-Identifier: Apache-2.0
#include "generators/sheet/ORVInk.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <new>
#include <span>
#include <vector>

namespace {

constexpr int kMiddle = 128;  // threshold: darker pixels become black

/// Greys with the same luminance as sRGB colours.
class GreyTable {
public:
    GreyTable() {
        for (std::size_t i = 0; i < linear_.size(); ++i) {
            const double value = static_cast<double>(i) / 255.0;
            linear_[i] = value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
        }
        for (std::size_t i = 0; i < encoded_.size(); ++i) {
            const double value = static_cast<double>(i) / static_cast<double>(encoded_.size() - 1);
            const double grey =
                value <= 0.0031308 ? value * 12.92 : 1.055 * std::pow(value, 1.0 / 2.4) - 0.055;
            encoded_[i] = static_cast<std::uint8_t>(std::lround(grey * 255.0));
        }
    }
    std::uint8_t Grey(std::uint8_t red, std::uint8_t green, std::uint8_t blue) const {
        if (red == green && red == blue) return red;  // greys are unchanged
        const double luminance = 0.2126 * linear_[red] + 0.7152 * linear_[green] + 0.0722 * linear_[blue];
        return encoded_[static_cast<std::size_t>(luminance * static_cast<double>(encoded_.size() - 1) + 0.5)];
    }

private:
    std::array<double, 256> linear_{};
    std::array<std::uint8_t, 8192> encoded_{};
};

std::uint8_t Grey(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    static const GreyTable table;
    return table.Grey(red, green, blue);
}

/// A grey blended with white paper.
int OnWhite(int grey, int opacity) { return 255 - (255 - grey) * opacity / 255; }

void MakeGrey(std::span<std::uint8_t> rgba, std::uint8_t opacity) {
    for (std::size_t i = 0; i < rgba.size(); i += 4) {
        const std::uint8_t grey = Grey(rgba[i], rgba[i + 1], rgba[i + 2]);
        rgba[i] = rgba[i + 1] = rgba[i + 2] = grey;
        rgba[i + 3] = static_cast<std::uint8_t>(rgba[i + 3] * opacity / 255);
    }
}

/// Converts pixels to black and white. Errors are diffused to the neighbours with the weights of Floyd and
/// Steinberg, or pixels are thresholded if `spreads` is false.
void MakeMono(std::span<std::uint8_t> rgba, std::size_t width, bool spreads, std::uint8_t opacity) {
    std::vector<int> errors(width + 2, 0), below(width + 2, 0);  // one extra on either side, in sixteenths
    for (std::size_t start = 0; start < rgba.size(); start += width * 4) {
        std::fill(below.begin(), below.end(), 0);
        for (std::size_t x = 0; x < width; ++x) {
            std::uint8_t* pixel = rgba.data() + start + x * 4;
            const bool isShown = pixel[3] >= kMiddle;
            const int shown = pixel[3] * opacity / 255;
            const int wanted = OnWhite(Grey(pixel[0], pixel[1], pixel[2]), shown) + errors[x + 1] / 16;
            const bool isWhite = wanted >= kMiddle;
            pixel[0] = pixel[1] = pixel[2] = isWhite ? 255 : 0;
            pixel[3] = isShown ? 255 : 0;
            if (!spreads || !isShown) continue;
            const int error = wanted - (isWhite ? 255 : 0);
            errors[x + 2] += error * 7;
            below[x] += error * 3;
            below[x + 1] += error * 5;
            below[x + 2] += error;
        }
        errors.swap(below);
    }
}

bool IsGrey(const ORVPrintColour& colour) { return colour.red == colour.green && colour.red == colour.blue; }

/// Interpolates between two colours of a gradient.
ORVPrintColour Mix(const ORVPrintColour& a, const ORVPrintColour& b, double part) {
    const auto mix = [&](std::uint8_t from, std::uint8_t to) {
        return static_cast<std::uint8_t>(from + (to - from) * part + 0.5);
    };
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue), mix(a.opacity, b.opacity)};
}

/// A converted copy, or the image itself if its colours do not change. Throws std::bad_alloc.
ORVRef<const ORVPixelImage> MakeConverted(const ORVPixelImage& image, ORVColourMode mode, bool isPattern,
                                          std::uint8_t opacity) {
    auto itself = ORVRef<const ORVPixelImage>::Share(&image);
    const ORVJpegSource* jpeg = image.GetJpegSource();
    if (mode == ORVColourMode::kGrey && opacity == 255 && jpeg &&
        jpeg->colourSpace == ORVJpegSource::ColourSpace::kGrey)
        return itself;
    const std::span<const std::uint8_t> pixels = image.GetPixels();
    if (pixels.empty()) throw std::bad_alloc();
    std::vector<std::uint8_t> converted(pixels.begin(), pixels.end());
    if (mode == ORVColourMode::kGrey)
        MakeGrey(converted, opacity);
    else
        MakeMono(converted, static_cast<std::size_t>(image.GetWidth()), !isPattern, opacity);
    if (std::equal(pixels.begin(), pixels.end(), converted.begin(), converted.end())) return itself;
    image.ReleasePixels();
    ORVRef<const ORVPixelImage> made(
        ORVPixelImage::CreateFromPixels(image.GetWidth(), image.GetHeight(), converted));
    if (!made) throw std::bad_alloc();
    return made;
}

}  // namespace

ORVPrintColour ORVInk::ConvertLine(const ORVPrintColour& colour) const {
    if (mode_ == ORVColourMode::kMono) {
        const bool isWhite = colour.red == 255 && colour.green == 255 && colour.blue == 255;
        return isWhite ? ORVPrintColour{255, 255, 255, 255} : ORVPrintColour{0, 0, 0, 255};
    }
    ORVPrintColour converted = colour;
    ConvertArea(converted);
    return converted;
}

bool ORVInk::ConvertArea(ORVPrintColour& colour) const {
    if (areaMode_ == ORVColourMode::kColour) return true;
    std::uint8_t grey = Grey(colour.red, colour.green, colour.blue);
    if (areaMode_ == ORVColourMode::kMono) {
        const bool isWhite = OnWhite(grey, colour.opacity) >= kMiddle;
        if (isWhite && colour.opacity < 255) return false;
        grey = isWhite ? 255 : 0;
        colour.opacity = 255;
    }
    colour.red = colour.green = colour.blue = grey;
    return true;
}

bool ORVInk::MakeSteps(std::vector<ORVPrintGradientStop>& stops) const {
    // The converted colour of interpolated stops. Changes between two stops are searched at this many points
    // and then refined by bisection.
    constexpr int kPlaces = 32, kHalvings = 12;
    constexpr ORVPrintColour kNothing{255, 255, 255, 0};
    const auto become = [&](ORVPrintColour colour) { return ConvertArea(colour) ? colour : kNothing; };
    const auto differ = [](const ORVPrintColour& a, const ORVPrintColour& b) {
        return a.red != b.red || a.opacity != b.opacity;
    };
    std::vector<ORVPrintGradientStop> steps{{stops.front().offset, become(stops.front().colour)}};
    bool isShown = steps.front().colour.opacity > 0;
    for (std::size_t i = 1; i < stops.size(); ++i) {
        const ORVPrintGradientStop &from = stops[i - 1], &to = stops[i];
        const auto at = [&](double part) { return become(Mix(from.colour, to.colour, part)); };
        for (int place = 1; place <= kPlaces; ++place) {
            double low = static_cast<double>(place - 1) / kPlaces,
                   high = static_cast<double>(place) / kPlaces;
            const ORVPrintColour before = steps.back().colour, after = at(high);
            if (!differ(before, after)) continue;
            for (int halving = 0; halving < kHalvings; ++halving) {
                const double middle = (low + high) / 2.0;
                (differ(at(middle), before) ? high : low) = middle;
            }
            const double offset = from.offset + (to.offset - from.offset) * high;
            steps.push_back({offset, before});
            steps.push_back({offset, after});
            isShown = isShown || after.opacity > 0;
        }
    }
    steps.push_back({stops.back().offset, steps.back().colour});
    stops = std::move(steps);
    return isShown;
}

bool ORVInk::ConvertStops(std::vector<ORVPrintGradientStop>& stops, bool isArea) const {
    if (!isArea && IsMono()) {
        const bool isWhite = std::all_of(stops.begin(), stops.end(), [](const ORVPrintGradientStop& stop) {
            return stop.colour.red == 255 && stop.colour.green == 255 && stop.colour.blue == 255;
        });
        const std::uint8_t grey = isWhite ? 255 : 0;
        for (ORVPrintGradientStop& stop : stops) stop.colour = {grey, grey, grey, 255};
        return true;
    }
    if (areaMode_ == ORVColourMode::kMono) return MakeSteps(stops);
    if (areaMode_ == ORVColourMode::kColour) return true;
    // A mixture of two colours may be darker or lighter than the mixture of their greys.
    constexpr int kParts = 8;
    std::vector<ORVPrintGradientStop> greys;
    for (std::size_t i = 0; i < stops.size(); ++i) {
        if (i > 0 && !(IsGrey(stops[i - 1].colour) && IsGrey(stops[i].colour)))
            for (int part = 1; part < kParts; ++part) {
                const double at = static_cast<double>(part) / kParts;
                greys.push_back({std::lerp(stops[i - 1].offset, stops[i].offset, at),
                                 Mix(stops[i - 1].colour, stops[i].colour, at)});
            }
        greys.push_back(stops[i]);
    }
    for (ORVPrintGradientStop& stop : greys) ConvertArea(stop.colour);
    stops = std::move(greys);
    return true;
}

const ORVPixelImage& ORVInk::Convert(const ORVPixelImage& image, bool isPattern, std::uint8_t opacity) {
    if (!ChangesColours()) return image;
    Entries& entries = isPattern ? patterns_ : images_;
    if (const auto found = entries.find({&image, opacity}); found != entries.end())
        return *found->second.converted;
    if (bytes_ > keptBytes_) {
        images_.clear();
        patterns_.clear();
        bytes_ = 0;
    }
    Entry entry{ORVRef<const ORVPixelImage>::Share(&image),
                MakeConverted(image, areaMode_, isPattern, opacity)};
    bytes_ += static_cast<std::size_t>(image.GetWidth()) * static_cast<std::size_t>(image.GetHeight()) * 4;
    return *entries.emplace(std::pair(&image, opacity), std::move(entry)).first->second.converted;
}
