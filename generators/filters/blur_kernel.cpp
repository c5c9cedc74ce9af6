// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/blur_kernel.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstring>

#include "generators/common/lanes.h"

namespace {

constexpr int kLanes = 8;
// For smaller deviations, rounding the box widths to odd numbers is too inaccurate.
constexpr double kSmallestBoxSigma = 3.0;
// A smaller deviation changes no pixel by one 8-bit level.
constexpr double kSmallestSigma = 0.03;
constexpr int kWeightSum = 32768;

/// Integer Gaussian weights; the rounding error is added to the middle one.
std::vector<std::int16_t> WeightsOf(double sigma, int reach) {
    std::vector<double> exact;
    double sum = 0.0;
    for (int i = -reach; i <= reach; ++i) sum += exact.emplace_back(std::exp(-0.5 * i * i / (sigma * sigma)));
    std::vector<std::int16_t> weights;
    int left = kWeightSum;
    for (const double weight : exact) {
        weights.push_back(static_cast<std::int16_t>(std::lround(weight / sum * kWeightSum)));
        left -= weights.back();
    }
    // A single weight of 1 does not fit. The difference is invisible.
    std::int16_t& middle = weights[static_cast<std::size_t>(reach)];
    middle = static_cast<std::int16_t>(std::min(middle + left, kWeightSum - 1));
    weights.push_back(0);
    return weights;
}

ShortLanes PairOf(std::int16_t first, std::int16_t second) {
    const ShortLanes lanes{static_cast<std::uint16_t>(first), static_cast<std::uint16_t>(second)};
    return __builtin_shufflevector(lanes, lanes, 0, 1, 0, 1, 0, 1, 0, 1);
}

/// The sum of three boxes as 16-bit numbers.
class BoxMean {
public:
    explicit BoxMean(const BlurKernel& kernel)
        : scale_(FloatLanes{} +
                 static_cast<float>(2.0 / (static_cast<double>(kernel.box) * kernel.box * kernel.third))) {}
    SignedLanes operator()(const Lanes& sum) const {
        return ToWhole(ToFloat(std::bit_cast<SignedLanes>(sum >> 1)) * scale_ + 0.5F);
    }

private:
    FloatLanes scale_;
};

// Three boxes in sequence are three running sums of differences of the input: with z a step back, (1 -
// z^box)^2 (1 - z^third) / (1 - z)^3. All arithmetic is modulo 2^32, so errors do not accumulate and
// intermediate overflow is harmless.
template <bool kEqual, class Tap>
Lanes Difference(Tap tap) {
    if constexpr (kEqual) {
        const Lanes inner = tap(2) - tap(1);
        return tap(0) - tap(5) + inner + inner + inner;
    } else {
        const Lanes twice = tap(4) - tap(1);
        return tap(0) - tap(5) + tap(2) - tap(3) + twice + twice;
    }
}

struct RunningSums {
    Lanes first{}, second{}, third{};

    const Lanes& Add(const Lanes& difference) {
        first += difference;
        second += first;
        third += second;
        return third;
    }
};

template <bool kEqual>
void SumBoxes(const BlurKernel& kernel, const std::uint16_t* row, int count, std::uint16_t* out) {
    const std::ptrdiff_t box = std::ptrdiff_t{4} * kernel.box, third = std::ptrdiff_t{4} * kernel.third;
    const std::ptrdiff_t delays[] = {0, box, 2 * box, third, box + third, 2 * box + third};
    const BoxMean mean(kernel);
    RunningSums sums;
    const auto step = [&] {
        const Lanes& sum = sums.Add(
            Difference<kEqual>([&](int tap) { return std::bit_cast<Lanes>(LoadShorts(row - delays[tap])); }));
        row += 4;
        return sum;
    };
    for (int i = 0; i < 2 * kernel.reach; ++i) step();
    for (int i = 0; i < count; ++i, out += 4) {
        const SignedLanes whole = mean(step());
        const auto pixel = std::bit_cast<LongLanes>(PackShorts(whole, whole))[0];
        std::memcpy(out, &pixel, sizeof pixel);
    }
}

}  // namespace

