// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/growing_bytes.h"

/// How far packed input may grow.
struct UnpackLimits {
    std::size_t size = std::size_t{1} << 30U;       ///< bytes of the unpacked document
    std::size_t ratio = 250;                        ///< unpacked bytes for one packed byte ...
    std::size_t freeSize = std::size_t{16} << 20U;  ///< ... once there are more than this many

    /// Those of ORVPrintLimits at this moment.
    ORV_PLATFORM_EXPORT static UnpackLimits InForce();
};

enum class UnpackResult {
    kUnpacked,
    kDamaged,    ///< cut off, altered, or followed by something else
    kOverLimit,  ///< stopped at a limit
};

/// Whether bytes begin as gzip data does. No XML document begins so, in whatever encoding.
ORV_PLATFORM_EXPORT bool IsGzip(std::string_view bytes);

/// Unpacks gzip data: one member or several, one after the other, zeros behind them allowed. Checksums are
/// verified. Memory never holds more than half as much again as was unpacked and four times the packed bytes,
/// and what was unpacked stays within the limits.
/// @param bytes  receives the content; left in no particular state on failure
/// @param error  receives what is wrong, worded to follow the input's name
ORV_PLATFORM_EXPORT UnpackResult UnpackGzip(std::string_view packed, const UnpackLimits& limits,
                                            GrowingBytes& bytes, std::string& error);
