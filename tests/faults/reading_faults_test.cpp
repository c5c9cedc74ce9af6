// SPDX-License-Identifier: Apache-2.0

// Reading and building when memory is refused: nothing is thrown to the host, and nothing is missing unless
// the status or the model reports it.

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>

#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintModule.h"
#include "tests/faults/allocation_trials.h"
#include "tests/faults/documents.h"
#include "tests/support/named_rows.h"

namespace {

class ReadingFaults : public testing::TestWithParam<ReadRow> {};

TEST_P(ReadingFaults, EndInAStatus) {
    const ReadRow& row = GetParam();
    const Input input(row);
    const std::string name = row.interpreter;
    const ORVUnicodeString path("a/path/of/some/length.svg");
    std::string expected;
    std::unique_ptr<ORVPrintInterpreter> interpreter;
    std::string error;
    std::optional<int> built;

    WithEachRequestRefused(
        row.name,
        [&] {
            built.reset();
            interpreter = ORVPrintModule::CreateInterpreter(name, input.Get(), error);
            if (!interpreter) return;
            ORVPrintModule::SetCurrentPath(name, *interpreter, path);
            unsigned int count = 0;
            built = interpreter->GetPageCount(count);
            float width = 0.0F, height = 0.0F;
            interpreter->GetSize(width, height);
            ORVUnicodeString title;
            interpreter->GetTitle(title);
        },
        [&] {
            if (!interpreter) {
                EXPECT_FALSE(error.empty());
            } else if (expected.empty()) {
                ASSERT_EQ(built, 1);
                expected = Sketch(*interpreter).GetSketch();
                ASSERT_GT(expected.size(), 500U);
            } else {
                // A failed build leaves no pages. Otherwise parts may be missing, and the model reports this.
                const Sketcher made = Sketch(*interpreter);
                EXPECT_TRUE(made.GetSketch() == expected ||
                            (*built == 1 ? made.IsOutOfMemory() : made.GetSketch().empty()))
                    << "built: " << *built << "\n"
                    << DifferenceOf(expected, made.GetSketch());
            }
            interpreter.reset();
            std::string().swap(error);
            // The same input can be used again.
            const auto again = ORVPrintModule::CreateInterpreter(name, input.Get(), error);
            ASSERT_TRUE(again) << error;
            const Sketcher made = Sketch(*again);
            EXPECT_TRUE(made.GetSketch() == expected) << DifferenceOf(expected, made.GetSketch());
            EXPECT_FALSE(made.IsOutOfMemory());
        });
}

INSTANTIATE_TEST_SUITE_P(Inputs, ReadingFaults, testing::ValuesIn(kReadRows), kNameOfRow);

}  // namespace
