// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <dlfcn.h>
#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>

#include "generators/common/ORVOutput.h"
#include "generators/formats.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVRef.h"
#include "platform/system/ORVUnicodeString.h"
#include "tests/support/test_texts.h"

namespace {

constexpr int kFirstCycles = 20;  // fill the caches that libraries keep
// The allowed growth of the heap in all later cycles, about a quarter of a kilobyte each, because memory
// that threads leave in the allocator's lists counts as used. A leaked interpreter is larger, a leaked model
// a hundred times as large.
constexpr std::size_t kGrowth = 256 * 1024;

std::string ReadExample(const std::string& name) { return ReadAll(ORV_EXAMPLES_PATH "/" + name); }

bool IsLoaded() {
    void* module = dlopen(ORV_MODULE_PATH, RTLD_NOW | RTLD_NOLOAD);
    if (!module) return false;
    dlclose(module);
    return true;
}

/// A use of an interpreter; returns its result.
using Use = std::function<std::string(ORVPrintInterpreter&)>;

std::string PrintAs(ORVPrintInterpreter& interpreter, const char* format) {
    ORVMemoryOutput output;
    ORVFormatOptions options;
    options.dotsPerInch = 20.0;
    const auto generator = ORVFindOutputFormat(format)->create(output, options);
    EXPECT_EQ(interpreter.Print(&generator->Get(), ORVPrintParameters()), 1);
    return output.GetBytes();
}

std::string AskForPages(ORVPrintInterpreter& interpreter) {
    unsigned int count = 0;
    float width = 0.0F, height = 0.0F;
    ORVUnicodeString title;
    EXPECT_EQ(interpreter.GetPageCount(count), 1);
    EXPECT_EQ(interpreter.GetSize(width, height), 1);
    EXPECT_EQ(interpreter.GetTitle(title), 1);
    return std::to_string(count) + " " + std::to_string(width) + " " + std::to_string(height) + " " +
           title.ConvertToChar();
}

const std::array<Use, 5> kUses{
    [](ORVPrintInterpreter& interpreter) { return PrintAs(interpreter, "pdf"); },
    [](ORVPrintInterpreter& interpreter) { return PrintAs(interpreter, "svg"); },
    [](ORVPrintInterpreter& interpreter) { return PrintAs(interpreter, "png"); },
    AskForPages,
    [](ORVPrintInterpreter&) { return std::string("no request"); },
};

/// Loads the module, uses one of its interpreters and unloads the module. @return the result of the use
std::string LoadAndUse(const std::string& document, const Use& use) {
    void* module = dlopen(ORV_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        ADD_FAILURE() << dlerror();
        return {};
    }
    using Factory = ORVPrintInterpreter* (*)(ORVPrintInput*);
    const auto create = reinterpret_cast<Factory>(dlsym(module, "fctCreateORVPrintSVGInterpreter"));
    std::string result;
    if (create) {
        const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(document));
        const std::unique_ptr<ORVPrintInterpreter> interpreter(create(input.get()));
        result = use(*interpreter);
    }
    EXPECT_TRUE(create);
    EXPECT_TRUE(IsLoaded());
    EXPECT_EQ(dlclose(module), 0);
    return result;
}

/// A thousand, or the value of ORV_LOAD_CYCLES: with some tools, a cycle takes a second.
int CycleCount() {
    const char* number = std::getenv("ORV_LOAD_CYCLES");
    return number ? std::max(std::atoi(number), 1) : 1'000;
}

TEST(ModuleLoadingTest, IsLoadedUsedAndUnloadedAThousandTimes) {
    const std::string document = ReadExample("floor-plan.svg");
    ASSERT_FALSE(document.empty());
    ASSERT_FALSE(IsLoaded());

    std::array<std::string, kUses.size()> first;
    std::size_t before = 0;
    const int cycles = CycleCount();
    for (int cycle = 0; cycle < cycles; ++cycle) {
        const std::size_t use = static_cast<std::size_t>(cycle) % kUses.size();
        const std::string result = LoadAndUse(document, kUses[use]);
        ASSERT_FALSE(IsLoaded()) << "after cycle " << cycle;
        ASSERT_FALSE(result.empty());
        if (first[use].empty()) first[use] = result;
        ASSERT_TRUE(result == first[use]) << "use " << use << " in cycle " << cycle;
        if (cycle == kFirstCycles) before = mallinfo2().uordblks;
    }
    // Not effective with sanitizers, which have their own heap; they detect leaks themselves.
    EXPECT_TRUE(cycles <= kFirstCycles || mallinfo2().uordblks < before + kGrowth)
        << mallinfo2().uordblks - before;
}

}  // namespace
