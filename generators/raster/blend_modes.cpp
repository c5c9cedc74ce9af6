// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/blend_modes.h"

#include <bit>

#include "generators/raster/lanes.h"

// Formulas are those of Compositing and Blending. All numbers are from 0 to 1, four pixels in the lanes.

namespace {

FloatLanes Choose(const SignedLanes& mask, const FloatLanes& a, const FloatLanes& b) {
    return std::bit_cast<FloatLanes>((mask & std::bit_cast<SignedLanes>(a)) |
                                     (~mask & std::bit_cast<SignedLanes>(b)));
}
FloatLanes Least(const FloatLanes& a, const FloatLanes& b) { return Choose(a < b, a, b); }
FloatLanes Most(const FloatLanes& a, const FloatLanes& b) { return Choose(a > b, a, b); }
FloatLanes All(float value) { return FloatLanes{} + value; }

/// 0 where there is nothing to divide by.
FloatLanes Over(const FloatLanes& value, const FloatLanes& divisor) {
    const FloatLanes quotient = value / Choose(divisor == 0.0F, All(1.0F), divisor);
    return Choose(divisor == 0.0F, FloatLanes{}, quotient);
}

// ---- Modes that look at one channel -----------------------------------------------------------------------

FloatLanes HardLight(const FloatLanes& below, const FloatLanes& over) {
    const FloatLanes light = 2.0F * over - 1.0F;
    return Choose(over <= 0.5F, 2.0F * below * over, below + light - below * light);
}

FloatLanes SoftLight(const FloatLanes& below, const FloatLanes& over) {
    const FloatLanes dark = below - (1.0F - 2.0F * over) * below * (1.0F - below);
    const FloatLanes curve =
        Choose(below <= 0.25F, ((16.0F * below - 12.0F) * below + 4.0F) * below, SquareRoot(below));
    return Choose(over <= 0.5F, dark, below + (2.0F * over - 1.0F) * (curve - below));
}

FloatLanes Dodge(const FloatLanes& below, const FloatLanes& over) {
    const FloatLanes lit = Choose(over >= 1.0F, All(1.0F), Least(All(1.0F), Over(below, 1.0F - over)));
    return Choose(below <= 0.0F, FloatLanes{}, lit);
}

FloatLanes Burn(const FloatLanes& below, const FloatLanes& over) {
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

// ---- Modes that look at all of a colour -------------------------------------------------------------------

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

Colours WithLight(Colours colour, const FloatLanes& light) {
    const FloatLanes more = light - colour.Light();
    colour.Each([&](const FloatLanes& channel) { return channel + more; });
    // What has left the range is drawn towards its grey.
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

Colours WithSaturation(Colours colour, const FloatLanes& saturation) {
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

// ---- Pixels -----------------------------------------------------------------------------------------------

/// Four premultiplied pixels.
struct Pixels {
    Colours colours;
    FloatLanes opacity{};

    explicit Pixels(const Lanes& pixels)
        : colours{Channel(pixels), Channel(pixels >> 8), Channel(pixels >> 16)},
          opacity(Channel(pixels >> 24)) {}
    Colours Straight() const {
        Colours straight = colours;
        straight.Each([&](const FloatLanes& channel) { return Over(channel, opacity); });
        return straight;
    }

private:
    static FloatLanes Channel(const Lanes& bytes) {
        return ToFloat(std::bit_cast<SignedLanes>(bytes & 255)) * (1.0F / 255.0F);
    }
};

Lanes ByteOf(const FloatLanes& value) {
    const FloatLanes inside = Least(Most(value, FloatLanes{}), All(1.0F));
    return std::bit_cast<Lanes>(ToWhole(inside * 255.0F + 0.5F));
}

template <ORVPrintBlendMode kMode>
void Mix(const std::uint8_t* source, const std::uint8_t* below, int count, std::uint8_t* mixed) {
    for (int i = 0; i < count; i += 4, source += 16, below += 16, mixed += 16) {
        const auto over = LoadLanes<Lanes>(source), under = LoadLanes<Lanes>(below);
        if (AreEmpty(over)) {
            StoreLanes(mixed, over);
            continue;
        }
        const Pixels top(over), ground(under);
        const Colours both = MixColours<kMode>(ground.Straight(), top.Straight());
        const FloatLanes alone = 1.0F - ground.opacity, shared = ground.opacity * top.opacity;
        const Lanes red = ByteOf(top.colours.red * alone + both.red * shared);
        const Lanes green = ByteOf(top.colours.green * alone + both.green * shared);
        const Lanes blue = ByteOf(top.colours.blue * alone + both.blue * shared);
        StoreLanes(mixed, red | green << 8 | blue << 16 | (over & 0xFF000000U));
    }
}

}  // namespace

void ORVMixPixels(ORVPrintBlendMode mode, const std::uint8_t* source, const std::uint8_t* below, int count,
                  std::uint8_t* mixed) {
    using enum ORVPrintBlendMode;
    switch (mode) {
        case kNormal: return Mix<kNormal>(source, below, count, mixed);
        case kMultiply: return Mix<kMultiply>(source, below, count, mixed);
        case kScreen: return Mix<kScreen>(source, below, count, mixed);
        case kOverlay: return Mix<kOverlay>(source, below, count, mixed);
        case kDarken: return Mix<kDarken>(source, below, count, mixed);
        case kLighten: return Mix<kLighten>(source, below, count, mixed);
        case kColourDodge: return Mix<kColourDodge>(source, below, count, mixed);
        case kColourBurn: return Mix<kColourBurn>(source, below, count, mixed);
        case kHardLight: return Mix<kHardLight>(source, below, count, mixed);
        case kSoftLight: return Mix<kSoftLight>(source, below, count, mixed);
        case kDifference: return Mix<kDifference>(source, below, count, mixed);
        case kExclusion: return Mix<kExclusion>(source, below, count, mixed);
        case kHue: return Mix<kHue>(source, below, count, mixed);
        case kSaturation: return Mix<kSaturation>(source, below, count, mixed);
        case kColour: return Mix<kColour>(source, below, count, mixed);
        case kLuminosity: return Mix<kLuminosity>(source, below, count, mixed);
    }
}
