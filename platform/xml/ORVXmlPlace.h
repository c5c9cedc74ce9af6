// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

/// A position in a document.
struct ORVXmlPlace {
    std::uint32_t line = 0;    ///< from 1
    std::uint32_t column = 0;  ///< in characters, from 1
    std::uint64_t offset = 0;  ///< in bytes, in the text that was parsed
};
