// SPDX-License-Identifier: Apache-2.0

// Exceptions thrown by a host's objects must not leave the interpreter.

#include <gtest/gtest.h>

#include <algorithm>
#include <new>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "interpreters/svg/interpreter/ORVPrintQVXMLInterpreter.h"
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"
#include "interpreters/svg/interpreter/factories.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/system/files.h"
#include "tests/interpreters/svg/interpreter/asked_interpreters.h"
#include "tests/support/built_model.h"

namespace {

/// A host's generator that throws from one of its calls.
template <class Thrown>
class ThrowingGenerator final : public ORVPrintGenerator {
public:
    explicit ThrowingGenerator(int failing) : failing_(failing) {}
    int BeginDocument(const ORVPrintDocumentInfo&) override { return Call("document"); }
    int BeginPage(const ORVPrintPageInfo&) override { return Call("page"); }
    int BeginGroup(const ORVPrintGroup&) override { return Call("group"); }
    int EndGroup() override { return Call("end group"); }
    int BeginClip(const ORVMathBox2D&) override { return Call("clip"); }
    int EndClip() override { return Call("end clip"); }
    int DrawShape(const ORVPrintShape&) override { return Call("shape"); }
    int DrawText(const ORVPrintText&) override { return Call("text"); }
    int DrawImage(const ORVPrintImage&) override { return Call("image"); }
    int EndPage() override { return Call("end page"); }
    int EndDocument() override { return Call("end document"); }

    std::vector<std::string> calls;

private:
    int Call(const char* name) {
        calls.emplace_back(name);
        if (static_cast<int>(calls.size()) == failing_) throw Thrown();
        return 1;
    }
    const int failing_;  // index of the call, from 1
};

struct NoStandardException {};
template <class Thrown>
class ThrowingHostTest : public testing::Test {};
struct LogicError : std::logic_error {
    LogicError() : std::logic_error("a host's") {}
};
using ThrownTypes = testing::Types<std::bad_alloc, LogicError, NoStandardException, int>;
TYPED_TEST_SUITE(ThrowingHostTest, ThrownTypes);

constexpr const char* kPageWithAGroup =
    "<svg width='9' height='9'><g id='g'><rect width='4' height='4'/></g></svg>";

TYPED_TEST(ThrowingHostTest, EndsEveryDocumentThatBegan) {
    ThrowingGenerator<TypeParam> quiet(0);
    ASSERT_EQ(FromBytes(kPageWithAGroup)->Print(&quiet, ORVPrintParameters()), 1);
    ASSERT_EQ(quiet.calls.size(), 7U);
    for (int failing = 1; failing <= 7; ++failing) {
        const Interpreter interpreter = FromBytes(kPageWithAGroup);
        ThrowingGenerator<TypeParam> generator(failing);
        const int expected = std::is_same_v<TypeParam, std::bad_alloc> ? ORVPrintModelRender::kLowMemory
                                                                       : ORVPrintModelRender::kThrown;
        EXPECT_EQ(interpreter->Print(&generator, ORVPrintParameters()), expected) << failing;
        EXPECT_EQ(generator.calls.back(), failing == 1 ? "document" : "end document") << failing;
        EXPECT_EQ(std::count(generator.calls.begin(), generator.calls.end(), "end document"),
                  failing == 1 ? 0 : 1);
        ThrowingGenerator<TypeParam> next(0);
        EXPECT_EQ(interpreter->Print(&next, ORVPrintParameters()), 1) << failing;
        EXPECT_EQ(next.calls, quiet.calls);
    }
}

TYPED_TEST(ThrowingHostTest, NothingLeavesTheModuleFromOtherObjectsOfTheHost) {
    class Inspector final : public ORVPrintModelInspector {
        void Inspect(const ORVPrtModel&) override { throw TypeParam(); }
    } inspector;
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&inspector);
    PageNoting generator;
    EXPECT_LT(FromBytes(kThreePages)->Print(&generator, parameters), 0);

    class Policy final : public ORVFileAccessPolicy {
        bool MayRead(const ORVUnicodeString&) const override { throw TypeParam(); }
    } policy;
    ORVFileAccessPolicy::SetCurrent(&policy);
    const Interpreter interpreter =
        FromBytes("<svg width='9' height='9'><image width='1' height='1' xlink:href='a.png'/></svg>");
    unsigned int count = 7;
    EXPECT_EQ(interpreter->GetPageCount(count), -1);
    EXPECT_EQ(count, 0U) << "half a page is none";
    ORVFileAccessPolicy::SetCurrent(nullptr);

    class Stream final : public ORVPrintInputStream {
    public:
        const ORVMetaClass& GetMetaClass() const override { return ORVPrintInputStream::MetaClass(); }
        int Open(const char*) override { return 1; }
        int IsOpen() const override { return 1; }
        int IsReadable() const override { return 1; }
        int HasMoreData() const override { return 1; }
        unsigned long Read(void*, unsigned long) override { throw TypeParam(); }
        void Reset() override {}
        int Seek(long) override { return 1; }
        void Close() override {}

    private:
        ~Stream() override = default;
    };
    const ORVRef<Stream> stream(new Stream);
    EXPECT_EQ(fctCreateORVPrintSVGInterpreter(stream.get()), nullptr);
}

}  // namespace
