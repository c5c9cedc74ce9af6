// SPDX-License-Identifier: Apache-2.0
#include "generators/cairo/cairo_fonts.h"

#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <new>
#include <system_error>

#include "platform/visualization/fonts/ORVFontFace.h"

namespace {

/// cairo does not say why it cannot open a file, and the glyphs would come out as drawings. Throws where that
/// is for want of the file, of files that may be open, or of memory.
void TellWhyNot(const ORVFontFace& face) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(face.GetFilePath().c_str(), "rbe"),
                                                               std::fclose);
    if (!file)
        throw std::filesystem::filesystem_error("", face.GetFilePath(),
                                                std::error_code(errno, std::generic_category()));
    constexpr std::size_t kPlenty = std::size_t{8} << 20U;
    const std::unique_ptr<void, void (*)(void*)> room(std::malloc(kPlenty), std::free);
    if (!room) throw std::bad_alloc();
}

/// cairo takes all looks of a font that varies for one when it opens the file itself. Nobody sets sizes on
/// the platform's face of such a look but to draw pictures of glyphs, which cairo does not.
CairoFontFace OpenVaried(const ORVFontFace& face) {
    FT_Face own = face.GetFreeTypeFace();
    return CairoFontFace(own ? cairo_ft_font_face_create_for_ft_face(own, FT_LOAD_NO_HINTING) : nullptr);
}

/// Opens the file anew: cairo sets sizes on the faces it draws with, and the platform's own have theirs.
CairoFontFace OpenFile(const ORVFontFace& face) {
    FcPattern* pattern = FcPatternCreate();
    if (!pattern) return nullptr;
    FcPatternAddString(pattern, FC_FILE, reinterpret_cast<const FcChar8*>(face.GetFilePath().c_str()));
    FcPatternAddInteger(pattern, FC_INDEX, static_cast<int>(face.GetFaceIndex()));
    CairoFontFace result(cairo_ft_font_face_create_for_pattern(pattern));
    FcPatternDestroy(pattern);
    return result;
}

CairoFontFace Open(const ORVFontFace& face) {
    CairoFontFace result = face.GetVariations().empty() ? OpenFile(face) : OpenVaried(face);
    if (!result || cairo_font_face_status(result.get()) != CAIRO_STATUS_SUCCESS) return nullptr;

    // Whether the file can be read shows only when a size is asked for. An error then would end the page.
    cairo_matrix_t identity;
    cairo_matrix_init_identity(&identity);
    cairo_font_options_t* options = cairo_font_options_create();
    const CairoScaledFont trial(cairo_scaled_font_create(result.get(), &identity, &identity, options));
    cairo_font_options_destroy(options);
    if (cairo_scaled_font_status(trial.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
    return result;
}

}  // namespace

cairo_font_face_t* CairoFontCache::Find(const ORVFontFace& face) {
    const auto [entry, isNew] = faces_.try_emplace(&face);
    if (isNew) entry->second = Open(face);
    if (isNew && !entry->second) TellWhyNot(face);
    return entry->second.get();
}
