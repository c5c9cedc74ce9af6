// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/system/ORVBaseObject.h"

class ORVFontFace;
struct ORVFontQuery;

/// A font that a document brings, and what the document says of it.
struct ORVDocumentFont {
    std::string bytes;   ///< TrueType, OpenType, WOFF or WOFF2
    std::string family;  ///< that the document gives it
    int weight = 400;    ///< likewise, 1 to 1000
    bool isItalic = false;
    /// Code points, first and last of each range, that it is for; none for all that it has.
    std::vector<std::pair<char32_t, char32_t>> ranges = {};
};

/// Opens a font that a document brings: nobody else finds it, and it goes with its last owner. WOFF is
/// unpacked within the limits of ORVPrintLimits for packed input.
/// @return null where it holds no font that can be used
ORV_PLATFORM_EXPORT std::shared_ptr<const ORVFontFace> ORVOpenDocumentFont(ORVDocumentFont font);

/// The look of a document's face that a query asks for, where the face varies.
struct ORVVariedDocumentFace {
    std::shared_ptr<const ORVFontFace> face;  ///< of its own; null for the face as it is
    bool isSlanted = false;                   ///< by one of its axes
    bool dependsOnSize = false;
};
/// @param face   of ORVOpenDocumentFont; the new one keeps it
/// @param query  its families do not count
ORV_PLATFORM_EXPORT ORVVariedDocumentFace ORVVaryDocumentFont(const ORVFontFace& face,
                                                              const ORVFontQuery& query);
