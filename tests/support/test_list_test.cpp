// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

namespace {

// GoogleTest prints rows of unknown type as bytes, including addresses that differ in every run: see
// named_rows.h.
TEST(TestListTest, IsTheSameInEveryRun) {
    const testing::UnitTest& tests = *testing::UnitTest::GetInstance();
    for (int i = 0; i < tests.total_test_suite_count(); ++i) {
        const testing::TestSuite& suite = *tests.GetTestSuite(i);
        for (int k = 0; k < suite.total_test_count(); ++k) {
            const char* row = suite.GetTestInfo(k)->value_param();
            EXPECT_EQ(std::string(row ? row : "").find("-byte object <"), std::string::npos)
                << suite.name() << "." << suite.GetTestInfo(k)->name() << " has a row of " << row;
        }
    }
}

}  // namespace
