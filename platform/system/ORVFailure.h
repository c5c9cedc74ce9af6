// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/system/ORVPrintLimits.h"

/// Reason of a failure. All parts of the system share this list, so no caller has to parse a message to find
/// out why something failed.
enum class ORVFailureReason : std::uint8_t {
    kNone,             ///< nothing failed
    kOutOfMemory,      ///< memory was refused; does not mean that anything is wrong with the document
    kLimit,            ///< one of the limits of ORVPrintLimits was reached
    kUnreadable,       ///< the input cannot be read or unpacked
    kNotWellFormed,    ///< the input is not well-formed XML
    kNoPage,           ///< the document has no page to print
    kPageWithoutArea,  ///< the width or height of the page is not positive or not finite
    kTextNotSet,       ///< a text cannot be set correctly; see ORVGetTextFailure() for the cause
    kNoModule,         ///< the interpreter module cannot be loaded
    kUnwritable,       ///< the output cannot be written
    kNotDrawn,         ///< the output format, or the library that writes it, cannot represent the content
};

/// A failure, as it is passed from where it occurs to where it is reported.
struct ORVFailure {
    ORVFailureReason reason = ORVFailureReason::kNone;  ///< kNone when nothing failed
    std::string text;                                   ///< one line; may be empty if the reason says enough
    std::optional<ORVPrintLimit> limit;                 ///< the limit that was reached; only with kLimit

    /// True when this is a failure, false for kNone.
    explicit operator bool() const { return reason != ORVFailureReason::kNone; }

    /// A failure with a reason and a message.
    static ORVFailure Of(ORVFailureReason reason, std::string text = {}) {
        return {reason, std::move(text), std::nullopt};
    }
    /// A failure because of a limit.
    static ORVFailure OfLimit(ORVPrintLimit limit) { return {ORVFailureReason::kLimit, {}, limit}; }
    /// A failure for lack of memory. The message fits into the string's internal buffer, so no allocation is
    /// needed.
    static ORVFailure OutOfMemory() { return Of(ORVFailureReason::kOutOfMemory, "out of memory"); }
};
