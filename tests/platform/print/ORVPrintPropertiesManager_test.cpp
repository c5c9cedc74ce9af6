// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintPropertiesManager.h"

#include <gtest/gtest.h>

#include <thread>

namespace {

/// Resets the thread's state after each test.
class PropertiesManagerTest : public testing::Test {
protected:
    ~PropertiesManagerTest() override {
        ORVPrintPropertiesManager::SetMemoryProbe(nullptr);
        ORVPrintPropertiesManager::ClearInfos();
        ORVPrintPropertiesManager::SetOnErrorAction(ORVPrintPropertiesManager::kContinueOnError);
    }
};

TEST_F(PropertiesManagerTest, ComparesWithTheFractionInUse) {
    ORVPrintPropertiesManager::SetMemoryProbe([] { return 0.5; });
    EXPECT_TRUE(ORVPrintPropertiesManager::IsLowMemory(0.4));
    EXPECT_FALSE(ORVPrintPropertiesManager::IsLowMemory(0.5));
    EXPECT_FALSE(ORVPrintPropertiesManager::IsLowMemory(0.9));
}

TEST_F(PropertiesManagerTest, RealStateLiesBetweenNothingAndAll) {
    EXPECT_TRUE(ORVPrintPropertiesManager::IsLowMemory(0.0));  // this process uses some
    EXPECT_FALSE(ORVPrintPropertiesManager::IsLowMemory(1.0));
}

TEST_F(PropertiesManagerTest, KeepsInfosInOrderUntilCleared) {
    ORVPrintPropertiesManager::AddInfo(2, "first");
    ORVPrintPropertiesManager::AddInfo(1, "second");
    ASSERT_EQ(ORVPrintPropertiesManager::GetInfos().size(), 2U);
    EXPECT_EQ(ORVPrintPropertiesManager::GetInfos()[0].type, 2);
    EXPECT_EQ(ORVPrintPropertiesManager::GetInfos()[1].message.GetView(), "second");
    ORVPrintPropertiesManager::ClearInfos();
    EXPECT_TRUE(ORVPrintPropertiesManager::GetInfos().empty());
}

TEST_F(PropertiesManagerTest, StateBelongsToTheThread) {
    ORVPrintPropertiesManager::AddInfo(1, "here");
    ORVPrintPropertiesManager::SetOnErrorAction(ORVPrintPropertiesManager::kStopOnError);
    std::thread([] {
        EXPECT_TRUE(ORVPrintPropertiesManager::GetInfos().empty());
        EXPECT_EQ(ORVPrintPropertiesManager::GetOnErrorAction(), ORVPrintPropertiesManager::kContinueOnError);
    }).join();
    EXPECT_EQ(ORVPrintPropertiesManager::GetOnErrorAction(), ORVPrintPropertiesManager::kStopOnError);
}

}  // namespace
