// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// A place in a document.
struct ORVXmlPlace {
    std::uint32_t line = 0;    ///< counted from 1
    std::uint32_t column = 0;  ///< in characters, counted from 1
    std::uint64_t offset = 0;  ///< bytes before it, in the text that was parsed
};
