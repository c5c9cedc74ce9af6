// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/system/ORVUnicodeString.h"

namespace svg2 {

/// A style sheet that stands outside of its document.
struct OuterSheet {
    std::string text;
    std::string media;  ///< queries that it is for; empty for any
};

/// Reads the style sheets that a document names in front of its root, by "xml-stylesheet" instructions: from
/// data URIs, and from files that the access policy allows. Alternate sheets and those of other languages
/// than CSS are passed over. Of documents in encodings of wide units, none is found.
/// @param path  of the document; may be empty
/// @param lost  references of those that cannot be read are appended, unless it is null
std::vector<OuterSheet> ReadOuterSheets(std::string_view document, const ORVUnicodeString& path,
                                        std::vector<std::string>* lost);

}  // namespace svg2
