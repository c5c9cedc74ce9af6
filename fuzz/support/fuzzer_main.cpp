// SPDX-License-Identifier: Apache-2.0

// Entry points for libFuzzer, in a program with one target.

#include <cstddef>
#include <cstdint>

#include "fuzz/support/FuzzTarget.h"

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/) {
    Require(FuzzTarget::GetAll().size() == 1);
    FuzzTarget::SetLimits();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzTarget::GetAll().front().Run({reinterpret_cast<const char*>(data), size});
    return 0;
}
