// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/font_catalogue.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <mutex>
#include <tuple>
#include <utility>

#include "platform/visualization/fonts/module/fixed_fonts.h"
#include "platform/visualization/fonts/module/fontconfig_faces.h"
#include "platform/visualization/fonts/module/installed_faces.h"

namespace {

constexpr int kRegularWeight = 400, kLightWeight = 300, kBoldWeight = 700, kHeaviestWeight = 900;
constexpr int kLeastBoldWeight = 600;
constexpr std::string_view kPlainEnding = ".font";

void RemoveAll(std::string& text, std::string_view part) {
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at))
        text.erase(at, part.size());
}

bool EqualIgnoringCase(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lower(x) == lower(y); });
}

std::string_view FileNameOf(std::string_view path) { return path.substr(path.rfind('/') + 1); }

std::unique_ptr<const FileFace> MakeFace(const CatalogueEntry& entry, std::string path, unsigned int index) {
    return std::make_unique<const FileFace>(
        FileFace::Description{std::move(path), index, entry.family, entry.style, entry.postScriptName,
                              entry.weight, entry.slant != FC_SLANT_ROMAN});
}

std::atomic<bool> mayUseIndex{true};

}  // namespace

FontCatalogue& FontCatalogue::Get() {
    static FontCatalogue* const catalogue = new FontCatalogue;
    return *catalogue;
}

void FontCatalogue::LetUseIndex(bool use) { mayUseIndex = use; }

FontCatalogue::FontCatalogue() { AddInstalledFonts(); }

void CatalogueDelete::operator()(const ORVFont* font) const {
    if (font && font->GetKind() == ORVFont::kPlain)
        delete font;
    else
        delete static_cast<const ORVOutlineFont*>(font);
}

void FontCatalogue::AddInstalledFonts() {
    InstalledFaces installed = FindInstalledFaces(mayUseIndex);
    indexHeader_ = std::move(installed.indexHeader);
    for (InstalledFace& face : installed.faces) {
        std::string name = UniqueName(face.path, face.index);
        CatalogueEntry entry;
        entry.foundry = std::move(face.foundry);
        entry.family = std::move(face.family);
        entry.style = std::move(face.style);
        entry.fullName = std::move(face.fullName);
        entry.postScriptName = std::move(face.postScriptName);
        entry.weight = face.weight;
        entry.slant = face.slant;
        entry.width = face.width;
        entry.ownFace = MakeFace(entry, std::move(face.path), face.index);
        Append(std::move(entry), std::move(name), face.kind);
    }
}

std::string FontCatalogue::UniqueName(const std::string& path, unsigned int faceIndex) const {
    std::string name(FileNameOf(path));
    if (faceIndex > 0) name += "#" + std::to_string(faceIndex);
    std::string unique = name;
    for (int number = 2; byName_.contains(unique); ++number) unique = name + "~" + std::to_string(number);
    return unique;
}

void FontCatalogue::Append(CatalogueEntry entry, std::string name, ORVFont::Kind kind) {
    std::string fileKey = FileKey(entry.ownFace->GetFilePath(), entry.ownFace->GetFaceIndex());
    const int index = static_cast<int>(entries_.size()) + 1;
    entry.ownFont.reset(kind == ORVFont::kPlain ? new ORVFont(name, index, kind)
                                                : new ORVOutlineFont(name, index, kind));
    entry.font = entry.ownFont.get();
    entry.face = entry.ownFace.get();
    entries_.push_back(std::move(entry));
    const CatalogueEntry& kept = entries_.back();
    byName_.emplace(std::move(name), kept.font);
    if (kind != ORVFont::kPlain) byFile_.emplace(std::move(fileKey), &kept);
    IndexNames(kept);
}

// Entries are added in catalogue order and existing names are kept, so a look-up finds the first match.
void FontCatalogue::IndexNames(const CatalogueEntry& entry) {
    const std::string_view name = entry.font->GetName();
    if (entry.font->GetKind() == ORVFont::kPlain) {
        std::string family(name);
        RemoveAll(family, kPlainEnding);
        forAttribute_.emplace(std::move(family), entry.font);
        return;
    }
    const bool skippedByStyle = name.find(kPlainEnding) != name.npos;
    for (const std::string* text : {&entry.family, &entry.fullName, &entry.postScriptName}) {
        forAttribute_.emplace(*text, entry.font);
        if (!skippedByStyle) forStyle_.emplace(*text, entry.font);
    }
}

const ORVFont* FontCatalogue::FindByName(std::string_view name) {
    {
        const std::shared_lock lock(mutex_);
        if (const auto found = byName_.find(name); found != byName_.end()) return found->second;
    }
    return FindFixedFont(name) ? MakeStandIn(name) : nullptr;
}

const ORVFont* FontCatalogue::FindByFamily(std::string_view family, bool alsoPlain) const {
    const std::shared_lock lock(mutex_);
    const auto& index = alsoPlain ? forAttribute_ : forStyle_;
    const auto found = index.find(family);
    return found == index.end() ? nullptr : found->second;
}

