// SPDX-License-Identifier: Apache-2.0
#include "platform/system/released_pages.h"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>

namespace {

/// A private mapping of several pages, filled with the letter x.
class ReleasedPagesTest : public testing::Test {
protected:
    ReleasedPagesTest()
        : bytes_(static_cast<char*>(
              mmap(nullptr, kPages * page_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
        std::fill_n(bytes_, kPages * page_, 'x');
    }
    ~ReleasedPagesTest() override { munmap(bytes_, kPages * page_); }

    std::size_t CountKept() const {
        return static_cast<std::size_t>(std::count(bytes_, bytes_ + kPages * page_, 'x'));
    }

    static constexpr std::size_t kPages = 16;
    const std::size_t page_ = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    char* const bytes_;
};

TEST_F(ReleasedPagesTest, AreThoseOfWholePages) {
    ORVReleasePages(bytes_ + 5, 12 * page_);  // begins and ends within a page: 11 whole ones
    EXPECT_EQ(CountKept(), 5 * page_);
    EXPECT_EQ(bytes_[page_ - 1], 'x');
    EXPECT_EQ(bytes_[page_], '\0');
    EXPECT_EQ(bytes_[12 * page_ - 1], '\0');
    EXPECT_EQ(bytes_[12 * page_], 'x');
}

TEST_F(ReleasedPagesTest, AreAllWhenTheyAreWholePages) {
    ORVReleasePages(bytes_, kPages * page_);
    EXPECT_EQ(CountKept(), 0U);
}

TEST_F(ReleasedPagesTest, CanBeWrittenAgain) {
    ORVReleasePages(bytes_, kPages * page_);
    std::fill_n(bytes_, kPages * page_, 'x');
    EXPECT_EQ(CountKept(), kPages * page_);
}

TEST_F(ReleasedPagesTest, AreNoneWhenThereAreFew) {
    ORVReleasePages(bytes_, (std::size_t{16} << 10U) - 1);
    ORVReleasePages(bytes_, 0);
    ORVReleasePages(nullptr, 0);
    EXPECT_EQ(CountKept(), kPages * page_);
}

}  // namespace
