// SPDX-License-Identifier: Apache-2.0

// Memory is refused while things are created on first use (catalogues, fonts, libraries, tables), in a new
// process for each refusal. The process must not crash, and must print correctly afterwards.

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <unistd.h>

#include "generators/common/ORVOutput.h"
#include "generators/formats.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintModule.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVRef.h"
#include "tests/faults/documents.h"
#include "tests/faults/failing_allocator.h"
#include "tests/support/named_rows.h"
#include "tests/support/scoped_environment.h"
#include "tests/support/scratch_folder.h"

namespace {

using Refuses = FailingAllocator::Refuses;

constexpr const char* kPrintOnce = "--print-once";
constexpr std::array kFormats{"pdf", "ps", "svg", "png"};

/// Prints standard SVG with text in families that are not installed, which queries fontconfig.
/// @return as PrintAll()
int PrintUnknownFamilies(std::string& bytes) {
    const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(
        "<svg xmlns='http://www.w3.org/2000/svg' width='90' height='90'>"
        "<text y='40' font-family='Nobody, Helvetica, sans-serif'>word</text></svg>"));
    std::string error;
    const auto interpreter = ORVPrintModule::CreateInterpreter("SVG2", input.get(), error);
    if (!interpreter) return 0;
    unsigned int count = 0;
    if (const int status = interpreter->GetPageCount(count); status != 1) return status;
    ORVMemoryOutput output;
    ORVFormatOptions options;
    options.creationTime = 0;
    const auto generator = ORVFindOutputFormat("pdf")->create(output, options);
    if (!generator) return 0;
    const int status = interpreter->Print(&generator->Get(), ORVPrintParameters());
    const FailingAllocator::Granted granted;
    bytes += output.GetBytes();
    return status;
}

/// Prints to all of kFormats, and standard SVG.
/// @return 1, or the first other status of printing; 0 if an interpreter or generator could not be created
int PrintAll(ORVPrintInput& input, std::string& bytes) {
    std::string error;
    const auto interpreter = ORVPrintModule::CreateInterpreter("SVG", &input, error);
    if (!interpreter) return 0;
    unsigned int count = 0;
    if (const int status = interpreter->GetPageCount(count); status != 1) return status;
    for (const char* format : kFormats) {
        ORVMemoryOutput output;
        ORVFormatOptions options;
        options.dotsPerInch = 45.0;
        options.threads = 1;
        options.creationTime = 0;
        const auto generator = ORVFindOutputFormat(format)->create(output, options);
        if (!generator) return 0;
        if (const int status = interpreter->Print(&generator->Get(), ORVPrintParameters()); status != 1)
            return status;
        const FailingAllocator::Granted granted;
        bytes += output.GetBytes();
    }
    return PrintUnknownFamilies(bytes);
}

/// Runs in the new process: prints with a refusal, then without. Writes the number of requests of the first
/// print, and status, size and hash of the second one.
int PrintOnce(std::uint64_t request, Refuses refuses) {
    const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(DocumentOfEverything()));
    std::string bytes;
    FailingAllocator::Begin(request, refuses);
    PrintAll(*input, bytes);
    FailingAllocator::End();
    const unsigned long long requests = FailingAllocator::GetRequests();
    bytes.clear();
    const int status = PrintAll(*input, bytes);
    std::printf("%llu %d %zu %zx\n", requests, status, bytes.size(), std::hash<std::string>()(bytes));
    return 0;
}

struct ColdRun {
    int exitStatus = -1;
    unsigned long long requests = 0;
    std::string result;  // status, size and hash of the bytes
};

ColdRun RunCold(std::uint64_t request, Refuses refuses) {
    const std::string command = std::string("exec /proc/") + std::to_string(getpid()) + "/exe " + kPrintOnce +
                                " " + std::to_string(request) + (refuses == Refuses::kOne ? " one" : " all");
    ColdRun run;
    std::FILE* const pipe = popen(command.c_str(), "r");
    if (!pipe) return run;
    std::array<char, 256> line{};
    if (std::fgets(line.data(), line.size(), pipe)) {
        char* rest = nullptr;
        run.requests = std::strtoull(line.data(), &rest, 10);
        run.result = rest;
    }
    run.exitStatus = pclose(pipe);
    return run;
}

struct ColdRow {
    const char* name;
    bool hasFaceIndex;
};

class ColdStart : public testing::TestWithParam<ColdRow> {};

TEST_P(ColdStart, BreaksNothingForGood) {
    const ScratchFolder cache;
    const ScopedEnvironment index("ORVPRINT_CACHE_DIR", GetParam().hasFaceIndex ? cache.Path().c_str() : "");
    const ScopedEnvironment parser("PRINT_WITHOUT_DOM_PARSER", nullptr);
    // The first run creates the index of faces, if it is used.
    ColdRun clean = RunCold(0, Refuses::kOne);
    clean = RunCold(0, Refuses::kOne);
    ASSERT_EQ(clean.exitStatus, 0);
    ASSERT_EQ(clean.result.substr(0, 3), " 1 ") << clean.result;
    ASSERT_GT(clean.requests, 1000U);

    const std::uint64_t step = std::getenv("ORV_FAULTS_ALL") ? 1 : clean.requests / 20;
    std::uint64_t trials = 0;
    for (const Refuses refuses : {Refuses::kOne, Refuses::kAllFrom})
        for (std::uint64_t request = 1; request <= clean.requests; request += step, ++trials) {
            // Without the index of families, each trial queries fontconfig again.
            std::remove(cache.PathOf("families").c_str());
            const ColdRun run = RunCold(request, refuses);
            ASSERT_EQ(run.exitStatus, 0)
                << "request " << request << (refuses == Refuses::kOne ? "" : " and all that follow");
            ASSERT_EQ(run.result, clean.result)
                << "request " << request << (refuses == Refuses::kOne ? "" : " and all that follow");
        }
    std::printf("cold %s: %llu requests, %llu trials\n", GetParam().name, clean.requests,
                static_cast<unsigned long long>(trials));
}

INSTANTIATE_TEST_SUITE_P(Fonts, ColdStart,
                         testing::Values(ColdRow{"FromIndex", true}, ColdRow{"FromSystem", false}),
                         kNameOfRow);

}  // namespace

int main(int argc, char** argv) {
    if (argc == 4 && std::string_view(argv[1]) == kPrintOnce)
        return PrintOnce(std::strtoull(argv[2], nullptr, 10),
                         std::string_view(argv[3]) == "one" ? Refuses::kOne : Refuses::kAllFrom);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
