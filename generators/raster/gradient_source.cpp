// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/gradient_source.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

#include "generators/common/lanes.h"

namespace {

using Spread = ORVPrintGradient::Spread;

// ---- Tables -----------------------------------------------------------------------------------------------

// Work, in pixels filled with one colour.
constexpr std::uint64_t kEntryWork = 4, kLinearWork = 6, kRadialWork = 16;

FloatLanes ChannelsOf(const ORVPrintColour& colour) {
    return ToFloat(SignedLanes{colour.red, colour.green, colour.blue, colour.opacity});
}

std::uint32_t Premultiplied(const FloatLanes& straight) {
    const float share = straight[3] / 255.0F;
    const FloatLanes product = straight * FloatLanes{share, share, share, 1.0F} + 0.5F;
    return PackBytes(std::bit_cast<Lanes>(ToWhole(product)));
}

void MakeColours(const RasterGradientStops& stops, std::vector<std::uint32_t>& colours) {
    colours.clear();
    colours.reserve(stops.entries + std::size_t{3});
    const RasterGradientStops::Stop *stop = stops.stops, *const last = stop + stops.count - 1;
    colours.push_back(Premultiplied(ChannelsOf(stop->colour)));
    for (std::uint32_t i = 0; i < stops.entries; ++i) {
        // Each entry has the colour at its centre.
        const float place = (static_cast<float>(i) + 0.5F) / static_cast<float>(stops.entries);
        while (stop < last && stop[1].offset <= place) ++stop;
        FloatLanes colour = ChannelsOf(stop->colour);
        if (stop < last && place > stop->offset) {
            const float share = (place - stop->offset) / (stop[1].offset - stop->offset);
            colour += (ChannelsOf(stop[1].colour) - colour) * share;
        }
        colours.push_back(Premultiplied(colour));
    }
    colours.push_back(Premultiplied(ChannelsOf(last->colour)));
    colours.push_back(0);
}

// ---- Places -----------------------------------------------------------------------------------------------

/// `value` where the mask is set, else 0.
FloatLanes KeepWhere(const SignedLanes& mask, const FloatLanes& value) {
    return std::bit_cast<FloatLanes>(mask & std::bit_cast<SignedLanes>(value));
}
FloatLanes ChooseFloat(const SignedLanes& mask, const FloatLanes& a, const FloatLanes& b) {
    return std::bit_cast<FloatLanes>((mask & std::bit_cast<SignedLanes>(a)) |
                                     (~mask & std::bit_cast<SignedLanes>(b)));
}
/// Clamps a value; NaN becomes `least`.
FloatLanes Clamp(const FloatLanes& value, float least, float most) {
    const FloatLanes low = FloatLanes{} + least, high = FloatLanes{} + most;
    const FloatLanes raised = ChooseFloat(value > low, value, low);
    return ChooseFloat(raised < high, raised, high);
}
/// Fractional part, from 0 to 1 inclusive.
FloatLanes Fraction(const FloatLanes& value) {
    constexpr float kNoFractions = 16'000'000.0F;
    const FloatLanes near = Clamp(value, -kNoFractions, kNoFractions);
    const FloatLanes rest = near - ToFloat(ToWhole(near));
    return rest + KeepWhere(rest < 0.0F, FloatLanes{} + 1.0F);
}

/// Table indices of gradient parameters; 0 is the colour before the first stop.
template <Spread kSpread>
SignedLanes EntriesAt(const FloatLanes& places, float entries) {
    if constexpr (kSpread == Spread::kPad)
        return ToWhole(Clamp(places * entries + 1.0F, 0.0F, entries + 1.0F));
    FloatLanes inside = Fraction(places);
    if constexpr (kSpread == Spread::kReflect) {
        const FloatLanes twice = Fraction(places * 0.5F) * 2.0F;
        inside = ChooseFloat(twice > 1.0F, 2.0F - twice, twice);
    }
    return ToWhole(Clamp(inside * entries + 1.0F, 1.0F, entries));
}

struct LinearPlaces {
    FloatLanes origin{}, perColumn{};

    LinearPlaces(const RasterGradient& gradient, double y) {
        const ORVMathAffine2D& map = gradient.fromDevice;
        origin += static_cast<float>(map.m12 * y + map.dx);
        perColumn += static_cast<float>(map.m11);
    }
    FloatLanes At(const FloatLanes& x, SignedLanes& /*isNowhere*/) const { return origin + x * perColumn; }
};

/// Points of a row in the coordinate system of the circles.
struct CirclePoints {
    FloatLanes originX{}, originY{}, perColumnX{}, perColumnY{};

    CirclePoints(const RasterGradient& gradient, double y) {
        const ORVMathAffine2D& map = gradient.fromDevice;
        originX += static_cast<float>(map.m12 * y + map.dx);
        originY += static_cast<float>(map.m22 * y + map.dy);
        perColumnX += static_cast<float>(map.m11);
        perColumnY += static_cast<float>(map.m21);
    }
};

struct ConcentricPlaces {
    CirclePoints points;
    float perLength, start;

    ConcentricPlaces(const RasterGradient& gradient, double y)
        : points(gradient, y),
          perLength(1.0F / gradient.growth),
          start(-gradient.startRadius / gradient.growth) {}
    FloatLanes At(const FloatLanes& column, SignedLanes& /*isNowhere*/) const {
        const FloatLanes x = points.originX + column * points.perColumnX;
        const FloatLanes y = points.originY + column * points.perColumnY;
        return SquareRoot(x * x + y * y) * perLength + start;
    }
};

/// The circles through a point are the solutions of curvature t^2 - 2 b t + c = 0. The greatest t whose
/// radius is not negative counts.
struct TwoCirclePlaces {
    CirclePoints points;
    float distance, startRadius, growth, curvature, perCurvature;

