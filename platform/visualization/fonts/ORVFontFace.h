#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/system/ORVBaseObject.h"

struct hb_face_t;
struct hb_font_t;
struct FT_FaceRec_;

/// Takes the outline of a glyph. Coordinates are user units, y up, origin at the glyph's own.
class ORV_PLATFORM_EXPORT ORVGlyphOutlineSink {
public:
    virtual ~ORVGlyphOutlineSink() = default;
    virtual void MoveTo(double x, double y) = 0;
    virtual void LineTo(double x, double y) = 0;
    virtual void QuadTo(double controlX, double controlY, double x, double y) = 0;
    virtual void CubicTo(double control1X, double control1Y, double control2X, double control2Y, double x,
                         double y) = 0;
    virtual void Close() = 0;
};

/// One face of a font file: what glyph numbers of a layout refer to. Faces are made once and live as long as
/// the process; equal pointers mean equal faces. Open files and tables are loaded when they are needed.
class ORV_PLATFORM_EXPORT ORVFontFace {
public:
    /// Width, in em, of the stroke that generators draw around the glyphs of a run marked syntheticBold.
    static constexpr double kSyntheticBoldStroke = 0.03;

    struct Content;  // what the catalogue fills in

    ORVFontFace(const ORVFontFace&) = delete;
    ORVFontFace& operator=(const ORVFontFace&) = delete;

    const std::string& GetFilePath() const;
    /// Number of the face in its file, from 0.
    unsigned int GetFaceIndex() const;
    const std::string& GetFamily() const;
    const std::string& GetStyle() const;
    const std::string& GetPostScriptName() const;
    /// Weight as OpenType counts it, 400 regular, 700 bold.
    int GetWeight() const;
    bool IsItalic() const;
    /// Units of the font's own grid in one em, at least 1.
    unsigned int GetUnitsPerEm() const;
    /// Ascender above and descender below the baseline, in em; both normally positive.
    double GetAscent() const;
    double GetDescent() const;

    /// Number of the glyph for a code point, 0 when there is none.
    std::uint32_t GetGlyph(char32_t codePoint) const;
    /// Hands the glyph's outline at `size` user units an em to `sink`. Contours are closed.
    /// @return false when the glyph has no outline (nothing is handed out)
    bool DrawGlyph(std::uint32_t glyph, double size, ORVGlyphOutlineSink& sink) const;

    /// The libraries' own objects, for generators that embed fonts. They belong to the face; do not change
    /// them, and use the FreeType face in one thread at a time. The HarfBuzz font says itself how many of its
    /// units make an em (hb_font_get_scale). Null when the file went away or cannot be used.
    hb_font_t* GetHarfBuzzFont() const;
    hb_face_t* GetHarfBuzzFace() const;
    FT_FaceRec_* GetFreeTypeFace() const;

private:
    friend class FontCatalogue;
    friend struct CatalogueDelete;
    friend class FallbackFonts;
    explicit ORVFontFace(std::unique_ptr<Content> content);
    ~ORVFontFace();

    std::unique_ptr<Content> content_;
};
