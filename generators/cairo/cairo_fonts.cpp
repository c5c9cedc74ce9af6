#include "generators/cairo/cairo_fonts.h"

#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include "platform/visualization/fonts/ORVFontFace.h"

namespace {

/// Opens the face's file anew: cairo sets sizes on the faces it draws with, and the platform's own have
/// theirs.
CairoFontFace Open(const ORVFontFace& face) {
    FcPattern* pattern = FcPatternCreate();
    if (!pattern) return nullptr;
    FcPatternAddString(pattern, FC_FILE, reinterpret_cast<const FcChar8*>(face.GetFilePath().c_str()));
    FcPatternAddInteger(pattern, FC_INDEX, static_cast<int>(face.GetFaceIndex()));
    CairoFontFace result(cairo_ft_font_face_create_for_pattern(pattern));
    FcPatternDestroy(pattern);
    if (cairo_font_face_status(result.get()) != CAIRO_STATUS_SUCCESS) return nullptr;

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
    return entry->second.get();
}
