// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/file_face.h"

#include <hb-ft.h>
#include <hb-ot.h>

#include FT_MULTIPLE_MASTERS_H

#include <algorithm>
#include <cmath>
#include <new>

#include "platform/visualization/fonts/module/face_axes.h"
#include "platform/visualization/fonts/module/face_subset.h"
#include "platform/visualization/fonts/module/font_failure.h"

namespace {

// FreeType requires that faces of a library object are opened and closed by one thread at a time.
std::mutex freeTypeMutex;

FT_Library TheFreeType() {
    static const FT_Library library = [] {
        FT_Library made = nullptr;
        if (FT_Init_FreeType(&made) != 0) throw std::bad_alloc();
        return made;
    }();
    return library;
}

void CloseFreeTypeFace(FT_Face face) {
    const std::lock_guard lock(freeTypeMutex);
    FT_Done_Face(face);
}

/// FreeType has no vertical metrics for these formats: glyphs are centred and spaced by the line height.
hb_font_funcs_t* VerticalFunctions() {
    static hb_font_funcs_t* const functions = [] {
        hb_font_funcs_t* made = hb_font_funcs_create();
        hb_font_funcs_set_glyph_v_advance_func(
            made,
            [](hb_font_t* font, void*, hb_codepoint_t, void*) -> hb_position_t {
                hb_font_extents_t extents = {};
                hb_font_get_h_extents(font, &extents);
                return extents.descender - extents.ascender;
            },
            nullptr, nullptr);
        hb_font_funcs_set_glyph_v_origin_func(
            made,
            [](hb_font_t* font, void*, hb_codepoint_t glyph, hb_position_t* x, hb_position_t* y,
               void*) -> hb_bool_t {
                hb_font_extents_t extents = {};
                hb_font_get_h_extents(font, &extents);
                *x = hb_font_get_glyph_h_advance(font, glyph) / 2;
                *y = extents.ascender;
                return true;
            },
            nullptr, nullptr);
        hb_font_funcs_make_immutable(made);
        return made;
    }();
    return functions;
}

/// Context of HarfBuzz's drawing callbacks. A sink may throw when out of memory, but not through HarfBuzz:
/// the exception is noted and the rest of the glyph is skipped.
struct OutlineTarget {
    ORVGlyphOutlineSink& sink;
    double scale;
    bool hasContour = false, isOutOfMemory = false;

    template <class Call>
    static void Pass(void* data, Call call) {
        auto& target = *static_cast<OutlineTarget*>(data);
        if (target.isOutOfMemory) return;
        try {
            call(target, target.scale);
        } catch (const std::bad_alloc&) {
            target.isOutOfMemory = true;
        }
    }
};

hb_draw_funcs_t* OutlineFunctions() {
    static hb_draw_funcs_t* const functions = [] {
        hb_draw_funcs_t* made = hb_draw_funcs_create();
        hb_draw_funcs_set_move_to_func(
            made,
            [](hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) {
                OutlineTarget::Pass(data, [&](OutlineTarget& target, double s) {
                    target.hasContour = true;
                    target.sink.MoveTo(x * s, y * s);
                });
            },
            nullptr, nullptr);
        hb_draw_funcs_set_line_to_func(
            made,
            [](hb_draw_funcs_t*, void* data, hb_draw_state_t*, float x, float y, void*) {
                OutlineTarget::Pass(
                    data, [&](OutlineTarget& target, double s) { target.sink.LineTo(x * s, y * s); });
            },
            nullptr, nullptr);
        hb_draw_funcs_set_quadratic_to_func(
            made,
            [](hb_draw_funcs_t*, void* data, hb_draw_state_t*, float cx, float cy, float x, float y, void*) {
                OutlineTarget::Pass(data, [&](OutlineTarget& target, double s) {
                    target.sink.QuadTo(cx * s, cy * s, x * s, y * s);
                });
            },
            nullptr, nullptr);
        hb_draw_funcs_set_cubic_to_func(
            made,
            [](hb_draw_funcs_t*, void* data, hb_draw_state_t*, float c1x, float c1y, float c2x, float c2y,
               float x, float y, void*) {
                OutlineTarget::Pass(data, [&](OutlineTarget& target, double s) {
                    target.sink.CubicTo(c1x * s, c1y * s, c2x * s, c2y * s, x * s, y * s);
                });
            },
            nullptr, nullptr);
        hb_draw_funcs_set_close_path_func(
            made,
            [](hb_draw_funcs_t*, void* data, hb_draw_state_t*, void*) {
                OutlineTarget::Pass(data, [](OutlineTarget& target, double) { target.sink.Close(); });
            },
            nullptr, nullptr);
        hb_draw_funcs_make_immutable(made);
        return made;
    }();
    return functions;
}

void SetAxes(FT_Face face, const std::vector<double>& values) {
    constexpr double kOne = 65536.0;
    std::vector<FT_Fixed> fixed;
    for (const double value : values) fixed.push_back(std::lround(value * kOne));
    FT_Set_Var_Design_Coordinates(face, static_cast<FT_UInt>(fixed.size()), fixed.data());
}

/// Returns `otherwise` when the face cannot be opened.
template <class Answer, class Question>
Answer OrElse(Answer otherwise, Question ask) {
    try {
        return ask();
    } catch (const FontFailure&) {
        return otherwise;
    }
}

}  // namespace

