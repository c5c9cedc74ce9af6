// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/xml/ORVXmlPlace.h"

/// Where an attribute of an element is written, since a start tag may take many lines.
/// @param document   the text that was parsed
/// @param element    place of the start tag
/// @param attribute  its name as written
/// @return the place of the attribute's name; that of the element where the document's bytes do not tell,
///         as for attributes from entities, far down a long tag, or in encodings that are no superset of
///         ASCII
ORVXmlPlace FindAttributePlace(std::string_view document, const ORVXmlPlace& element,
                               std::string_view attribute);
