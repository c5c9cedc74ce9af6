// SPDX-License-Identifier: Apache-2.0
#include "generators/common/generator_status.h"

#include <gtest/gtest.h>

#include <optional>

#include "platform/print/ORVPrintModelRender.h"
#include "tests/support/named_rows.h"

namespace {

using Render = ORVPrintModelRender;
using enum ORVFailureReason;

struct StatusCase {
    const char* name;
    int status;
    ORVFailureReason reason;
    std::optional<ORVPrintLimit> limit = std::nullopt;
};
class StatusTest : public testing::TestWithParam<StatusCase> {};

TEST_P(StatusTest, HasOneReason) {
    const ORVFailure failure = ORVFailureOfStatus(GetParam().status);
    EXPECT_EQ(failure.reason, GetParam().reason);
    EXPECT_EQ(failure.limit, GetParam().limit);
    EXPECT_EQ(static_cast<bool>(failure), GetParam().status != kGeneratorDone);
}

INSTANTIATE_TEST_SUITE_P(
    Statuses, StatusTest,
    testing::Values(StatusCase{"Done", kGeneratorDone, kNone}, StatusCase{"Nothing", 0, kNotDrawn},
                    StatusCase{"OfAHostsGenerator", -99, kNotDrawn},
                    StatusCase{"DrawingFailed", kDrawingFailed, kNotDrawn},
                    StatusCase{"PageTooLarge", kPageTooLarge, kNotDrawn},
                    StatusCase{"Thrown", Render::kThrown, kNotDrawn},
                    StatusCase{"OutputFailed", kOutputFailed, kUnwritable},
                    StatusCase{"LowMemory", Render::kLowMemory, kOutOfMemory},
                    StatusCase{"PageWithoutArea", Render::kPageWithoutArea, kPageWithoutArea},
                    StatusCase{"TextNotSet", Render::kTextNotSet, kTextNotSet},
                    StatusCase{"Primitives", Render::kTooManyPrimitives, kLimit, ORVPrintLimit::kDrawn},
                    StatusCase{"Pages", Render::kTooManyPages, kLimit, ORVPrintLimit::kPages},
                    StatusCase{"Repeats", Render::kTooManyRepeats, kLimit, ORVPrintLimit::kRepeats},
                    StatusCase{"ImagePixels", Render::kTooManyPixels, kLimit, ORVPrintLimit::kDocumentPixels},
                    StatusCase{"OutputPixels", kOutputTooLarge, kLimit, ORVPrintLimit::kOutputPixels},
                    StatusCase{"Painting", kTooMuchToPaint, kLimit, ORVPrintLimit::kPaintedPixels}),
    kNameOfRow);

}  // namespace
