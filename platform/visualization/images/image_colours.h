// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/visualization/colours/colour_conversion.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// Profiles of more bytes are not read. Those of presses have two or three megabytes.
inline constexpr std::size_t kLongestProfile = std::size_t{8} << 20U;

/// What is to be remarked when a conversion was asked for.
inline ORVImageRemark RemarkOn(ORVColourStatus status) {
    switch (status) {
        case ORVColourStatus::kBroken: return ORVImageRemark::kBrokenProfile;
        case ORVColourStatus::kMissing: return ORVImageRemark::kNotConverted;
        case ORVColourStatus::kSame:
        case ORVColourStatus::kConverted:
        case ORVColourStatus::kMemorySpent: break;
    }
    return ORVImageRemark::kNone;
}
