// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/fallback_fonts.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

#include "platform/visualization/fonts/module/font_catalogue.h"
#include "platform/visualization/fonts/module/fontconfig_faces.h"

namespace {

// A chain lists all fonts, so the number of chains is limited for documents that use thousands of fonts.
constexpr std::size_t kMostChains = 64;

}  // namespace

const FileFace* FallbackFonts::Find(const FileFace& base, char32_t codePoint) {
    auto chain = chains_.find(&base);
    if (chain == chains_.end()) {
        if (chains_.size() >= kMostChains) chains_.clear();
        chain = chains_.emplace(&base, Chain{SortedCandidates(base), {}}).first;
    }
    auto& answers = chain->second.answers;
    if (const auto answer = answers.find(codePoint); answer != answers.end()) return answer->second;
    // The file may lack characters that its description lists.
    const auto& candidates = chain->second.candidates;
    const auto found = std::find_if(candidates.begin(), candidates.end(), [&](const Candidate& candidate) {
        return FcCharSetHasChar(candidate.characters, codePoint) && candidate.face->GetHarfBuzzFont() &&
               candidate.face->GetGlyph(codePoint);
    });
    const FileFace* face = found == candidates.end() ? nullptr : found->face;
    answers.emplace(codePoint, face);
    return face;
}

std::vector<FallbackFonts::Candidate> FallbackFonts::SortedCandidates(const FileFace& base) {
    std::vector<Candidate> candidates;
    FontCatalogue& catalogue = FontCatalogue::Get();
    FcConfig* configuration = FontconfigConfiguration();
    FcPattern* wanted = FcPatternCreate();
    if (!wanted) throw std::bad_alloc();
    FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(base.GetFamily().c_str()));
    FcPatternAddInteger(wanted, FC_WEIGHT, FcWeightFromOpenType(base.GetWeight()));
    FcPatternAddInteger(wanted, FC_SLANT, base.IsItalic() ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(wanted, FC_OUTLINE, FcTrue);
    FcConfigSubstitute(configuration, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result = FcResultNoMatch;
    const auto destroy = [](FcFontSet* set) { FcFontSetDestroy(set); };
    const std::unique_ptr<FcFontSet, decltype(destroy)> sorted(
        FcFontSort(configuration, wanted, FcFalse, nullptr, &result));
    FcPatternDestroy(wanted);
    if (!sorted) throw std::bad_alloc();
    for (int i = 0; i < sorted->nfont; ++i) {
        const FileFace* face = catalogue.FindFace(sorted->fonts[i]);
        FcCharSet* characters = nullptr;
        // The character set belongs to the configuration's own pattern, which is kept.
        if (face && face != &base &&
            FcPatternGetCharSet(sorted->fonts[i], FC_CHARSET, 0, &characters) == FcResultMatch)
            candidates.push_back({characters, face});
    }
    return candidates;
}

const FileFace* FallbackFonts::FindColoured(char32_t codePoint) {
    if (!isListed_) ListColoured();
    const auto found = std::find_if(coloured_.begin(), coloured_.end(), [&](const Candidate& candidate) {
        return FcCharSetHasChar(candidate.characters, codePoint) && candidate.face->GetHarfBuzzFont() &&
               candidate.face->GetGlyph(codePoint);
    });
    return found == coloured_.end() ? nullptr : found->face;
}

void FallbackFonts::ListColoured() {
    FcConfig* const configuration = FontconfigConfiguration();
    for (const FcSetName set : {FcSetSystem, FcSetApplication}) {
        const FcFontSet* const fonts = FcConfigGetFonts(configuration, set);
        for (int i = 0; fonts && i < fonts->nfont; ++i) {
            FcPattern* const pattern = fonts->fonts[i];
            FcBool hasColours = FcFalse, hasOutlines = FcTrue;
            FcCharSet* characters = nullptr;
            FcPatternGetBool(pattern, FC_COLOR, 0, &hasColours);
            FcPatternGetBool(pattern, FC_OUTLINE, 0, &hasOutlines);
            if (!hasColours || hasOutlines ||
                FcPatternGetCharSet(pattern, FC_CHARSET, 0, &characters) != FcResultMatch)
                continue;
            FileFace::Description description;
            description.path = TextOf(pattern, FC_FILE);
            description.index = static_cast<unsigned int>(NumberOf(pattern, FC_INDEX, 0));
            description.family = TextOf(pattern, FC_FAMILY);
            description.style = TextOf(pattern, FC_STYLE);
            description.postScriptName = TextOf(pattern, FC_POSTSCRIPT_NAME);
            ownFaces_.push_back(std::make_unique<const FileFace>(std::move(description)));
            coloured_.push_back({characters, ownFaces_.back().get()});
        }
    }
    isListed_ = true;
}
