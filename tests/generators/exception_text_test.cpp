// SPDX-License-Identifier: Apache-2.0
#include "generators/common/exception_text.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <new>
#include <stdexcept>
#include <system_error>

#include "tests/support/named_rows.h"

namespace {

struct ThrownCase {
    const char* name;
    std::function<void()> raise;
    const char* text;
    ORVFailureReason reason = ORVFailureReason::kNotDrawn;
};
class ExceptionTextTest : public testing::TestWithParam<ThrownCase> {};

TEST_P(ExceptionTextTest, SaysWhatWasThrown) {
    ORVFailure failure = ORVFailure::Of(ORVFailureReason::kUnwritable, "what was said before");
    try {
        GetParam().raise();
        FAIL();
    } catch (...) {
        ORVNameException(failure);
    }
    EXPECT_EQ(failure.text, GetParam().text);
    EXPECT_EQ(failure.reason, GetParam().reason);
}

INSTANTIATE_TEST_SUITE_P(
    Thrown, ExceptionTextTest,
    testing::Values(
        ThrownCase{"Memory", [] { throw std::bad_alloc(); }, "out of memory", ORVFailureReason::kOutOfMemory},
        ThrownCase{"MemoryOfAnArray", [] { throw std::bad_array_new_length(); }, "out of memory",
                   ORVFailureReason::kOutOfMemory},
        ThrownCase{"Thread", [] { throw std::system_error(EAGAIN, std::generic_category(), "thread"); },
                   "a thread could not be started"},
        ThrownCase{"OtherOfTheSystem",
                   [] { throw std::system_error(EPERM, std::generic_category(), "lock"); },
                   "Operation not permitted"},
        ThrownCase{"File",
                   [] {
                       throw std::filesystem::filesystem_error(
                           "cannot copy", "a/b.icc", std::make_error_code(std::errc::permission_denied));
                   },
                   "Permission denied: a/b.icc"},
        ThrownCase{"Other", [] { throw std::length_error("too long"); }, "unexpected: too long"},
        ThrownCase{"NoException", [] { throw 7; }, "something unexpected was thrown"}),
    kNameOfRow);

}  // namespace
