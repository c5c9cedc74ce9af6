// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/system/ORVUnicodeString.h"

namespace svg2 {

/// The bytes of a data URI. @return false when it is none, or is damaged
bool ReadDataUri(std::string_view uri, std::string& bytes);

/// The bytes that a reference out of the document leads to: of a data URI, or of a file that the access
/// policy allows. Nothing is fetched from elsewhere.
/// @param documentPath  that relative references are resolved against; may be empty
/// @return false when there are none
bool ReadOuterFile(std::string_view reference, const ORVUnicodeString& documentPath, std::string& bytes);

}  // namespace svg2