BlurKernel::BlurKernel(double sigma) {
    if (!(sigma >= kSmallestSigma)) return;
    if (sigma < kSmallestBoxSigma) {
        kind = Kind::kWeights;
        reach = std::max(1, static_cast<int>(std::ceil(3.5 * sigma)));
        weights = WeightsOf(sigma, reach);
        for (std::size_t i = 0; i < weights.size(); i += 2)
            pairs.push_back(PairOf(weights[i], weights[i + 1]));
        return;
    }
    kind = Kind::kBoxes;
    // A box of width w has a variance of (w^2 - 1) / 12. Three equal ones would be as wide as `middle`. Of
    // the odd widths around it, choose those whose variances add up best, and among these the ones that
    // differ least.
    const double sum = 12.0 * sigma * sigma + 3.0;
    const int middle = (static_cast<int>(std::sqrt(sum / 3.0)) - 1) / 2 * 2 + 1;
    double nearest = INFINITY;
    for (int two = std::max(1, middle - 4); two <= middle + 6; two += 2)
        for (int one = std::max(1, two - std::min(8, two / 2)) | 1; one <= two + std::min(8, two / 2);
             one += 2) {
            const double miss =
                std::abs(2.0 * two * two + 1.0 * one * one - sum) + 0.15 * (one - two) * (one - two);
            if (miss >= nearest) continue;
            nearest = miss;
            box = two;
            third = one;
        }
    reach = (2 * box + third - 3) / 2;
}

void WeighRows(const BlurKernel& kernel, const std::uint16_t* const* rows, int count, std::uint16_t* out) {
    const std::size_t taps = kernel.weights.size();
    for (int i = 0; i < count; i += kLanes) {
        // The products are signed: half of the range is subtracted before and added afterwards.
        SignedLanes low = SignedLanes{} + kWeightSum / 2, high = low;
        for (std::size_t tap = 0; tap < taps; tap += 2) {
            // The last weight is padding, without a row.
            const std::uint16_t* other = rows[tap + 1 < taps - 1 ? tap + 1 : tap];
            const ShortLanes a = LoadLanes<ShortLanes>(rows[tap] + i) ^ 0x8000;
            const ShortLanes b = LoadLanes<ShortLanes>(other + i) ^ 0x8000;
            const ShortLanes& pair = kernel.pairs[tap / 2];
            low += SumsOfProducts(__builtin_shufflevector(a, b, 0, 8, 1, 9, 2, 10, 3, 11), pair);
            high += SumsOfProducts(__builtin_shufflevector(a, b, 4, 12, 5, 13, 6, 14, 7, 15), pair);
        }
        StoreLanes(out + i, PackShorts((low >> 15) + 32768, (high >> 15) + 32768));
    }
}

void SumBoxesAlong(const BlurKernel& kernel, const std::uint16_t* row, int count, std::uint16_t* out) {
    kernel.box == kernel.third ? SumBoxes<true>(kernel, row, count, out)
                               : SumBoxes<false>(kernel, row, count, out);
}

BoxColumns::BoxColumns(const BlurKernel& kernel, int count)
    : kernel_(kernel), count_(count), sums_((static_cast<std::size_t>(count) + kLanes) * 3) {}

template <bool kEqual>
void BoxColumns::Sum(const std::uint16_t* const (*taps)[kTaps], std::uint16_t* const* out) {
    const BoxMean mean(kernel_);
    std::uint32_t* sums = sums_.data();
    for (int i = 0; i < count_; i += kLanes, sums += std::ptrdiff_t{3} * kLanes) {
        RunningSums low{LoadLanes<Lanes>(sums), LoadLanes<Lanes>(sums + 4), LoadLanes<Lanes>(sums + 8)};
        RunningSums high{LoadLanes<Lanes>(sums + 12), LoadLanes<Lanes>(sums + 16),
                         LoadLanes<Lanes>(sums + 20)};
        for (int k = 0; k < kBatch; ++k) {
            ShortLanes shorts[kTaps];
            for (int t = 0; t < kTaps; ++t) shorts[t] = LoadLanes<ShortLanes>(taps[k][t] + i);
            const Lanes& a =
                low.Add(Difference<kEqual>([&](int t) { return std::bit_cast<Lanes>(LowHalf(shorts[t])); }));
            const Lanes& b = high.Add(
                Difference<kEqual>([&](int t) { return std::bit_cast<Lanes>(HighHalf(shorts[t])); }));
            StoreLanes(out[k] + i, PackShorts(mean(a), mean(b)));
        }
        const Lanes all[] = {low.first, low.second, low.third, high.first, high.second, high.third};
        std::memcpy(sums, all, sizeof all);
    }
}

template void BoxColumns::Sum<true>(const std::uint16_t* const (*)[kTaps], std::uint16_t* const*);
template void BoxColumns::Sum<false>(const std::uint16_t* const (*)[kTaps], std::uint16_t* const*);
