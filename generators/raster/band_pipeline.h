// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "generators/raster/ORVBandSink.h"
#include "generators/raster/display_list.h"
#include "generators/raster/paint_budget.h"

/// Renders the bands of a page in several threads and passes them to a sink from top to bottom.
/// @param info     the page, with the rows of a band set
/// @param threads  at least 1
/// @param budget   shared by all pages; kTooMuchToPaint when it is used up
/// @param failure  receives the error, unless the sink reports it
/// @return 1, or a generator status
[[nodiscard]] int ORVDrawBands(const DisplayList& list, const RasterPageInfo& info, unsigned int threads,
                               PaintBudget& budget, ORVBandSink& sink, ORVFailure& failure);

/// Rows of a band for pages of this width. It depends on nothing else, so the output does not either.
int ORVRowsOfBand(int width);
