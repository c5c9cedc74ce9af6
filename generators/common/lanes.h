// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

/// 128-bit vectors of numbers. The compiler maps them to the instructions of each processor.
using Lanes [[gnu::vector_size(16)]] = std::uint32_t;
using SignedLanes [[gnu::vector_size(16)]] = std::int32_t;
using ShortLanes [[gnu::vector_size(16)]] = std::uint16_t;

using ByteLanes [[gnu::vector_size(16)]] = std::uint8_t;
using LongLanes [[gnu::vector_size(16)]] = std::uint64_t;
using DoubleLanes [[gnu::vector_size(16)]] = double;
using FloatLanes [[gnu::vector_size(16)]] = float;

template <class Vector>
Vector LoadLanes(const void* from) {
    Vector lanes;
    std::memcpy(&lanes, from, sizeof lanes);
    return lanes;
}

template <class Vector>
void StoreLanes(void* to, const Vector& lanes) {
    std::memcpy(to, &lanes, sizeof lanes);
}

/// Bits of `a` where `mask` has ones, else of `b`.
inline Lanes Choose(const Lanes& mask, const Lanes& a, const Lanes& b) { return (a & mask) | (b & ~mask); }

/// Prefix sums: each lane plus all lanes before it.
inline Lanes RunningSum(Lanes lanes) {
    const Lanes none{};
    lanes += __builtin_shufflevector(lanes, none, 4, 0, 1, 2);
    lanes += __builtin_shufflevector(lanes, none, 4, 4, 0, 1);
    return lanes;
}

inline Lanes LastOfAll(const Lanes& lanes) { return __builtin_shufflevector(lanes, lanes, 3, 3, 3, 3); }

