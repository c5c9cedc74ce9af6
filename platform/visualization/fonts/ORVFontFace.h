// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/system/ORVBaseObject.h"

struct FT_FaceRec_;

/// Takes the outline of a glyph. Coordinates are user units, y up, origin at the glyph's own.
class ORV_PLATFORM_EXPORT ORVGlyphOutlineSink {
public:
    virtual ~ORVGlyphOutlineSink() = default;
    /// Begins a contour.
    virtual void MoveTo(double x, double y) = 0;
    /// A straight segment.
    virtual void LineTo(double x, double y) = 0;
    /// A quadratic Bézier segment.
    virtual void QuadTo(double controlX, double controlY, double x, double y) = 0;
    /// A cubic Bézier segment.
    virtual void CubicTo(double control1X, double control1Y, double control2X, double control2Y, double x,
                         double y) = 0;
    /// Closes the contour.
    virtual void Close() = 0;
};

/// Bytes of a font, which stay as long as there is a copy of this.
struct ORVFontBytes {
    std::shared_ptr<const void> owner;  ///< keeps the bytes
    std::string_view bytes;             ///< empty for none
};

/// A font program that holds few of a face's glyphs.
struct ORVFontSubset {
    ORVFontBytes program;               ///< the font file
    std::vector<std::uint32_t> glyphs;  ///< their numbers in it, in the order of those that were asked for
};

/// One face of a font file: what glyph numbers of a layout refer to. Faces are made once and live as long as
/// the process; equal pointers mean equal faces. Open files and tables are loaded when they are needed. Where
/// the file went away or cannot be used, numbers are about those of usual fonts, there is no glyph and no
/// table. When out of memory, std::bad_alloc is thrown.
///
/// Faces of fonts that a document brings are the exception: they live as long as somebody shares them.
class ORV_PLATFORM_EXPORT ORVFontFace : public std::enable_shared_from_this<ORVFontFace> {
public:
    /// Width, in em, of the stroke that generators draw around the glyphs of a run marked syntheticBold.
    static constexpr double kSyntheticBoldStroke = 0.03;

    ORVFontFace(const ORVFontFace&) = delete;
    ORVFontFace& operator=(const ORVFontFace&) = delete;

    /// Keeps a face that a document brings; null for others, which live as long as the process.
    std::shared_ptr<const ORVFontFace> Share() const { return weak_from_this().lock(); }
    /// Whether a document brings the face. Only such faces may be gone once nobody shares them.
    bool IsOfDocument() const { return !weak_from_this().expired(); }
    /// The font file of a face that a document brings, unpacked; empty for others. As long as the face.
    virtual std::string_view GetDocumentBytes() const { return {}; }

    /// Path of the font file; empty where a document brings it.
    const std::string& GetFilePath() const { return description_.path; }
    /// Number of the face in its file, from 0.
    unsigned int GetFaceIndex() const { return description_.index; }
    /// Family name.
    const std::string& GetFamily() const { return description_.family; }
    /// Style name, such as "Bold Italic".
    const std::string& GetStyle() const { return description_.style; }
    /// PostScript name; empty when the font has none.
    const std::string& GetPostScriptName() const { return description_.postScriptName; }
    /// Weight as OpenType counts it, 400 regular, 700 bold.
    int GetWeight() const { return description_.weight; }
    /// Whether the face is italic or oblique.
    bool IsItalic() const { return description_.isItalic; }
    /// How the face differs from what its file shows by default, where a font varies, as in
    /// "wght=650,slnt=-10": a value for each axis; else empty.
    const std::string& GetVariations() const { return description_.variations; }
    /// Units of the font's own grid in one em, at least 1.
    virtual unsigned int GetUnitsPerEm() const = 0;
    /// Ascender above and descender below the baseline, in em; both normally positive.
    virtual double GetAscent() const = 0;
    /// See GetAscent.
    virtual double GetDescent() const = 0;

    /// Number of the glyph for a code point, 0 when there is none.
    virtual std::uint32_t GetGlyph(char32_t codePoint) const = 0;
    /// Step of a glyph in horizontal text, in em.
    virtual double GetAdvance(std::uint32_t glyph) const = 0;
    /// Hands the glyph's outline at `size` user units an em to `sink`. Contours are closed.
    /// @return false when the glyph has no outline (nothing is handed out)
    virtual bool DrawGlyph(std::uint32_t glyph, double size, ORVGlyphOutlineSink& sink) const = 0;

    /// A table of a TrueType or OpenType file by its name of four letters; empty when there is none.
    virtual ORVFontBytes GetTable(std::string_view name) const = 0;
    /// What a document embeds that says itself where each glyph stands: the program of a TrueType or OpenType
    /// face with these glyphs, or, where no such subset can be made, with all. A subset of a font that varies
    /// does so no more.
    /// @param table  the table that is the program; empty for the whole file
    virtual ORVFontSubset MakeSubset(const std::vector<std::uint32_t>& glyphs,
                                     std::string_view table) const = 0;

    /// FreeType's own object, for one thread at a time. It belongs to the face; do not change it. Null when
    /// the file cannot be used.
    virtual FT_FaceRec_* GetFreeTypeFace() const = 0;

protected:
    /// What is known of a face without opening its file.
    struct Description {
        std::string path;                           ///< of the font file
        unsigned int index = 0;                     ///< of the face in its file
        std::string family, style, postScriptName;  ///< as the font has them
        int weight = 400;                           ///< as OpenType counts it
        bool isItalic = false;                      ///< or oblique
        std::string variations = {};                ///< see GetVariations
    };
    /// For the font module, which makes all faces.
    explicit ORVFontFace(Description description);
    virtual ~ORVFontFace();
    /// What the font module made it of.
    const Description& GetDescription() const { return description_; }

private:
    Description description_;
};

/// Keeps the faces that documents bring, for those who remember faces.
class ORVKeptFaces {
public:
    /// Keeps a face, if it needs that.
    void Keep(const ORVFontFace& face) {
        if (face.IsOfDocument()) faces_.insert(face.Share());
    }
    /// Lets all go.
    void Clear() { faces_.clear(); }

private:
    std::unordered_set<std::shared_ptr<const ORVFontFace>> faces_;
};
