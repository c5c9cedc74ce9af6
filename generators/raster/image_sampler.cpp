// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/image_sampler.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "generators/common/lanes.h"

namespace {

// Reads per pixel along each axis for images drawn smaller than their samples, so that a pixel gets the
// average of its area.
constexpr int kReadsOfReduced = 3;

int ReadsAlong(double a, double b) { return std::hypot(a, b) > 1.02 ? kReadsOfReduced : 1; }

/// Rounds down. Avoids a function call for numbers that are not large.
double Floor(double value) {
    constexpr double kLarge = 1e9;
    if (!(value > -kLarge && value < kLarge)) return std::floor(value);
    const double whole = static_cast<int>(value);
    return whole > value ? whole - 1.0 : whole;
}

/// Reads the samples of an image. Coordinates are pairs of x and y.
template <bool kRepeats>
class Sampler {
public:
    explicit Sampler(const ImageSamples& samples)
        : pixels_(samples.GetPixel(0, 0)),
          width_(samples.GetWidth()),
          height_(samples.GetHeight()),
          size_{static_cast<double>(width_), static_cast<double>(height_)} {}

    /// The colour at a position, times 2^16, with one channel per lane.
    [[gnu::always_inline]] SignedLanes At(const DoubleLanes& place) const {
        // In units of 1/256 sample.
        const DoubleLanes at = Inside(place) * 256.0;
        const auto x = static_cast<std::int64_t>(at[0]), y = static_cast<std::int64_t>(at[1]);
        const std::uint8_t *upper = pixels_, *lower = pixels_;
        upper += (y >> 8) * width_ * 4;
        lower += Next(y >> 8, height_) * width_ * 4;
        const std::int64_t first = (x >> 8) * 4, second = Next(x >> 8, width_) * 4;
        // The channels of the upper row, followed by those of the lower row.
        const ShortLanes left = WidenBytes(Load(upper + first), Load(lower + first));
        const ShortLanes right = WidenBytes(Load(upper + second), Load(lower + second));
        const ShortLanes share = ShortLanes{} + static_cast<std::uint16_t>(x & 255);
        const ShortLanes rows = left * (256 - share) + right * share;
        // Exact, as integers below 2^24.
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
            // NaN also becomes the first sample.
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

/// Reads as many samples per pixel as the scale requires.
template <bool kRepeats, int kAcross, int kDown>
void ReadSamples(const ImageSampler& source, int row, int begin, int end, std::uint8_t* rgba) {
    const Sampler<kRepeats> sampler(*source.samples);
    const ORVMathAffine2D& map = source.toSamples;
    const DoubleLanes perColumn{map.m11, map.m21}, perRow{map.m12, map.m22}, origin{map.dx, map.dy};
    // The part that depends on the row is the same for all its pixels.
    DoubleLanes rows[kDown];
    for (int j = 0; j < kDown; ++j) rows[j] = perRow * (row + (j + 0.5) / kDown);
    for (int x = begin; x < end; ++x, rgba += 4) {
        SignedLanes sums{};
        for (int i = 0; i < kAcross; ++i) {
            const DoubleLanes column = perColumn * (x + (i + 0.5) / kAcross);
            // Samples are located at their centres.
            for (int j = 0; j < kDown; ++j) sums += sampler.At(column + rows[j] + origin - 0.5);
        }
        constexpr std::uint32_t kCount = kAcross * kDown;
        const std::uint32_t pixel = PackBytes((std::bit_cast<Lanes>(sums) / kCount + (1U << 15U)) >> 16U);
        std::memcpy(rgba, &pixel, sizeof pixel);
    }
}

/// Positions of four adjacent pixels along one axis of the samples.
class Places {
public:
    /// Units per sample. The upper half of a number is then in 1/256 sample.
    static constexpr double kUnit = 1099511627776.0;  // 2 to the 40th
    /// Limits, in samples, for positions and for steps between pixels.
    static constexpr double kFarthest = 1 << 20, kLongestStep = 1 << 10;

    Places(double start, double step)
        : step_(LongLanes{} + Units(step) * 4),
          first_{Units(start), Units(start) + Units(step)},
          second_(first_ + Units(step) * 2) {}

    void Advance() {
        first_ += step_;
        second_ += step_;
    }
    /// Positions of the four pixels, moved by `offset` units and clamped to 0 to `most`, in 1/256 sample.
    [[gnu::always_inline]] SignedLanes Get(std::uint64_t offset, const SignedLanes& most) const {
        const auto at = std::bit_cast<SignedLanes>(__builtin_shufflevector(
            std::bit_cast<Lanes>(first_ + offset), std::bit_cast<Lanes>(second_ + offset), 1, 3, 5, 7));
        const SignedLanes positive = at & ~(at >> 31);
        const SignedLanes inside = positive < most;
        return (positive & inside) | (most & ~inside);
    }
    /// Negative numbers wrap around, and back again when they are added.
    static std::uint64_t Units(double samples) {
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(samples * kUnit));
    }

private:
    LongLanes step_, first_, second_;
};

/// Four positions along one axis: the sample before, and the distance to the next one in 1/256.
struct FourPlaces {
    alignas(16) std::int32_t index[4];
    Lanes share;

