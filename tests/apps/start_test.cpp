// SPDX-License-Identifier: Apache-2.0

// What the command does at its start and besides its work. The counts are the same on a busy machine.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <string>

#include "tests/apps/tool_run.h"

namespace {

using testing::HasSubstr;
using testing::Not;

class StartTest : public ToolTest {
protected:
    StartTest() {
        WriteFile("figure.svg", SmallDrawing("<rect width='9' height='9' fill='red' stroke='blue'/>"
                                             "<path d='M1 1L20 30' stroke='black'/>"));
    }
    /// Returns the dynamic linker's debug output of a run.
    std::string Told(const std::string& topic, const std::string& output) const {
        const ToolRun run = RunProgram(
            {"env", "-u", "LD_PRELOAD", "LD_DEBUG=" + topic, ORV_TOOL_PATH, "figure.svg", "-o", output});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        return run.errors;
    }
    /// Returns the number of instructions that a run executes.
    long Instructions(const std::string& drawing, const std::string& output) const {
        // Valgrind fails on some debug information that is newer than itself.
        EXPECT_EQ(RunProgram({"strip", "-o", "orvprint", ORV_TOOL_PATH}).exitCode, 0);
        // With this variable, coverage counts would be merged at the end of the run.
        const ToolRun run =
            RunProgram({"env", "-u", "ORV_COUNTS_FOLDER", "valgrind", "--tool=callgrind",
                        "--callgrind-out-file=/dev/null", "./orvprint", drawing, "-o", output});
        EXPECT_EQ(run.exitCode, 0) << run.errors;
        return NumberBehind(run.errors, "refs:");
    }
    /// Returns the number after `words` in a text. It is an error if there is none.
    static long NumberBehind(const std::string& text, const std::string& words) {
        std::smatch match;
        const bool isThere = std::regex_search(text, match, std::regex(words + "\\s*([0-9,]+)"));
        EXPECT_TRUE(isThere) << words << " in " << text;
        if (!isThere) return 0;
        std::string digits = match[1];
        std::erase(digits, ',');
        return std::stol(digits);
    }
};

TEST_F(StartTest, ASmallDrawingLoadsFewLibraries) {
    const std::string told = Told("files", "figure.pdf");
    std::set<std::string> loaded;
    const std::regex line("calling init: \\S*/([^/\\s]+)");
    for (auto at = std::sregex_iterator(told.begin(), told.end(), line); at != std::sregex_iterator(); ++at)
        loaded.insert((*at)[1]);
#ifdef ORV_SANITIZED
    for (const char* library : {"libstdc++.so.6", "libgcc_s.so.1"}) loaded.erase(library);
#endif
    EXPECT_EQ(loaded,
              (std::set<std::string>{"ld-linux-x86-64.so.2", "libc.so.6", "libm.so.6", "libdeflate.so.0"}));
    EXPECT_THAT(Told("files", "again.svg"), Not(HasSubstr("libdeflate")));
    EXPECT_THAT(Told("files", "figure.png"), Not(HasSubstr("libisal")));
}

#ifndef ORV_SANITIZED
// Each relocation searches all libraries for a name, which takes about a thousand instructions.
TEST_F(StartTest, FewAddressesAreLookedUp) {
    EXPECT_LT(NumberBehind(Told("statistics", "figure.pdf"), "final number of relocations:"), 500);
}

// Embedding a font must not depend on how many characters it has.
TEST_F(StartTest, EmbeddingAFontDoesNotReadAllItsCharacters) {
    WriteFile("text.svg", SmallDrawing("<text x='5' y='40' font-size='9'>abcdefg</text>"));
    constexpr long kMostForTheProgram = 1'000'000;
    EXPECT_LT(Instructions("text.svg", "text.pdf"),
              Instructions("text.svg", "text.png") + kMostForTheProgram);
}

TEST_F(StartTest, ASmallDrawingTakesFewInstructions) {
#ifdef ORV_IS_OPTIMISED
    constexpr long kMost = 1'800'000;
#else
    constexpr long kMost = 4'000'000;  // includes coverage counters
#endif
    EXPECT_LT(Instructions("figure.svg", "figure.pdf"), kMost);
}
#endif

}  // namespace
