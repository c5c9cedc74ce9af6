// SPDX-License-Identifier: Apache-2.0
#include "generators/png/png_rows.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "generators/common/lanes.h"
#include "generators/common/vector_power.h"

#if ORV_HAS_WIDE_VECTORS
#include <immintrin.h>
#endif

namespace {

// Longer runs and matches are taken without looking for others. Where several shapes stand side by side, the
// row above repeats for longer than a run of one pixel: a run must have the maximum length of a match.
constexpr std::size_t kGoodRun = DeflateBlock::kLongestMatch, kGoodMatch = 24;
// Number of bytes of a match whose positions are recorded.
constexpr std::size_t kNotedOfMatch = 12;
// The costs are first computed after this many tokens, then whenever the number has doubled. A pixel or a
// match takes at most three tokens.
constexpr std::size_t kFirstUpdate = 1024, kTokensOfBlock = DeflateBlock::kMostTokens - 8;
// Minimum saving of a match of greys: the more literals remain, the cheaper they become.
constexpr int kLeastGainOfGrey = 2 * DeflateBlock::kBit;

template <class Number>
Number Load(const std::uint8_t* from) {
    Number number = 0;
    std::memcpy(&number, from, sizeof number);
    return number;
}

#if ORV_HAS_WIDE_VECTORS
/// The number of equal bytes, counted on from `i` in steps of 64.
ORV_FOR_AVX2 std::size_t SkipEqual(const std::uint8_t* a, const std::uint8_t* b, std::size_t i,
                                   std::size_t most) {
    constexpr std::size_t kVector = sizeof(__m256i);
    const auto* left = reinterpret_cast<const __m256i*>(a + i);
    const auto* right = reinterpret_cast<const __m256i*>(b + i);
    for (; i + 2 * kVector <= most; i += 2 * kVector, left += 2, right += 2) {
        const __m256i difference =
            _mm256_or_si256(_mm256_xor_si256(_mm256_loadu_si256(left), _mm256_loadu_si256(right)),
                            _mm256_xor_si256(_mm256_loadu_si256(left + 1), _mm256_loadu_si256(right + 1)));
        if (_mm256_testz_si256(difference, difference) == 0) break;
    }
    return i;
}
#endif

bool AreEqual(const std::uint8_t* a, const std::uint8_t* b) {
    const LongLanes difference = (LoadLanes<LongLanes>(a) ^ LoadLanes<LongLanes>(b)) |
                                 (LoadLanes<LongLanes>(a + 16) ^ LoadLanes<LongLanes>(b + 16));
    return (difference[0] | difference[1]) == 0;
}

/// The number of equal bytes, at most `most`. May read 7 bytes more.
std::size_t CountEqual(const std::uint8_t* a, const std::uint8_t* b, std::size_t most,
                       [[maybe_unused]] bool hasWide) {
    constexpr std::size_t kStep = 8, kLongStep = 32;
    for (std::size_t i = 0; i < most; i += kStep) {
        const std::uint64_t difference = Load<std::uint64_t>(a + i) ^ Load<std::uint64_t>(b + i);
        if (difference != 0)
            return std::min(most, i + static_cast<std::size_t>(std::countr_zero(difference)) / 8);
        while (i + kStep + kLongStep <= most && AreEqual(a + i + kStep, b + i + kStep)) {
            i += kLongStep;
#if ORV_HAS_WIDE_VECTORS
            // Long runs usually go on.
            if (hasWide && i >= 2 * kLongStep) i = SkipEqual(a, b, i + kStep, most) - kStep;
#endif
        }
    }
    return most;
}

/// Compares the first three bytes: a pixel, if it has colours.
bool HaveEqualPixels(std::uint32_t a, std::uint32_t b) { return ((a ^ b) & 0xFFFFFFU) == 0; }

constexpr std::size_t kHashedBytes = 6;
template <unsigned int kBits>
std::size_t HashOfSixBytes(const std::uint8_t* at) {
    return static_cast<std::size_t>((Load<std::uint64_t>(at) << 16U) * 0x9E3779B97F4A7C15U >> (64 - kBits));
}

template <unsigned int kBits>
std::size_t HashOfPixel(std::uint32_t pixel) {
    return (pixel << 8U) * 0x9E3779B1U >> (32 - kBits);
}

}  // namespace