    /// @param last  the last sample that has another one after it
    FourPlaces(const SignedLanes& at, const SignedLanes& last) {
        const SignedLanes before = at >> 8, inside = before < last;
        const SignedLanes found = (before & inside) | (last & ~inside);
        StoreLanes(index, found);
        share = std::bit_cast<Lanes>(at - (found << 8));
    }
};

/// Reads images with extended borders, four pixels at a time, in integer arithmetic. Colours are identical to
/// those of Sampler.
template <bool kIsNarrow>
class FourSampler {
public:
    explicit FourSampler(const ImageSamples& samples)
        : pixels_(samples.GetPixel(0, 0)),
          rowBytes_(std::int64_t{samples.GetWidth()} * 4),
          nextRow_(samples.GetHeight() > 1 ? rowBytes_ : 0),
          mostX_(SignedLanes{} + (samples.GetWidth() - 1) * 256),
          mostY_(SignedLanes{} + (samples.GetHeight() - 1) * 256),
          lastX_(SignedLanes{} + std::max(samples.GetWidth() - 2, 0)),
          lastY_(SignedLanes{} + std::max(samples.GetHeight() - 2, 0)) {}

    /// Adds the colours at four positions, times 2^16: for each pixel, one channel per lane.
    [[gnu::always_inline]] void AddTo(SignedLanes (&sums)[4], const Places& across, std::uint64_t offsetX,
                                      const Places& down, std::uint64_t offsetY) const {
        const FourPlaces x(across.Get(offsetX, mostX_), lastX_), y(down.Get(offsetY, mostY_), lastY_);
        const Lanes lower = y.share | y.share << 16, upper = (256U | 256U << 16U) - lower;
        const Lanes columns = (256 - x.share) | x.share << 16;
        sums[0] += At<0>(x, y, upper, lower, columns);
        sums[1] += At<1>(x, y, upper, lower, columns);
        sums[2] += At<2>(x, y, upper, lower, columns);
        sums[3] += At<3>(x, y, upper, lower, columns);
    }

private:
    template <int kPixel>
    static ShortLanes OfPixel(const Lanes& lanes) {
        return std::bit_cast<ShortLanes>(
            __builtin_shufflevector(lanes, lanes, kPixel, kPixel, kPixel, kPixel));
    }
    template <int kPixel>
    [[gnu::always_inline]] SignedLanes At(const FourPlaces& x, const FourPlaces& y, const Lanes& upper,
                                          const Lanes& lower, const Lanes& columns) const {
        const std::uint8_t* from = pixels_ + y.index[kPixel] * rowBytes_ + std::int64_t{x.index[kPixel]} * 4;
        const ShortLanes both =
            LoadTwo(from) * OfPixel<kPixel>(upper) + LoadTwo(from + nextRow_) * OfPixel<kPixel>(lower);
        // The products are signed, so half of the maximum is subtracted first.
        constexpr std::uint16_t kHalf = 0x8000;
        const ShortLanes left = both - kHalf;
        const auto right = std::bit_cast<ShortLanes>(
            __builtin_shufflevector(std::bit_cast<LongLanes>(left), std::bit_cast<LongLanes>(left), 1, 0));
        const ShortLanes pairs = __builtin_shufflevector(left, right, 0, 8, 1, 9, 2, 10, 3, 11);
        return SumsOfProducts(pairs, OfPixel<kPixel>(columns)) + kHalf * 256;
    }
    /// A pixel and the one to its right; in images one column wide, the same pixel twice.
    static ShortLanes LoadTwo(const std::uint8_t* from) {
        std::uint64_t pixels = 0;
        if constexpr (kIsNarrow) {
            std::uint32_t pixel = 0;
            std::memcpy(&pixel, from, sizeof pixel);
            pixels = pixel | std::uint64_t{pixel} << 32U;
        } else {
            std::memcpy(&pixels, from, sizeof pixels);
        }
        return WidenTwoPixels(pixels);
    }

