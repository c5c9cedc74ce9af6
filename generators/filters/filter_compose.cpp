// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_compose.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstring>
#include <utility>

#include "generators/filters/pixel_steps.h"

namespace {

constexpr auto kFullChannel = static_cast<float>(kFilterFull);
constexpr float kPartOfFull = 1.0F / kFullChannel;

/// Empty if the box would leave the range of buffers.
FilterBox Moved(const FilterBox& box, std::int64_t columns, std::int64_t rows) {
    constexpr std::int64_t kFar = 1 << 29;
    const std::int64_t left = box.left + columns, top = box.top + rows;
    if (std::abs(left) > kFar || std::abs(top) > kFar) return {};
    return {static_cast<int>(left), static_cast<int>(top), box.width, box.height};
}

void LayOver(const FilterPixels& input, FilterPixels& below) {
    const FilterBox shared = input.GetBox().CutTo(below.GetBox());
    for (int y = shared.top; y < shared.Bottom(); ++y) {
        const std::uint16_t* from = input.At(shared.left, y);
        std::uint16_t* to = below.At(shared.left, y);
        for (int x = 0; x < shared.width; ++x, from += kFilterChannels, to += kFilterChannels)
            LayPixelOver(from, to);
    }
    if (!shared.IsEmpty()) below.SetAlphaOnly(below.IsAlphaOnly() && input.IsAlphaOnly());
}

// ---- Composite --------------------------------------------------------------------------------------------

/// Clamps opacity to 0..1, and colours to 0..opacity.
FloatLanes Inside(const FloatLanes& pixel) {
    const FloatLanes positive = blending::Most(pixel, FloatLanes{});
    const FloatLanes opacity = blending::Least(Opacity(positive), blending::All(kFullChannel));
    return blending::Least(positive, opacity);
}

template <FilterOperator kKind>
FloatLanes Compose(const FloatLanes& a, const FloatLanes& b, [[maybe_unused]] const FloatLanes (&k)[4]) {
    using enum FilterOperator;
    const FloatLanes inA = Opacity(a) * kPartOfFull, inB = Opacity(b) * kPartOfFull;
    if constexpr (kKind == kOver) return a + b * (1.0F - inA);
    if constexpr (kKind == kIn) return a * inB;
    if constexpr (kKind == kOut) return a * (1.0F - inB);
    if constexpr (kKind == kAtop) return a * inB + b * (1.0F - inA);
    if constexpr (kKind == kXor) return a * (1.0F - inB) + b * (1.0F - inA);
    if constexpr (kKind == kLighter) return a + b;
    return k[0] * a * b * kPartOfFull + k[1] * a + k[2] * b + k[3] * kFullChannel;
}

template <FilterOperator kKind>
void ComposeAll(const FilterPixels& input, const FilterPixels& below, const double (&numbers)[4],
                FilterPixels& out) {
    FloatLanes k[4];
    for (int i = 0; i < 4; ++i) k[i] = blending::All(static_cast<float>(UsableNumber(numbers[i])));
    const FilterBox box = out.GetBox();
    FilterRows over(input, box), under(below, box);
    for (int y = box.top; y < box.Bottom(); ++y) {
        const std::uint16_t *a = over(y), *b = under(y);
        std::uint16_t* to = out.Row(y);
        for (std::ptrdiff_t i = 0; i < PixelShorts(box.width); i += kFilterChannels)
            StorePixel(Inside(Compose<kKind>(LoadPixel(a + i), LoadPixel(b + i), k)), to + i);
    }
}

// ---- Blend ------------------------------------------------------------------------------------------------

/// Four pixels, from 0 to 1.
struct FourPixels {
    blending::Colours colours;
    FloatLanes opacity{};

