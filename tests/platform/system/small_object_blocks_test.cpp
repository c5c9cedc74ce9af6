// SPDX-License-Identifier: Apache-2.0
#include "platform/system/small_object_blocks.h"

#include <gtest/gtest.h>
#include <malloc.h>

#include <cstdint>
#include <cstring>
#include <thread>
#include <vector>

#include "platform/system/ORVSharedValue.h"
#include "platform/system/ORVSmallObjects.h"

namespace {

namespace blocks = orv_small_object_blocks;

/// Runs `work` in a new thread, which starts without a block.
template <class Work>
void InNewThread(Work work) {
    std::thread(work).join();
}

std::uintptr_t Place(const void* object) { return reinterpret_cast<std::uintptr_t>(object); }

/// Objects of one size, filled with bytes that show whether another object has overwritten them.
struct Objects {
    std::size_t size = 0;
    std::vector<void*> places;

    void Take(std::size_t count) {
        for (std::size_t i = 0; i < count; ++i) {
            places.push_back(blocks::Take(size));
            std::memset(places.back(), static_cast<int>(i), size);
        }
    }
    void GiveAll() {
        for (void* place : places) blocks::Give(place, size);
        places.clear();
    }
    bool AreWhole() const {
        for (std::size_t i = 0; i < places.size(); ++i)
            for (std::size_t at = 0; at < size; ++at)
                if (static_cast<unsigned char*>(places[i])[at] != static_cast<unsigned char>(i)) return false;
        return true;
    }
};

TEST(SmallObjectBlocks, ObjectsLieSideBySide) {
    struct Row {
        std::size_t size, distance;
    };
    for (const Row& row : {Row{0, 8}, Row{1, 8}, Row{8, 8}, Row{24, 24}, Row{33, 40}, Row{1024, 1024}}) {
        InNewThread([&row] {
            Objects objects{row.size, {}};
            objects.Take(20);
            for (std::size_t i = 1; i < objects.places.size(); ++i)
                EXPECT_EQ(Place(objects.places[i]) - Place(objects.places[i - 1]), row.distance) << row.size;
            objects.GiveAll();
        });
    }
}

TEST(SmallObjectBlocks, EachObjectIsAlignedAndItsOwn) {
    for (const std::size_t size : {1U, 8U, 40U, 136U, 1000U, 1024U, 1025U, 40'000U}) {
        Objects objects{size, {}};
        objects.Take(300);
        for (const void* place : objects.places) EXPECT_EQ(Place(place) % ORVSmallObjects::kAlignment, 0U);
        EXPECT_TRUE(objects.AreWhole()) << size;
        objects.GiveAll();
    }
}

TEST(SmallObjectBlocks, FreedPlacesAreUsedAgainForObjectsOfTheirSize) {
    InNewThread([] {
        void* const first = blocks::Take(40);
        void* const second = blocks::Take(40);
        blocks::Give(first, 40);
        void* const other = blocks::Take(48);
        EXPECT_NE(other, first);
        EXPECT_EQ(blocks::Take(40), first);
        for (void* place : {first, second}) blocks::Give(place, 40);
        blocks::Give(other, 48);
    });
}

TEST(SmallObjectBlocks, RefuseWhatIsTooLarge) {
    EXPECT_EQ(blocks::Take(SIZE_MAX), nullptr);
    EXPECT_EQ(blocks::Take(SIZE_MAX / 2), nullptr);
}

std::size_t BytesInUse() { return mallinfo2().uordblks + mallinfo2().hblkhd; }

/// Allowance for memory that is allocated for threads and for the tests' own lists.
constexpr std::size_t kSome = std::size_t{100} << 10U;

class BlocksInUse : public testing::TestWithParam<std::size_t> {
protected:
    void SetUp() override {
        if (BytesInUse() == 0) GTEST_SKIP() << "the allocator does not count its bytes";
    }
};

TEST_P(BlocksInUse, AreAsManyAsNeeded) {
    const std::size_t count = (std::size_t{8} << 20U) / GetParam();
    Objects objects{GetParam(), {}};
    objects.places.reserve(count);
    const std::size_t before = BytesInUse();
    objects.Take(count);
    EXPECT_LT(BytesInUse() - before, count * GetParam() * 102 / 100 + kSome);
    objects.GiveAll();
    EXPECT_LT(BytesInUse(), before + kSome);
}

TEST_P(BlocksInUse, GoWithTheirLastObjectInAnotherThread) {
    const std::size_t count = (std::size_t{8} << 20U) / GetParam();
    Objects objects{GetParam(), {}};
    objects.places.reserve(count);
    const std::size_t before = BytesInUse();
    InNewThread([&] { objects.Take(count); });
    EXPECT_GT(BytesInUse() - before, count * GetParam());
    InNewThread([&] { objects.GiveAll(); });
    EXPECT_LT(BytesInUse(), before + kSome);
}

TEST_P(BlocksInUse, GoWithoutBeingToldSizes) {
    const std::size_t count = (std::size_t{8} << 20U) / GetParam();
    Objects objects{GetParam(), {}};
    objects.places.reserve(count);
    const std::size_t before = BytesInUse();
    objects.Take(count);
    for (void* place : objects.places) blocks::Give(place, 0);
    EXPECT_LT(BytesInUse(), before + kSome);
}

INSTANTIATE_TEST_SUITE_P(Sizes, BlocksInUse, testing::Values(24, 88, 512, 100'000));

// Two threads free objects in the same blocks, while a third one allocates in the last of these blocks.
TEST(SmallObjectBlocks, BelongToNoThread) {
    Objects even{32, {}}, odd{32, {}};
    for (int i = 0; i < 20'000; ++i) (i % 2 == 0 ? even : odd).Take(1);
    std::thread one([&] { even.GiveAll(); });
    std::thread two([&] { odd.GiveAll(); });
    Objects own{32, {}};
    own.Take(20'000);
    one.join();
    two.join();
    EXPECT_TRUE(own.AreWhole());
    own.GiveAll();
}

TEST(SmallObjects, CannotComeFromBlocksOnceThereIsOne) {
    ORVSharedValue<std::vector<int>> value;
    value.Edit().push_back(1);
    EXPECT_FALSE(ORVSmallObjects::UseBlocks());
    ORVSmallObjects::Give(ORVSmallObjects::Take(40), 40);
    ORVSmallObjects::Give(ORVSmallObjects::TryTake(40));
}

}  // namespace
