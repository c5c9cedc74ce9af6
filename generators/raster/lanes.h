#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

/// Numbers that are worked on four or eight at a time, on all processors that can, whatever they call it.
using Lanes [[gnu::vector_size(16)]] = std::uint32_t;
using SignedLanes [[gnu::vector_size(16)]] = std::int32_t;
using ShortLanes [[gnu::vector_size(16)]] = std::uint16_t;

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

/// Each lane and all before it.
inline Lanes RunningSum(Lanes lanes) {
    const Lanes none{};
    lanes += __builtin_shufflevector(lanes, none, 4, 0, 1, 2);
    lanes += __builtin_shufflevector(lanes, none, 4, 4, 0, 1);
    return lanes;
}

inline Lanes LastOfAll(const Lanes& lanes) { return __builtin_shufflevector(lanes, lanes, 3, 3, 3, 3); }

/// Exact, rounded, for all that two bytes multiply to.
inline ShortLanes DivideBy255(const ShortLanes& value) {
    const ShortLanes rounded = value + 128;
    return (rounded + (rounded >> 8)) >> 8;
}

/// A number for each of four pixels, twice as a short one: for two bytes of a pixel at a time.
inline ShortLanes InBothHalves(const Lanes& lanes) { return std::bit_cast<ShortLanes>(lanes | lanes << 16); }

static_assert(std::endian::native == std::endian::little,
              "two bytes of a pixel are a number, the first its lower half");

/// A colour for the bytes of four pixels, which are red, green, blue and one that does not count.
struct PixelColour {
    ShortLanes even{}, odd{};

    PixelColour(unsigned int red, unsigned int green, unsigned int blue) {
        even = std::bit_cast<ShortLanes>(Lanes{} + (red | blue << 16));
        odd = std::bit_cast<ShortLanes>(Lanes{} + (green | 0xFF0000U));
    }
    ShortLanes Opaque() const { return even | odd << 8; }
};

/// Lays a colour over four pixels, each with an alpha of its own (0 to 255).
inline ShortLanes BlendPixels(const ShortLanes& pixels, const PixelColour& colour, const ShortLanes& alphas) {
    const ShortLanes left = 255 - alphas;
    const ShortLanes even = DivideBy255((pixels & 0xFF) * left + colour.even * alphas);
    const ShortLanes odd = DivideBy255((pixels >> 8) * left + colour.odd * alphas);
    return even | odd << 8;
}