    /// Transposes four pixels of four channels to four channels of four pixels, and back.
    static void Turn(FloatLanes (&lanes)[4]) {
        const FloatLanes ab = __builtin_shufflevector(lanes[0], lanes[1], 0, 4, 1, 5);
        const FloatLanes cd = __builtin_shufflevector(lanes[2], lanes[3], 0, 4, 1, 5);
        const FloatLanes ef = __builtin_shufflevector(lanes[0], lanes[1], 2, 6, 3, 7);
        const FloatLanes gh = __builtin_shufflevector(lanes[2], lanes[3], 2, 6, 3, 7);
        lanes[0] = __builtin_shufflevector(ab, cd, 0, 1, 4, 5);
        lanes[1] = __builtin_shufflevector(ab, cd, 2, 3, 6, 7);
        lanes[2] = __builtin_shufflevector(ef, gh, 0, 1, 4, 5);
        lanes[3] = __builtin_shufflevector(ef, gh, 2, 3, 6, 7);
    }
    static FourPixels Load(const std::uint16_t* pixels) {
        FloatLanes lanes[4];
        for (int i = 0; i < 4; ++i) lanes[i] = LoadPixel(pixels + std::ptrdiff_t{4} * i) * kPartOfFull;
        Turn(lanes);
        return {{lanes[0], lanes[1], lanes[2]}, lanes[3]};
    }
    void Store(std::uint16_t* pixels) const {
        FloatLanes lanes[4] = {colours.red, colours.green, colours.blue, opacity};
        Turn(lanes);
        for (int i = 0; i < 4; ++i)
            StorePixel(Inside(lanes[i] * kFullChannel), pixels + std::ptrdiff_t{4} * i);
    }
    blending::Colours Straight() const {
        blending::Colours straight = colours;
        straight.Each([&](const FloatLanes& channel) { return blending::Over(channel, opacity); });
        return straight;
    }
};

template <ORVPrintBlendMode kMode>
void BlendFour(const std::uint16_t* input, const std::uint16_t* below, std::uint16_t* out) {
    const FourPixels top = FourPixels::Load(input), ground = FourPixels::Load(below);
    const blending::Colours both = blending::MixColours<kMode>(ground.Straight(), top.Straight());
    const FloatLanes shared = top.opacity * ground.opacity;
    const auto channel = [&](const FloatLanes& over, const FloatLanes& under, const FloatLanes& mixed) {
        return over * (1.0F - ground.opacity) + under * (1.0F - top.opacity) + mixed * shared;
    };
    const FourPixels sum{{channel(top.colours.red, ground.colours.red, both.red),
                          channel(top.colours.green, ground.colours.green, both.green),
                          channel(top.colours.blue, ground.colours.blue, both.blue)},
                         top.opacity + ground.opacity - shared};
    sum.Store(out);
}

template <ORVPrintBlendMode kMode>
void BlendAll(const FilterPixels& input, const FilterPixels& below, FilterPixels& out) {
    const FilterBox box = out.GetBox();
    FilterRows over(input, box), under(below, box);
    const int whole = box.width / 4 * 4;
    for (int y = box.top; y < box.Bottom(); ++y) {
        const std::uint16_t *a = over(y), *b = under(y);
        std::uint16_t* to = out.Row(y);
        for (int x = 0; x < whole; x += 4)
            BlendFour<kMode>(a + PixelShorts(x), b + PixelShorts(x), to + PixelShorts(x));
        if (whole == box.width) continue;
        std::uint16_t first[16] = {}, second[16] = {};
        std::memcpy(first, a + PixelShorts(whole), PixelSize(box.width - whole));
        std::memcpy(second, b + PixelShorts(whole), PixelSize(box.width - whole));
        BlendFour<kMode>(first, second, first);
        std::memcpy(to + PixelShorts(whole), first, PixelSize(box.width - whole));
    }
}

// ---- Place ------------------------------------------------------------------------------------------------

/// True if one of the four pixels nearest to a point may be in a buffer; false for NaN.
bool IsBeside(const FilterBox& box, const ORVMathPoint2D& p) {
    return p.x > box.left - 1.0 && p.x < box.Right() + 1.0 && p.y > box.top - 1.0 && p.y < box.Bottom() + 1.0;
}

FloatLanes PixelAt(const FilterPixels& image, int x, int y) {
    return image.GetBox().Contains(x, y) ? LoadPixel(image.At(x, y)) : FloatLanes{};
}

FloatLanes SmoothAt(const FilterPixels& image, const ORVMathPoint2D& p) {
    const double left = std::floor(p.x - 0.5), top = std::floor(p.y - 0.5);
    const auto right = static_cast<float>(p.x - 0.5 - left), lower = static_cast<float>(p.y - 0.5 - top);
    const int x = static_cast<int>(left), y = static_cast<int>(top);
    const FloatLanes above = PixelAt(image, x, y) * (1.0F - right) + PixelAt(image, x + 1, y) * right;
    const FloatLanes below = PixelAt(image, x, y + 1) * (1.0F - right) + PixelAt(image, x + 1, y + 1) * right;
    return above * (1.0F - lower) + below * lower;
}

FloatLanes NearestAt(const FilterPixels& image, const ORVMathPoint2D& p) {
    return PixelAt(image, static_cast<int>(std::floor(p.x)), static_cast<int>(std::floor(p.y)));
}

}  // namespace

