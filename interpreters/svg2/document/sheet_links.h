// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/system/ORVUnicodeString.h"

namespace svg2 {

/// A style sheet outside its document.
struct OuterSheet {
    std::string text;
    std::string media;  ///< media queries it applies to; empty for all media
};

/// Reads the style sheets linked by "xml-stylesheet" instructions before the root, from data URIs and from
/// files that the access policy allows. Alternate sheets and languages other than CSS are skipped. In UTF-16
/// and UTF-32 documents none are found.
/// @param path  path of the document; may be empty
/// @param lost  receives the references that cannot be read, unless null
std::vector<OuterSheet> ReadOuterSheets(std::string_view document, const ORVUnicodeString& path,
                                        std::vector<std::string>* lost);

}  // namespace svg2