void FreeTypeFaceClose::operator()(FT_FaceRec_* face) const { CloseFreeTypeFace(face); }

FreeTypeFace OpenFreeTypeFace(std::string_view bytes, unsigned int index) {
    const std::lock_guard lock(freeTypeMutex);
    FT_Face face = nullptr;
    const FT_Error error =
        FT_New_Memory_Face(TheFreeType(), reinterpret_cast<const FT_Byte*>(bytes.data()),
                           static_cast<FT_Long>(bytes.size()), static_cast<FT_Long>(index), &face);
    if (error == FT_Err_Out_Of_Memory) throw std::bad_alloc();
    return FreeTypeFace(error == 0 ? face : nullptr);
}

FileFace::FileFace(Description description, std::string bytes,
                   std::vector<std::pair<char32_t, char32_t>> ranges)
    : ORVFontFace(std::move(description)),
      ranges_(std::move(ranges)),
      file_(std::make_unique<FontFile>(FontFile::Bytes{std::move(bytes)})) {}

FileFace::~FileFace() {
    if (freeType_) CloseFreeTypeFace(freeType_);
}

const FontFile& FileFace::File() const {
    if (base_) return base_->File();
    fileLoaded_.Do([this] {
        if (!file_) file_ = std::make_unique<FontFile>(GetFilePath());
    });
    return *file_;
}

FT_Face FileFace::OpenFreeType() const {
    const std::string_view bytes = File().GetBytes();
    MakeSureOfMemory();
    FreeTypeFace face = OpenFreeTypeFace(bytes, GetFaceIndex());
    if (face && !axes_.empty()) SetAxes(face.get(), axes_);
    return face.release();
}

/// Opens a TrueType or OpenType file; null for other formats. The file is kept as long as the face.
HbFont FileFace::LoadOpenType() const {
    if (base_) {
        HbFont font(hb_font_create(hb_font_get_face(base_->GetHarfBuzzFont())));
        ApplyAxes(font.get(), axes_);
        return font;
    }
    const std::string_view bytes = File().GetBytes();
    const HbBlob blob(hb_blob_create(bytes.data(), static_cast<unsigned int>(bytes.size()),
                                     HB_MEMORY_MODE_READONLY, nullptr, nullptr));
    const HbFace face(hb_face_create(blob.get(), GetFaceIndex()));
    // The font's scale is its design grid.
    return HbFont(hb_face_get_glyph_count(face.get()) > 0 ? hb_font_create(face.get()) : nullptr);
}

/// Opens a file of another format. Needs a FreeType face of its own, because it depends on its size: one
/// pixel is one unit of the design grid, and HarfBuzz units are 1/64 pixel.
HbFont FileFace::LoadOther() const {
    const FT_Face face = OpenFreeType();
    if (!face) return nullptr;
    HbFont font;
    const auto grid = static_cast<FT_F26Dot6>(face->units_per_EM ? face->units_per_EM : 1000);
    if (FT_Set_Char_Size(face, grid * 64, grid * 64, 72, 72) == 0) {
        const HbFont overFreeType(hb_ft_font_create_referenced(face));
        hb_ft_font_set_load_flags(overFreeType.get(), FT_LOAD_NO_HINTING | FT_LOAD_NO_BITMAP);
        hb_font_make_immutable(overFreeType.get());
        font.reset(hb_font_create_sub_font(overFreeType.get()));  // inherits all but the following
        hb_font_set_funcs(font.get(), VerticalFunctions(), nullptr, nullptr);
    }
    CloseFreeTypeFace(face);
    return font;
}

void FileFace::LoadFont() const {
    File();
    MakeSureOfMemory();
    HbFont font = LoadOpenType();
    if (!font && !GetFilePath().empty()) font = LoadOther();  // document fonts have no other formats
    if (!font) return;
    hb_font_make_immutable(font.get());
    int horizontalScale = 0, verticalScale = 0;
    hb_font_get_scale(font.get(), &horizontalScale, &verticalScale);
    unitsPerEm_ = horizontalScale > 0 ? horizontalScale : 1000.0;
    hb_font_extents_t extents;
    if (hb_font_get_h_extents(font.get(), &extents) && extents.ascender > extents.descender) {
        ascent_ = extents.ascender / unitsPerEm_;
        descent_ = -extents.descender / unitsPerEm_;
    }
    // Loads the tables that every text needs while enough memory is available.
    hb_codepoint_t glyph = 0;
    hb_font_get_nominal_glyph(font.get(), ' ', &glyph);
    hb_font_get_glyph_h_advance(font.get(), glyph);
    hb_glyph_extents_t box;
    hb_font_get_glyph_extents(font.get(), glyph, &box);
    font_ = std::move(font);
}

