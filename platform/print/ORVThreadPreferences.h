// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintPreferences.h"

/// Has ORVPrintPreferences::Get answer in the calling thread with other preferences than those of the
/// process, for as long as this object lives.
class ORV_PLATFORM_EXPORT ORVThreadPreferences {
public:
    /// @param preferences  must outlive this object
    explicit ORVThreadPreferences(const ORVPrintPreferences& preferences);
    ~ORVThreadPreferences();
    ORVThreadPreferences(const ORVThreadPreferences&) = delete;
    ORVThreadPreferences& operator=(const ORVThreadPreferences&) = delete;

private:
    const ORVPrintPreferences* const before_;
};
