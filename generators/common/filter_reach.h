// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/print/ORVPrintFilter.h"

/// Bounding boxes of the result of each step of a filter, in user units; empty for results that show nothing.
/// @param content  bounding box of the filtered content, in user units
std::vector<ORVMathBox2D> ORVExtentsOfFilter(const ORVPrintFilter& filter, const ORVMathBox2D& content);

/// Bounding box of the result of a filter, or a box around it, in page coordinates.
/// @param content  bounding box of the filtered content, in page coordinates
ORVMathBox2D ORVReachOfFilter(const ORVPrintFilter& filter, const ORVMathBox2D& content);
