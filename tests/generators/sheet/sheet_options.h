// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>

#include "generators/sheet/ORVSheetGenerator.h"
#include "tests/generators/drawing_calls.h"

/// Draws a page filled by a rectangle.
inline void DrawFilledPage(ORVPrintGenerator& generator, double width, double height,
                           unsigned int number = 1) {
    ASSERT_EQ(generator.BeginPage(PageInfo(width, height, number)), 1);
    ASSERT_EQ(FillRectangle(generator, 0, 0, width, height), 1);
    ASSERT_EQ(generator.EndPage(), 1);
}

/// Options for paper with equal margins.
inline ORVSheetOptions OnPaper(double width, double height, double margin = 0.0) {
    ORVSheetOptions options;
    options.layout.paper = ORVPaperSize{width, height};
    options.layout.margins = ORVSheetMargins{margin, margin, margin, margin};
    return options;
}

/// Options for a poster of such sheets.
inline ORVSheetOptions Poster(double width, double height, double margin, double overlap) {
    ORVSheetOptions options = OnPaper(width, height, margin);
    options.layout.isPoster = true;
    options.layout.overlap = overlap;
    return options;
}
