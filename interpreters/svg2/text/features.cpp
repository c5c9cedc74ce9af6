// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/features.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

struct VariantFeature {
    std::uint32_t variant;  // flag of FontVariant
    ORVFontFeature feature;
};

const VariantFeature kVariantFeatures[] = {
    {kNoCommonLigatures, {FeatureTag("liga"), 0}},
    {kNoCommonLigatures, {FeatureTag("clig"), 0}},
    {kDiscretionaryLigatures, {FeatureTag("dlig")}},
    {kHistoricalLigatures, {FeatureTag("hlig")}},
    {kNoContextual, {FeatureTag("calt"), 0}},
    {kSmallCaps, {FeatureTag("smcp")}},
    {kAllSmallCaps, {FeatureTag("c2sc")}},
    {kAllSmallCaps, {FeatureTag("smcp")}},
    {kPetiteCaps, {FeatureTag("pcap")}},
    {kAllPetiteCaps, {FeatureTag("c2pc")}},
    {kAllPetiteCaps, {FeatureTag("pcap")}},
    {kUnicase, {FeatureTag("unic")}},
    {kTitlingCaps, {FeatureTag("titl")}},
    {kLiningNumbers, {FeatureTag("lnum")}},
    {kOldstyleNumbers, {FeatureTag("onum")}},
    {kProportionalNumbers, {FeatureTag("pnum")}},
    {kTabularNumbers, {FeatureTag("tnum")}},
    {kDiagonalFractions, {FeatureTag("frac")}},
    {kStackedFractions, {FeatureTag("afrc")}},
    {kOrdinals, {FeatureTag("ordn")}},
    {kSlashedZero, {FeatureTag("zero")}},
    {kSubscript, {FeatureTag("subs")}},
    {kSuperscript, {FeatureTag("sups")}},
    {kJis78, {FeatureTag("jp78")}},
    {kJis83, {FeatureTag("jp83")}},
    {kJis90, {FeatureTag("jp90")}},
    {kJis04, {FeatureTag("jp04")}},
    {kSimplified, {FeatureTag("smpl")}},
    {kTraditional, {FeatureTag("trad")}},
    {kFullWidth, {FeatureTag("fwid")}},
    {kProportionalWidth, {FeatureTag("pwid")}},
    {kRuby, {FeatureTag("ruby")}},
    {kHistoricalForms, {FeatureTag("hist")}},
};

constexpr std::size_t kMostSettings = 64;

/// Adds the features of "font-feature-settings": quoted tags, each with a number, "on", "off" or nothing.
void AddSettings(std::string_view text, std::vector<ORVFontFeature>& features) {
    constexpr std::size_t kLetters = 4;
    Scanner scanner(text);
    for (std::size_t i = 0; i < kMostSettings; ++i) {
        std::string_view tag;
        scanner.SkipSpace();
        if (!scanner.TakeString(tag) || tag.size() != kLetters) return;
        const char letters[kLetters + 1] = {tag[0], tag[1], tag[2], tag[3], '\0'};
        ORVFontFeature feature{FeatureTag(letters)};
        scanner.SkipSpace();
        double number = 0.0;
        if (scanner.TakeNumber(number))
            feature.value = static_cast<std::uint32_t>(std::clamp(number, 0.0, 65535.0));
        else if (EqualsIgnoringCase(scanner.TakeName(), "off"))
            feature.value = 0;
        features.push_back(feature);
        if (!scanner.TakeAfterSpace(',')) return;
    }
}

}  // namespace

void AddFeatures(const Style& style, std::vector<ORVFontFeature>& features) {
    if (!style.hasKerning) features.push_back({FeatureTag("kern"), 0});
    // Spaced letters form no ligatures.
    if (style.letterSpacing != Length()) {
        features.push_back({FeatureTag("liga"), 0});
        features.push_back({FeatureTag("clig"), 0});
    }
    if (style.fontVariants != 0)
        for (const VariantFeature& row : kVariantFeatures)
            if (style.fontVariants & row.variant) features.push_back(row.feature);
    if (!style.fontFeatureSettings.empty()) AddSettings(style.fontFeatureSettings, features);
}

}  // namespace svg2
