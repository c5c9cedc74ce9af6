#include "platform/visualization/fonts/ORVFontFace.h"

#include <cmath>
#include <new>
#include <utility>

#include "platform/visualization/fonts/face_content.h"
#include "platform/visualization/fonts/font_libraries.h"

namespace {

// FreeType asks for one thread at a time to open and close faces of a library object.
std::mutex freeTypeMutex;

FT_Library TheFreeType() {
    static const FT_Library library = [] {
        FT_Library made = nullptr;
        return FreeType().IsUsable() && FreeType().FT_Init_FreeType(&made) == 0 ? made : nullptr;
    }();
    return library;
}

/// The face of a TrueType or OpenType file, null for other formats.
hb_font_t* LoadOpenTypeFont(const std::string& path, unsigned int index) {
    hb_blob_t* blob = HarfBuzz().hb_blob_create_from_file_or_fail(path.c_str());
    if (!blob) return nullptr;
    hb_face_t* face = HarfBuzz().hb_face_create(blob, index);
    HarfBuzz().hb_blob_destroy(blob);
    hb_font_t* font = nullptr;
    if (HarfBuzz().hb_face_get_glyph_count(face) > 0)
        font = HarfBuzz().hb_font_create(face);  // its scale is the face's own grid
    HarfBuzz().hb_face_destroy(face);
    return font;
}

FT_Face OpenFreeTypeFace(const std::string& path, unsigned int index) {
    const std::lock_guard lock(freeTypeMutex);
    FT_Face face = nullptr;
    if (!TheFreeType()) return nullptr;
    return FreeType().FT_New_Face(TheFreeType(), path.c_str(), static_cast<FT_Long>(index), &face) == 0
               ? face
               : nullptr;
}

void CloseFreeTypeFace(FT_Face face) {
    const std::lock_guard lock(freeTypeMutex);
    FreeType().FT_Done_Face(face);
}

/// FreeType knows nothing of vertical text in these formats: glyphs stand below each other by the height of a
/// line, centred.
hb_font_funcs_t* VerticalFunctions() {
    static hb_font_funcs_t* const functions = [] {
        hb_font_funcs_t* made = HarfBuzz().hb_font_funcs_create();
        HarfBuzz().hb_font_funcs_set_glyph_v_advance_func(
            made,
            [](hb_font_t* font, void*, hb_codepoint_t, void*) -> hb_position_t {
                hb_font_extents_t extents = {};
                HarfBuzz().hb_font_get_h_extents(font, &extents);
                return extents.descender - extents.ascender;
            },
            nullptr, nullptr);
        HarfBuzz().hb_font_funcs_set_glyph_v_origin_func(
            made,
            [](hb_font_t* font, void*, hb_codepoint_t glyph, hb_position_t* x, hb_position_t* y,
               void*) -> hb_bool_t {
                hb_font_extents_t extents = {};
                HarfBuzz().hb_font_get_h_extents(font, &extents);
                *x = HarfBuzz().hb_font_get_glyph_h_advance(font, glyph) / 2;
                *y = extents.ascender;
                return true;
            },
            nullptr, nullptr);
        HarfBuzz().hb_font_funcs_make_immutable(made);
        return made;
    }();
    return functions;
}

/// The face of a file of another format. It has a FreeType face to itself, since it relies on its size: one
/// pixel is one unit of the font's own grid, and HarfBuzz counts in 64ths of a pixel.
hb_font_t* LoadOtherFont(const std::string& path, unsigned int index) {
    FT_Face face = OpenFreeTypeFace(path, index);
    if (!face) return nullptr;
    hb_font_t* font = nullptr;
    const auto grid = static_cast<FT_F26Dot6>(face->units_per_EM ? face->units_per_EM : 1000);
    if (FreeType().FT_Set_Char_Size(face, grid * 64, grid * 64, 72, 72) == 0) {
        hb_font_t* overFreeType = HarfBuzz().hb_ft_font_create_referenced(face);
        HarfBuzz().hb_ft_font_set_load_flags(overFreeType, FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP);
        HarfBuzz().hb_font_make_immutable(overFreeType);
        font = HarfBuzz().hb_font_create_sub_font(overFreeType);  // asks its parent for all but what follows
        HarfBuzz().hb_font_destroy(overFreeType);
        HarfBuzz().hb_font_set_funcs(font, VerticalFunctions(), nullptr, nullptr);
    }
    CloseFreeTypeFace(face);
    return font;
}

/// Where HarfBuzz's drawing calls go. A sink may throw when memory is spent, but not through HarfBuzz: the
/// rest of the glyph is then passed over.
struct OutlineTarget {
    ORVGlyphOutlineSink& sink;
    double scale;
    bool hasContour = false, isMemorySpent = false;

