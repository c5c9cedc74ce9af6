// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintPath.h"

/// What a path is fitted for: an inside keeps its area, an outline keeps its course.
enum class PathUse { kFill, kStroke };

/// Fits a path into the coordinates that a drawing library can hold, by cutting off what lies far outside.
/// @param toDevice  the path's map to the library's coordinates
/// @param limit     greatest absolute coordinate there
/// @param storage   holds the result when something had to be cut; its curves are then polylines
/// @return `path` itself when all of it lies within the limit, else `storage`
const ORVPrintPath& FitPathToRange(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, double limit,
                                   PathUse use, ORVPrintPath& storage);
