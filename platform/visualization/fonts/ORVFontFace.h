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

/// Receives the outline of a glyph. Coordinates are user units relative to the glyph's origin, y up.
class ORV_PLATFORM_EXPORT ORVGlyphOutlineSink {
public:
    virtual ~ORVGlyphOutlineSink() = default;
    /// Starts a contour.
    virtual void MoveTo(double x, double y) = 0;
    /// Adds a straight segment.
    virtual void LineTo(double x, double y) = 0;
    /// Adds a quadratic Bézier segment.
    virtual void QuadTo(double controlX, double controlY, double x, double y) = 0;
    /// Adds a cubic Bézier segment.
    virtual void CubicTo(double control1X, double control1Y, double control2X, double control2Y, double x,
                         double y) = 0;
    /// Closes the contour.
    virtual void Close() = 0;
};

/// Bytes of a font, with shared ownership.
struct ORVFontBytes {
    std::shared_ptr<const void> owner;  ///< keeps `bytes` alive
    std::string_view bytes;             ///< empty for none
};

/// A font program with a subset of a face's glyphs.
struct ORVFontSubset {
    ORVFontBytes program;               ///< the font file
    std::vector<std::uint32_t> glyphs;  ///< indices in the subset, in the order of the requested glyphs
};

/// One face of a font file; glyph indices of a layout refer to it. Each face is created once and lives as
/// long as the process, so equal pointers mean equal faces. Files and tables are loaded on demand. If the
/// file has disappeared or is unusable, metrics are those of a typical font, and there are no glyphs and
/// tables. Throws std::bad_alloc when out of memory.
///
/// Faces of document fonts, by contrast, are reference counted.
class ORV_PLATFORM_EXPORT ORVFontFace : public std::enable_shared_from_this<ORVFontFace> {
public:
    /// Width, in em, of the stroke that generators draw around glyphs of a run with syntheticBold.
    static constexpr double kSyntheticBoldStroke = 0.03;

    ORVFontFace(const ORVFontFace&) = delete;
    ORVFontFace& operator=(const ORVFontFace&) = delete;

    /// Shared ownership of a face of a document font; null for other faces, which live as long as the
    /// process.
    std::shared_ptr<const ORVFontFace> Share() const { return weak_from_this().lock(); }
    /// Whether this is a face of a document font, which can be destroyed before the process ends.
    bool IsOfDocument() const { return !weak_from_this().expired(); }
    /// The uncompressed font file of a document font; empty for others. Valid as long as the face.
    virtual std::string_view GetDocumentBytes() const { return {}; }

    /// Path of the font file; empty for a document font.
    const std::string& GetFilePath() const { return description_.path; }
    /// Index of the face in its file, from 0.
    unsigned int GetFaceIndex() const { return description_.index; }
    /// Family name.
    const std::string& GetFamily() const { return description_.family; }
    /// Style name, such as "Bold Italic".
    const std::string& GetStyle() const { return description_.style; }
    /// PostScript name; empty when the font has none.
    const std::string& GetPostScriptName() const { return description_.postScriptName; }
    /// OpenType weight: 400 regular, 700 bold.
    int GetWeight() const { return description_.weight; }
    /// Whether the face is italic or oblique.
    bool IsItalic() const { return description_.isItalic; }
    /// Axis values of an instance of a variable font, such as "wght=650,slnt=-10", with a value for each
    /// axis; empty for the default instance.
    const std::string& GetVariations() const { return description_.variations; }
    /// Units of the design grid per em, at least 1.
    virtual unsigned int GetUnitsPerEm() const = 0;
    /// Ascender above the baseline, in em; normally positive.
    virtual double GetAscent() const = 0;
    /// Descender below the baseline, in em; normally positive.
    virtual double GetDescent() const = 0;

    /// Glyph index of a code point; 0 when there is none.
    virtual std::uint32_t GetGlyph(char32_t codePoint) const = 0;
    /// Horizontal advance of a glyph, in em.
    virtual double GetAdvance(std::uint32_t glyph) const = 0;
    /// Passes the outline of a glyph to `sink`, scaled to `size` user units per em. Contours are closed.
    /// @return false when the glyph has no outline; the sink is not called
    virtual bool DrawGlyph(std::uint32_t glyph, double size, ORVGlyphOutlineSink& sink) const = 0;

    /// A table of a TrueType or OpenType file by its four-letter tag; empty when there is none.
    virtual ORVFontBytes GetTable(std::string_view name) const = 0;
    /// A font program to embed in documents that position every glyph themselves: the given glyphs of a
    /// TrueType or OpenType face or, where it cannot be subset, all glyphs. A subset of a variable font is
    /// not variable.
    /// @param table  the table that contains the program; empty for the whole file
    virtual ORVFontSubset MakeSubset(const std::vector<std::uint32_t>& glyphs,
                                     std::string_view table) const = 0;

    /// The FreeType object, which belongs to the face and must not be changed. For one thread at a time. Null
    /// when the file is unusable.
    virtual FT_FaceRec_* GetFreeTypeFace() const = 0;

protected:
    /// Properties of a face that are known without opening its file.
    struct Description {
        std::string path;                           ///< path of the font file
        unsigned int index = 0;                     ///< index of the face in the file
        std::string family, style, postScriptName;  ///< as the font has them
        int weight = 400;                           ///< OpenType weight
        bool isItalic = false;                      ///< italic or oblique
        std::string variations = {};                ///< see GetVariations
    };
    /// Used by the font module, which creates all faces.
    explicit ORVFontFace(Description description);
    virtual ~ORVFontFace();
    /// The description passed to the constructor.
    const Description& GetDescription() const { return description_; }

private:
    Description description_;
};

/// Keeps faces of document fonts alive for objects that store pointers to faces.
class ORVKeptFaces {
public:
    /// Keeps a face alive if it belongs to a document font.
    void Keep(const ORVFontFace& face) {
        if (face.IsOfDocument()) faces_.insert(face.Share());
    }
    /// Releases all faces.
    void Clear() { faces_.clear(); }

private:
    std::unordered_set<std::shared_ptr<const ORVFontFace>> faces_;
};
