// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "interpreters/svg2/document/Document.h"

namespace svg2 {

/// Parses the bytes of a drawing, compressed or not.
/// @return null when they are no well-formed document; what may be thrown is std::bad_alloc
std::unique_ptr<Document> ParseDocument(std::string bytes);

}  // namespace svg2
