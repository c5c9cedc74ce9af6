// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "interpreters/svg2/css/Style.h"

namespace svg2 {

// The flags of FontVariant that each property sets.
inline constexpr std::uint32_t kLigatureVariants =
    kNoCommonLigatures | kDiscretionaryLigatures | kHistoricalLigatures | kNoContextual;
inline constexpr std::uint32_t kCapsVariants =
    kSmallCaps | kAllSmallCaps | kPetiteCaps | kAllPetiteCaps | kUnicase | kTitlingCaps;
inline constexpr std::uint32_t kFigures = kLiningNumbers | kOldstyleNumbers,
                               kSpacings = kProportionalNumbers | kTabularNumbers,
                               kFractions = kDiagonalFractions | kStackedFractions;
inline constexpr std::uint32_t kNumericVariants =
    kFigures | kSpacings | kFractions | kOrdinals | kSlashedZero;
inline constexpr std::uint32_t kPositionVariants = kSubscript | kSuperscript;
inline constexpr std::uint32_t kIdeographs = kJis78 | kJis83 | kJis90 | kJis04 | kSimplified | kTraditional,
                               kWidths = kFullWidth | kProportionalWidth;
inline constexpr std::uint32_t kEastAsianVariants = kIdeographs | kWidths | kRuby;
inline constexpr std::uint32_t kFontVariants = kLigatureVariants | kCapsVariants | kNumericVariants |
                                               kPositionVariants | kEastAsianVariants | kHistoricalForms;

/// Reads the words of "font-variant" or of one of its longhands.
/// @param group  the property's flags; others are left unchanged
/// @return false, without any change, if a word is unknown or contradicts another one
bool ReadFontVariants(std::string_view text, std::uint32_t group, std::uint32_t& variants);

}  // namespace svg2
