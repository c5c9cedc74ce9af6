// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

/// Why a document was not read to its end, and where.
struct ORVXmlError {
    std::string message;         ///< empty when the document is well formed
    std::uint64_t line = 0;      ///< counted from 1; 0 when the document is well formed
    std::uint64_t column = 0;    ///< in characters, counted from 1
    std::uint64_t offset = 0;    ///< bytes before the place, in the document's own encoding
    bool isMemorySpent = false;  ///< memory was spent, which says nothing of the document

    /// The error of that; needs no memory.
    static ORVXmlError MemorySpent() {
        ORVXmlError error;
        error.message = "out of memory";
        error.isMemorySpent = true;
        return error;
    }
};
