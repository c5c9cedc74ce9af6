// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/print/ORVPrintPath.h"

/// What a path is clipped for: fills keep their area, strokes keep their course.
enum class PathUse { kFill, kStroke };

/// Clips a path to the coordinates that a drawing library can represent.
/// @param toDevice  from the path to the library's coordinates
/// @param limit     maximum absolute coordinate there
/// @param storage   receives the clipped path, with its curves flattened, if anything was cut
/// @return `path` itself if it lies within the limit, else `storage`
const ORVPrintPath& FitPathToRange(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, double limit,
                                   PathUse use, ORVPrintPath& storage);
