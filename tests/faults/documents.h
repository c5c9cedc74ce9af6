// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

/// One of everything that allocates: every element, every kind of picture, texts longer than strings keep in
/// place, two pages.
std::string DocumentOfEverything();

/// A line with so many corners that a page of it is a few hundred kilobytes.
std::string LargeDocument();

/// A document in which that of everything is embedded.
std::string EmbeddingDocument();
