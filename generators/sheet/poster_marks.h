// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/sheet/sheet_layout.h"

class ORVPrintGenerator;

/// Draws assembly marks on a sheet of a poster, all outside the drawing: cut marks at the corners; circles
/// with a cross in the overlaps, which coincide on adjacent sheets; and the label of the sheet. Marks that do
/// not fit in the margins are omitted.
/// @return 1, or the first other result of the generator
[[nodiscard]] int ORVDrawPosterMarks(ORVPrintGenerator& generator, const ORVPoster& poster, unsigned int row,
                                     unsigned int column, const std::string& label);
