// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "platform/system/ORVUnicodeString.h"

namespace svg2 {

/// Decodes a data URI.
/// @return false if it is not a data URI or is malformed
bool ReadDataUri(std::string_view uri, std::string& bytes);

/// Reads the bytes of an external reference: a data URI, or a file that the access policy allows. There is no
/// network access.
/// @param documentPath  base of relative references; may be empty
/// @return false if they cannot be read
bool ReadOuterFile(std::string_view reference, const ORVUnicodeString& documentPath, std::string& bytes);

}  // namespace svg2
