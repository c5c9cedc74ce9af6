// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/picture_source.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

#include "generators/common/lanes.h"

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

/// Places of four pixels next to each other, along one axis of the samples.
class Places {
public:
    /// Units in a sample. The upper half of a number is in 1/256 of a sample, then.
    static constexpr double kUnit = 1099511627776.0;  // 2 to the 40th
    /// Places up to here can be counted (samples), with steps up to this.
    static constexpr double kFarthest = 1 << 20, kLongestStep = 1 << 10;

    Places(double start, double step)
        : step_(LongLanes{} + Units(step) * 4),
          first_{Units(start), Units(start) + Units(step)},
          second_(first_ + Units(step) * 2) {}

    void Advance() {
        first_ += step_;
        second_ += step_;
    }
    /// Where the four pixels are, moved by `offset` units, between 0 and `most`: in 1/256 of a sample.
    [[gnu::always_inline]] SignedLanes Get(std::uint64_t offset, const SignedLanes& most) const {
        const auto at = std::bit_cast<SignedLanes>(__builtin_shufflevector(
            std::bit_cast<Lanes>(first_ + offset), std::bit_cast<Lanes>(second_ + offset), 1, 3, 5, 7));
        const SignedLanes positive = at & ~(at >> 31);
        const SignedLanes inside = positive < most;
        return (positive & inside) | (most & ~inside);
    }
    /// Negative ones wrap around, and back when they are added.
    static std::uint64_t Units(double samples) {
        return static_cast<std::uint64_t>(static_cast<std::int64_t>(samples * kUnit));
    }

private:
    LongLanes step_, first_, second_;
};

/// Where four pixels are along one axis: the sample before, and how far on to the next one (of 256).
struct FourPlaces {
    alignas(16) std::int32_t index[4];
    Lanes share;

    /// @param last  the last sample that has another one behind it
    FourPlaces(const SignedLanes& at, const SignedLanes& last) {
        const SignedLanes before = at >> 8, inside = before < last;
        const SignedLanes found = (before & inside) | (last & ~inside);
        StoreLanes(index, found);
        share = std::bit_cast<Lanes>(at - (found << 8));
    }
};

/// Reads pictures whose borders go on without end, four pixels at a time. Whole numbers all the way, which
/// give the very colours that Sampler gives.
template <bool kIsNarrow>
class FourSampler {
public:
    explicit FourSampler(const PictureSamples& samples)
        : pixels_(samples.GetPixel(0, 0)),
          rowBytes_(std::int64_t{samples.GetWidth()} * 4),
          nextRow_(samples.GetHeight() > 1 ? rowBytes_ : 0),
          mostX_(SignedLanes{} + (samples.GetWidth() - 1) * 256),
          mostY_(SignedLanes{} + (samples.GetHeight() - 1) * 256),
          lastX_(SignedLanes{} + std::max(samples.GetWidth() - 2, 0)),
          lastY_(SignedLanes{} + std::max(samples.GetHeight() - 2, 0)) {}

    /// Adds the colours at four places, times 2^16: for each pixel, a lane for each channel.
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
        // Products are of signed numbers: half of what there is at most is taken away first.
        constexpr std::uint16_t kHalf = 0x8000;
        const ShortLanes left = both - kHalf;
        const auto right = std::bit_cast<ShortLanes>(
            __builtin_shufflevector(std::bit_cast<LongLanes>(left), std::bit_cast<LongLanes>(left), 1, 0));
        const ShortLanes pairs = __builtin_shufflevector(left, right, 0, 8, 1, 9, 2, 10, 3, 11);
        return SumsOfProducts(pairs, OfPixel<kPixel>(columns)) + kHalf * 256;
    }
    /// A pixel and the one right of it; in pictures of one column, that again.
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

/// Reads as many samples for each pixel as the picture's size asks for, four pixels at a time.
template <bool kIsNarrow, int kAcross, int kDown>
void ReadFours(const PictureSource& source, double x, double y, int count, std::uint8_t* rgba) {
    const FourSampler<kIsNarrow> sampler(*source.samples);
    const ORVMathAffine2D& map = source.toSamples;
    // What is rounded off may not take whole numbers to the sample before.
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

// Not in a hurry: pictures of large pixels are few.
void PictureSource::ReadNearest(int row, int begin, int end, std::uint8_t* rgba) const {
    const double mostX = samples->GetWidth() - 1, mostY = samples->GetHeight() - 1;
    for (int x = begin; x < end; ++x, rgba += 4) {
        const ORVMathPoint2D at = toSamples({x + 0.5, row + 0.5});
        std::memcpy(rgba,
                    samples->GetPixel(static_cast<int>(std::fmin(std::fmax(at.x, 0.0), mostX)),
                                      static_cast<int>(std::fmin(std::fmax(at.y, 0.0), mostY))),
                    4);
    }
}

int PictureSource::GetReads() const {
    return IsSingle() || !isSmooth
               ? 1
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
    // A sample's value is that of its middle.
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
