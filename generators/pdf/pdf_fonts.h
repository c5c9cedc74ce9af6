// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

class ORVFontFace;
class PdfFile;

/// A font of the document: glyphs of one face, numbered as they are used. Every pair of a glyph and the text
/// it stands for has a code of its own, so that text is found again exactly.
class PdfFont {
public:
    enum class Kind {
        kTrueType,  ///< the face's own quadratic outlines, codes of two bytes
        kCff,       ///< the face's own cubic outlines, codes of two bytes
        kDrawn,     ///< outlines written as drawings, codes of one byte: for faces of other formats
    };
    PdfFont(const ORVFontFace& face, Kind kind, unsigned int object);

    /// Code of a glyph that stands for `text` (UTF-8, may be empty). Codes start at 1.
    /// @return 0 when the font is full
    unsigned int FindCode(std::uint32_t glyph, std::string_view text);
    /// Width that the document states for a code, in thousandths of an em.
    double GetWidth(unsigned int code) const { return entries_[code - 1].width; }
    Kind GetKind() const { return kind_; }
    unsigned int GetObject() const { return object_; }
    /// Appends a code as the bytes of a string in round brackets.
    void AppendCode(std::string& text, unsigned int code) const;

    /// Writes the font with all its objects.
    void Write(PdfFile& file) const;

private:
    struct Entry {
        std::uint32_t glyph;
        double width;
        std::string text;
    };
    unsigned int Capacity() const { return kind_ == Kind::kDrawn ? 0xFFU : 0xFFFFU; }
    std::string MakeName() const;
    unsigned int WriteToUnicode(PdfFile& file) const;
    /// Maps codes to the numbers that the glyphs have in the font program.
    unsigned int WriteEncoding(PdfFile& file, const std::vector<std::uint32_t>& glyphs) const;
    void WriteProgram(PdfFile& file) const;
    void WriteDrawn(PdfFile& file) const;

    const std::shared_ptr<const void> keptFace_;  // where the drawing brings it
    const ORVFontFace& face_;
    const Kind kind_;
    const unsigned int object_;
    std::vector<Entry> entries_;
    std::unordered_map<std::string, unsigned int> codes_;  // by glyph and text
    std::vector<unsigned int> firstCodes_;                 // by glyph, 0 for none
};

/// All fonts of a document.
class PdfFontTable {
public:
    /// The font to use for glyphs of `face` now: its latest one.
    PdfFont& Find(const ORVFontFace& face, PdfFile& file);
    /// A further font for a face whose latest one is full.
    PdfFont& AddFont(const ORVFontFace& face, PdfFile& file);
    void WriteAll(PdfFile& file) const;

private:
    std::unordered_map<const ORVFontFace*, PdfFont*> latest_;
    std::vector<std::unique_ptr<PdfFont>> fonts_;
};
