// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/blend_modes.h"

#include <bit>

#include "generators/common/blend_formulas.h"
#include "generators/common/lanes.h"

namespace {

using namespace blending;

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