hb_font_t* FileFace::GetHarfBuzzFont() const {
    fontLoaded_.Do([this] { LoadFont(); });
    return font_.get();
}

hb_font_t* FileFace::FindFont() const {
    return OrElse<hb_font_t*>(nullptr, [this] { return GetHarfBuzzFont(); });
}

FT_Face FileFace::LoadFreeType() const {
    freeTypeLoaded_.Do([this] { freeType_ = OpenFreeType(); });
    return freeType_;
}

FT_FaceRec_* FileFace::GetFreeTypeFace() const {
    return OrElse<FT_Face>(nullptr, [this] { return LoadFreeType(); });
}

void FileFace::PrepareFor(hb_script_t script, hb_direction_t direction) const {
    const std::pair use(script, direction);
    if (std::find(prepared_.begin(), prepared_.end(), use) != prepared_.end()) return;
    MakeSureOfMemory();
    prepared_.push_back(use);
}

unsigned int FileFace::GetUnitsPerEm() const {
    hb_font_t* const font = FindFont();
    const unsigned int units = font ? hb_face_get_upem(hb_font_get_face(font)) : 1000;
    return units > 0 ? units : 1000;
}

double FileFace::GetAscent() const {
    FindFont();
    return ascent_;
}

double FileFace::GetDescent() const {
    FindFont();
    return descent_;
}

std::string_view FileFace::GetDocumentBytes() const {
    return IsOfDocument() ? File().GetBytes() : std::string_view();
}

bool FileFace::HasFeature(hb_tag_t tag) const {
    // A drawing uses few features of few faces.
    static std::mutex mutex;
    const std::lock_guard lock(mutex);
    for (const auto& [known, has] : features_)
        if (known == tag) return has;
    hb_face_t* const source = hb_font_get_face(GetHarfBuzzFont());
    constexpr unsigned int kAtOnce = 64;
    hb_tag_t tags[kAtOnce];
    bool has = false;
    for (unsigned int start = 0, count = kAtOnce; count == kAtOnce && !has; start += count) {
        count = kAtOnce;
        hb_ot_layout_table_get_feature_tags(source, HB_OT_TAG_GSUB, start, &count, tags);
        has = std::find(tags, tags + count, tag) != tags + count;
    }
    features_.emplace_back(tag, has);
    return has;
}

bool FileFace::IsFor(char32_t codePoint) const {
    return ranges_.empty() || std::any_of(ranges_.begin(), ranges_.end(), [&](const auto& range) {
               return range.first <= codePoint && codePoint <= range.second;
           });
}

std::uint32_t FileFace::GetGlyph(char32_t codePoint) const {
    if (!IsFor(codePoint)) return 0;
    hb_codepoint_t glyph = 0;
    hb_font_t* const font = FindFont();
    return font && hb_font_get_nominal_glyph(font, codePoint, &glyph) ? glyph : 0;
}

double FileFace::GetAdvance(std::uint32_t glyph) const {
    hb_font_t* const font = FindFont();
    return font ? hb_font_get_glyph_h_advance(font, glyph) / unitsPerEm_ : 0.0;
}

bool FileFace::DrawGlyph(std::uint32_t glyph, double size, ORVGlyphOutlineSink& sink) const {
    hb_font_t* const font = FindFont();
    if (!font || !std::isfinite(size)) return false;
    OutlineTarget target{sink, size / unitsPerEm_};
#if HB_VERSION_ATLEAST(7, 0, 0)
    hb_font_draw_glyph(font, glyph, OutlineFunctions(), &target);
#else
    hb_font_get_glyph_shape(font, glyph, OutlineFunctions(), &target);
#endif
    if (target.isOutOfMemory) throw std::bad_alloc();
    // A glyph whose points could not be allocated looks like one without an outline.
    if (!target.hasContour) MakeSureOfMemory();
    return target.hasContour;
}

ORVFontBytes FileFace::GetTable(std::string_view name) const {
    hb_font_t* const font = FindFont();
    if (!font) return {};
    MakeSureOfMemory();
    return BytesOf(HbBlob(hb_face_reference_table(
        hb_font_get_face(font), hb_tag_from_string(name.data(), static_cast<int>(name.size())))));
}

ORVFontSubset FileFace::MakeSubset(const std::vector<std::uint32_t>& glyphs, std::string_view table) const {
    hb_font_t* const font = FindFont();
    if (!font) return {{}, glyphs};
    MakeSureOfMemory();
    return SubsetOf(hb_font_get_face(font), axes_, glyphs, table);
}
