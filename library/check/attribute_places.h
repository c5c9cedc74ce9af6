// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/xml/ORVXmlPlace.h"

/// Finds the line and column of an attribute, since a start tag may span many lines.
/// @param document   the text that was parsed
/// @param element    position of the start tag
/// @param attribute  name as written
/// @return the position of the attribute's name, or that of the element if it cannot be found: attributes
///         from entities, far into a long tag, or in an encoding that is not a superset of ASCII
ORVXmlPlace FindAttributePlace(std::string_view document, const ORVXmlPlace& element,
                               std::string_view attribute);