void PngRows::UpdateCosts() {
    block_.UpdateCosts();
    if (block_.GetTokenCount() < kTokensOfBlock) {
        nextUpdate_ = std::min(nextUpdate_ * 2, kTokensOfBlock);
    } else {
        block_.Write(*out_);
        nextUpdate_ = kFirstUpdate;
    }
}

void PngRows::AddRun(std::size_t length, std::size_t distance) {
    constexpr std::size_t kMost = DeflateBlock::kLongestMatch, kLeast = DeflateBlock::kShortestMatch;
    std::size_t count = length / kMost, rest = length % kMost;
    if (count > 0 && rest > 0 && rest < kLeast) {
        // The rest must be long enough for a match, too.
        --count;
        block_.AddMatch(kMost + rest - kLeast, distance);
        rest = kLeast;
    }
    if (count > 0) block_.AddLongestMatches(count, distance);
    if (rest > 0) block_.AddMatch(rest, distance);
}

template <std::size_t kPixel>
void PngRows::TakePixel(std::size_t at) {
    if constexpr (kPixel == 3)
        block_.AddThreeLiterals(Load<std::uint32_t>(bytes_ + at));
    else
        block_.AddLiteral(bytes_[at]);
}

/// The saving of a match over literals, estimated from the first three.
int PngRows::GainOf(std::size_t at, std::size_t length, std::size_t distance) const {
    const unsigned int three = block_.CostOfLiteral(bytes_[at]) + block_.CostOfLiteral(bytes_[at + 1]) +
                               block_.CostOfLiteral(bytes_[at + 2]);
    return static_cast<int>(three * static_cast<unsigned int>(length) / 3) -
           static_cast<int>(block_.CostOfMatch(length, distance));
}

bool PngRows::HasRowAbove(std::size_t at) const {
    return at >= rowBytes_ && rowBytes_ <= DeflateBlock::kWindow;
}

/// The length of a match, cut to whole pixels unless it has the maximum length; 0 if it is too short.
template <std::size_t kPixel>
std::size_t PngRows::LengthOfMatch(std::size_t at, std::size_t from, std::size_t most) const {
    const std::size_t equal = CountEqual(bytes_ + at, bytes_ + from, most, hasWide_);
    const std::size_t end = at + equal;
    // The maximum length has a cheap code, and the run usually goes on to the end of a pixel.
    const std::size_t cut =
        equal == DeflateBlock::kLongestMatch || end < firstPixel_ ? 0 : (end - firstPixel_) % kPixel;
    const std::size_t length = equal - std::min(equal, cut);
    return length < DeflateBlock::kShortestMatch ? 0 : length;
}

template <std::size_t kPixel>
void PngRows::Consider(std::size_t at, std::size_t from, std::size_t end, Match& best) const {
    const std::size_t length =
        LengthOfMatch<kPixel>(at, from, std::min(end - at, DeflateBlock::kLongestMatch));
    if (length == 0) return;
    const int gain = GainOf(at, length, at - from);
    if (gain > best.gain) best = {length, at - from, gain};
}

/// @param best  in: the run that repeats the pixel to the left, possibly empty; out: what saves most
template <std::size_t kPixel>
void PngRows::FindMatch(std::size_t at, std::size_t end, Match& best) {
    const auto pixel = Load<std::uint32_t>(bytes_ + at);
    if (HasRowAbove(at) && HaveEqualPixels(pixel, Load<std::uint32_t>(bytes_ + at - rowBytes_)))
        Consider<kPixel>(at, at - rowBytes_, end, best);
    // The hash would read beyond the last row.
    if (best.length >= kGoodMatch || at + kHashedBytes > size_) return;
    // Two unpredictable conditions as one branch.
    const auto isMatch = [&](std::size_t place, std::uint32_t mask) {
        const bool isNear = at - place - 1 < DeflateBlock::kWindow;
        const bool isEqual = ((pixel ^ Load<std::uint32_t>(bytes_ + place)) & mask) == 0;
        return (static_cast<unsigned int>(isNear) & static_cast<unsigned int>(isEqual)) != 0;
    };
    constexpr std::uint32_t kPixelMask = 0xFFFFFFU, kFourBytes = 0xFFFFFFFFU;
    std::uint32_t& place = places_[HashOfSixBytes<kHashBits>(bytes_ + at)];
    if (isMatch(place, kPixel == 3 ? kPixelMask : kFourBytes)) Consider<kPixel>(at, place, end, best);
    place = static_cast<std::uint32_t>(at);
    // A match of a single pixel may save something, but not one of a grey.
    if (kPixel == 1 || best.length > kPixel) return;
    std::uint32_t& pixelPlace = pixelPlaces_[HashOfPixel<kHashBits>(pixel)];
    if (isMatch(pixelPlace, kPixelMask)) Consider<kPixel>(at, pixelPlace, end, best);
    pixelPlace = static_cast<std::uint32_t>(at);
}

