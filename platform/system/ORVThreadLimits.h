// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>

#include "platform/system/ORVBaseObject.h"
#include "platform/system/ORVPrintLimits.h"

/// Values of all limits, for hosts that print with different ones in different threads. It starts with those
/// for files that nobody has checked.
class ORV_PLATFORM_EXPORT ORVPrintLimitValues {
public:
    ORVPrintLimitValues();
    /// The value of a limit.
    std::uint64_t Get(ORVPrintLimit limit) const { return values_[static_cast<std::size_t>(limit)]; }
    /// A value beyond the greatest becomes that.
    void Set(ORVPrintLimit limit, std::uint64_t value);

private:
    std::array<std::uint64_t, orvprint::kPrintLimitCount> values_{};
};

/// Has ORVPrintLimits::Get answer in the calling thread with values of its own, for as long as this object
/// lives; ORVPrintLimits::Set still speaks of the process. Threads that generators start ask for no limit.
class ORV_PLATFORM_EXPORT ORVThreadLimits {
public:
    /// @param values  must outlive this object; null for those of the process
    explicit ORVThreadLimits(const ORVPrintLimitValues* values);
    ~ORVThreadLimits();
    ORVThreadLimits(const ORVThreadLimits&) = delete;
    ORVThreadLimits& operator=(const ORVThreadLimits&) = delete;

private:
    const ORVPrintLimitValues* const before_;
};
