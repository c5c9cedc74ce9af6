// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintPreferences.h"

/// Overrides the preferences of the process in the calling thread for the lifetime of this object.
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
