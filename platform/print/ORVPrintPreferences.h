// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/system/ORVBaseObject.h"

/// Preferences of the user, used by interpreters of standard SVG. The host must set them while no interpreter
/// is working.
struct ORV_PLATFORM_EXPORT ORVPrintPreferences {
    /// Default font size in px, which is also the size of the CSS keyword "medium".
    static constexpr double kDefaultFontSize = 12.0;

    /// Languages that the user reads, in lower case, such as "en-gb" or "de". Empty for the language of the
    /// locale.
    std::vector<std::string> languages;
    double fontSize = kDefaultFontSize;  ///< font size in px, greater than 0

    /// The preferences of the calling thread's ORVThreadPreferences, if there is one, else those of the
    /// process.
    static const ORVPrintPreferences& Get();
    /// Sets the preferences of the process.
    static void Set(ORVPrintPreferences preferences);
};