int FontCatalogue::Count() const {
    const std::shared_lock lock(mutex_);
    return static_cast<int>(entries_.size());
}

const CatalogueEntry* FontCatalogue::EntryAt(int index) const {
    const std::shared_lock lock(mutex_);
    if (index < 1 || static_cast<std::size_t>(index) > entries_.size()) return nullptr;
    return &entries_[static_cast<std::size_t>(index) - 1];
}

const ORVFont* FontCatalogue::Register(std::string_view name, const std::string& faceFile) {
    CatalogueEntry entry;
    auto trial = MakeFace(entry, faceFile, 0);
    const FT_Face face = trial->LoadFreeType();
    if (!face || !trial->GetHarfBuzzFont() || !FT_IS_SCALABLE(face)) return nullptr;

    entry.family = face->family_name ? face->family_name : "";
    entry.style = face->style_name ? face->style_name : "";
    const char* postScriptName = FT_Get_Postscript_Name(face);
    entry.postScriptName = postScriptName ? postScriptName : "";
    entry.weight = (face->style_flags & FT_STYLE_FLAG_BOLD) ? kBoldWeight : kRegularWeight;
    entry.slant = (face->style_flags & FT_STYLE_FLAG_ITALIC) ? FC_SLANT_ITALIC : FC_SLANT_ROMAN;
    entry.ownFace = MakeFace(entry, faceFile, 0);
    // Load the file now, because the host may delete it after registration.
    entry.ownFace->LoadFreeType();
    entry.ownFace->GetHarfBuzzFont();

    const std::unique_lock lock(mutex_);
    if (name.empty() || byName_.contains(name)) return nullptr;
    Append(std::move(entry), std::string(name), ORVFont::kPlain);
    return entries_.back().font;
}

const FileFace* FontCatalogue::FindFace(const ORVFont& font, int weight) const {
    const CatalogueEntry* own = EntryAt(font.GetCatalogueIndex());
    if (!own) return nullptr;
    if (own->font->GetKind() == ORVFont::kPlain) return own->ownFace.get();
    const std::shared_lock lock(mutex_);
    switch (weight) {
        case 24: return NearestOfFamily(*own, own->slant, std::min(own->weight, kLightWeight))->ownFace.get();
        case 26: return NearestOfFamily(*own, own->slant, std::max(own->weight, kBoldWeight))->ownFace.get();
        case 27: return NearestOfFamily(*own, own->slant, kHeaviestWeight)->ownFace.get();
        default: return own->ownFace.get();
    }
}

const FileFace* FontCatalogue::FindFace(FcPattern* pattern) const {
    const std::shared_lock lock(mutex_);
    const auto found = byFile_.find(FileKey(pattern));
    return found == byFile_.end() ? nullptr : found->second->ownFace.get();
}

/// The face of `entry`'s family closest to a weight, on the same side of regular. If the family has no light
/// or bold face, `entry` itself or, for another slant, the closest face of any weight.
const CatalogueEntry* FontCatalogue::NearestOfFamily(const CatalogueEntry& entry, int slant,
                                                     int weight) const {
    const auto suits = [&](const CatalogueEntry& other) {
        if (other.font->GetKind() == ORVFont::kPlain || other.width != entry.width || other.slant != slant)
            return false;
        if (slant != entry.slant) return true;
        return weight < kRegularWeight ? other.weight < kRegularWeight
                                       : weight < kLeastBoldWeight || other.weight >= kLeastBoldWeight;
    };
    const CatalogueEntry* nearest = &entry;
    bool found = false;
    const auto consider = [&](const CatalogueEntry& other) {
        if (!suits(other)) return;
        const int distance = std::abs(other.weight - weight), least = std::abs(nearest->weight - weight);
        if (!found || distance < least) nearest = &other;
        found = true;
    };
    // The faces of a family are adjacent.
    auto first = static_cast<std::size_t>(entry.font->GetCatalogueIndex()) - 1;
    while (first > 0 && entries_[first - 1].family == entry.family) --first;
    for (std::size_t i = first; i < entries_.size() && entries_[i].family == entry.family; ++i)
        consider(entries_[i]);
    return nearest;
}

const CatalogueEntry& FontCatalogue::NearestFace(const CatalogueEntry& entry, int slant, int width,
                                                 int weight) const {
    const std::shared_lock lock(mutex_);
    // As in CSS: weights below regular prefer lighter faces, weights above prefer bolder ones.
    const auto weightDistance = [weight](int other) {
        constexpr int kWrongSide = 1000, kMostRegular = 500;
        const int distance = std::abs(other - weight);
        if (other == weight) return 0;
        if (weight >= kRegularWeight && weight <= kMostRegular)
            return other > weight && other <= kMostRegular ? distance
                   : other < weight                        ? kWrongSide + distance
                                                           : 2 * kWrongSide + distance;
        const bool isRightSide = weight < kRegularWeight ? other < weight : other > weight;
        return isRightSide ? distance : kWrongSide + distance;
    };
    const auto isSlanted = [](int other) { return other != FC_SLANT_ROMAN; };
    const auto rank = [&](const CatalogueEntry& other) {
        return std::tuple(std::abs(other.width - width), isSlanted(other.slant) == isSlanted(slant) ? 0 : 1,
                          std::abs(other.slant - slant), weightDistance(other.weight));
    };
    const CatalogueEntry* nearest = &entry;
    auto first = static_cast<std::size_t>(entry.font->GetCatalogueIndex()) - 1;
    while (first > 0 && entries_[first - 1].family == entry.family) --first;
    for (std::size_t i = first; i < entries_.size() && entries_[i].family == entry.family; ++i)
        if (entries_[i].font->GetKind() != ORVFont::kPlain && rank(entries_[i]) < rank(*nearest))
            nearest = &entries_[i];
    return *nearest;
}

