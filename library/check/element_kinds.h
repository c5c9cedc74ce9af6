// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/xml/vocabulary.h"

// Classification of elements for the walk of the check.

/// Elements that draw their children or keep them for others to draw.
bool IsContainer(ElementName name);
/// Elements that are drawn through references only, wherever they appear.
bool IsDefinition(ElementName name);
/// Elements that describe their parent in text, such as "title".
bool IsDescription(ElementName name);
/// Elements that can have markers.
bool HasVertices(ElementName name);
