#pragma once

#include <fontconfig/fontconfig.h>
#include <fribidi.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include <hb-ft.h>
#include <hb.h>

#include "platform/system/ORVLoadedLibrary.h"

/// The functions of the font libraries that are in use. Each library is loaded when the first of its
/// functions is asked for: most drawings of figures never need one of them, and loading them takes longer
/// than a small drawing does. Where a library is missing, IsUsable() is false and its functions must not be
/// called.

// Every function has a member of its own name, with its own type.
// NOLINTNEXTLINE(bugprone-macro-parentheses): it declares a name.
#define ORV_DECLARE_MEMBER(name) decltype(::name)* name = nullptr;
#define ORV_FIND_MEMBER(name) library.Find(#name, name);

#if HB_VERSION_ATLEAST(7, 0, 0)
#define ORV_GLYPH_OUTLINE_FUNCTION(F) F(hb_font_draw_glyph)
#else
#define ORV_GLYPH_OUTLINE_FUNCTION(F) F(hb_font_get_glyph_shape)
#endif

#define ORV_HARFBUZZ_FUNCTIONS(F)             \
    F(hb_blob_create_from_file_or_fail)       \
    F(hb_blob_destroy)                        \
    F(hb_buffer_add_codepoints)               \
    F(hb_buffer_clear_contents)               \
    F(hb_buffer_create)                       \
    F(hb_buffer_destroy)                      \
    F(hb_buffer_get_glyph_infos)              \
    F(hb_buffer_get_glyph_positions)          \
    F(hb_buffer_set_direction)                \
    F(hb_buffer_set_language)                 \
    F(hb_buffer_set_script)                   \
    F(hb_draw_funcs_create)                   \
    F(hb_draw_funcs_make_immutable)           \
    F(hb_draw_funcs_set_close_path_func)      \
    F(hb_draw_funcs_set_cubic_to_func)        \
    F(hb_draw_funcs_set_line_to_func)         \
    F(hb_draw_funcs_set_move_to_func)         \
    F(hb_draw_funcs_set_quadratic_to_func)    \
    F(hb_face_create)                         \
    F(hb_face_destroy)                        \
    F(hb_face_get_glyph_count)                \
    F(hb_face_get_upem)                       \
    F(hb_font_create)                         \
    F(hb_font_create_sub_font)                \
    F(hb_font_destroy)                        \
    ORV_GLYPH_OUTLINE_FUNCTION(F)             \
    F(hb_font_funcs_create)                   \
    F(hb_font_funcs_make_immutable)           \
    F(hb_font_funcs_set_glyph_v_advance_func) \
    F(hb_font_funcs_set_glyph_v_origin_func)  \
    F(hb_font_get_face)                       \
    F(hb_font_get_glyph_h_advance)            \
    F(hb_font_get_h_extents)                  \
    F(hb_font_get_nominal_glyph)              \
    F(hb_font_get_scale)                      \
    F(hb_font_make_immutable)                 \
    F(hb_font_set_funcs)                      \
    F(hb_ft_font_create_referenced)           \
    F(hb_ft_font_set_load_flags)              \
    F(hb_language_from_string)                \
    F(hb_shape)                               \
    F(hb_unicode_funcs_get_default)           \
    F(hb_unicode_general_category)            \
    F(hb_unicode_script)

struct HarfBuzzLibrary {
    ORVLoadedLibrary library{"libharfbuzz.so.0"};
    ORV_HARFBUZZ_FUNCTIONS(ORV_DECLARE_MEMBER)

    HarfBuzzLibrary() { ORV_HARFBUZZ_FUNCTIONS(ORV_FIND_MEMBER) }
    bool IsUsable() const { return library.IsUsable(); }
};

inline const HarfBuzzLibrary& HarfBuzz() {
    static const HarfBuzzLibrary functions;
    return functions;
}

#define ORV_FREETYPE_FUNCTIONS(F) \
    F(FT_Done_Face)               \
    F(FT_Get_Postscript_Name)     \
    F(FT_Init_FreeType)           \
    F(FT_Load_Glyph)              \
    F(FT_New_Face)                \
    F(FT_Select_Size)             \
    F(FT_Set_Char_Size)           \
    F(FT_Set_Pixel_Sizes)

struct FreeTypeLibrary {
    ORVLoadedLibrary library{"libfreetype.so.6"};
    ORV_FREETYPE_FUNCTIONS(ORV_DECLARE_MEMBER)

    FreeTypeLibrary() { ORV_FREETYPE_FUNCTIONS(ORV_FIND_MEMBER) }
    bool IsUsable() const { return library.IsUsable(); }
};

inline const FreeTypeLibrary& FreeType() {
    static const FreeTypeLibrary functions;
    return functions;
}

#define ORV_FONTCONFIG_FUNCTIONS(F) \
    F(FcCharSetHasChar)             \
    F(FcConfigGetConfigDirs)        \
    F(FcConfigGetConfigFiles)       \
    F(FcConfigGetFontDirs)          \
    F(FcConfigGetFonts)             \
    F(FcConfigReference)            \
    F(FcConfigSubstitute)           \
    F(FcDefaultSubstitute)          \
    F(FcFontMatch)                  \
    F(FcFontSetDestroy)             \
    F(FcFontSort)                   \
    F(FcPatternAddBool)             \
    F(FcPatternAddInteger)          \
    F(FcPatternAddString)           \
    F(FcPatternCreate)              \
    F(FcPatternDestroy)             \
    F(FcPatternGetBool)             \
    F(FcPatternGetCharSet)          \
    F(FcPatternGetDouble)           \
    F(FcPatternGetInteger)          \
    F(FcPatternGetString)           \
    F(FcStrListDone)                \
    F(FcStrListNext)                \
    F(FcWeightFromOpenType)         \
    F(FcWeightToOpenType)

struct FontconfigLibrary {
    ORVLoadedLibrary library{"libfontconfig.so.1"};
    ORV_FONTCONFIG_FUNCTIONS(ORV_DECLARE_MEMBER)

    FontconfigLibrary() { ORV_FONTCONFIG_FUNCTIONS(ORV_FIND_MEMBER) }
    bool IsUsable() const { return library.IsUsable(); }
};

inline const FontconfigLibrary& Fontconfig() {
    static const FontconfigLibrary functions;
    return functions;
}

#define ORV_FRIBIDI_FUNCTIONS(F) \
    F(fribidi_get_bidi_types)    \
    F(fribidi_get_bracket_types) \
    F(fribidi_get_par_embedding_levels_ex)

struct FriBidiLibrary {
    ORVLoadedLibrary library{"libfribidi.so.0"};
    ORV_FRIBIDI_FUNCTIONS(ORV_DECLARE_MEMBER)

    FriBidiLibrary() { ORV_FRIBIDI_FUNCTIONS(ORV_FIND_MEMBER) }
    bool IsUsable() const { return library.IsUsable(); }
};

inline const FriBidiLibrary& FriBidi() {
    static const FriBidiLibrary functions;
    return functions;
}

#undef ORV_GLYPH_OUTLINE_FUNCTION
#undef ORV_HARFBUZZ_FUNCTIONS
#undef ORV_FREETYPE_FUNCTIONS
#undef ORV_FONTCONFIG_FUNCTIONS
#undef ORV_FRIBIDI_FUNCTIONS
#undef ORV_DECLARE_MEMBER
#undef ORV_FIND_MEMBER
