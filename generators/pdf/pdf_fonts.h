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

/// A font of the document: glyphs of one face, numbered in order of use. Each pair of a glyph and its text
/// has its own code, so that text extraction is exact.
class PdfFont {
public:
    enum class Kind {
        kTrueType,  ///< quadratic outlines of the face, two-byte codes
        kCff,       ///< cubic outlines of the face, two-byte codes
        kDrawn,     ///< outlines as Type 3 drawings with one-byte codes, for faces of other formats
    };
    PdfFont(const ORVFontFace& face, Kind kind, unsigned int object);

    /// Returns the code of a glyph that represents `text` (UTF-8, may be empty). Codes start at 1.
    /// @return 0 if the font is full
    unsigned int FindCode(std::uint32_t glyph, std::string_view text);
    /// Width stated in the document for a code, in 1/1000 em.
    double GetWidth(unsigned int code) const { return entries_[code - 1].width; }
    Kind GetKind() const { return kind_; }
    unsigned int GetObject() const { return object_; }
    /// Appends the bytes of a code, escaped for a literal string.
    void AppendCode(std::string& text, unsigned int code) const;

    /// Writes all objects of the font.
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
    /// Maps codes to glyph indices of the font program.
    unsigned int WriteEncoding(PdfFile& file, const std::vector<std::uint32_t>& glyphs) const;
    void WriteProgram(PdfFile& file) const;
    void WriteDrawn(PdfFile& file) const;

    const std::shared_ptr<const void> keptFace_;  // keeps an embedded font alive
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
    /// The current font for glyphs of `face`: the latest one.
    PdfFont& Find(const ORVFontFace& face, PdfFile& file);
    /// Adds another font for a face whose latest one is full.
    PdfFont& AddFont(const ORVFontFace& face, PdfFile& file);
    void WriteAll(PdfFile& file) const;

private:
    std::unordered_map<const ORVFontFace*, PdfFont*> latest_;
    std::vector<std::unique_ptr<PdfFont>> fonts_;
};
