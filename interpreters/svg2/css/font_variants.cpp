// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/font_variants.h"

#include <algorithm>
#include <iterator>

#include "interpreters/svg2/css/selectors.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

struct VariantRow {
    const char* text;
    std::uint32_t variant;  // flag to set; 0 for the default
    std::uint32_t group;    // mutually exclusive flags
};

constexpr VariantRow kVariants[] = {
    {"common-ligatures", 0, kNoCommonLigatures},
    {"no-common-ligatures", kNoCommonLigatures, kNoCommonLigatures},
    {"discretionary-ligatures", kDiscretionaryLigatures, kDiscretionaryLigatures},
    {"no-discretionary-ligatures", 0, kDiscretionaryLigatures},
    {"historical-ligatures", kHistoricalLigatures, kHistoricalLigatures},
    {"no-historical-ligatures", 0, kHistoricalLigatures},
    {"contextual", 0, kNoContextual},
    {"no-contextual", kNoContextual, kNoContextual},
    {"small-caps", kSmallCaps, kCapsVariants},
    {"all-small-caps", kAllSmallCaps, kCapsVariants},
    {"petite-caps", kPetiteCaps, kCapsVariants},
    {"all-petite-caps", kAllPetiteCaps, kCapsVariants},
    {"unicase", kUnicase, kCapsVariants},
    {"titling-caps", kTitlingCaps, kCapsVariants},
    {"lining-nums", kLiningNumbers, kFigures},
    {"oldstyle-nums", kOldstyleNumbers, kFigures},
    {"proportional-nums", kProportionalNumbers, kSpacings},
    {"tabular-nums", kTabularNumbers, kSpacings},
    {"diagonal-fractions", kDiagonalFractions, kFractions},
    {"stacked-fractions", kStackedFractions, kFractions},
    {"ordinal", kOrdinals, kOrdinals},
    {"slashed-zero", kSlashedZero, kSlashedZero},
    {"sub", kSubscript, kPositionVariants},
    {"super", kSuperscript, kPositionVariants},
    {"jis78", kJis78, kIdeographs},
    {"jis83", kJis83, kIdeographs},
    {"jis90", kJis90, kIdeographs},
    {"jis04", kJis04, kIdeographs},
    {"simplified", kSimplified, kIdeographs},
    {"traditional", kTraditional, kIdeographs},
    {"full-width", kFullWidth, kWidths},
    {"proportional-width", kProportionalWidth, kWidths},
    {"ruby", kRuby, kRuby},
    {"historical-forms", kHistoricalForms, kHistoricalForms},
};

}  // namespace

bool ReadFontVariants(std::string_view text, std::uint32_t group, std::uint32_t& variants) {
    std::uint32_t read = 0, stated = 0;
    const bool isNone = EqualsIgnoringCase(text, "none") && (group & kLigatureVariants) != 0;
    bool isKnown = !text.empty();
    if (isNone) read = kNoCommonLigatures | kNoContextual;
    if (!isNone && !EqualsIgnoringCase(text, "normal"))
        ForEachWord(text, [&](std::string_view word) {
            const auto* const row =
                std::find_if(std::begin(kVariants), std::end(kVariants),
                             [&](const VariantRow& one) { return EqualsIgnoringCase(word, one.text); });
            isKnown = isKnown && row != std::end(kVariants) && (row->group & group) != 0 &&
                      (row->group & stated) == 0;
            if (!isKnown) return false;
            stated |= row->group;
            read |= row->variant;
            return true;
        });
    if (isKnown) variants = (variants & ~group) | read;
    return isKnown;
}

}  // namespace svg2
