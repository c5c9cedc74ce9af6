// SPDX-License-Identifier: Apache-2.0
#include "platform/print/drawing_budget.h"

#include <gtest/gtest.h>

#include <span>

#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPath.h"
#include "tests/generators/drawing_calls.h"
#include "tests/platform/print/make_primitives.h"

namespace {

// Each repeat allowed adds the area of a square of 64 units. A document without primitives adds nothing.
TEST(DrawingBudgetTest, TakesAsMuchAreaAsTheRepeatsMayPaint) {
    const ORVRef<ORVPrtModel> model(new ORVPrtModel);
    const ORVRef<ORVPrtImageElt> page(new ORVPrtImageElt);
    page->SetSize(1000.0, 1000.0);
    const ORVPrtImageElt* const pages[]{page.get()};
    ORVPrintParameters parameters;
    parameters.SetRepeatLimit(2);
    ORVPrintDrawingBudget budget(*model, pages, parameters, 0);
    const ORVPrintPath square = RectanglePath(0.0, 0.0, 64.0, 64.0), dot = RectanglePath(0.0, 0.0, 1.0, 1.0);
    EXPECT_EQ(budget.TakePath(*page, square, {}, nullptr), 1);
    EXPECT_EQ(budget.TakePath(*page, square, ORVMathAffine2D::Translation(5000.0, 0.0), nullptr), 1)
        << "what lies off the page costs nothing";
    EXPECT_EQ(budget.TakePath(*page, square, {}, nullptr), 1) << "all that there is";
    EXPECT_EQ(budget.TakePath(*page, dot, {}, nullptr), ORVPrintModelRender::kTooManyRepeats);
}

}  // namespace
