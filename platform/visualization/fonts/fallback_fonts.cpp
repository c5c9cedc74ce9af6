#include "platform/visualization/fonts/fallback_fonts.h"

#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/face_content.h"
#include "platform/visualization/fonts/font_catalogue.h"

namespace {

// Each chain lists all fonts; a document that runs through thousands of fonts must not pile them up.
constexpr std::size_t kMostChains = 64;

}  // namespace

const ORVFontFace* FallbackFonts::Find(const ORVFontFace& base, char32_t codePoint) {
    auto chain = chains_.find(&base);
    if (chain == chains_.end()) {
        if (chains_.size() >= kMostChains) chains_.clear();
        chain = chains_.emplace(&base, Chain{SortedCandidates(base), {}}).first;
    }
    const auto [answer, isNew] = chain->second.answers.try_emplace(codePoint, nullptr);
    if (!isNew) return answer->second;
    for (const Candidate& candidate : chain->second.candidates) {
        // The description may promise what the file does not hold.
        if (!FcCharSetHasChar(candidate.characters, codePoint) || !candidate.face->GetGlyph(codePoint))
            continue;
        answer->second = candidate.face;
        break;
    }
    return answer->second;
}

std::vector<FallbackFonts::Candidate> FallbackFonts::SortedCandidates(const ORVFontFace& base) {
    std::vector<Candidate> candidates;
    FontCatalogue& catalogue = FontCatalogue::Get();
    FcPattern* wanted = catalogue.GetConfig() ? FcPatternCreate() : nullptr;
    if (!wanted) return candidates;
    FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(base.GetFamily().c_str()));
    FcPatternAddInteger(wanted, FC_WEIGHT, FcWeightFromOpenType(base.GetWeight()));
    FcPatternAddInteger(wanted, FC_SLANT, base.IsItalic() ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(wanted, FC_OUTLINE, FcTrue);
    FcConfigSubstitute(catalogue.GetConfig(), wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result = FcResultNoMatch;
    FcFontSet* sorted = FcFontSort(catalogue.GetConfig(), wanted, FcFalse, nullptr, &result);
    FcPatternDestroy(wanted);
    if (!sorted) return candidates;
    for (int i = 0; i < sorted->nfont; ++i) {
        const ORVFontFace* face = catalogue.FindFace(sorted->fonts[i]);
        FcCharSet* characters = nullptr;
        // The set belongs to the catalogue's own pattern, which stays.
        if (face && face != &base &&
            FcPatternGetCharSet(face->content_->pattern, FC_CHARSET, 0, &characters) == FcResultMatch)
            candidates.push_back({characters, face});
    }
    FcFontSetDestroy(sorted);
    return candidates;
}
