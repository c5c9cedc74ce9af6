// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "platform/system/ORVFailure.h"

/// Why a document was not read to its end, and where.
struct ORVXmlError {
    std::string message;         ///< empty when the document is well formed
    std::uint64_t line = 0;      ///< counted from 1; 0 when the document is well formed
    std::uint64_t column = 0;    ///< in characters, counted from 1
    std::uint64_t offset = 0;    ///< bytes before the place, in the document's own encoding
    bool isOutOfMemory = false;  ///< which says nothing of the document

    /// Why; kNone for the place of a document that is well formed.
    ORVFailureReason GetReason() const {
        if (message.empty()) return ORVFailureReason::kNone;
        return isOutOfMemory ? ORVFailureReason::kOutOfMemory : ORVFailureReason::kNotWellFormed;
    }

    /// The error of memory that was refused; needs none.
    static ORVXmlError OutOfMemory() {
        ORVXmlError error;
        error.message = "out of memory";
        error.isOutOfMemory = true;
        return error;
    }
};
