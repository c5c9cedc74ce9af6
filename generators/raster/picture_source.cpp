#include "generators/raster/picture_source.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "generators/raster/lanes.h"

namespace {

// Of a picture that is drawn smaller than its samples are, so many are read for a pixel, along a side, so
// that it gets the average of just its own area.
constexpr int kReadsOfReduced = 3;

int ReadsAlong(double a, double b) { return std::hypot(a, b) > 1.02 ? kReadsOfReduced : 1; }

/// Rounds down. Of numbers that are not large, without a call.
double Floor(double value) {
    constexpr double kLarge = 1e9;
    if (!(value > -kLarge && value < kLarge)) return std::floor(value);
    const double whole = static_cast<int>(value);
    return whole > value ? whole - 1.0 : whole;
}

/// Reads one picture's samples. Coordinates are pairs, those across and those down.
template <bool kRepeats>
class Sampler {
public:
    explicit Sampler(const PictureSamples& samples)
        : pixels_(samples.GetPixel(0, 0)),
          width_(samples.GetWidth()),
          height_(samples.GetHeight()),
          size_{static_cast<double>(width_), static_cast<double>(height_)} {}

    /// The colour at a place, times 2^16: a lane for each channel.
    [[gnu::always_inline]] SignedLanes At(const DoubleLanes& place) const {
        // In 1/256 of the way from one sample to the next.
        const DoubleLanes at = Inside(place) * 256.0;
        const auto x = static_cast<std::int64_t>(at[0]), y = static_cast<std::int64_t>(at[1]);
        const std::uint8_t *upper = pixels_, *lower = pixels_;
        upper += (y >> 8) * width_ * 4;
        lower += Next(y >> 8, height_) * width_ * 4;
        const std::int64_t first = (x >> 8) * 4, second = Next(x >> 8, width_) * 4;
        // The channels of the upper row, then those of the lower one.
        const ShortLanes left = WidenBytes(Load(upper + first), Load(lower + first));
        const ShortLanes right = WidenBytes(Load(upper + second), Load(lower + second));
        const ShortLanes share = ShortLanes{} + static_cast<std::uint16_t>(x & 255);
        const ShortLanes rows = left * (256 - share) + right * share;
        // As whole numbers below 2^24, these are exact.
        const FloatLanes below = FloatLanes{} + static_cast<float>(static_cast<int>(y & 255));
        return ToWhole(ToFloat(LowHalf(rows)) * (256.0F - below) + ToFloat(HighHalf(rows)) * below);
    }

private:
    [[gnu::always_inline]] DoubleLanes Inside(const DoubleLanes& place) const {
        if constexpr (kRepeats) {
            const DoubleLanes periods = place / size_;
            const DoubleLanes at = place - DoubleLanes{Floor(periods[0]), Floor(periods[1])} * size_;
            const DoubleLanes positive = Where(at >= 0.0, at);
            return Where(positive < size_, positive);
        } else {
            // What is no number is the first sample, too.
            const DoubleLanes at = Where(place > 0.0, place), most = size_ - 1.0;
            return Where(at < most, at) + Where(at >= most, most);
        }
    }
    [[gnu::always_inline]] static std::int64_t Next(std::int64_t number, std::int64_t size) {
        const std::int64_t last = kRepeats ? 0 : number;
        return number + 1 < size ? number + 1 : last;
    }
    [[gnu::always_inline]] static std::uint32_t Load(const std::uint8_t* from) {
        std::uint32_t pixel = 0;
        std::memcpy(&pixel, from, sizeof pixel);
        return pixel;
    }

    const std::uint8_t* const pixels_;
    const std::int64_t width_, height_;
    const DoubleLanes size_;
};

/// Reads as many samples for each pixel as the picture's size asks for.
template <bool kRepeats, int kAcross, int kDown>
void ReadSamples(const PictureSource& source, int row, int begin, int end, std::uint8_t* rgba) {
    const Sampler<kRepeats> sampler(*source.samples);
    const ORVMathAffine2D& map = source.toSamples;
    const DoubleLanes perColumn{map.m11, map.m21}, perRow{map.m12, map.m22}, origin{map.dx, map.dy};
    // What the row adds is the same for all of its pixels.
    DoubleLanes rows[kDown];
    for (int j = 0; j < kDown; ++j) rows[j] = perRow * (row + (j + 0.5) / kDown);
    for (int x = begin; x < end; ++x, rgba += 4) {
        SignedLanes sums{};
        for (int i = 0; i < kAcross; ++i) {
            const DoubleLanes column = perColumn * (x + (i + 0.5) / kAcross);
            // A sample's value is that of its middle.
            for (int j = 0; j < kDown; ++j) sums += sampler.At(column + rows[j] + origin - 0.5);
        }
        constexpr std::uint32_t kCount = kAcross * kDown;
        const std::uint32_t pixel = PackBytes((std::bit_cast<Lanes>(sums) / kCount + (1U << 15U)) >> 16U);
        std::memcpy(rgba, &pixel, sizeof pixel);
    }
}

template <bool kRepeats>
auto ReaderFor(int across, int down) {
    if (across == 1)
        return down == 1 ? ReadSamples<kRepeats, 1, 1> : ReadSamples<kRepeats, 1, kReadsOfReduced>;
    return down == 1 ? ReadSamples<kRepeats, kReadsOfReduced, 1>
                     : ReadSamples<kRepeats, kReadsOfReduced, kReadsOfReduced>;
}

}  // namespace

int PictureSource::GetReads() const {
    return IsSingle() ? 1
                      : ReadsAlong(toSamples.m11, toSamples.m21) * ReadsAlong(toSamples.m12, toSamples.m22);
}

bool PictureSource::GetColour(ORVPrintColour& colour) const {
    if (!samples || !IsSingle() || samples->HasAlpha()) return false;
    const std::uint8_t* pixel = samples->GetPixel(0, 0);
    colour.red = pixel[0];
    colour.green = pixel[1];
    colour.blue = pixel[2];
    return true;
}

void PictureSource::Read(int row, int begin, int end, std::uint8_t* rgba) const {
    if (IsSingle()) {
        for (int x = begin; x < end; ++x, rgba += 4) std::memcpy(rgba, samples->GetPixel(0, 0), 4);
        return;
    }
    const int across = ReadsAlong(toSamples.m11, toSamples.m21);
    const int down = ReadsAlong(toSamples.m12, toSamples.m22);
    (repeats ? ReaderFor<true>(across, down) : ReaderFor<false>(across, down))(*this, row, begin, end, rgba);
}
