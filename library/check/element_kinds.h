// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/xml/vocabulary.h"

// Kinds of elements, as the walk of the check tells them apart.

/// What draws the elements it holds, or keeps them for others to draw.
bool IsContainer(ElementName name);
/// What is drawn by references to it only, wherever it stands.
bool IsDefinition(ElementName name);
/// What tells of its parent in words.
bool IsDescription(ElementName name);
/// What markers stand on.
bool HasVertices(ElementName name);
