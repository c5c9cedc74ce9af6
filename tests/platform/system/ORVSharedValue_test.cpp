// SPDX-License-Identifier: Apache-2.0
#include "platform/system/ORVSharedValue.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace {

struct Pen {
    int colour = 3;
    std::string name = "plain";
    bool operator==(const Pen&) const = default;

    inline static int copies = 0;
    Pen() = default;
    Pen(const Pen& other) : colour(other.colour), name(other.name) { ++copies; }
    Pen& operator=(const Pen&) = default;
};
using SharedPen = ORVSharedValue<Pen>;

TEST(ORVSharedValue, ReadsAsTheDefaultUntilWritten) {
    const SharedPen pen;
    EXPECT_EQ(pen.Get().colour, 3);
    EXPECT_EQ(pen.Get().name, "plain");
    EXPECT_EQ(&pen.Get(), &SharedPen().Get());
}

TEST(ORVSharedValue, CopiesShareUntilOneIsWritten) {
    SharedPen first;
    first.Edit().colour = 7;
    Pen::copies = 0;
    SharedPen second = first;
    const SharedPen third = second;
    EXPECT_EQ(&first.Get(), &third.Get());
    EXPECT_EQ(Pen::copies, 0);

    second.Edit().colour = 8;
    EXPECT_EQ(Pen::copies, 1);
    EXPECT_EQ(first.Get().colour, 7);
    EXPECT_EQ(second.Get().colour, 8);
    EXPECT_EQ(third.Get().colour, 7);
    EXPECT_EQ(&first.Get(), &third.Get());

    second.Edit().name = "own";  // no longer shared, so not copied again
    EXPECT_EQ(Pen::copies, 1);
}

TEST(ORVSharedValue, SettingTheSameValueKeepsTheSharing) {
    SharedPen first;
    first.Set(&Pen::colour, 3);  // the default: nothing is allocated
    EXPECT_EQ(&first.Get(), &SharedPen().Get());
    first.Set(&Pen::colour, 5);
    SharedPen second = first;
    second.Set(&Pen::colour, 5);
    EXPECT_EQ(&first.Get(), &second.Get());
    second.Set(&Pen::name, std::string("other"));
    EXPECT_NE(&first.Get(), &second.Get());
    EXPECT_EQ(first.Get().name, "plain");
    EXPECT_EQ(second.Get().colour, 5);
}

TEST(ORVSharedValue, ComparesValues) {
    SharedPen first, second;
    EXPECT_TRUE(first == second);
    first.Edit().colour = 4;
    EXPECT_FALSE(first == second);
    second.Edit().colour = 4;
    EXPECT_TRUE(first == second);
    EXPECT_NE(&first.Get(), &second.Get());
    first.Edit().colour = 3;
    EXPECT_TRUE(first == SharedPen());
}

TEST(ORVSharedValue, IsAssignedAndMoved) {
    SharedPen first, second;
    first.Edit().colour = 4;
    second.Edit().colour = 5;
    second = first;
    EXPECT_EQ(second.Get().colour, 4);
    const SharedPen& itself = second;
    second = itself;
    EXPECT_EQ(second.Get().colour, 4);
    SharedPen third = std::move(second);
    EXPECT_EQ(third.Get().colour, 4);
    second = std::move(third);
    EXPECT_EQ(second.Get().colour, 4);
    first = SharedPen();
    EXPECT_EQ(first.Get().colour, 3);
    EXPECT_EQ(second.Get().colour, 4);
}

}  // namespace
