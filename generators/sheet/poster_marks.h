// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/sheet/sheet_layout.h"

class ORVPrintGenerator;

/// Draws what helps to put the sheets of a poster together, all of it outside of the drawing: marks where to
/// cut, at the corners; circles with a cross in the middle of overlaps, which lie upon each other on
/// neighbouring sheets; and the sheet's label. What has no room in the margins is left out.
/// @return 1, or what the generator returned when it was not 1
[[nodiscard]] int ORVDrawPosterMarks(ORVPrintGenerator& generator, const ORVPoster& poster, unsigned int row,
                                     unsigned int column, const std::string& label);
