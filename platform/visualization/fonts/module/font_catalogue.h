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

/// Fonts are destroyed only by the catalogue.
struct CatalogueDelete {
    void operator()(const ORVFont* font) const;
};

/// A font of the catalogue with its properties for look-ups.
struct CatalogueEntry : ORVFontRecord {
    std::unique_ptr<const ORVFont, CatalogueDelete> ownFont;
    std::unique_ptr<const FileFace> ownFace;
    int weight = 400;  ///< OpenType weight
    int slant = 0;     ///< fontconfig slant: 0 upright
    int width = 100;   ///< fontconfig width: 100 normal
};

/// The catalogue of the process. Built on first use and never destroyed, because fonts and faces live as long
/// as the process. Entries are only appended.
class FontCatalogue {
public:
    /// Throws FontFailure or std::bad_alloc when the catalogue cannot be built; the next call tries again.
    static FontCatalogue& Get();
    /// Sets whether the catalogue may be built from the face index. Must be called before anything else.
    static void LetUseIndex(bool use);

    FontCatalogue(const FontCatalogue&) = delete;
    FontCatalogue& operator=(const FontCatalogue&) = delete;

    const ORVFont* FindByName(std::string_view name);
    const ORVFont* FindByFamily(std::string_view family, bool alsoPlain) const;
    int Count() const;
    /// The entry with catalogue index `index`; null when there is none.
    const CatalogueEntry* EntryAt(int index) const;
    /// The face of an entry's family that is closest in width, then in slant, then in weight.
    const CatalogueEntry& NearestFace(const CatalogueEntry& entry, int slant, int width, int weight) const;
    /// The entry that a fontconfig pattern describes; null when it is not an outline font.
    const CatalogueEntry* EntryOf(FcPattern* pattern) const;
    /// The entry of a file's face; null when there is none.
    const CatalogueEntry* EntryOf(std::string_view path, unsigned int index) const;
    /// The header of the face index that describes the installed fonts; empty when none does.
    const std::string& GetIndexHeader() const { return indexHeader_; }
    const ORVFont* Register(std::string_view name, const std::string& faceFile);
    const FileFace* FindFace(const ORVFont& font, int weight) const;
    /// The catalogue's face that a fontconfig pattern describes; null when it is not an outline font.
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
    const CatalogueEntry* EntryOf(const std::string& fileKey) const;
    void Append(CatalogueEntry entry, std::string name, ORVFont::Kind kind);
    void IndexNames(const CatalogueEntry& entry);
    const ORVFont* MakeStandIn(std::string_view name);
    const CatalogueEntry* ChooseStandIn(std::string_view name) const;
    const CatalogueEntry* FindItself(std::string_view fileName) const;
    const CatalogueEntry* FindInstalled(std::string_view family) const;
    const CatalogueEntry* MatchPattern(const char* family, int slant, int weight) const;
    const CatalogueEntry* NearestOfFamily(const CatalogueEntry& entry, int slant, int weight) const;
    std::string UniqueName(const std::string& path, unsigned int faceIndex) const;

    std::string indexHeader_;
    mutable std::shared_mutex mutex_;  // guards everything below
    std::deque<CatalogueEntry> entries_;
    std::vector<std::unique_ptr<const ORVFont, CatalogueDelete>> standIns_;
    ByText<const ORVFont*> byName_;  // including substitutes
    ByText<const ORVFont*> forAttribute_, forStyle_;
    ByText<const CatalogueEntry*> byFile_;  // key: path and face index
};
