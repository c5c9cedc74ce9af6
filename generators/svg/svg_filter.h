// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/print/ORVPrintFilter.h"

/// Writes a filter without inputs as attributes and content of a "filter" element, in the filter's user
/// space.
/// @param everywhere  what stands for an infinite region, in user units
/// @return from the attributes on to the end of the element
std::string WriteSvgFilter(const ORVPrintFilter& filter, const ORVMathBox2D& everywhere);