    const std::uint8_t* const pixels_;
    const std::int64_t rowBytes_, nextRow_;
    const SignedLanes mostX_, mostY_, lastX_, lastY_;
};

/// Reads as many samples per pixel as the scale requires, four pixels at a time.
template <bool kIsNarrow, int kAcross, int kDown>
void ReadFours(const ImageSampler& source, double x, double y, int count, std::uint8_t* rgba) {
    const FourSampler<kIsNarrow> sampler(*source.samples);
    const ORVMathAffine2D& map = source.toSamples;
    // Rounding errors must not move integers to the previous sample.
    constexpr double kRoundedOff = 1.0 / (1 << 20);
    Places across(x + kRoundedOff, map.m11), down(y + kRoundedOff, map.m21);
    constexpr std::uint32_t kCount = kAcross * kDown;
    std::uint64_t offsets[kCount][2];
    for (int i = 0; i < kAcross; ++i)
        for (int j = 0; j < kDown; ++j) {
            const double right = (i + 0.5) / kAcross - 0.5, below = (j + 0.5) / kDown - 0.5;
            offsets[i * kDown + j][0] = Places::Units(map.m11 * right + map.m12 * below);
            offsets[i * kDown + j][1] = Places::Units(map.m21 * right + map.m22 * below);
        }
    for (; count > 0; count -= 4, rgba += 16, across.Advance(), down.Advance()) {
        SignedLanes sums[4]{};
        for (const auto& offset : offsets) sampler.AddTo(sums, across, offset[0], down, offset[1]);
        if constexpr (kCount > 1)
            for (SignedLanes& sum : sums)
                sum = std::bit_cast<SignedLanes>(std::bit_cast<Lanes>(sum) / kCount);
        constexpr std::int32_t kRound = 1 << 15;
        StoreLanes(rgba, PackPixels((sums[0] + kRound) >> 16, (sums[1] + kRound) >> 16,
                                    (sums[2] + kRound) >> 16, (sums[3] + kRound) >> 16));
    }
}

template <bool kIsNarrow>
auto FourReaderFor(int across, int down) {
    if (across == 1) return down == 1 ? ReadFours<kIsNarrow, 1, 1> : ReadFours<kIsNarrow, 1, kReadsOfReduced>;
    return down == 1 ? ReadFours<kIsNarrow, kReadsOfReduced, 1>
                     : ReadFours<kIsNarrow, kReadsOfReduced, kReadsOfReduced>;
}

template <bool kRepeats>
auto ReaderFor(int across, int down) {
    if (across == 1)
        return down == 1 ? ReadSamples<kRepeats, 1, 1> : ReadSamples<kRepeats, 1, kReadsOfReduced>;
    return down == 1 ? ReadSamples<kRepeats, kReadsOfReduced, 1>
                     : ReadSamples<kRepeats, kReadsOfReduced, kReadsOfReduced>;
}

}  // namespace

// Not optimised: images drawn with hard pixels are rare.
void ImageSampler::ReadNearest(int row, int begin, int end, std::uint8_t* rgba) const {
    const double mostX = samples->GetWidth() - 1, mostY = samples->GetHeight() - 1;
    for (int x = begin; x < end; ++x, rgba += 4) {
        const ORVMathPoint2D at = toSamples({x + 0.5, row + 0.5});
        std::memcpy(rgba,
                    samples->GetPixel(static_cast<int>(std::fmin(std::fmax(at.x, 0.0), mostX)),
                                      static_cast<int>(std::fmin(std::fmax(at.y, 0.0), mostY))),
                    4);
    }
}

int ImageSampler::GetReads() const {
    return IsSingle() || !isSmooth
               ? 1
               : ReadsAlong(toSamples.m11, toSamples.m21) * ReadsAlong(toSamples.m12, toSamples.m22);
}

bool ImageSampler::GetColour(ORVPrintColour& colour) const {
    if (!samples || !IsSingle() || samples->HasAlpha()) return false;
    const std::uint8_t* pixel = samples->GetPixel(0, 0);
    colour.red = pixel[0];
    colour.green = pixel[1];
    colour.blue = pixel[2];
    return true;
}

void ImageSampler::Read(int row, int begin, int end, std::uint8_t* rgba) const {
    if (IsSingle()) {
        for (int x = begin; x < end; ++x, rgba += 4) std::memcpy(rgba, samples->GetPixel(0, 0), 4);
        return;
    }
    if (!isSmooth) {
        ReadNearest(row, begin, end, rgba);
        return;
    }
    const int across = ReadsAlong(toSamples.m11, toSamples.m21);
    const int down = ReadsAlong(toSamples.m12, toSamples.m22);
    if (repeats) {
        ReaderFor<true>(across, down)(*this, row, begin, end, rgba);
        return;
    }
    // Samples are located at their centres.
    const ORVMathPoint2D first = toSamples({begin + 0.5, row + 0.5}),
                         last = toSamples({end + 0.5, row + 0.5});
    const auto isNear = [](double a, double b, double step, double rowStep) {
        return std::fabs(a) < Places::kFarthest && std::fabs(b) < Places::kFarthest &&
               std::fabs(step) < Places::kLongestStep && std::fabs(rowStep) < Places::kLongestStep;
    };
    if (!isNear(first.x, last.x, toSamples.m11, toSamples.m12) ||
        !isNear(first.y, last.y, toSamples.m21, toSamples.m22)) {
        ReaderFor<false>(across, down)(*this, row, begin, end, rgba);
        return;
    }
    const auto read =
        samples->GetWidth() == 1 ? FourReaderFor<true>(across, down) : FourReaderFor<false>(across, down);
    read(*this, first.x - 0.5, first.y - 0.5, end - begin, rgba);
}
