// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/immediate_exit.h"

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <new>
#include <stdexcept>

#include "generators/common/ORVTemporaryFile.h"
#include "tests/support/scratch_folder.h"

namespace {

/// Like a library function that is `noexcept`, but throws.
void LetNothingOut(const std::function<void()>& work) noexcept { work(); }

TEST(ImmediateExitTest, LeavesNoTemporaryFile) {
    const ScratchFolder folder;
    EXPECT_EXIT(
        {
            ORVTemporaryFile file;
            if (file.Create(folder.Path() / "x.pdf") < 0) _exit(1);
            if (std::filesystem::is_empty(folder.Path())) _exit(2);
            ExitImmediately("orvprint: that is it\n");
        },
        testing::ExitedWithCode(9), "^orvprint: that is it\n$");
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(ImmediateExitTest, IsThatOfFailedAllocationsOnly) {
    EXPECT_EXIT(
        {
            ExitImmediatelyWhenOutOfMemory();
            LetNothingOut([] { throw std::bad_alloc(); });
        },
        testing::ExitedWithCode(9), "^orvprint: out of memory\n$");
    EXPECT_EXIT(
        {
            ExitImmediatelyWhenOutOfMemory();
            LetNothingOut([] { throw std::logic_error("a defect"); });
        },
        testing::KilledBySignal(SIGABRT), "a defect");
}

}  // namespace