template <std::size_t kPixel>
void PngRows::NotePlaces(std::size_t at, std::size_t end) {
    for (; at < end; at += kPixel) {
        places_[HashOfSixBytes<kHashBits>(bytes_ + at)] = static_cast<std::uint32_t>(at);
        if constexpr (kPixel == 3)
            pixelPlaces_[HashOfPixel<kHashBits>(Load<std::uint32_t>(bytes_ + at))] =
                static_cast<std::uint32_t>(at);
    }
}

/// Adds the filter byte, with the following pixels if they repeat the row above. @return the number of bytes
template <std::size_t kPixel>
std::size_t PngRows::TakeRowStart(std::size_t at, std::size_t end) {
    if (HasRowAbove(at)) {
        const std::size_t length =
            LengthOfMatch<kPixel>(at, at - rowBytes_, std::min(end - at, DeflateBlock::kLongestMatch));
        // Otherwise, the filter and the first pixel are literals, and the rest is a run.
        constexpr int kCostOfRun = 2 * DeflateBlock::kBit;
        if (length > kPixel && GainOf(at, 1 + kPixel, rowBytes_) + kCostOfRun +
                                       static_cast<int>(block_.CostOfMatch(1 + kPixel, rowBytes_)) >
                                   static_cast<int>(block_.CostOfMatch(length, rowBytes_))) {
            block_.AddMatch(length, rowBytes_);
            return length;
        }
    }
    block_.AddLiteral(bytes_[at]);
    return 1;
}

template <std::size_t kPixel>
void PngRows::TakeRow(std::size_t at, std::size_t end, bool isEven) {
    if (block_.GetTokenCount() >= nextUpdate_) UpdateCosts();
    firstPixel_ = at + 1;
    at += TakeRowStart<kPixel>(at, end);
    while (at < end) {
        if (block_.GetTokenCount() >= nextUpdate_) UpdateCosts();
        if (end - at < DeflateBlock::kShortestMatch) {
            TakePixel<1>(at++);
            continue;
        }
        Match best;
        if constexpr (kPixel == 1) best.gain = kLeastGainOfGrey;
        if (at >= firstPixel_ + kPixel &&
            HaveEqualPixels(Load<std::uint32_t>(bytes_ + at), Load<std::uint32_t>(bytes_ + at - kPixel))) {
            // A run that reaches the end of the row needs no cutting.
            const std::size_t run = isEven ? end - at : LengthOfMatch<kPixel>(at, at - kPixel, end - at);
            if (run >= kGoodRun) {
                AddRun(run, kPixel);
                at += run;
                continue;
            }
            if (run > 0)
                if (const int gain = GainOf(at, run, kPixel); gain > 0) best = {run, kPixel, gain};
        }
        FindMatch<kPixel>(at, end, best);
        if (best.length == 0) {
            TakePixel<kPixel>(at);
            at += kPixel;
            continue;
        }
        block_.AddMatch(best.length, best.distance);
        NotePlaces<kPixel>(at + kPixel, at + std::min(best.length, kNotedOfMatch));
        at += best.length;
    }
}

void PngRows::Compress(std::span<const std::uint8_t> rows, std::size_t rowBytes, std::size_t pixelBytes,
                       std::span<const std::uint8_t> isDrawn, std::vector<std::uint8_t>& out) {
    bytes_ = rows.data();
    size_ = rows.size();
    rowBytes_ = rowBytes;
    out_ = &out;
    hasWide_ = UsedVectorPower() >= VectorPower::kAvx2;
    // 0 is a valid position: its bytes are compared like any others.
    places_.fill(0);
    pixelPlaces_.fill(0);
    block_.Begin();
    nextUpdate_ = kFirstUpdate;
    for (std::size_t at = 0, row = 0; at < rows.size(); at += rowBytes, ++row) {
        const bool isEven = !isDrawn.empty() && isDrawn[row] == 0;
        pixelBytes == 3 ? TakeRow<3>(at, at + rowBytes, isEven) : TakeRow<1>(at, at + rowBytes, isEven);
    }
    if (block_.GetTokenCount() > 0) block_.Write(out);
    block_.Align(out);
}