FilterPixels FloodFilterPixels(const FilterColour& colour, FilterColours colours, const FilterBox& box) {
    FilterPixels out(box, colours);
    std::uint16_t flood[kFilterChannels];
    colour.Pixel(colours, flood);
    out.SetAlphaOnly((flood[0] | flood[1] | flood[2]) == 0);
    if (flood[3] == 0) return out;
    ForEachPixel(out, [&](std::uint16_t* pixel) { std::memcpy(pixel, flood, sizeof flood); });
    return out;
}

FilterPixels OffsetFilterPixels(const FilterPixels& input, int columns, int rows, const FilterBox& box) {
    FilterPixels out(box, input.GetColours());
    out.SetAlphaOnly(input.IsAlphaOnly());
    const FilterBox shown = Moved(input.GetBox(), columns, rows).CutTo(out.GetBox());
    for (int y = shown.top; y < shown.Bottom(); ++y)
        std::memcpy(out.At(shown.left, y), input.At(shown.left - columns, y - rows), PixelSize(shown.width));
    return out;
}

FilterPixels MergeFilterPixels(std::span<const FilterPixels* const> inputs, const FilterBox& box) {
    FilterPixels out(box, inputs.empty() ? FilterColours::kSrgb : inputs.front()->GetColours());
    out.SetAlphaOnly(true);
    for (const FilterPixels* input : inputs) LayOver(*input, out);
    return out;
}

FilterPixels ComposeFilterPixels(const FilterPixels& input, const FilterPixels& below,
                                 const FilterComposition& composition, const FilterBox& box) {
    using enum FilterOperator;
    FilterPixels out(box, input.GetColours());
    // Arithmetic may add colour to black.
    out.SetAlphaOnly(input.IsAlphaOnly() && below.IsAlphaOnly() && composition.kind != kArithmetic);
    const auto& k = composition.k;
    switch (composition.kind) {
        case kOver: ComposeAll<kOver>(input, below, k, out); break;
        case kIn: ComposeAll<kIn>(input, below, k, out); break;
        case kOut: ComposeAll<kOut>(input, below, k, out); break;
        case kAtop: ComposeAll<kAtop>(input, below, k, out); break;
        case kXor: ComposeAll<kXor>(input, below, k, out); break;
        case kLighter: ComposeAll<kLighter>(input, below, k, out); break;
        case kArithmetic: ComposeAll<kArithmetic>(input, below, k, out); break;
    }
    return out;
}

FilterPixels BlendFilterPixels(const FilterPixels& input, const FilterPixels& below, ORVPrintBlendMode mode,
                               const FilterBox& box) {
    using enum ORVPrintBlendMode;
    FilterPixels out(box, input.GetColours());
    switch (mode) {
        case kNormal: BlendAll<kNormal>(input, below, out); break;
        case kMultiply: BlendAll<kMultiply>(input, below, out); break;
        case kScreen: BlendAll<kScreen>(input, below, out); break;
        case kOverlay: BlendAll<kOverlay>(input, below, out); break;
        case kDarken: BlendAll<kDarken>(input, below, out); break;
        case kLighten: BlendAll<kLighten>(input, below, out); break;
        case kColourDodge: BlendAll<kColourDodge>(input, below, out); break;
        case kColourBurn: BlendAll<kColourBurn>(input, below, out); break;
        case kHardLight: BlendAll<kHardLight>(input, below, out); break;
        case kSoftLight: BlendAll<kSoftLight>(input, below, out); break;
        case kDifference: BlendAll<kDifference>(input, below, out); break;
        case kExclusion: BlendAll<kExclusion>(input, below, out); break;
        case kHue: BlendAll<kHue>(input, below, out); break;
        case kSaturation: BlendAll<kSaturation>(input, below, out); break;
        case kColour: BlendAll<kColour>(input, below, out); break;
        case kLuminosity: BlendAll<kLuminosity>(input, below, out); break;
    }
    return out;
}

