// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/system/ORVBaseObject.h"

enum class ORVLetterCase : std::uint8_t {
    kUpper,
    kLower,
    kWordStarts,  ///< title case for the first letter of each word; other letters stay
};

/// Changes the case of letters by Unicode's full mappings, so the text may become longer ("ß" to "SS").
/// Words are those of Unicode's text segmentation. Their first letter may follow punctuation; words that
/// start with a digit stay.
/// @param text      valid UTF-8
/// @param before    what stands directly before the text in the same paragraph, or the end of it
/// @param language  a BCP 47 tag; Turkish, Azerbaijani and Lithuanian have mappings of their own
/// @param mapped    set to the changed text
/// @return false if that is impossible; ORVGetTextFailure() has the reason
[[nodiscard]] ORV_PLATFORM_EXPORT bool ORVChangeCase(std::string_view text, ORVLetterCase letterCase,
                                                     std::string_view before, std::string_view language,
                                                     std::string& mapped);

// ---- the module ----

inline constexpr char kCaseModule[] = "liborvcase.so";
inline constexpr char kCaseChanger[] = "orvChangeCase";
/// Type of the function that the module exports: like ORVChangeCase. It returns false if out of memory.
using ORVCaseChanger = bool (*)(std::string_view text, ORVLetterCase letterCase, std::string_view before,
                                std::string_view language, std::string& mapped);
