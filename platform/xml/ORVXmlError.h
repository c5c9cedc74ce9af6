// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "platform/system/ORVFailure.h"

/// Why and where parsing stopped.
struct ORVXmlError {
    std::string message;         ///< empty when the document is well formed
    std::uint64_t line = 0;      ///< from 1; 0 when the document is well formed
    std::uint64_t column = 0;    ///< in characters, from 1
    std::uint64_t offset = 0;    ///< in bytes, in the document's own encoding
    bool isOutOfMemory = false;  ///< memory was exhausted; does not mean that anything is wrong with the
                                 ///< document

    /// Reason of the failure; kNone when the document is well formed.
    ORVFailureReason GetReason() const {
        if (message.empty()) return ORVFailureReason::kNone;
        return isOutOfMemory ? ORVFailureReason::kOutOfMemory : ORVFailureReason::kNotWellFormed;
    }

    /// An out-of-memory error. Creating it allocates nothing.
    static ORVXmlError OutOfMemory() {
        ORVXmlError error;
        error.message = "out of memory";
        error.isOutOfMemory = true;
        return error;
    }
};
