// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVPrintLimits.h"

/// Values of all limits, for hosts whose threads print with different limits. Initially those for untrusted
/// files.
class ORV_PLATFORM_EXPORT ORVPrintLimitValues {
public:
    ORVPrintLimitValues();
    /// The value of a limit.
    std::uint64_t Get(ORVPrintLimit limit) const { return values_[static_cast<std::size_t>(limit)]; }
    /// Sets a limit. A value above the maximum is clamped to it.
    void Set(ORVPrintLimit limit, std::uint64_t value);

private:
    std::array<std::uint64_t, orvprint::kPrintLimitCount> values_{};
};

/// Makes ORVPrintLimits::Get return other values in the calling thread for the lifetime of this object.
/// ORVPrintLimits::Set still sets the values of the process. Threads started by generators do not query
/// limits.
class ORV_PLATFORM_EXPORT ORVThreadLimits {
public:
    /// @param values  must outlive this object; null for the values of the process
    explicit ORVThreadLimits(const ORVPrintLimitValues* values);
    ~ORVThreadLimits();
    ORVThreadLimits(const ORVThreadLimits&) = delete;
    ORVThreadLimits& operator=(const ORVThreadLimits&) = delete;

private:
    const ORVPrintLimitValues* const before_;
};
