// SPDX-License-Identifier: Apache-2.0
#include "platform/visualization/fonts/module/glyph_bitmaps.h"

#include <hb-ot.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <vector>

#include "platform/visualization/fonts/module/file_face.h"

namespace {

// Largest size of bitmap glyphs, in pixels per em.
constexpr double kLargestBitmap = 1024.0;

/// Selects a size of the face. @return its pixels per em, 0 when there is none
double ChooseSize(FT_Face face, double pixelsPerEm) {
    if (!FT_HAS_FIXED_SIZES(face)) {
        const auto size = static_cast<FT_UInt>(std::clamp(std::ceil(pixelsPerEm), 1.0, kLargestBitmap));
        return FT_Set_Pixel_Sizes(face, size, size) == 0 ? size : 0.0;
    }
    // The smallest size that is large enough, else the largest.
    FT_Int best = 0;
    const auto pixelsOf = [&](FT_Int i) {
        return static_cast<double>(face->available_sizes[i].y_ppem) / 64.0;
    };
    for (FT_Int i = 1; i < face->num_fixed_sizes; ++i) {
        const bool isEnough = pixelsOf(i) >= pixelsPerEm, bestIsEnough = pixelsOf(best) >= pixelsPerEm;
        if (isEnough != bestIsEnough ? isEnough : (pixelsOf(i) < pixelsOf(best)) == isEnough) best = i;
    }
    return FT_Select_Size(face, best) == 0 ? pixelsOf(best) : 0.0;
}

/// Converts a row of a FreeType bitmap to RGBA that is not premultiplied. @return false for unsupported pixel
/// modes
bool ReadRow(const FT_Bitmap& bitmap, unsigned int y, const ORVGlyphColour& colour, std::uint8_t* rgba) {
    const unsigned char* row = bitmap.buffer + static_cast<std::ptrdiff_t>(y) * bitmap.pitch;
    if (bitmap.pitch < 0)
        row = bitmap.buffer + static_cast<std::ptrdiff_t>(bitmap.rows - 1 - y) * -bitmap.pitch;
    for (unsigned int x = 0; x < bitmap.width; ++x, rgba += 4) {
        unsigned int alpha = 0;
        rgba[0] = colour.red;
        rgba[1] = colour.green;
        rgba[2] = colour.blue;
        switch (bitmap.pixel_mode) {
            case FT_PIXEL_MODE_MONO: alpha = (row[x / 8] >> (7 - x % 8) & 1U) != 0 ? 255 : 0; break;
            case FT_PIXEL_MODE_GRAY: alpha = row[x]; break;
            case FT_PIXEL_MODE_BGRA: {
                const unsigned char* pixel = row + static_cast<std::size_t>(x) * 4;
                alpha = pixel[3];
                // FreeType's colours are premultiplied.
                for (unsigned int i = 0; i < 3; ++i)
                    rgba[i] = static_cast<std::uint8_t>(
                        alpha == 0 ? 0 : std::min(255U, (pixel[2 - i] * 255U + alpha / 2) / alpha));
                break;
            }
            default: return false;
        }
        rgba[3] = static_cast<std::uint8_t>(alpha);
    }
    return true;
}

}  // namespace

ORVGlyphBitmap MakeGlyphBitmap(const FileFace& face, std::uint32_t glyph, double pixelsPerEm,
                               const ORVGlyphColour& colour) {
    ORVGlyphBitmap answer;
    const FT_Face freeType = face.LoadFreeType();
    if (!freeType || !(FT_HAS_FIXED_SIZES(freeType) || FT_HAS_COLOR(freeType))) return answer;
    const double size = ChooseSize(freeType, pixelsPerEm);
    if (!(size > 0.0) || FT_Load_Glyph(freeType, glyph, FT_LOAD_COLOR | FT_LOAD_RENDER) != 0) return answer;
    const FT_GlyphSlot slot = freeType->glyph;
    const FT_Bitmap& bitmap = slot->bitmap;
    if (bitmap.width == 0 || bitmap.rows == 0) return answer;

    std::vector<std::uint8_t> rgba(static_cast<std::size_t>(bitmap.width) * bitmap.rows * 4);
    for (unsigned int y = 0; y < bitmap.rows; ++y)
        if (!ReadRow(bitmap, y, colour, rgba.data() + static_cast<std::size_t>(y) * bitmap.width * 4))
            return answer;
    answer.image = ORVRef<const ORVPixelImage>(
        ORVPixelImage::CreateFromPixels(static_cast<int>(bitmap.width), static_cast<int>(bitmap.rows), rgba));
    answer.left = slot->bitmap_left / size;
    answer.top = slot->bitmap_top / size;
    answer.width = bitmap.width / size;
    answer.height = bitmap.rows / size;
    return answer;
}

bool HasColours(const FileFace& face) {
    hb_font_t* const font = face.GetHarfBuzzFont();
    if (!font) return false;
    hb_face_t* const source = hb_font_get_face(font);
    return hb_ot_color_has_layers(source) != 0 || hb_ot_color_has_png(source) != 0 ||
           !face.GetTable("COLR").bytes.empty();
}

std::vector<ORVGlyphLayer> FindGlyphLayers(const FileFace& face, std::uint32_t glyph) {
    constexpr unsigned int kTextColour = 0xFFFF;
    std::vector<ORVGlyphLayer> layers;
    hb_font_t* const font = face.GetHarfBuzzFont();
    if (!font) return layers;
    hb_face_t* const source = hb_font_get_face(font);
    const unsigned int count = hb_ot_color_glyph_get_layers(source, glyph, 0, nullptr, nullptr);
    for (unsigned int i = 0; i < count; ++i) {
        hb_ot_color_layer_t layer = {};
        unsigned int one = 1;
        hb_ot_color_glyph_get_layers(source, glyph, i, &one, &layer);
        if (one != 1) break;
        ORVGlyphLayer& added = layers.emplace_back();
        added.glyph = layer.glyph;
        hb_color_t colour = 0;
        if (layer.color_index == kTextColour) continue;
        hb_ot_color_palette_get_colors(source, 0, layer.color_index, &one, &colour);
        if (one != 1) continue;
        added.isTextColour = false;
        const auto byte = [](unsigned int value) { return static_cast<std::uint8_t>(value); };
        added.colour = {byte(hb_color_get_red(colour)), byte(hb_color_get_green(colour)),
                        byte(hb_color_get_blue(colour))};
        added.opacity = byte(hb_color_get_alpha(colour));
    }
    return layers;
}
