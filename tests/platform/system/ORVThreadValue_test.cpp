// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVThreadValue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace {

std::atomic<int> alive{0};

struct Counted {
    Counted() { ++alive; }
    ~Counted() { --alive; }
    Counted(const Counted&) = delete;
    Counted& operator=(const Counted&) = delete;
    int number = 7;
};

TEST(ThreadValueTest, IsMadeAtItsFirstUse) {
    ORVThreadValue<Counted> value;
    EXPECT_EQ(value.Find(), nullptr);
    EXPECT_EQ(alive, 0);
    EXPECT_EQ(value.Get().number, 7);
    EXPECT_EQ(alive, 1);
    value.Get().number = 8;
    EXPECT_EQ(value.Find(), &value.Get());
    EXPECT_EQ(value.Find()->number, 8);
}

TEST(ThreadValueTest, BelongsToItsThreadAndEndsWithIt) {
    ORVThreadValue<Counted> value;
    value.Get().number = 1;
    std::thread([&] {
        EXPECT_EQ(value.Find(), nullptr);
        EXPECT_EQ(value.Get().number, 7);
        value.Get().number = 2;
        EXPECT_EQ(alive, 2);
    }).join();
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(value.Get().number, 1);
}

TEST(ThreadValueTest, EndsWithTheObject) {
    {
        ORVThreadValue<Counted> first, second;
        first.Get().number = 1;
        second.Get().number = 2;
        EXPECT_EQ(first.Get().number, 1);
        EXPECT_EQ(alive, 2);
    }
    EXPECT_EQ(alive, 0);
}

}  // namespace
