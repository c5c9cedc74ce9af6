// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/print/ORVPrintFilter.h"

/// Writes a filter without inputs as the attributes and content of a "filter" element, in the filter's user
/// space.
/// @param everywhere  replaces an infinite region, in user units
/// @return text from the attributes to the end of the element
std::string WriteSvgFilter(const ORVPrintFilter& filter, const ORVMathBox2D& everywhere);
