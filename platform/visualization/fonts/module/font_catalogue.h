// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <deque>
#include <memory>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <fontconfig/fontconfig.h>

#include "platform/visualization/fonts/ORVFont.h"
#include "platform/visualization/fonts/font_system.h"
#include "platform/visualization/fonts/module/file_face.h"

/// Fonts end with the catalogue only; nobody else may delete them.
struct CatalogueDelete {
    void operator()(const ORVFont* font) const;
};

/// One font of the catalogue with what it is asked for.
struct CatalogueEntry : ORVFontRecord {
    std::unique_ptr<const ORVFont, CatalogueDelete> ownFont;
    std::unique_ptr<const FileFace> ownFace;
    int weight = 400;  ///< as OpenType counts it
    int slant = 0;     ///< fontconfig's: 0 upright
    int width = 100;   ///< fontconfig's: 100 normal
};

/// The one catalogue of the process. Built at first use and never taken down, since fonts and faces live as
/// long as the process. Entries are only ever added, at the end.
class FontCatalogue {
public:
    /// Throws FontFailure or std::bad_alloc where it cannot be built; the next question tries again.
    static FontCatalogue& Get();
    /// Whether it may be built from the index of faces. To be said before.
    static void LetUseIndex(bool use);

    FontCatalogue(const FontCatalogue&) = delete;
    FontCatalogue& operator=(const FontCatalogue&) = delete;

    const ORVFont* FindByName(std::string_view name);
    const ORVFont* FindByFamily(std::string_view family, bool alsoPlain) const;
    int Count() const;
    /// The entry with catalogue index `index`, null when there is none.
    const CatalogueEntry* EntryAt(int index) const;
    /// The face of an entry's family that comes nearest: in width first, then in slant, then in weight.
    const CatalogueEntry& NearestFace(const CatalogueEntry& entry, int slant, int width, int weight) const;
    /// The entry that a pattern of fontconfig stands for, null when it is no outline font.
    const CatalogueEntry* EntryOf(FcPattern* pattern) const;
    const ORVFont* Register(std::string_view name, const std::string& faceFile);
    const FileFace* FindFace(const ORVFont& font, int weight) const;
    /// The catalogue's face that a pattern of fontconfig stands for, null when it is no outline font.
    const FileFace* FindFace(FcPattern* pattern) const;

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
    };
    template <class Value>
    using ByText = std::unordered_map<std::string, Value, Hash, std::equal_to<>>;

    FontCatalogue();
    ~FontCatalogue() = default;

    void AddInstalledFonts();
    void Append(CatalogueEntry entry, std::string name, ORVFont::Kind kind);
    void IndexNames(const CatalogueEntry& entry);
    const ORVFont* MakeStandIn(std::string_view name);
    const CatalogueEntry* ChooseStandIn(std::string_view name) const;
    const CatalogueEntry* FindItself(std::string_view fileName) const;
    const CatalogueEntry* FindInstalled(std::string_view family) const;
    const CatalogueEntry* MatchPattern(const char* family, int slant, int weight) const;
    const CatalogueEntry* NearestOfFamily(const CatalogueEntry& entry, int slant, int weight) const;
    std::string UniqueName(const std::string& path, unsigned int faceIndex) const;

    mutable std::shared_mutex mutex_;  // guards everything below
    std::deque<CatalogueEntry> entries_;
    std::vector<std::unique_ptr<const ORVFont, CatalogueDelete>> standIns_;
    ByText<const ORVFont*> byName_;  // stand-ins included
    ByText<const ORVFont*> forAttribute_, forStyle_;
    ByText<const CatalogueEntry*> byFile_;  // path and face index
};
