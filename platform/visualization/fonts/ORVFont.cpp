// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/ORVFont.h"

#include <exception>
#include <utility>

#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/font_system.h"

namespace {

const ORVFontRecord* RecordAt(int index) {
    ORVFontSystem* const system = ORVGetFontSystem();
    const ORVFontRecord* record = nullptr;
    return system && system->FindRecord(index, record) ? record : nullptr;
}

const ORVFont* FindByFamily(std::string_view family, bool alsoPlain) {
    ORVFontSystem* const system = ORVGetFontSystem();
    const ORVFont* font = nullptr;
    return system && system->FindByFamily(family, alsoPlain, font) ? font : ORVFont::Unavailable();
}

}  // namespace

ORVFont::ORVFont(ORVUnicodeString name, int index, Kind kind)
    : name_(std::move(name)), index_(index), kind_(kind) {}

const ORVFont* ORVFont::sGetFont(std::string_view name, int /*flag*/, int /*defaultFont*/) {
    ORVFontSystem* const system = ORVGetFontSystem();
    const ORVFont* font = nullptr;
    return system && system->FindByName(name, font) ? font : Unavailable();
}

int ORVFont::sGetFontCount() {
    ORVFontSystem* const system = ORVGetFontSystem();
    int count = 0;
    return system && system->GetCount(count) ? count : 0;
}

const ORVUnicodeString& ORVFont::sGetFontName(int index) {
    static const ORVUnicodeString kNone;
    const ORVFontRecord* record = RecordAt(index);
    return record ? record->font->GetName() : kNone;
}

void ORVFont::sUseFaceIndex(bool use) { ORVUseFaceIndex(use); }

int ORVFont::sGetFontGeneralInformation(int index, ORVUnicodeString& name, int& kind,
                                        ORVUnicodeString& file) {
    const ORVFontRecord* record = RecordAt(index);
    if (!record) return -1;
    name = record->font->GetName();
    kind = record->font->GetKind();
    file = record->face->GetFilePath();
    return 1;
}

const ORVFont* ORVFont::Unavailable() {
    static const ORVFont font(ORVUnicodeString(), 0, kPlain);
    return &font;
}

bool ORVFont::sIsBitmapFont(std::string_view family) {
    ORVFontSystem* const system = ORVGetFontSystem();
    bool has = false;
    return system && system->HasBitmapFont(family, has) && has;
}

const ORVFont* ORVFont::sRegisterPlainFont(std::string_view name, const ORVString& faceFile) {
    try {
        ORVFontSystem* const system = ORVGetFontSystem();
        const ORVFont* font = nullptr;
        return system && system->Register(name, faceFile.CastToCharPtr(), font) ? font : nullptr;
    } catch (const std::exception&) {  // out of memory
        return nullptr;
    }
}

const ORVFontFace* ORVFont::GetFace(int weight) const {
    const std::size_t slot = weight >= 24 && weight <= 27 ? static_cast<std::size_t>(weight - 24) : 1;
    const ORVFontFace* face = faces_[slot].load(std::memory_order_acquire);
    if (face || this == Unavailable()) return face;
    ORVFontSystem* const system = ORVGetFontSystem();
    face = system ? system->FindFace(*this, weight) : nullptr;
    faces_[slot].store(face, std::memory_order_release);
    return face;
}

int ORVOutlineFont::sGetFontOtherGeneralInformation(int index, ORVUnicodeString& fileName,
                                                    ORVUnicodeString& foundry, ORVUnicodeString& family,
                                                    ORVUnicodeString& style, ORVUnicodeString& fullName,
                                                    ORVUnicodeString& postScriptName) {
    const ORVFontRecord* record = RecordAt(index);
    if (!record || record->font->GetKind() == kPlain) return -1;
    fileName = record->face->GetFilePath();
    foundry = record->foundry;
    family = record->family;
    style = record->style;
    fullName = record->fullName;
    postScriptName = record->postScriptName;
    return 1;
}

int ORVFontCheckFontForVersion(const ORVFont*& font, int /*version*/) { return font ? 0 : -1; }

ORVFontChoice ORVChooseFont(const ORVFontQuery& query) {
    ORVFontSystem* const system = ORVGetFontSystem();
    ORVFontChoice choice;
    if (!system || !system->Choose(query, choice)) choice.font = ORVFont::Unavailable();
    return choice;
}

const ORVFont* orvprint::FindFontForAttribute(std::string_view family) { return FindByFamily(family, true); }

const ORVFont* orvprint::FindFontForStyle(std::string_view family) { return FindByFamily(family, false); }
