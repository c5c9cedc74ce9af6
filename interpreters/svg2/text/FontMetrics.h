// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>
#include <string_view>
#include <unordered_map>

#include "interpreters/svg2/css/Style.h"
#include "platform/visualization/fonts/ORVFont.h"

class ORVFontFace;

namespace svg2 {

class DocumentFonts;

/// Metrics of a face, in em. Heights are measured upwards from the baseline.
struct FontMetrics {
    double ascent = 0.8, descent = 0.2;  ///< the latter downwards from the baseline
    double xHeight = 0.5;
    double statedXHeight = 0.0, statedCapHeight = 0.0;               ///< 0 if the font does not state it
    double underline = -1.0 / 9.0, underlineThickness = 1.0 / 12.0;  ///< position of its middle
    double strikeout = 0.25, strikeoutThickness = 1.0 / 12.0;        ///< the same
    /// offsets of subscripts and superscripts, downwards and upwards
    double subscript = 0.2, superscript = 0.4;
};

/// A font with its metrics.
struct TextFont {
    ORVFontChoice choice;
    FontMetrics metrics;
    std::span<const ORVFontFace* const> order;  ///< see ORVShapingFont
    double enlargement = 1.0;                   ///< factor on the specified size, from font-size-adjust
};

/// The fonts of a drawing's texts.
class TextFonts {
public:
    /// Finds the font for a style; if there is none, the choice's font is ORVFont::Unavailable().
    /// @param own  fonts of the style's document; null: none. Must outlive this object
    TextFont Find(const InheritedStyle& style, DocumentFonts* own) {
        TextFont font = Find({style.fontFamily, style.fontWeight, style.isItalic, style.fontStretch,
                              style.fontSize, style.fontVariationSettings},
                             own);
        const FontSizeAdjustment& adjustment = style.fontSizeAdjustment;
        if (adjustment.value >= 0.0 || adjustment.font) Adjust(adjustment, own, font);
        return font;
    }
    TextFont Find(const ORVFontQuery& query, DocumentFonts* own);

    /// True if glyphs of a face may have colours of their own.
    bool HasColours(const ORVFontFace& face);
    /// True if glyphs of a face may be images.
    bool HasImages(const ORVFontFace& face);

    /// Counts text that is repeated by reference.
    /// @return false once it is out of proportion to the document
    bool TakeRepeatedText(std::size_t bytes) {
        constexpr std::size_t kMost = std::size_t{1} << 22U;
        repeatedText_ += bytes;
        return repeatedText_ <= kMost;
    }

private:
    void Adjust(const FontSizeAdjustment& adjustment, DocumentFonts* own, TextFont& font);

    std::unordered_map<const ORVFontFace*, FontMetrics> metrics_;
    std::unordered_map<const ORVFontFace*, bool> hasColours_, hasImages_;
    const ORVFontFace* lastPlain_ = nullptr;
    ORVFontQuery last_;
    DocumentFonts* lastOwn_ = nullptr;
    TextFont lastFont_;
    bool hasLast_ = false;
    std::size_t repeatedText_ = 0;
};

}  // namespace svg2