    template <class Call>
    static void Pass(void* data, Call call) {
        auto& target = *static_cast<OutlineTarget*>(data);
        if (target.isMemorySpent) return;
        try {
            call(target, target.scale);
        } catch (const std::bad_alloc&) {
            target.isMemorySpent = true;
        }
    }
};

hb_draw_funcs_t* OutlineFunctions() {
    static hb_draw_funcs_t* const functions = [] {
        hb_draw_funcs_t* made = HarfBuzz().hb_draw_funcs_create();
        HarfBuzz().hb_draw_funcs_set_move_to_func(
            made,
            [](hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) {
                OutlineTarget::Pass(data, [&](OutlineTarget& target, double s) {
                    target.hasContour = true;
                    target.sink.MoveTo(x * s, y * s);
                });
            },
            nullptr, nullptr);
        HarfBuzz().hb_draw_funcs_set_line_to_func(
            made,
            [](hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) {
                OutlineTarget::Pass(
                    data, [&](OutlineTarget& target, double s) { target.sink.LineTo(x * s, y * s); });
            },
            nullptr, nullptr);
        HarfBuzz().hb_draw_funcs_set_quadratic_to_func(
            made,
            [](hb_draw_funcs_t*, void* data, hb_draw_state_t*, float cx, float cy, float x, float y, void*) {
                OutlineTarget::Pass(data, [&](OutlineTarget& target, double s) {
                    target.sink.QuadTo(cx * s, cy * s, x * s, y * s);
                });
            },
            nullptr, nullptr);
        HarfBuzz().hb_draw_funcs_set_cubic_to_func(
            made,
            [](hb_draw_funcs_t*, void* data, hb_draw_state_t*, float c1x, float c1y, float c2x, float c2y,
               float x, float y, void*) {
                OutlineTarget::Pass(data, [&](OutlineTarget& target, double s) {
                    target.sink.CubicTo(c1x * s, c1y * s, c2x * s, c2y * s, x * s, y * s);
                });
            },
            nullptr, nullptr);
        HarfBuzz().hb_draw_funcs_set_close_path_func(
            made,
            [](hb_draw_funcs_t*, void* data, hb_draw_state_t*, void*) {
                OutlineTarget::Pass(data, [](OutlineTarget& target, double) { target.sink.Close(); });
            },
            nullptr, nullptr);
        HarfBuzz().hb_draw_funcs_make_immutable(made);
        return made;
    }();
    return functions;
}

}  // namespace

ORVFontFace::Content::~Content() {
    if (font) HarfBuzz().hb_font_destroy(font);
    if (freeType) CloseFreeTypeFace(freeType);
}

void ORVFontFace::Content::LoadFreeType() {
    std::call_once(freeTypeLoaded, [this] { freeType = OpenFreeTypeFace(path, index); });
}

void ORVFontFace::Content::LoadFont() {
    std::call_once(fontLoaded, [this] {
        if (!HarfBuzz().IsUsable()) return;
        font = LoadOpenTypeFont(path, index);
        if (!font) font = LoadOtherFont(path, index);
        if (!font) return;
        HarfBuzz().hb_font_make_immutable(font);
        int horizontalScale = 0, verticalScale = 0;
        HarfBuzz().hb_font_get_scale(font, &horizontalScale, &verticalScale);
        unitsPerEm = horizontalScale > 0 ? horizontalScale : 1000.0;
        hb_font_extents_t extents;
        if (HarfBuzz().hb_font_get_h_extents(font, &extents) && extents.ascender > extents.descender) {
            ascent = extents.ascender / unitsPerEm;
            descent = -extents.descender / unitsPerEm;
        }
    });
}

ORVFontFace::ORVFontFace(std::unique_ptr<Content> content) : content_(std::move(content)) {}

ORVFontFace::~ORVFontFace() = default;

const std::string& ORVFontFace::GetFilePath() const { return content_->path; }
unsigned int ORVFontFace::GetFaceIndex() const { return content_->index; }
const std::string& ORVFontFace::GetFamily() const { return content_->family; }
const std::string& ORVFontFace::GetStyle() const { return content_->style; }
const std::string& ORVFontFace::GetPostScriptName() const { return content_->postScriptName; }
int ORVFontFace::GetWeight() const { return content_->weight; }
bool ORVFontFace::IsItalic() const { return content_->italic; }

unsigned int ORVFontFace::GetUnitsPerEm() const {
    hb_face_t* face = GetHarfBuzzFace();
    const unsigned int units = face ? HarfBuzz().hb_face_get_upem(face) : 1000;
    return units > 0 ? units : 1000;
}

double ORVFontFace::GetAscent() const {
    content_->LoadFont();
    return content_->ascent;
}

double ORVFontFace::GetDescent() const {
    content_->LoadFont();
    return content_->descent;
}

std::uint32_t ORVFontFace::GetGlyph(char32_t codePoint) const {
    hb_codepoint_t glyph = 0;
    hb_font_t* font = GetHarfBuzzFont();
    return font && HarfBuzz().hb_font_get_nominal_glyph(font, codePoint, &glyph) ? glyph : 0;
}

bool ORVFontFace::DrawGlyph(std::uint32_t glyph, double size, ORVGlyphOutlineSink& sink) const {
    hb_font_t* font = GetHarfBuzzFont();
    if (!font || !std::isfinite(size)) return false;
    OutlineTarget target{sink, size / content_->unitsPerEm};
#if HB_VERSION_ATLEAST(7, 0, 0)
    HarfBuzz().hb_font_draw_glyph(font, glyph, OutlineFunctions(), &target);
#else
    HarfBuzz().hb_font_get_glyph_shape(font, glyph, OutlineFunctions(), &target);
#endif
    if (target.isMemorySpent) throw std::bad_alloc();
    return target.hasContour;
}

hb_font_t* ORVFontFace::GetHarfBuzzFont() const {
    content_->LoadFont();
    return content_->font;
}

hb_face_t* ORVFontFace::GetHarfBuzzFace() const {
    hb_font_t* font = GetHarfBuzzFont();
    return font ? HarfBuzz().hb_font_get_face(font) : nullptr;
}

FT_FaceRec_* ORVFontFace::GetFreeTypeFace() const {
    content_->LoadFreeType();
    return content_->freeType;
}