const CatalogueEntry* FontCatalogue::EntryOf(FcPattern* pattern) const { return EntryOf(FileKey(pattern)); }

const CatalogueEntry* FontCatalogue::EntryOf(std::string_view path, unsigned int index) const {
    return EntryOf(FileKey(path, index));
}

const CatalogueEntry* FontCatalogue::EntryOf(const std::string& fileKey) const {
    const std::shared_lock lock(mutex_);
    const auto found = byFile_.find(fileKey);
    return found == byFile_.end() ? nullptr : found->second;
}

const ORVFont* FontCatalogue::MakeStandIn(std::string_view name) {
    const std::unique_lock lock(mutex_);
    if (const auto found = byName_.find(name); found != byName_.end()) return found->second;
    const CatalogueEntry* entry = ChooseStandIn(name);
    const int index = entry ? entry->font->GetCatalogueIndex() : 0;
    const ORVFont::Kind kind = entry ? entry->font->GetKind() : ORVFont::kTrueType;
    standIns_.emplace_back(std::unique_ptr<const ORVFont, CatalogueDelete>(
        new ORVOutlineFont(ORVUnicodeString(name), index, kind)));
    const ORVFont* font = standIns_.back().get();
    byName_.emplace(std::string(name), font);
    return font;
}

/// The file of that name except for case; else a family with the same metrics or look; else fontconfig's
/// match; else any font.
const CatalogueEntry* FontCatalogue::ChooseStandIn(std::string_view name) const {
    if (const CatalogueEntry* itself = FindItself(name)) return itself;
    const FixedFont& fixed = *FindFixedFont(name);
    for (const char* family : fixed.families)
        if (const CatalogueEntry* entry = FindInstalled(family)) return entry;
    const int slant = fixed.lastResort == FixedFont::kItalicSerif ? FC_SLANT_ITALIC : FC_SLANT_ROMAN;
    const int weight = fixed.lastResort == FixedFont::kBoldSans ? kBoldWeight : kRegularWeight;
    for (const char* family : LastResortFamilies(fixed.lastResort))
        if (const CatalogueEntry* entry = FindInstalled(family))
            return NearestOfFamily(*entry, slant, weight);
    if (const CatalogueEntry* entry = MatchPattern(GenericFamily(fixed.lastResort), slant, weight))
        return entry;
    const auto outline = std::find_if(entries_.begin(), entries_.end(), [](const CatalogueEntry& entry) {
        return entry.font->GetKind() != ORVFont::kPlain;
    });
    return outline == entries_.end() ? nullptr : &*outline;
}

const CatalogueEntry* FontCatalogue::FindItself(std::string_view fileName) const {
    for (const CatalogueEntry& entry : entries_)
        if (entry.font->GetKind() != ORVFont::kPlain &&
            EqualIgnoringCase(entry.font->GetName().GetView(), fileName))
            return &entry;
    return nullptr;
}

const CatalogueEntry* FontCatalogue::FindInstalled(std::string_view family) const {
    const auto found = forStyle_.find(family);
    if (found == forStyle_.end()) return nullptr;
    return &entries_[static_cast<std::size_t>(found->second->GetCatalogueIndex()) - 1];
}

const CatalogueEntry* FontCatalogue::MatchPattern(const char* family, int slant, int weight) const {
    FcConfig* configuration = FontconfigConfiguration();
    FcPattern* wanted = FcPatternCreate();
    if (!wanted) return nullptr;
    FcPatternAddString(wanted, FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
    FcPatternAddInteger(wanted, FC_SLANT, slant);
    FcPatternAddInteger(wanted, FC_WEIGHT, FcWeightFromOpenType(weight));
    FcPatternAddBool(wanted, FC_OUTLINE, FcTrue);
    FcConfigSubstitute(configuration, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult result = FcResultNoMatch;
    FcPattern* match = FcFontMatch(configuration, wanted, &result);
    FcPatternDestroy(wanted);
    if (!match) return nullptr;
    const auto destroy = [](FcPattern* pattern) { FcPatternDestroy(pattern); };
    const std::unique_ptr<FcPattern, decltype(destroy)> owner(match);
    const auto found = byFile_.find(FileKey(match));
    return found == byFile_.end() ? nullptr : found->second;
}