    TwoCirclePlaces(const RasterGradient& gradient, double y)
        : points(gradient, y),
          distance(gradient.distance),
          startRadius(gradient.startRadius),
          growth(gradient.growth),
          curvature(gradient.curvature),
          perCurvature(curvature == 0.0F ? 0.0F : 1.0F / curvature) {}
    FloatLanes At(const FloatLanes& column, SignedLanes& isNowhere) const {
        const FloatLanes x = points.originX + column * points.perColumnX;
        const FloatLanes y = points.originY + column * points.perColumnY;
        const FloatLanes b = x * distance + startRadius * growth;
        const FloatLanes c = x * x + y * y - startRadius * startRadius;
        if (curvature == 0.0F) {
            const FloatLanes place = Over(c, b + b);
            isNowhere = (b == 0.0F) | ~HasRadius(place);
            return place;
        }
        const FloatLanes square = b * b - curvature * c;
        const FloatLanes root = SquareRoot(KeepWhere(square > 0.0F, square));
        // Adds numbers of equal sign, to avoid cancellation.
        const FloatLanes q = b + ChooseFloat(b < 0.0F, -root, root);
        const FloatLanes one = q * perCurvature, other = Over(c, q);
        const FloatLanes farther = ChooseFloat(one > other, one, other);
        const FloatLanes nearer = ChooseFloat(one > other, other, one);
        const FloatLanes place = ChooseFloat(HasRadius(farther), farther, nearer);
        isNowhere = (square < 0.0F) | ~HasRadius(place);
        return place;
    }

private:
    SignedLanes HasRadius(const FloatLanes& place) const { return startRadius + place * growth >= 0.0F; }
    /// Quotient; 0 where the divisor is 0.
    static FloatLanes Over(const FloatLanes& value, const FloatLanes& divisor) {
        return KeepWhere(divisor != 0.0F, value / ChooseFloat(divisor == 0.0F, FloatLanes{} + 1.0F, divisor));
    }
};

/// Writes four colours at a time.
template <Spread kSpread, class Places>
void WriteColours(const Places& places, float entries, const std::uint32_t* colours, int begin, int end,
                  std::uint32_t* to) {
    const std::int32_t nothing = static_cast<std::int32_t>(entries) + 2;
    FloatLanes x = FloatLanes{0.5F, 1.5F, 2.5F, 3.5F} + static_cast<float>(begin);
    for (int i = begin; i < end; i += 4, x += 4.0F, to += 4) {
        SignedLanes isNowhere{};
        const SignedLanes inside = EntriesAt<kSpread>(places.At(x, isNowhere), entries);
        const SignedLanes entry = (isNowhere & nothing) | (~isNowhere & inside);
        StoreLanes(to, Lanes{colours[entry[0]], colours[entry[1]], colours[entry[2]], colours[entry[3]]});
    }
}

}  // namespace

std::uint64_t GradientSource::Begin(const RasterGradient& gradient, int left, int right) {
    gradient_ = &gradient;
    const RasterGradientStops* stops = gradient.stops;
    Table& table =
        tables_[std::bit_cast<std::uintptr_t>(stops) / alignof(RasterGradientStops) % tables_.size()];
    std::uint64_t work = 0;
    if (table.stops != stops) {
        table.stops = stops;
        MakeColours(*stops, table.colours);
        work += stops->entries * kEntryWork;
    }
    colours_ = table.colours.data();
    entries_ = static_cast<float>(stops->entries);
    level_ = 0;
    row_.resize(std::max(row_.size(), static_cast<std::size_t>(right - left) + 4));
    if (gradient.IsUpright()) {
        left_ = left;
        Write(0, left, right);
        work += static_cast<std::uint64_t>(right - left) * kLinearWork;
    }
    return work;
}

const std::uint8_t* GradientSource::Read(int row, int begin, int end) {
    const auto bytesAt = [&](int pixel) {
        return reinterpret_cast<const std::uint8_t*>(row_.data() + pixel);
    };
    if (gradient_->IsUpright()) return bytesAt(begin - left_);
    if (!gradient_->IsLevel()) {
        Write(row, begin, end);
        return bytesAt(0);
    }
    Write(row, 0, 1);
    const auto count = static_cast<std::uint32_t>(end - begin) + 3;
    // Usually the previous row had the same colour.
    const std::uint32_t from = row_[0] == levelColour_ ? std::max(level_, 1U) : 1U;
    levelColour_ = row_[0];
    if (from < count) std::fill(row_.begin() + from, row_.begin() + count, levelColour_);
    level_ = std::max(from, count);
    return bytesAt(0);
}

std::uint64_t GradientSource::GetPixelWork() const {
    return gradient_->kind == RasterGradient::Kind::kLinear ? kLinearWork : kRadialWork;
}

void GradientSource::Write(int row, int begin, int end) {
    switch (gradient_->spread) {
        case Spread::kPad: return WriteSpread<Spread::kPad>(row, begin, end);
        case Spread::kReflect: return WriteSpread<Spread::kReflect>(row, begin, end);
        case Spread::kRepeat: return WriteSpread<Spread::kRepeat>(row, begin, end);
    }
}

template <Spread kSpread>
void GradientSource::WriteSpread(int row, int begin, int end) {
    const double y = row + 0.5;
    const auto write = [&](const auto& places) {
        WriteColours<kSpread>(places, entries_, colours_, begin, end, row_.data());
    };
    switch (gradient_->kind) {
        case RasterGradient::Kind::kLinear: return write(LinearPlaces(*gradient_, y));
        case RasterGradient::Kind::kConcentric: return write(ConcentricPlaces(*gradient_, y));
        case RasterGradient::Kind::kTwoCircles: return write(TwoCirclePlaces(*gradient_, y));
    }
}
