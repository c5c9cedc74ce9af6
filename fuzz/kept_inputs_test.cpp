// SPDX-License-Identifier: Apache-2.0

// Runs every fuzz target over its seeds and over all inputs that once broke it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <set>
#include <string>
#include <vector>

#include "fuzz/support/FuzzTarget.h"

static void PrintTo(const FuzzTarget& target, std::ostream* out) { *out << target.GetName(); }

namespace {

namespace fs = std::filesystem;

std::vector<fs::path> FilesOf(const fs::path& folder) {
    std::vector<fs::path> files;
    if (!fs::exists(folder)) return files;
    for (const auto& entry : fs::directory_iterator(folder))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::string ContentOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void RunAll(const FuzzTarget& target, const std::vector<fs::path>& files) {
    for (const fs::path& file : files) {
        // After a crash, the last name in the output is the input that caused it.
        std::fprintf(stderr, "%s\n", file.c_str());
        target.Run(ContentOf(file));
    }
}

class FuzzTargetTest : public testing::TestWithParam<FuzzTarget> {};

TEST_P(FuzzTargetTest, TakesItsSeeds) {
    const auto files = FilesOf(fs::path(ORV_FUZZ_SEEDS) / GetParam().GetName());
    EXPECT_GE(files.size(), 3U);
    RunAll(GetParam(), files);
}

TEST_P(FuzzTargetTest, TakesWhatWasFound) {
    RunAll(GetParam(), FilesOf(fs::path(ORV_FUZZ_PATH) / "regressions" / GetParam().GetName()));
}

TEST_P(FuzzTargetTest, TakesNothingAndOneByte) {
    GetParam().Run({});
    for (int byte = 0; byte < 256; ++byte) GetParam().Run(std::string(1, static_cast<char>(byte)));
}

INSTANTIATE_TEST_SUITE_P(Targets, FuzzTargetTest,
                         testing::ValuesIn(FuzzTarget::GetAll().begin(), FuzzTarget::GetAll().end()),
                         [](const auto& row) { return std::string(row.param.GetName()); });

// A folder without a target of that name would never be run.
TEST(FuzzRegressionsTest, EveryFolderHasItsTarget) {
    std::set<std::string, std::less<>> names;
    for (const FuzzTarget& target : FuzzTarget::GetAll()) names.emplace(target.GetName());
    const fs::path folder = fs::path(ORV_FUZZ_PATH) / "regressions";
    ASSERT_TRUE(fs::exists(folder));
    for (const auto& entry : fs::directory_iterator(folder))
        EXPECT_TRUE(names.contains(entry.path().filename().string())) << entry.path();
}

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    FuzzTarget::SetLimits();
    return RUN_ALL_TESTS();
}
