#include "apps/orvprint/process/sudden_end.h"

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

/// As of a library that promises to throw nothing, and does not keep it.
void LetNothingOut(const std::function<void()>& work) noexcept { work(); }

TEST(SuddenEndTest, LeavesNoTemporaryFile) {
    const ScratchFolder folder;
    EXPECT_EXIT(
        {
            ORVTemporaryFile file;
            if (file.Create(folder.Path() / "x.pdf") < 0) _exit(1);
            if (std::filesystem::is_empty(folder.Path())) _exit(2);
            EndSuddenly("orvprint: that is it\n");
        },
        testing::ExitedWithCode(9), "^orvprint: that is it\n$");
    EXPECT_TRUE(std::filesystem::is_empty(folder.Path()));
}

TEST(SuddenEndTest, IsThatOfSpentMemoryOnly) {
    EXPECT_EXIT(
        {
            EndSuddenlyWithoutMemory();
            LetNothingOut([] { throw std::bad_alloc(); });
        },
        testing::ExitedWithCode(9), "^orvprint: out of memory\n$");
    EXPECT_EXIT(
        {
            EndSuddenlyWithoutMemory();
            LetNothingOut([] { throw std::logic_error("a defect"); });
        },
        testing::KilledBySignal(SIGABRT), "a defect");
}

}  // namespace
