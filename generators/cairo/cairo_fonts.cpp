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

/// cairo does not report why it cannot open a file, and would draw the glyphs as outlines. Throws if the file
/// is missing, or file descriptors or memory have run out.
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

/// When cairo opens a file itself, it does not distinguish the instances of a variable font. The platform's
/// face of an instance can be shared: its size is only changed to draw bitmap glyphs, which cairo does not
/// do.
CairoFontFace OpenVaried(const ORVFontFace& face) {
    FT_Face own = face.GetFreeTypeFace();
    return CairoFontFace(own ? cairo_ft_font_face_create_for_ft_face(own, FT_LOAD_NO_HINTING) : nullptr);
}

/// Opens the file again: cairo sets sizes on its faces, and the platform's own faces must keep theirs.
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

    // Unreadable files are only detected when a size is set. An error later would end the page.
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
