// SPDX-License-Identifier: Apache-2.0

// Copying, destroying and dumping models when memory is refused.

#include <gtest/gtest.h>

#include <cstdio>
#include <functional>
#include <new>
#include <string>
#include <utility>

#include "library/dump/json_writer.h"
#include "library/dump/model_dump.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintModule.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVRef.h"
#include "tests/faults/allocation_trials.h"
#include "tests/faults/documents.h"
#include "tests/faults/failing_allocator.h"
#include "tests/support/model_sketch.h"
#include "tests/support/scratch_folder.h"

namespace {

/// Calls a function with the model that an interpreter has built.
class ModelUse final : public ORVPrintModelInspector {
public:
    explicit ModelUse(std::function<void(const ORVPrtModel&)> use) : use_(std::move(use)) {}
    void Inspect(const ORVPrtModel& model) override { use_(model); }

private:
    std::function<void(const ORVPrtModel&)> use_;
};

void UseModel(const std::function<void(const ORVPrtModel&)>& use) {
    const Input input(kReadRows[0]);
    std::string error;
    const auto interpreter = ORVPrintModule::CreateInterpreter("SVG", input.Get(), error);
    ASSERT_TRUE(interpreter);
    ModelUse inspector(use);
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&inspector);
    EXPECT_EQ(interpreter->Print(nullptr, parameters), 1);
}

TEST(ModelFaults, DuplicateIsWholeOrNull) {
    UseModel([](const ORVPrtModel& model) {
        const ORVPrtGraphicPrimitiveElt& page = *model.GetImages()->front();
        ORVRef<ORVPrtGraphicPrimitiveElt> duplicate;
        const std::string expected = SketchOf(page);
        WithEachRequestRefused(
            "duplicate", [&] { duplicate = ORVRef<ORVPrtGraphicPrimitiveElt>(page.Duplicate()); },
            [&] {
                EXPECT_TRUE(duplicate || FailingAllocator::GetRefused() > 0);
                EXPECT_TRUE(!duplicate || SketchOf(*duplicate) == expected);
                duplicate = nullptr;
            });
    });
}

/// A chain of nested groups. Each of them has `others` further, empty groups after the nested one.
ORVRef<ORVPrtGroupElt> Chain(std::size_t length, std::size_t others) {
    ORVRef<ORVPrtGroupElt> top(new ORVPrtGroupElt);
    for (std::size_t i = 1; i < length; ++i) {
        const ORVRef<ORVPrtGroupElt> above(new ORVPrtGroupElt);
        above->AddChild(top.get());
        for (std::size_t other = 0; other < others; ++other)
            above->AddChild(ORVRef<ORVPrtGroupElt>(new ORVPrtGroupElt).get());
        top = above;
    }
    return top;
}

TEST(ModelFaults, TreesGoWithoutMemory) {
    struct Row {
        std::size_t length, others;
    };
    for (const Row& row : {Row{1, 0}, Row{100'000, 0}, Row{100'000, 1}, Row{2, 100'000}, Row{1'000, 200}}) {
        const std::int64_t before = FailingAllocator::GetLiveBlocks();
        ORVRef<ORVPrtGroupElt> tree = Chain(row.length, row.others);
        FailingAllocator::Begin(1, Refuses::kAllFrom);
        tree = nullptr;
        FailingAllocator::End();
        EXPECT_EQ(FailingAllocator::GetLiveBlocks(), before)
            << row.length << " deep, " << row.others << " more";
    }
}

// The dump is the command's: it may throw std::bad_alloc, which the command reports.
TEST(ModelFaults, DumpIsWholeOrTellsThatItIsNot) {
    UseModel([](const ORVPrtModel& model) {
        const ScratchFolder folder;
        const std::string path = folder.PathOf("dump.json");
        std::string expected;
        bool isWritten = false;
        WithEachRequestRefused(
            "dump",
            [&] {
                isWritten = false;
                std::FILE* const file = std::fopen(path.c_str(), "wb");
                try {
                    JsonWriter json(file);
                    DumpPages(model, json);
                    isWritten = json.Flush();
                } catch (const std::bad_alloc&) {
                }
                std::fclose(file);
            },
            [&] {
                const std::string dump = FilesOf(folder.Path())["dump.json"];
                if (expected.empty()) expected = dump;
                EXPECT_GT(expected.size(), 1000U);
                EXPECT_TRUE(!isWritten || dump == expected);
            });
    });
}

}  // namespace
