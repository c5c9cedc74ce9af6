// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/visualization/colours/colour_conversion.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// Largest colour profile that is read, in bytes. Profiles of printing presses have two or three megabytes.
inline constexpr std::size_t kLongestProfile = std::size_t{8} << 20U;

/// The remark for the status of a conversion.
inline ORVImageRemark RemarkOn(ORVColourStatus status) {
    switch (status) {
        case ORVColourStatus::kBroken: return ORVImageRemark::kBrokenProfile;
        case ORVColourStatus::kMissing: return ORVImageRemark::kNotConverted;
        case ORVColourStatus::kSame:
        case ORVColourStatus::kConverted:
        case ORVColourStatus::kOutOfMemory: break;
    }
    return ORVImageRemark::kNone;
}
