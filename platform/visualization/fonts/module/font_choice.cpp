// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/font_choice.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "platform/visualization/fonts/module/FamilyAnswers.h"
#include "platform/visualization/fonts/module/face_axes.h"
#include "platform/visualization/fonts/module/font_catalogue.h"
#include "platform/visualization/fonts/module/font_failure.h"
#include "platform/visualization/fonts/module/fontconfig_faces.h"

namespace {

constexpr int kLeastBoldWeight = 600;  // as OpenType counts it
constexpr int kBoldStyleWeight = 26, kOwnStyleWeight = 25;
constexpr std::size_t kMostFamilies = 64;

std::string_view Trim(std::string_view text) {
    constexpr std::string_view kSpaces = " \t\r\n\f";
    const std::size_t first = text.find_first_not_of(kSpaces);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(kSpaces) - first + 1);
}

std::string WithSingleSpaces(std::string_view text) {
    std::string single;
    for (const char c : text) {
        const bool isSpace = c == ' ' || c == '\t' || c == '\r' || c == '\n' || c == '\f';
        if (!isSpace)
            single += c;
        else if (single.empty() || single.back() != ' ')
            single += ' ';
    }
    return single;
}

/// Splits a list into names, without quotes; runs of white space in unquoted names become one space.
std::vector<std::string> SplitFamilies(std::string_view list) {
    std::vector<std::string> families;
    while (!list.empty() && families.size() < kMostFamilies) {
        char quote = '\0';
        std::size_t end = 0;
        for (; end < list.size() && (quote != '\0' || list[end] != ','); ++end) {
            if (quote == '\0' && (list[end] == '"' || list[end] == '\''))
                quote = list[end];
            else if (list[end] == quote)
                quote = '\0';
        }
        std::string_view name = Trim(list.substr(0, end));
        if (name.size() >= 2 && (name.front() == '"' || name.front() == '\'') && name.back() == name.front())
            families.emplace_back(Trim(name.substr(1, name.size() - 2)));
        else
            families.push_back(WithSingleSpaces(name));
        if (families.back().empty()) families.pop_back();
        list.remove_prefix(std::min(end + 1, list.size()));
    }
    return families;
}

