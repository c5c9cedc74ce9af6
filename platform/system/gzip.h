// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/growing_bytes.h"

/// Limits on the decompressed size.
struct UnpackLimits {
    std::size_t size = std::size_t{1} << 30U;       ///< largest decompressed size, in bytes
    std::size_t ratio = 250;                        ///< decompressed bytes allowed per compressed byte ...
    std::size_t freeSize = std::size_t{16} << 20U;  ///< ... once there are more decompressed bytes than this

    /// The current values of ORVPrintLimits.
    ORV_PLATFORM_EXPORT static UnpackLimits InForce();
};

enum class UnpackResult {
    kUnpacked,
    kDamaged,    ///< truncated, corrupt, or followed by other data
    kOverLimit,  ///< stopped at a limit
};

/// Whether the bytes start with the gzip signature, which no XML document does in any encoding.
ORV_PLATFORM_EXPORT bool IsGzip(std::string_view bytes);

/// Decompresses gzip data: one or more members in sequence, optionally followed by zeros. Verifies checksums.
/// Allocates at most 1.5 times the decompressed size plus four times the compressed size; the decompressed
/// size stays within the limits.
/// @param bytes  receives the content; unspecified on failure
/// @param error  receives the error message, worded to follow the input's name
ORV_PLATFORM_EXPORT UnpackResult UnpackGzip(std::string_view packed, const UnpackLimits& limits,
                                            GrowingBytes& bytes, std::string& error);
