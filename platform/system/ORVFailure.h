// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/system/ORVPrintLimits.h"

/// Why something failed. One list for all parts of the system, so that nobody has to guess a reason from
/// words.
enum class ORVFailureReason : std::uint8_t {
    kNone,             ///< nothing failed
    kOutOfMemory,      ///< says nothing of the document
    kLimit,            ///< a limit stopped it
    kUnreadable,       ///< the input cannot be read or unpacked
    kNotWellFormed,    ///< the input is no XML document
    kNoPage,           ///< there is nothing to print
    kPageWithoutArea,  ///< the page's width or height is not positive, or not finite
    kTextNotSet,       ///< a text cannot be set as it should; ORVGetTextFailure() tells why
    kNoModule,         ///< the interpreter cannot be loaded
    kUnwritable,       ///< the output cannot be written
    kNotDrawn,         ///< the format, or the library behind it, cannot hold or draw what it was given
};

/// A failure on its way from where it happens to whoever reports it.
struct ORVFailure {
    ORVFailureReason reason = ORVFailureReason::kNone;  ///< why
    std::string text;                    ///< one line; may be empty where the reason says it all
    std::optional<ORVPrintLimit> limit;  ///< for kLimit: which

    /// Whether anything failed.
    explicit operator bool() const { return reason != ORVFailureReason::kNone; }

    /// A failure for a reason, in words.
    static ORVFailure Of(ORVFailureReason reason, std::string text = {}) {
        return {reason, std::move(text), std::nullopt};
    }
    /// A limit that was reached.
    static ORVFailure OfLimit(ORVPrintLimit limit) { return {ORVFailureReason::kLimit, {}, limit}; }
    /// Memory that was refused; its words are so short that they need none.
    static ORVFailure OutOfMemory() { return Of(ORVFailureReason::kOutOfMemory, "out of memory"); }
};
