// SPDX-License-Identifier: Apache-2.0

// The module liborvcolour.so: colour conversion by Little CMS.

#include <lcms2.h>
#include <lcms2_plugin.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include "platform/visualization/colours/colour_conversion.h"

namespace {

using Space = ORVColourDescription::Space;

// Colours within this distance of sRGB (levels of 255) count as sRGB, because sRGB profiles differ in
// rounding.
constexpr int kSameWithin = 3;
// From this number of pixels on, a table of interpolated colours is computed, which has about as many
// entries.
constexpr std::size_t kManyPixels = 250'000;

// ---- memory ----

// Limit of one allocation. Profiles have the size of their files, and tables made from them a few megabytes.
constexpr std::size_t kLargestPiece = std::size_t{64} << 20U;

thread_local bool wasMemoryRefused = false;

void* Allocate(cmsContext /*context*/, cmsUInt32Number size) {
    void* const memory = size == 0 || size > kLargestPiece ? nullptr : std::malloc(size);
    if (!memory && size > 0 && size <= kLargestPiece) wasMemoryRefused = true;
    return memory;
}

void Free(cmsContext /*context*/, void* memory) { std::free(memory); }

void* Reallocate(cmsContext /*context*/, void* memory, cmsUInt32Number size) {
    void* const moved = size > kLargestPiece ? nullptr : std::realloc(memory, size);
    if (!moved && size > 0 && size <= kLargestPiece) wasMemoryRefused = true;
    return moved;
}

cmsPluginMemHandler memoryHandler{{cmsPluginMagicNumber, 2060, cmsPluginMemHandlerSig, nullptr},
                                  Allocate,
                                  Free,
                                  Reallocate,
                                  nullptr,
                                  nullptr,
                                  nullptr};

// ---- the library's objects ----

template <auto kClose>
struct Closer {
    template <class Handle>
    void operator()(Handle* handle) const {
        kClose(handle);
    }
};
using Context = std::unique_ptr<std::remove_pointer_t<cmsContext>, Closer<cmsDeleteContext>>;
using Profile = std::unique_ptr<void, Closer<cmsCloseProfile>>;
using Transform = std::unique_ptr<void, Closer<cmsDeleteTransform>>;
using Curve = std::unique_ptr<cmsToneCurve, Closer<cmsFreeToneCurve>>;

// ---- profiles ----

cmsColorSpaceSignature SignatureOf(Space space) {
    switch (space) {
        case Space::kGrey: return cmsSigGrayData;
        case Space::kRGB: return cmsSigRgbData;
        case Space::kCMYK:
        case Space::kNoInk: break;
    }
    return cmsSigCmykData;
}

/// Whether a profile is for pixels of that space. Multi-process elements are refused: few profiles have them,
/// and a small profile may declare a million.
bool IsUsable(cmsHPROFILE profile, Space space) {
    if (cmsGetColorSpace(profile) != SignatureOf(space)) return false;
    for (const cmsTagSignature tag : {cmsSigDToB0Tag, cmsSigDToB1Tag, cmsSigDToB2Tag, cmsSigDToB3Tag})
        if (cmsIsTag(profile, tag) != 0) return false;
    switch (cmsGetDeviceClass(profile)) {
        case cmsSigInputClass:
        case cmsSigDisplayClass:
        case cmsSigOutputClass:
        case cmsSigColorSpaceClass: return true;
        default: return false;
    }
}

cmsHPROFILE CreateFromNumbers(cmsContext context, const ORVColourDescription& description) {
    // The sRGB curve, if the file specifies none.
    const std::array<cmsFloat64Number, 5> srgb{2.4, 1.0 / 1.055, 0.055 / 1.055, 1.0 / 12.92, 0.04045};
    const Curve curve(description.gamma > 0.0 ? cmsBuildGamma(context, 1.0 / description.gamma)
                                              : cmsBuildParametricToneCurve(context, 4, srgb.data()));
    if (!curve) return nullptr;
    std::array<double, 8> at{0.3127, 0.3290, 0.64, 0.33, 0.30, 0.60, 0.15, 0.06};
    if (description.chromaticities[1] > 0.0) at = description.chromaticities;
    const cmsCIExyY white{at[0], at[1], 1.0};
    if (description.space == Space::kGrey) return cmsCreateGrayProfileTHR(context, cmsD50_xyY(), curve.get());
    const cmsCIExyYTRIPLE primaries{{at[2], at[3], 1.0}, {at[4], at[5], 1.0}, {at[6], at[7], 1.0}};
    std::array<cmsToneCurve*, 3> curves{curve.get(), curve.get(), curve.get()};
    return cmsCreateRGBProfileTHR(context, &white, &primaries, curves.data());
}

cmsHPROFILE OpenProfile(cmsContext context, const ORVColourDescription& description) {
    if (description.profile.empty()) return CreateFromNumbers(context, description);
    return cmsOpenProfileFromMemTHR(context, description.profile.data(),
                                    static_cast<cmsUInt32Number>(description.profile.size()));
}

// ---- conversions ----

cmsUInt32Number FormatOf(Space space) {
    switch (space) {
        case Space::kGrey: return TYPE_GRAY_8;
        case Space::kRGB: return TYPE_RGBA_8;
        case Space::kCMYK: return TYPE_CMYK_8;
        case Space::kNoInk: break;
    }
    return TYPE_CMYK_8_REV;
}

/// Sample colours for testing a conversion from this space; empty for inks, which are never sRGB.
std::vector<std::uint8_t> SampleColours(Space space) {
    constexpr unsigned int kDark = 48, kStep = 32;
    std::vector<std::uint8_t> colours;
    const auto add = [&](unsigned int r, unsigned int g, unsigned int b) {
        for (const unsigned int value : {r, g, b, 255U})
            colours.push_back(static_cast<std::uint8_t>(std::min(value, 255U)));
    };
    if (space == Space::kCMYK || space == Space::kNoInk) return colours;
    for (unsigned int grey = 0; grey < 256; grey += grey < kDark ? 1 : 3) add(grey, grey, grey);
    if (space == Space::kGrey) return colours;
    for (unsigned int r = 0; r <= 256; r += kStep)
        for (unsigned int g = 0; g <= 256; g += kStep)
            for (unsigned int b = 0; b <= 256; b += kStep) add(r, g, b);
    return colours;
}

class LcmsConversion final : public ORVColourConversion {
public:
    ORVColourStatus Open(const ORVColourDescription& description, std::size_t pixelCount) {
        space_ = description.space;
        wasMemoryRefused = false;
        const ORVColourStatus status = Prepare(description, pixelCount);
        return status == ORVColourStatus::kBroken && wasMemoryRefused ? ORVColourStatus::kOutOfMemory
                                                                      : status;
    }

