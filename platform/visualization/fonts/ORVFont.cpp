#include "platform/visualization/fonts/ORVFont.h"

#include <exception>
#include <utility>

#include "platform/visualization/fonts/font_catalogue.h"
#include "platform/visualization/fonts/installed_faces.h"

ORVFont::ORVFont(ORVUnicodeString name, int index, Kind kind)
    : name_(std::move(name)), index_(index), kind_(kind) {}

const ORVFont* ORVFont::sGetFont(std::string_view name, int /*flag*/, int /*defaultFont*/) {
    return FontCatalogue::Get().FindByName(name);
}

int ORVFont::sGetFontCount() { return FontCatalogue::Get().Count(); }

const ORVUnicodeString& ORVFont::sGetFontName(int index) {
    static const ORVUnicodeString kNone;
    const CatalogueEntry* entry = FontCatalogue::Get().EntryAt(index);
    return entry ? entry->font->GetName() : kNone;
}

void ORVFont::sUseFaceIndex(bool use) { UseFaceIndex(use); }

int ORVFont::sGetFontGeneralInformation(int index, ORVUnicodeString& name, int& kind,
                                        ORVUnicodeString& file) {
    const CatalogueEntry* entry = FontCatalogue::Get().EntryAt(index);
    if (!entry) return -1;
    name = entry->font->GetName();
    kind = entry->font->GetKind();
    file = entry->face->GetFilePath();
    return 1;
}

const ORVFont* ORVFont::sRegisterPlainFont(std::string_view name, const ORVString& faceFile) {
    try {
        return FontCatalogue::Get().Register(name, faceFile.CastToCharPtr());
    } catch (const std::exception&) {  // memory is spent
        return nullptr;
    }
}

const ORVFontFace* ORVFont::GetFace(int weight) const {
    const std::size_t slot = weight >= 24 && weight <= 27 ? static_cast<std::size_t>(weight - 24) : 1;
    const ORVFontFace* face = faces_[slot].load(std::memory_order_acquire);
    if (!face) {
        face = FontCatalogue::Get().FindFace(*this, weight);
        faces_[slot].store(face, std::memory_order_release);
    }
    return face;
}

int ORVOutlineFont::sGetFontOtherGeneralInformation(int index, ORVUnicodeString& fileName,
                                                    ORVUnicodeString& foundry, ORVUnicodeString& family,
                                                    ORVUnicodeString& style, ORVUnicodeString& fullName,
                                                    ORVUnicodeString& postScriptName) {
    const CatalogueEntry* entry = FontCatalogue::Get().EntryAt(index);
    if (!entry || entry->font->GetKind() == kPlain) return -1;
    fileName = entry->face->GetFilePath();
    foundry = entry->foundry;
    family = entry->family;
    style = entry->style;
    fullName = entry->fullName;
    postScriptName = entry->postScriptName;
    return 1;
}

int ORVFontCheckFontForVersion(const ORVFont*& font, int /*version*/) { return font ? 0 : -1; }

const ORVFont* FindFontForAttribute(std::string_view family) {
    return FontCatalogue::Get().FindByFamily(family, true);
}

const ORVFont* FindFontForStyle(std::string_view family) {
    return FontCatalogue::Get().FindByFamily(family, false);
}
