// SPDX-License-Identifier: Apache-2.0
#include "tests/support/sample_profiles.h"

#include <array>

#include <lcms2.h>

namespace {

/// Serialises and closes a profile.
std::string Save(cmsHPROFILE profile) {
    cmsUInt32Number size = 0;
    cmsSaveProfileToMem(profile, nullptr, &size);
    std::string bytes(size, '\0');
    cmsSaveProfileToMem(profile, bytes.data(), &size);
    cmsCloseProfile(profile);
    return bytes;
}

// Converts inks to the profile's connection space: L, a and b of 16 bits.
int SampleInks(const cmsUInt16Number inks[], cmsUInt16Number lab[], void* /*cargo*/) {
    // Paper is white; full coverage of the first ink is the red of sRGB in that space.
    const double share = inks[0] / 65535.0;
    const cmsCIELab colour{100.0 - share * (100.0 - 54.29), share * 80.81, share * 69.89};
    cmsFloat2LabEncoded(lab, &colour);
    return 1;
}

}  // namespace

std::string SrgbProfile() { return Save(cmsCreate_sRGBProfile()); }

std::string SwappedProfile() {
    const cmsCIExyY white{0.3127, 0.3290, 1.0};
    const cmsCIExyYTRIPLE primaries{{0.15, 0.06, 1.0}, {0.30, 0.60, 1.0}, {0.64, 0.33, 1.0}};
    const std::array<cmsFloat64Number, 5> parameters{2.4, 1.0 / 1.055, 0.055 / 1.055, 1.0 / 12.92, 0.04045};
    cmsToneCurve* curve = cmsBuildParametricToneCurve(nullptr, 4, parameters.data());
    std::array<cmsToneCurve*, 3> curves{curve, curve, curve};
    std::string bytes = Save(cmsCreateRGBProfile(&white, &primaries, curves.data()));
    cmsFreeToneCurve(curve);
    return bytes;
}

std::string LinearGreyProfile() {
    cmsToneCurve* curve = cmsBuildGamma(nullptr, 1.0);
    std::string bytes = Save(cmsCreateGrayProfile(cmsD50_xyY(), curve));
    cmsFreeToneCurve(curve);
    return bytes;
}

std::string RedInkProfile() {
    cmsHPROFILE profile = cmsCreateProfilePlaceholder(nullptr);
    cmsSetProfileVersion(profile, 4.3);
    cmsSetDeviceClass(profile, cmsSigOutputClass);
    cmsSetColorSpace(profile, cmsSigCmykData);
    cmsSetPCS(profile, cmsSigLabData);
    cmsPipeline* pipeline = cmsPipelineAlloc(nullptr, 4, 3);
    cmsStage* table = cmsStageAllocCLut16bit(nullptr, 9, 4, 3, nullptr);
    cmsStageSampleCLut16bit(table, SampleInks, nullptr, 0);
    for (cmsStage* stage :
         {cmsStageAllocToneCurves(nullptr, 4, nullptr), table, cmsStageAllocToneCurves(nullptr, 3, nullptr)})
        cmsPipelineInsertStage(pipeline, cmsAT_END, stage);
    cmsWriteTag(profile, cmsSigAToB0Tag, pipeline);
    cmsPipelineFree(pipeline);
    return Save(profile);
}