    void Convert(std::uint8_t* pixels, std::size_t count) const override {
        if (space_ == Space::kGrey) {
            for (std::uint8_t* const end = pixels + 4 * count; pixels != end; pixels += 4)
                std::copy_n(greys_[*pixels].data(), 3, pixels);
            return;
        }
        // Largest number of pixels per call, limited by the library's integer type.
        constexpr std::size_t kMost = std::size_t{1} << 20U;
        for (std::size_t done = 0; done < count; done += kMost) {
            std::uint8_t* const from = pixels + 4 * done;
            const std::size_t some = std::min(kMost, count - done);
            cmsDoTransform(transform_.get(), from, from, static_cast<cmsUInt32Number>(some));
            if (space_ == Space::kRGB) continue;
            for (std::size_t i = 0; i < some; ++i) from[4 * i + 3] = 255;
        }
    }

private:
    ORVColourStatus Prepare(const ORVColourDescription& description, std::size_t pixelCount) {
        context_.reset(cmsCreateContext(&memoryHandler, nullptr));
        if (!context_) return ORVColourStatus::kOutOfMemory;
        const Profile profile(OpenProfile(context_.get(), description));
        const Profile srgb(cmsCreate_sRGBProfileTHR(context_.get()));
        if (!profile || !srgb || !IsUsable(profile.get(), space_)) return ORVColourStatus::kBroken;
        const auto make = [&](cmsUInt32Number flags) {
            transform_.reset(cmsCreateTransformTHR(context_.get(), profile.get(), FormatOf(space_),
                                                   srgb.get(), TYPE_RGBA_8, INTENT_PERCEPTUAL, flags));
            return transform_ != nullptr;
        };
        if (!make(cmsFLAGS_NOOPTIMIZE)) return ORVColourStatus::kBroken;
        if (space_ == Space::kGrey) MakeGreys();
        if (IsSame()) return ORVColourStatus::kSame;
        if (space_ != Space::kGrey && pixelCount >= kManyPixels && !make(0)) return ORVColourStatus::kBroken;
        return ORVColourStatus::kConverted;
    }

    void MakeGreys() {
        std::array<std::uint8_t, 256> values{};
        for (std::size_t i = 0; i < values.size(); ++i) values[i] = static_cast<std::uint8_t>(i);
        cmsDoTransform(transform_.get(), values.data(), greys_.data(), 256);
    }

    bool IsSame() const {
        const std::vector<std::uint8_t> colours = SampleColours(space_);
        std::vector<std::uint8_t> converted = colours;
        Convert(converted.data(), converted.size() / 4);
        return !colours.empty() && std::equal(colours.begin(), colours.end(), converted.begin(),
                                              [](int a, int b) { return std::abs(a - b) <= kSameWithin; });
    }

    Space space_ = Space::kRGB;
    Context context_;
    Transform transform_;  // destroyed before its context
    std::array<std::array<std::uint8_t, 4>, 256> greys_{};
};

}  // namespace

extern "C" __attribute__((visibility("default"))) ORVColourStatus orvCreateColourConversion(
    const ORVColourDescription& description, std::size_t pixelCount, ORVColourConversion** conversion) {
    *conversion = nullptr;
    try {
        auto made = std::make_unique<LcmsConversion>();
        const ORVColourStatus status = made->Open(description, pixelCount);
        if (status == ORVColourStatus::kConverted) *conversion = made.release();
        return status;
    } catch (const std::bad_alloc&) {
        return ORVColourStatus::kOutOfMemory;
    }
}
static_assert(std::is_same_v<decltype(&orvCreateColourConversion), ColourFactory>);
