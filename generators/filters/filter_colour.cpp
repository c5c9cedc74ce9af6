// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_colour.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <numbers>
#include <utility>

#include "generators/filters/pixel_steps.h"

namespace {

constexpr auto kFullChannel = static_cast<float>(kFilterFull);

double AtLeast0(double amount) { return amount > 0.0 ? std::min(amount, kGreatestUsable) : 0.0; }
double From0To1(double amount) { return std::min(AtLeast0(amount), 1.0); }

/// The same for red, green and blue.
FilterMatrix OfEachColour(double factor, double added) {
    return {{factor, 0, 0, 0, added, 0, factor, 0, 0, added, 0, 0, factor, 0, added, 0, 0, 0, 1, 0}};
}

using ColourRows = std::array<double, 9>;

/// Interpolates from `a`, at 0, to `b`, at 1, and extrapolates.
FilterMatrix Between(const ColourRows& a, const ColourRows& b, double amount) {
    FilterMatrix matrix;
    for (std::size_t i = 0; i < a.size(); ++i)
        matrix.numbers[i / 3 * 5 + i % 3] = a[i] + (b[i] - a[i]) * UsableNumber(amount);
    return matrix;
}

constexpr ColourRows kUnchanged{1, 0, 0, 0, 1, 0, 0, 0, 1};

/// Converts a pixel to unpremultiplied colours from 0 to 1; opacity is the last channel.
FloatLanes Straight(const FloatLanes& pixel) {
    constexpr float kPart = 1.0F / kFullChannel;
    const float opacity = pixel[3];
    if (opacity == 0.0F) return FloatLanes{};
    const float up = 1.0F / opacity;
    return pixel * FloatLanes{up, up, up, kPart};
}

/// A column of a matrix, for a channel from 0 to 1.
FloatLanes Column(const FilterMatrix& matrix, std::size_t column) {
    FloatLanes lanes{};
    for (std::size_t row = 0; row < 4; ++row)
        lanes[row] = static_cast<float>(UsableNumber(matrix.numbers[row * 5 + column]));
    return lanes;
}

bool MakesBlack(const FilterMatrix& matrix) {
    return std::all_of(matrix.numbers.begin(), matrix.numbers.begin() + 15,
                       [](double n) { return n == 0.0; });
}

/// A function of stored channel values, precomputed for all values if there are many pixels.
class ChannelFunction {
public:
    ChannelFunction(const FilterTransfer& transfer, double pixels) : transfer_(transfer) {
        if (transfer.kind == FilterTransfer::Kind::kIdentity || pixels < kFilterFull) return;
        table_.reserve(kFilterFull + 1);
        for (unsigned int value = 0; value <= kFilterFull; ++value) table_.push_back(Compute(value));
    }
    unsigned int operator()(unsigned int value) const {
        if (!table_.empty()) return table_[value];
        return transfer_.kind == FilterTransfer::Kind::kIdentity ? value : Compute(value);
    }

private:
    std::uint16_t Compute(unsigned int value) const {
        return ChannelOf(transfer_(static_cast<double>(value) / kFilterFull));
    }
    const FilterTransfer& transfer_;
    std::vector<std::uint16_t> table_;
};

void TransferPixel(const std::array<ChannelFunction, 4>& functions, std::uint16_t* pixel) {
    const FloatLanes straight = Straight(LoadPixel(pixel)) * kFullChannel + 0.5F;
    const unsigned int opacity = functions[3](pixel[3]);
    pixel[3] = static_cast<std::uint16_t>(opacity);
    for (std::size_t i = 0; i < 3; ++i) {
        const unsigned int value = std::min(static_cast<unsigned int>(straight[i]), kFilterFull);
        pixel[i] = static_cast<std::uint16_t>(Product(functions[i](value), opacity));
    }
}

double InTable(const std::vector<double>& values, double c) {
    const double place = c * static_cast<double>(values.size() - 1);
    const auto before = std::min(static_cast<std::size_t>(place), values.size() - 1);
    const auto after = std::min(before + 1, values.size() - 1);
    return values[before] + (place - static_cast<double>(before)) * (values[after] - values[before]);
}
double InSteps(const std::vector<double>& values, double c) {
    return values[std::min(static_cast<std::size_t>(c * static_cast<double>(values.size())),
                           values.size() - 1)];
}

}  // namespace

// ---- Matrices ---------------------------------------------------------------------------------------------

FilterMatrix SaturationMatrix(double amount) {
    constexpr ColourRows kGrey{0.213, 0.715, 0.072, 0.213, 0.715, 0.072, 0.213, 0.715, 0.072};
    return Between(kGrey, kUnchanged, amount);
}

