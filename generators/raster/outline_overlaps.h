// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>

#include "generators/raster/raster_outline.h"
#include "generators/raster/stroke_pen.h"

// Outlines whose parts overlap within pixels, such that the sum of their coverage is wrong: where they
// coincide, and not only where they cross.

/// Limits of such outlines, beyond which their overlaps are not resolved, which is slow: the number of verbs,
/// and the sum of the rows of pixels that each of them crosses.
inline constexpr std::uint32_t kMostOverlapVerbs = 4096;
inline constexpr float kMostOverlapRows = 65536.0F;

/// A hash table of edges, by their ends.
using SeenEdges = std::vector<const RasterPoint*>;

/// True if contours share an edge in the same direction: one lies on each side of it, with opposite windings,
/// or both lie on the same side. False beyond the limits.
/// @param seen  memory to reuse
bool ORVRepeatsEdges(const RasterGeometry& geometry, SeenEdges& seen);

/// True if much of a line runs back beside itself, closer than the pen is wide: after a sharp turn, or after
/// two turns close to each other. False for dashed lines, and beyond the limits.
bool ORVTurnsBack(const RasterGeometry& geometry, const StrokePen& pen);
