// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/text_failure.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace {

// A plain array, because a thread_local variable with a destructor would allocate memory.
constinit thread_local std::array<char, 1024> text{};
constinit thread_local std::size_t length = 0;

}  // namespace

void ORVNoteTextFailure(std::string_view reason) {
    length = std::min(reason.size(), text.size());
    std::copy_n(reason.begin(), length, text.begin());
}

std::string_view ORVGetTextFailure() { return {text.data(), length}; }