FilterMatrix HueRotationMatrix(double degrees) {
    const double angle = UsableNumber(degrees) * std::numbers::pi / 180.0;
    const double c = std::cos(angle), s = std::sin(angle);
    constexpr ColourRows kLight{0.213, 0.715, 0.072, 0.213, 0.715, 0.072, 0.213, 0.715, 0.072};
    constexpr ColourRows kTurned{-0.213, -0.715, 0.928, 0.143, 0.140, -0.283, -0.787, 0.715, 0.072};
    FilterMatrix matrix;
    for (std::size_t i = 0; i < kLight.size(); ++i)
        matrix.numbers[i / 3 * 5 + i % 3] = kLight[i] + c * (kUnchanged[i] - kLight[i]) + s * kTurned[i];
    return matrix;
}

FilterMatrix LuminanceToAlphaMatrix() {
    return {{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0.2125, 0.7154, 0.0721, 0, 0}};
}

FilterMatrix BrightnessMatrix(double amount) { return OfEachColour(AtLeast0(amount), 0.0); }

FilterMatrix ContrastMatrix(double amount) {
    return OfEachColour(AtLeast0(amount), 0.5 - 0.5 * AtLeast0(amount));
}

FilterMatrix GreyscaleMatrix(double amount) {
    constexpr ColourRows kGrey{0.2126, 0.7152, 0.0722, 0.2126, 0.7152, 0.0722, 0.2126, 0.7152, 0.0722};
    return Between(kUnchanged, kGrey, From0To1(amount));
}

FilterMatrix InversionMatrix(double amount) {
    return OfEachColour(1.0 - 2.0 * From0To1(amount), From0To1(amount));
}

FilterMatrix OpacityMatrix(double amount) {
    FilterMatrix matrix;
    matrix.numbers[18] = From0To1(amount);
    return matrix;
}

FilterMatrix SepiaMatrix(double amount) {
    constexpr ColourRows kSepia{0.393, 0.769, 0.189, 0.349, 0.686, 0.168, 0.272, 0.534, 0.131};
    return Between(kUnchanged, kSepia, From0To1(amount));
}

FilterPixels ApplyFilterMatrix(FilterPixels input, const FilterMatrix& matrix, const FilterBox& box) {
    FilterPixels out = ClipFilterPixels(std::move(input), box);
    FloatLanes columns[5];
    for (std::size_t i = 0; i < 5; ++i) columns[i] = Column(matrix, i);
    ForEachPixel(out, [&](std::uint16_t* pixel) {
        const FloatLanes from = Straight(LoadPixel(pixel));
        FloatLanes to = columns[4];
        for (int i = 0; i < 4; ++i) to += columns[i] * from[i];
        to = blending::Least(blending::Most(to, FloatLanes{}), blending::All(1.0F));
        const float opacity = to[3] * kFullChannel;
        StorePixel(to * FloatLanes{opacity, opacity, opacity, kFullChannel}, pixel);
    });
    out.SetAlphaOnly(MakesBlack(matrix));
    return out;
}

// ---- Functions --------------------------------------------------------------------------------------------

double FilterTransfer::operator()(double c) const {
    const auto result = [&] {
        switch (kind) {
            case Kind::kTable: return values.empty() ? c : InTable(values, c);
            case Kind::kDiscrete: return values.empty() ? c : InSteps(values, c);
            case Kind::kLinear: return slope * c + intercept;
            case Kind::kGamma: return amplitude * std::pow(c, exponent) + offset;
            case Kind::kIdentity: break;
        }
        return c;
    };
    return From0To1(result());
}

FilterPixels ApplyFilterTransfer(FilterPixels input, const std::array<FilterTransfer, 4>& functions,
                                 const FilterBox& box) {
    FilterPixels out = ClipFilterPixels(std::move(input), box);
    const double pixels = out.GetBox().Area();
    const std::array<ChannelFunction, 4> channels{
        ChannelFunction(functions[0], pixels), ChannelFunction(functions[1], pixels),
        ChannelFunction(functions[2], pixels), ChannelFunction(functions[3], pixels)};
    const bool staysBlack = channels[0](0) == 0 && channels[1](0) == 0 && channels[2](0) == 0;
    std::uint64_t last = 0;
    std::uint16_t changed[kFilterChannels] = {};
    TransferPixel(channels, changed);
    ForEachPixel(out, [&](std::uint16_t* pixel) {
        std::uint64_t number = 0;
        std::memcpy(&number, pixel, sizeof number);
        if (number != last) {
            // Adjacent pixels are often equal.
            std::memcpy(changed, pixel, sizeof changed);
            TransferPixel(channels, changed);
            last = number;
        }
        std::memcpy(pixel, changed, sizeof changed);
    });
    out.SetAlphaOnly(out.IsAlphaOnly() && staysBlack);
    return out;
}

double FilterColourWork(const FilterBox& box) { return 2.0 * box.Area(); }
