#include <gtest/gtest.h>

#include <dlfcn.h>
#include <malloc.h>

#include <array>
#include <cstddef>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "generators/common/ORVOutput.h"
#include "generators/formats.h"
#include "platform/print/ORVPrintInputMemoryStream.h"
#include "platform/print/ORVPrintInterpreter.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/ORVRef.h"

namespace {

constexpr int kLives = 1'000;
constexpr int kFirstLives = 20;  // fill the caches that libraries keep
// What the heap may grow by in all the other lives, a quarter of a kilobyte each: what threads leave in the
// allocator's lists counts as in use. An interpreter that is lost takes more, a model a hundred times that.
constexpr std::size_t kGrowth = 256 * 1024;
constexpr std::array kFormats{"pdf", "svg", "png"};

std::string ReadExample(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(std::string(ORV_EXAMPLES_PATH "/") + name, std::ios::binary).rdbuf();
    return text.str();
}

bool IsLoaded() {
    void* module = dlopen(ORV_MODULE_PATH, RTLD_NOW | RTLD_NOLOAD);
    if (!module) return false;
    dlclose(module);
    return true;
}

/// Loads the module, prints the document with it and unloads it. @return the printed bytes
std::string PrintOnce(const std::string& document, const char* format) {
    void* module = dlopen(ORV_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
    if (!module) {
        ADD_FAILURE() << dlerror();
        return {};
    }
    using Factory = ORVPrintInterpreter* (*)(ORVPrintInput*);
    const auto create = reinterpret_cast<Factory>(dlsym(module, "fctCreateORVPrintSVGInterpreter"));
    ORVMemoryOutput output;
    if (create) {
        const ORVRef<ORVPrintInputMemoryStream> input(new ORVPrintInputMemoryStream(document));
        const std::unique_ptr<ORVPrintInterpreter> interpreter(create(input.get()));
        ORVFormatOptions options;
        options.dotsPerInch = 20.0;
        const auto generator = ORVFindOutputFormat(format)->create(output, options);
        EXPECT_EQ(interpreter->Print(&generator->Get(), ORVPrintParameters()), 1);
    }
    EXPECT_TRUE(create);
    EXPECT_TRUE(IsLoaded());
    EXPECT_EQ(dlclose(module), 0);
    return output.GetBytes();
}

TEST(ModuleLifeTest, IsLoadedUsedAndUnloadedAThousandTimes) {
    const std::string document = ReadExample("floor-plan.svg");
    ASSERT_FALSE(document.empty());
    ASSERT_FALSE(IsLoaded());

    std::array<std::string, kFormats.size()> first;
    std::size_t before = 0;
    for (int life = 0; life < kLives; ++life) {
        const std::size_t format = static_cast<std::size_t>(life) % kFormats.size();
        const std::string bytes = PrintOnce(document, kFormats[format]);
        ASSERT_FALSE(IsLoaded()) << "after life " << life;
        ASSERT_FALSE(bytes.empty());
        if (first[format].empty()) first[format] = bytes;
        ASSERT_TRUE(bytes == first[format]) << kFormats[format] << " in life " << life;
        if (life == kFirstLives) before = mallinfo2().uordblks;
    }
    // Sanitizers have a heap of their own, where this counts nothing; they look for leaks themselves.
    EXPECT_LT(mallinfo2().uordblks, before + kGrowth);
}

}  // namespace