FilterPixels TileFilterPixels(const FilterPixels& input, const FilterBox& tile, const FilterBox& box) {
    FilterPixels out(box, input.GetColours());
    out.SetAlphaOnly(input.IsAlphaOnly());
    const FilterBox shown = tile.CutTo(input.GetBox()), made = out.GetBox();
    if (shown.IsEmpty()) return out;
    const auto inTile = [](std::int64_t place, int begin, int size) {
        const std::int64_t offset = (place - begin) % size;
        return offset < 0 ? offset + size : offset;
    };
    for (int y = made.top; y < made.Bottom(); ++y) {
        const std::int64_t fromY = tile.top + inTile(y, tile.top, tile.height);
        if (fromY < shown.top || fromY >= shown.Bottom()) continue;
        // From the first copy that may overlap the box on.
        std::int64_t x = made.left - inTile(made.left, tile.left, tile.width) + (shown.left - tile.left);
        for (; x < made.Right(); x += tile.width) {
            const std::int64_t begin = std::max<std::int64_t>(x, made.left);
            const std::int64_t end = std::min<std::int64_t>(x + shown.width, made.Right());
            if (end <= begin) continue;
            std::memcpy(out.At(static_cast<int>(begin), y),
                        input.At(static_cast<int>(shown.left + begin - x), static_cast<int>(fromY)),
                        PixelSize(static_cast<int>(end - begin)));
        }
    }
    return out;
}

FilterPixels PlaceFilterPixels(const FilterPixels& image, const ORVMathAffine2D& toImage, bool isSmooth,
                               const FilterBox& box) {
    FilterPixels out(box, image.GetColours());
    out.SetAlphaOnly(image.IsAlphaOnly());
    const FilterBox made = out.GetBox(), from = image.GetBox();
    if (from.IsEmpty()) return out;
    for (int y = made.top; y < made.Bottom(); ++y) {
        std::uint16_t* pixel = out.Row(y);
        for (int x = made.left; x < made.Right(); ++x, pixel += kFilterChannels) {
            const ORVMathPoint2D p = toImage({x + 0.5, y + 0.5});
            if (IsBeside(from, p)) StorePixel(isSmooth ? SmoothAt(image, p) : NearestAt(image, p), pixel);
        }
    }
    return out;
}

FilterPixels ShadowFilterPixels(const FilterPixels& input, const FilterShadow& shadow, const FilterBox& box) {
    FilterPixels out(box, input.GetColours());
    std::uint16_t colour[kFilterChannels];
    shadow.colour.Pixel(input.GetColours(), colour);
    const FilterBox cast = Moved(out.GetBox(), -std::int64_t{shadow.columns}, -std::int64_t{shadow.rows});
    const FilterPixels blurred = BlurFilterPixels(AlphaOfFilterPixels(input), shadow.blur, cast);
    for (int y = cast.top; y < cast.Bottom(); ++y) {
        const std::uint16_t* from = blurred.Row(y);
        std::uint16_t* to = out.Row(y + shadow.rows);
        for (std::ptrdiff_t i = 0; i < PixelShorts(cast.width); ++i)
            to[i] = static_cast<std::uint16_t>(Product(colour[i % 4], from[i / 4 * 4 + 3]));
    }
    LayOver(input, out);
    out.SetAlphaOnly(input.IsAlphaOnly() && (colour[0] | colour[1] | colour[2]) == 0);
    return out;
}

double FilterComposeWork(const FilterBox& box, std::size_t inputs) {
    return box.Area() * static_cast<double>(1 + inputs);
}
