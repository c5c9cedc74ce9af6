// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "platform/system/ORVBaseObject.h"

/// What a host says of its user before documents are read: interpreters of standard SVG ask for it. To be set
/// while no interpreter works.
struct ORV_PLATFORM_EXPORT ORVPrintPreferences {
    /// Size of text that states none, in px, and of "medium".
    static constexpr double kDefaultFontSize = 12.0;

    /// Languages that the user reads, such as "en-GB" or "de", in lower case. Empty for that of the locale.
    std::vector<std::string> languages;
    double fontSize = kDefaultFontSize;  ///< greater than 0

    /// Those of the process, or of an ORVThreadPreferences of the calling thread.
    static const ORVPrintPreferences& Get();
    /// Replaces them.
    static void Set(ORVPrintPreferences preferences);
};