struct PatternDelete {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, PatternDelete>;

std::string LowerCase(const FcChar8* name) {
    const std::unique_ptr<FcChar8, decltype(&std::free)> lower(FcStrDowncase(name), &std::free);
    if (!lower) throw std::bad_alloc();
    return reinterpret_cast<const char*>(lower.get());
}

/// Whether a font has this family name in any language.
bool IsInstalled(const FcChar8* family) {
    static const auto* const installed = [] {
        auto* const names = new std::unordered_set<std::string>;
        for (const FcSetName set : {FcSetSystem, FcSetApplication}) {
            const FcFontSet* const fonts = FcConfigGetFonts(FontconfigConfiguration(), set);
            for (int i = 0; fonts && i < fonts->nfont; ++i) {
                FcChar8* name = nullptr;
                for (int n = 0; FcPatternGetString(fonts->fonts[i], FC_FAMILY, n, &name) == FcResultMatch;
                     ++n)
                    names->insert(LowerCase(name));
            }
        }
        return names;
    }();
    return installed->contains(LowerCase(family));
}

/// Whether a font of a pattern's family, or of an equivalent one, is installed.
bool MayBeOfFamily(FcPattern* substituted) {
    FcValue value;
    FcValueBinding binding = FcValueBindingWeak;
    for (int i = 0; FcPatternGetWithBinding(substituted, FC_FAMILY, i, &value, &binding) == FcResultMatch;
         ++i)
        if (value.type == FcTypeString && (binding != FcValueBindingWeak || i == 0) && IsInstalled(value.u.s))
            return true;
    return false;
}

/// fontconfig binds equivalent families strongly, like the family asked for, and last resorts weakly.
bool IsOfFamily(FcPattern* substituted, FcPattern* match) {
    FcChar8* matched = nullptr;
    if (FcPatternGetString(match, FC_FAMILY, 0, &matched) != FcResultMatch) return false;
    FcValue value;
    FcValueBinding binding = FcValueBindingWeak;
    for (int i = 0; FcPatternGetWithBinding(substituted, FC_FAMILY, i, &value, &binding) == FcResultMatch;
         ++i)
        if (value.type == FcTypeString && FcStrCmpIgnoreCase(value.u.s, matched) == 0)
            return binding != FcValueBindingWeak || i == 0;
    return false;
}

/// Names of looks rather than of families, in any case: editors write "Sans" and "Monospace".
bool IsGeneric(const std::string& family) {
    constexpr const char* kGeneric[] = {"serif",        "sans-serif", "monospace",  "cursive",
                                        "fantasy",      "system-ui",  "ui-serif",   "ui-sans-serif",
                                        "ui-monospace", "sans",       "sans serif", "mono"};
    const auto bytesOf = [](const char* text) { return reinterpret_cast<const FcChar8*>(text); };
    return std::any_of(std::begin(kGeneric), std::end(kGeneric), [&](const char* name) {
        return FcStrCmpIgnoreCase(bytesOf(name), bytesOf(family.c_str())) == 0;
    });
}

struct FamilyQuery {
    const std::string& family;
    int slant, width, weight;
};

/// fontconfig's match for a family, which may be another one with the same metrics or look. Matching examines
/// all fonts, so it is skipped when only a last resort could result. Throws std::bad_alloc.
/// @return without an entry also for the last resort of a name that is not a generic family
FamilyAnswers::Answer AskFontconfig(const FontCatalogue& catalogue, const FamilyQuery& query) {
    FcConfig* const configuration = FontconfigConfiguration();
    const Pattern wanted(FcPatternCreate());
    if (!wanted) throw std::bad_alloc();
    const auto* const family = reinterpret_cast<const FcChar8*>(query.family.c_str());
    // An answer found with too little memory would be kept for later processes.
    if (!FcPatternAddString(wanted.get(), FC_FAMILY, family) ||
        !FcPatternAddInteger(wanted.get(), FC_SLANT, query.slant) ||
        !FcPatternAddInteger(wanted.get(), FC_WIDTH, query.width) ||
        !FcPatternAddInteger(wanted.get(), FC_WEIGHT, FcWeightFromOpenType(query.weight)) ||
        !FcPatternAddBool(wanted.get(), FC_OUTLINE, FcTrue) ||
        !FcConfigSubstitute(configuration, wanted.get(), FcMatchPattern))
        throw std::bad_alloc();
    if (!IsGeneric(query.family) && !MayBeOfFamily(wanted.get())) return {};
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const Pattern match(FcFontMatch(configuration, wanted.get(), &result));
    if (!match) return {};
    return {catalogue.EntryOf(match.get()), IsOfFamily(wanted.get(), match.get())};
}

/// The same, from the answers that are kept if it is among them.
FamilyAnswers::Answer AskForFamily(const FontCatalogue& catalogue, const FamilyQuery& query) {
    static auto* const answers = new FamilyAnswers(catalogue);
    std::string key = query.family;
    for (const int number : {query.slant, query.width, query.weight}) key += '\n' + std::to_string(number);
    if (const auto kept = answers->Find(key)) return *kept;
    const FamilyAnswers::Answer answer = AskFontconfig(catalogue, query);
    answers->Add(key, answer);
    return answer;
}

/// The usual serif fonts that drawings without a font were made with, or others with their metrics; else any
/// serif font.
const CatalogueEntry* LastResort(const FontCatalogue& catalogue, int slant, int width, int weight) {
    FamilyAnswers::Answer answer = AskForFamily(catalogue, {"Times New Roman", slant, width, weight});
    if (!answer.entry || !answer.isOfFamily)
        answer = AskForFamily(catalogue, {"serif", slant, width, weight});
    return answer.entry ? answer.entry : catalogue.EntryAt(1);
}

/// Cached, because every text in a missing family needs the same result.
const CatalogueEntry* FindLastResort(const FontCatalogue& catalogue, int slant, int width, int weight) {
    struct Kept {
        const FontCatalogue* catalogue = nullptr;
        int slant = 0, width = 0, weight = 0;
        const CatalogueEntry* entry = nullptr;
    };
    static Kept kept;
    if (kept.catalogue != &catalogue || kept.slant != slant || kept.width != width || kept.weight != weight)
        kept = {&catalogue, slant, width, weight, LastResort(catalogue, slant, width, weight)};
    return kept.entry;
}

/// The entry chosen for a query.
const CatalogueEntry* Choose(const FontCatalogue& catalogue, const ORVFontQuery& query, bool& isOfFamily) {
    const int slant = query.isItalic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN;
    const int width = static_cast<int>(std::clamp(query.stretch, 50.0, 200.0));
    isOfFamily = true;
    for (const std::string& family : SplitFamilies(query.families)) {
        if (const ORVFont* font = catalogue.FindByFamily(family, false))
            return &catalogue.NearestFace(*catalogue.EntryAt(font->GetCatalogueIndex()), slant, width,
                                          query.weight);
        const FamilyAnswers::Answer answer = AskForFamily(catalogue, {family, slant, width, query.weight});
        if (answer.entry && (answer.isOfFamily || IsGeneric(family)))
            return &catalogue.NearestFace(*answer.entry, slant, width, query.weight);
    }
    isOfFamily = Trim(query.families).empty();
    const CatalogueEntry* const entry = FindLastResort(catalogue, slant, width, query.weight);
    return entry ? &catalogue.NearestFace(*entry, slant, width, query.weight) : nullptr;
}

ORVFontChoice MakeChoice(const FontCatalogue& catalogue, const ORVFontQuery& query) {
    ORVFontChoice choice;
    const CatalogueEntry* entry = Choose(catalogue, query, choice.isOfFamily);
    if (!entry) throw FontFailure({"no font is installed; install one, such as Debian's fonts-liberation"});
    choice.font = entry->font;
    choice.weight = kOwnStyleWeight;
    choice.isToBeSlanted = query.isItalic && entry->slant == FC_SLANT_ROMAN;
    const auto* const own = static_cast<const FileFace*>(choice.font->GetFace(kOwnStyleWeight));
    choice.face = own;
    if (own) {
        const VariedFace varied = VaryFace(*own, query);
        choice.face = varied.face;
        choice.dependsOnSize = varied.dependsOnSize;
        choice.isToBeSlanted = choice.isToBeSlanted && !varied.isSlanted;
    }
    const int weight = choice.face == own ? entry->weight : choice.face->GetWeight();
    if (query.weight >= kLeastBoldWeight && weight < kLeastBoldWeight) {
        choice.weight = kBoldStyleWeight;
        if (choice.face == own) choice.face = choice.font->GetFace(kBoldStyleWeight);
    }
    return choice;
}

}  // namespace

ORVFontChoice ChooseFont(const FontCatalogue& catalogue, const ORVFontQuery& query) {
    static std::mutex mutex;
    static auto* const known = new std::unordered_map<std::string, ORVFontChoice>;
    std::string key(query.families);
    key += '\0';
    key += std::to_string(query.weight) + (query.isItalic ? 'i' : 'n') + std::to_string(query.stretch);
    key += query.variations;
    const std::lock_guard lock(mutex);
    const auto sizedKey = [&] { return key + '\0' + std::to_string(query.size); };
    if (const auto found = known->find(key); found != known->end()) {
        if (!found->second.dependsOnSize) return found->second;
        if (const auto sized = known->find(sizedKey()); sized != known->end()) return sized->second;
    }
    const ORVFontChoice choice = MakeChoice(catalogue, query);
    // Limits the cache, since documents may name any number of families.
    constexpr std::size_t kMostKept = 4096;
    if (known->size() >= kMostKept) known->clear();
    known->emplace(key, choice);
    if (choice.dependsOnSize) known->emplace(sizedKey(), choice);
    return choice;
}
