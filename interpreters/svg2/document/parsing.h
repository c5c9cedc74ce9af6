// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include "interpreters/svg2/document/Document.h"

namespace svg2 {

/// Parses a drawing, compressed or not. Throws std::bad_alloc only.
/// @return null if it is not well-formed
std::unique_ptr<Document> ParseDocument(std::string bytes);

}  // namespace svg2
