// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <bit>

#include "generators/common/lanes.h"
#include "platform/print/ORVPrintGenerator.h"

// Formulas of Compositing and Blending Level 1. All values are from 0 to 1.

/// Each vector holds the same channel of four pixels.
namespace blending {

inline FloatLanes Choose(const SignedLanes& mask, const FloatLanes& a, const FloatLanes& b) {
    return std::bit_cast<FloatLanes>((mask & std::bit_cast<SignedLanes>(a)) |
                                     (~mask & std::bit_cast<SignedLanes>(b)));
}
inline FloatLanes Least(const FloatLanes& a, const FloatLanes& b) { return Choose(a < b, a, b); }
inline FloatLanes Most(const FloatLanes& a, const FloatLanes& b) { return Choose(a > b, a, b); }
inline FloatLanes All(float value) { return FloatLanes{} + value; }

/// Quotient; 0 where the divisor is 0.
inline FloatLanes Over(const FloatLanes& value, const FloatLanes& divisor) {
    const FloatLanes quotient = value / Choose(divisor == 0.0F, All(1.0F), divisor);
    return Choose(divisor == 0.0F, FloatLanes{}, quotient);
}

// ---- Separable modes --------------------------------------------------------------------------------------

inline FloatLanes HardLight(const FloatLanes& below, const FloatLanes& over) {
    const FloatLanes light = 2.0F * over - 1.0F;
    return Choose(over <= 0.5F, 2.0F * below * over, below + light - below * light);
}

inline FloatLanes SoftLight(const FloatLanes& below, const FloatLanes& over) {
    const FloatLanes dark = below - (1.0F - 2.0F * over) * below * (1.0F - below);
    const FloatLanes curve =
        Choose(below <= 0.25F, ((16.0F * below - 12.0F) * below + 4.0F) * below, SquareRoot(below));
    return Choose(over <= 0.5F, dark, below + (2.0F * over - 1.0F) * (curve - below));
}

inline FloatLanes Dodge(const FloatLanes& below, const FloatLanes& over) {
    const FloatLanes lit = Choose(over >= 1.0F, All(1.0F), Least(All(1.0F), Over(below, 1.0F - over)));
    return Choose(below <= 0.0F, FloatLanes{}, lit);
}

inline FloatLanes Burn(const FloatLanes& below, const FloatLanes& over) {
    const FloatLanes burnt =
        Choose(over <= 0.0F, FloatLanes{}, 1.0F - Least(All(1.0F), Over(1.0F - below, over)));
    return Choose(below >= 1.0F, All(1.0F), burnt);
}

template <ORVPrintBlendMode kMode>
FloatLanes MixChannel(const FloatLanes& below, const FloatLanes& over) {
    using enum ORVPrintBlendMode;
    if constexpr (kMode == kMultiply) return below * over;
    if constexpr (kMode == kScreen) return below + over - below * over;
    if constexpr (kMode == kOverlay) return HardLight(over, below);
    if constexpr (kMode == kDarken) return Least(below, over);
    if constexpr (kMode == kLighten) return Most(below, over);
    if constexpr (kMode == kColourDodge) return Dodge(below, over);
    if constexpr (kMode == kColourBurn) return Burn(below, over);
    if constexpr (kMode == kHardLight) return HardLight(below, over);
    if constexpr (kMode == kSoftLight) return SoftLight(below, over);
    if constexpr (kMode == kDifference) return Most(below, over) - Least(below, over);
    if constexpr (kMode == kExclusion) return below + over - 2.0F * below * over;
    return over;
}

// ---- Non-separable modes ----------------------------------------------------------------------------------

struct Colours {
    FloatLanes red{}, green{}, blue{};

    FloatLanes Light() const { return 0.3F * red + 0.59F * green + 0.11F * blue; }
    FloatLanes Lowest() const { return Least(Least(red, green), blue); }
    FloatLanes Highest() const { return Most(Most(red, green), blue); }
    FloatLanes Saturation() const { return Highest() - Lowest(); }

    template <class Change>
    void Each(Change change) {
        red = change(red);
        green = change(green);
        blue = change(blue);
    }
};

inline Colours WithLight(Colours colour, const FloatLanes& light) {
    const FloatLanes more = light - colour.Light();
    colour.Each([&](const FloatLanes& channel) { return channel + more; });
    // Channels outside 0 to 1 are moved towards the grey of the same lightness.
    const FloatLanes grey = colour.Light(), lowest = colour.Lowest(), highest = colour.Highest();
    const FloatLanes up = Over(grey, grey - lowest), down = Over(1.0F - grey, highest - grey);
    colour.Each([&](const FloatLanes& channel) {
        return Choose(lowest < 0.0F, grey + (channel - grey) * up, channel);
    });
    colour.Each([&](const FloatLanes& channel) {
        return Choose(highest > 1.0F, grey + (channel - grey) * down, channel);
    });
    return colour;
}

inline Colours WithSaturation(Colours colour, const FloatLanes& saturation) {
    const FloatLanes lowest = colour.Lowest(), factor = Over(saturation, colour.Saturation());
    colour.Each([&](const FloatLanes& channel) { return (channel - lowest) * factor; });
    return colour;
}

template <ORVPrintBlendMode kMode>
Colours MixColours(const Colours& below, const Colours& over) {
    using enum ORVPrintBlendMode;
    if constexpr (kMode == kHue)
        return WithLight(WithSaturation(over, below.Saturation()), below.Light());
    else if constexpr (kMode == kSaturation)
        return WithLight(WithSaturation(below, over.Saturation()), below.Light());
    else if constexpr (kMode == kColour)
        return WithLight(over, below.Light());
    else if constexpr (kMode == kLuminosity)
        return WithLight(below, over.Light());
    else
        return {MixChannel<kMode>(below.red, over.red), MixChannel<kMode>(below.green, over.green),
                MixChannel<kMode>(below.blue, over.blue)};
}

}  // namespace blending
