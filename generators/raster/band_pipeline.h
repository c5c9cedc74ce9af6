// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/raster/ORVBandSink.h"
#include "generators/raster/display_list.h"
#include "generators/raster/paint_budget.h"

/// Draws the bands of a page in several threads and hands them to a sink from the top.
/// @param info     of the page, with the rows of a band
/// @param threads  at least 1
/// @param budget   of all pages; kTooMuchToPaint when it is used up
/// @param failure  what went wrong, unless the sink says it
/// @return 1, or a generator status
[[nodiscard]] int ORVDrawBands(const DisplayList& list, const RasterPageInfo& info, unsigned int threads,
                               PaintBudget& budget, ORVBandSink& sink, ORVFailure& failure);

/// Rows of a band on pages of this width. Depends on nothing else, so that neither does the output.
int ORVRowsOfBand(int width);
