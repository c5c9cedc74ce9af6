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

/// A font embedded in or referenced by a document, with its description.
struct ORVDocumentFont {
    std::string bytes;   ///< TrueType, OpenType, WOFF or WOFF2
    std::string family;  ///< family name given by the document
    int weight = 400;    ///< weight given by the document, 1 to 1000
    bool isItalic = false;
    /// Code points that the font is used for, as first and last of each range; empty for all that it
    /// contains.
    std::vector<std::pair<char32_t, char32_t>> ranges = {};
};

/// Opens a font of a document. It is not added to the catalogue and is destroyed with its last owner. WOFF is
/// decompressed within the limits of ORVPrintLimits.
/// @return null when the data contain no usable font
ORV_PLATFORM_EXPORT std::shared_ptr<const ORVFontFace> ORVOpenDocumentFont(ORVDocumentFont font);

/// The instance of a document's variable font that matches a query.
struct ORVVariedDocumentFace {
    std::shared_ptr<const ORVFontFace> face;  ///< a new face; null when the original face is to be used
    bool isSlanted = false;                   ///< slanted by one of its axes
    bool dependsOnSize = false;
};
/// @param face   created by ORVOpenDocumentFont; the new face keeps it alive
/// @param query  its `families` are ignored
ORV_PLATFORM_EXPORT ORVVariedDocumentFace ORVVaryDocumentFont(const ORVFontFace& face,
                                                              const ORVFontQuery& query);