/// The eight bytes of two pixels, each widened to 16 bits.
inline ShortLanes WidenBytes(std::uint32_t first, std::uint32_t second) {
    const auto bytes = std::bit_cast<ByteLanes>(Lanes{first, second});
    return std::bit_cast<ShortLanes>(
        __builtin_shufflevector(bytes, ByteLanes{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
}
/// The eight bytes of two adjacent pixels, each widened to 16 bits.
inline ShortLanes WidenTwoPixels(std::uint64_t pixels) {
    const auto bytes = std::bit_cast<ByteLanes>(LongLanes{pixels});
    return std::bit_cast<ShortLanes>(
        __builtin_shufflevector(bytes, ByteLanes{}, 0, 16, 1, 17, 2, 18, 3, 19, 4, 20, 5, 21, 6, 22, 7, 23));
}
inline SignedLanes LowHalf(const ShortLanes& lanes) {
    return std::bit_cast<SignedLanes>(__builtin_shufflevector(lanes, ShortLanes{}, 0, 8, 1, 9, 2, 10, 3, 11));
}
inline SignedLanes HighHalf(const ShortLanes& lanes) {
    return std::bit_cast<SignedLanes>(
        __builtin_shufflevector(lanes, ShortLanes{}, 4, 12, 5, 13, 6, 14, 7, 15));
}

/// The lanes of `value` where a comparison is true, else 0.
template <class Mask>
DoubleLanes Where(const Mask& mask, const DoubleLanes& value) {
    return std::bit_cast<DoubleLanes>(std::bit_cast<LongLanes>(mask) & std::bit_cast<LongLanes>(value));
}

inline FloatLanes ToFloat(const SignedLanes& lanes) { return __builtin_convertvector(lanes, FloatLanes); }
/// Truncates towards zero.
inline SignedLanes ToWhole(const FloatLanes& lanes) { return __builtin_convertvector(lanes, SignedLanes); }

/// Clamps each number to [least, most]; NaN becomes `least`.
inline DoubleLanes Clamped(const DoubleLanes& lanes, double least, double most) {
#if defined(__SSE2__)
    // With a NaN operand, these instructions return the second operand.
    const auto notBelow = _mm_max_pd(std::bit_cast<__m128d>(lanes), _mm_set1_pd(least));
    return std::bit_cast<DoubleLanes>(_mm_min_pd(notBelow, _mm_set1_pd(most)));
#else
    DoubleLanes result = lanes;
    for (int i = 0; i < 2; ++i) result[i] = lanes[i] > least ? (lanes[i] < most ? lanes[i] : most) : least;
    return result;
#endif
}

/// Square roots; arguments must not be negative.
inline FloatLanes SquareRoot(const FloatLanes& lanes) {
#ifdef __SSE__
    return __builtin_ia32_sqrtps(lanes);
#else
    return {__builtin_sqrtf(lanes[0]), __builtin_sqrtf(lanes[1]), __builtin_sqrtf(lanes[2]),
            __builtin_sqrtf(lanes[3])};
#endif
}

/// Packs numbers from 0 to 65535 into 16 bits each.
inline ShortLanes PackShorts(const SignedLanes& low, const SignedLanes& high) {
#if defined(__SSE2__)
    // The instruction saturates to the signed range, so the values are moved there.
    const SignedLanes a = low - 32768, b = high - 32768;
    return std::bit_cast<ShortLanes>(_mm_packs_epi32(std::bit_cast<__m128i>(a), std::bit_cast<__m128i>(b))) ^
           0x8000;
#else
    return __builtin_shufflevector(std::bit_cast<ShortLanes>(low), std::bit_cast<ShortLanes>(high), 0, 2, 4,
                                   6, 8, 10, 12, 14);
#endif
}
/// Loads four 16-bit numbers into one lane each.
inline SignedLanes LoadShorts(const std::uint16_t* from) {
    std::uint64_t shorts = 0;
    std::memcpy(&shorts, from, sizeof shorts);
    return LowHalf(std::bit_cast<ShortLanes>(LongLanes{shorts}));
}

/// Packs the lowest byte of each lane in order; the other bytes must be zero.
inline std::uint32_t PackBytes(const Lanes& lanes) {
    const auto halves = std::bit_cast<LongLanes>(lanes);
    const auto two = [](std::uint64_t half) {
        return static_cast<std::uint32_t>((half | half >> 24) & 0xFFFF);
    };
    return two(halves[0]) | two(halves[1]) << 16;
}

/// Adds products of adjacent signed 16-bit numbers in pairs: a0 * b0 + a1 * b1, and so on.
inline SignedLanes SumsOfProducts(const ShortLanes& a, const ShortLanes& b) {
#if defined(__SSE2__)
    return std::bit_cast<SignedLanes>(_mm_madd_epi16(std::bit_cast<__m128i>(a), std::bit_cast<__m128i>(b)));
#else
    const auto x = std::bit_cast<SignedLanes>(a), y = std::bit_cast<SignedLanes>(b);
    return (x << 16 >> 16) * (y << 16 >> 16) + (x >> 16) * (y >> 16);
#endif
}

/// Interleaves four channels into four pixels; values must be 0 to 255.
inline ByteLanes PackPixels(const SignedLanes& a, const SignedLanes& b, const SignedLanes& c,
                            const SignedLanes& d) {
#if defined(__SSE2__)
    return std::bit_cast<ByteLanes>(
        _mm_packus_epi16(_mm_packs_epi32(std::bit_cast<__m128i>(a), std::bit_cast<__m128i>(b)),
                         _mm_packs_epi32(std::bit_cast<__m128i>(c), std::bit_cast<__m128i>(d))));
#else
    return std::bit_cast<ByteLanes>(
        Lanes{PackBytes(std::bit_cast<Lanes>(a)), PackBytes(std::bit_cast<Lanes>(b)),
              PackBytes(std::bit_cast<Lanes>(c)), PackBytes(std::bit_cast<Lanes>(d))});
#endif
}

/// value / 255 rounded to nearest; exact for every product of two bytes.
inline ShortLanes DivideBy255(const ShortLanes& value) {
    const ShortLanes rounded = value + 128;
#if defined(__SSE2__)
    // Multiplying by 257 / 65536 equals the shifts below.
    return std::bit_cast<ShortLanes>(_mm_mulhi_epu16(std::bit_cast<__m128i>(rounded), _mm_set1_epi16(257)));
#else
    return (rounded + (rounded >> 8)) >> 8;
#endif
}

/// Copies the low half of each lane to its high half, so that a value applies to two bytes of a pixel.
inline ShortLanes InBothHalves(const Lanes& lanes) { return std::bit_cast<ShortLanes>(lanes | lanes << 16); }

/// Loads four bytes into one lane each.
inline Lanes LoadBytes(const std::uint8_t* from) {
    std::uint32_t bytes = 0;
    std::memcpy(&bytes, from, sizeof bytes);
    return std::bit_cast<Lanes>(LowHalf(WidenBytes(bytes, 0)));
}

/// Luma of a colour; white and greys are unchanged.
inline std::uint8_t ORVGreyOf(unsigned int red, unsigned int green, unsigned int blue) {
    return static_cast<std::uint8_t>((red * 77 + green * 150 + blue * 29 + 128) >> 8U);
}

/// Multiplies each alpha (0 to 255) by the other one at the same index.
inline void ORVMultiplyAlphas(std::uint8_t* alphas, const std::uint8_t* others, int count) {
    for (int i = 0; i < count; ++i) {
        const unsigned int product = alphas[i] * static_cast<unsigned int>(others[i]) + 128;
        alphas[i] = static_cast<std::uint8_t>((product + (product >> 8)) >> 8);
    }
}

static_assert(std::endian::native == std::endian::little,
              "two bytes of a pixel are a number, the first its lower half");

/// A colour spread over four pixels of red, green, blue and an unused byte.
struct PixelColour {
    ShortLanes even{}, odd{};

    PixelColour(unsigned int red, unsigned int green, unsigned int blue) {
        even = std::bit_cast<ShortLanes>(Lanes{} + (red | blue << 16));
        odd = std::bit_cast<ShortLanes>(Lanes{} + (green | 0xFF0000U));
    }
    ShortLanes Opaque() const { return even | odd << 8; }
};

/// Blends a colour over four pixels, with an alpha (0 to 255) for each pixel.
inline ShortLanes BlendPixels(const ShortLanes& pixels, const PixelColour& colour, const ShortLanes& alphas) {
    const ShortLanes left = 255 - alphas;
    const ShortLanes even = DivideBy255((pixels & 0xFF) * left + colour.even * alphas);
    const ShortLanes odd = DivideBy255((pixels >> 8) * left + colour.odd * alphas);
    return even | odd << 8;
}

/// True if four premultiplied pixels are all zero.
inline bool AreEmpty(const Lanes& pixels) {
    const auto halves = std::bit_cast<LongLanes>(pixels);
    return (halves[0] | halves[1]) == 0;
}

/// True if the alphas of four pixels are all 255.
inline bool AreOpaque(const ShortLanes& pixels) {
    constexpr std::uint64_t kOpacities = 0xFF000000FF000000U;
    const auto halves = std::bit_cast<LongLanes>(pixels);
    return (halves[0] & halves[1] & kOpacities) == kOpacities;
}

/// Composites four premultiplied pixels, multiplied by an additional alpha each, over four others.
inline ShortLanes LayOver(const ShortLanes& pixels, const ShortLanes& over, const ShortLanes& alphas) {
    const ShortLanes left = 255 - DivideBy255(InBothHalves(std::bit_cast<Lanes>(over) >> 24) * alphas);
    const ShortLanes even = DivideBy255((pixels & 0xFF) * left + (over & 0xFF) * alphas);
    const ShortLanes odd = DivideBy255((pixels >> 8) * left + (over >> 8) * alphas);
    return even | odd << 8;
}
