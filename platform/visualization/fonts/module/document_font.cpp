// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/document_font.h"

#include FT_TRUETYPE_TABLES_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "platform/system/gzip.h"
#include "platform/visualization/fonts/module/font_failure.h"

namespace {

std::uint32_t NumberAt(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + 4 && i < bytes.size(); ++i)
        number = number << 8U | static_cast<unsigned char>(bytes[i]);
    return number;
}

bool IsPacked(std::string_view bytes) { return bytes.starts_with("wOFF") || bytes.starts_with("wOF2"); }

bool IsOpenType(std::string_view bytes) {
    return bytes.starts_with(std::string_view("\0\1\0\0", 4)) || bytes.starts_with("OTTO") ||
           bytes.starts_with("true") || bytes.starts_with("ttcf");
}

/// Whether the uncompressed size declared in a file is within the limits. FreeType enforces the declared
/// size.
bool MayBeUnpacked(std::string_view bytes) {
    constexpr std::size_t kTotalSize = 16, kHeader = 44;  // of both formats
    if (bytes.size() < kHeader) return false;
    const UnpackLimits limits = UnpackLimits::InForce();
    const std::size_t size = NumberAt(bytes, kTotalSize);
    return size <= limits.size && (size <= limits.freeSize || size / limits.ratio <= bytes.size());
}

/// The bytes of a table; empty when it is missing or truncated.
std::string_view TableOf(std::string_view file, std::string_view name) {
    constexpr std::size_t kHeader = 12, kRecord = 16, kPlace = 8, kLength = 12;
    for (std::size_t at = kHeader; at + kRecord <= file.size() && at < kHeader + 0xFFFF * kRecord;
         at += kRecord) {
        if (!file.substr(at).starts_with(name)) continue;
        const std::size_t place = NumberAt(file, at + kPlace), length = NumberAt(file, at + kLength);
        return place <= file.size() && length <= file.size() - place ? file.substr(place, length)
                                                                     : std::string_view();
    }
    return {};
}

/// FreeType's WOFF2 decoder stores the end of the last glyph relative to the start of the file. Other readers
/// take that for an invalid offset and the glyph for empty.
void MendLastGlyph(std::string& file) {
    constexpr std::size_t kLocationFormat = 50;
    const std::string_view head = TableOf(file, "head"), loca = TableOf(file, "loca");
    const std::size_t length = TableOf(file, "glyf").size();
    if (head.size() < kLocationFormat + 2 || length == 0) return;
    const bool isLong = head[kLocationFormat + 1] != 0;
    const std::size_t width = isLong ? 4 : 2;
    if (loca.size() < width) return;
    const std::size_t last = static_cast<std::size_t>(loca.data() - file.data()) + loca.size() - width;
    const std::size_t end = isLong ? NumberAt(file, last) : (NumberAt(file, last) >> 16U) * 2;
    if (end <= length) return;
    const std::size_t stored = isLong ? length : length / 2;
    for (std::size_t i = 0; i < width; ++i)
        file[last + i] = static_cast<char>(stored >> 8U * (width - 1 - i) & 0xFFU);
}

/// The uncompressed font of a WOFF file; empty when it is damaged.
std::string Unpacked(std::string_view bytes) {
    if (!MayBeUnpacked(bytes)) return {};
    const FreeTypeFace face = OpenFreeTypeFace(bytes, 0);
    if (!face) return {};
    // FreeType presents such files as uncompressed; table 0 is the whole file.
    FT_ULong size = 0;
    if (FT_Load_Sfnt_Table(face.get(), 0, 0, nullptr, &size) != 0) return {};
    std::string whole(size, '\0');
    if (FT_Load_Sfnt_Table(face.get(), 0, 0, reinterpret_cast<FT_Byte*>(whole.data()), &size) != 0) return {};
    MendLastGlyph(whole);
    return whole;
}

std::string TextOf(const char* text) { return text ? text : std::string(); }

}  // namespace

std::shared_ptr<const FileFace> OpenDocumentFont(ORVDocumentFont font) {
    MakeSureOfMemory();
    if (IsPacked(font.bytes)) font.bytes = Unpacked(font.bytes);
    if (!IsOpenType(font.bytes)) return nullptr;
    FileFace::Description description;
    {
        const FreeTypeFace face = OpenFreeTypeFace(font.bytes, 0);
        if (!face || !(FT_IS_SCALABLE(face.get()) || FT_HAS_FIXED_SIZES(face.get()))) return nullptr;
        description.style = TextOf(face->style_name);
        description.postScriptName = TextOf(FT_Get_Postscript_Name(face.get()));
    }
    description.family = std::move(font.family);
    description.weight = font.weight;
    description.isItalic = font.isItalic;
    auto face = std::make_shared<const FileFace>(std::move(description), std::move(font.bytes),
                                                 std::move(font.ranges));
    return face->GetHarfBuzzFont() ? face : nullptr;
}
