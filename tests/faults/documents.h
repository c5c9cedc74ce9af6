// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// A document with everything that allocates memory: all elements, all kinds of images, texts too long for
/// the small-string buffer, two pages.
std::string DocumentOfEverything();

/// A polyline with so many vertices that its page takes a few hundred kilobytes.
std::string LargeDocument();

/// A document in which DocumentOfEverything() is embedded.
std::string EmbeddingDocument();
