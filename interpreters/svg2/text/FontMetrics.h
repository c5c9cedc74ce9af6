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

/// What a face says of itself, in em. Heights count up from the baseline.
struct FontMetrics {
    double ascent = 0.8, descent = 0.2;  ///< the latter down from the baseline
    double xHeight = 0.5;
    double statedXHeight = 0.0, statedCapHeight = 0.0;               ///< 0 where the font does not say
    double underline = -1.0 / 9.0, underlineThickness = 1.0 / 12.0;  ///< of its middle
    double strikeout = 0.25, strikeoutThickness = 1.0 / 12.0;        ///< likewise
    double subscript = 0.2, superscript = 0.4;                       ///< how far down and up these stand
};

/// A font with its metrics.
struct TextFont {
    ORVFontChoice choice;
    FontMetrics metrics;
    std::span<const ORVFontFace* const> order;  ///< see ORVShapingFont
    double enlargement = 1.0;                   ///< of the stated size, where "font-size-adjust" asks for it
};

/// The fonts of a drawing's texts.
class TextFonts {
public:
    /// The font of a style; its choice's font is ORVFont::Unavailable() where there is none.
    /// @param own  that the style's document brings; null for none. Lives as long as this object
    TextFont Find(const InheritedStyle& style, DocumentFonts* own) {
        TextFont font = Find({style.fontFamily, style.fontWeight, style.isItalic, style.fontStretch,
                              style.fontSize, style.fontVariationSettings},
                             own);
        if (style.fontSizeAdjustment.value >= 0.0) Adjust(style.fontSizeAdjustment, font);
        return font;
    }
    TextFont Find(const ORVFontQuery& query, DocumentFonts* own);

    /// Whether glyphs of a face may have colours of their own.
    bool HasColours(const ORVFontFace& face);

    /// Counts text that is set although it stands elsewhere. @return false when that is out of proportion
    bool TakeRepeatedText(std::size_t bytes) {
        constexpr std::size_t kMost = std::size_t{1} << 22U;
        repeatedText_ += bytes;
        return repeatedText_ <= kMost;
    }

private:
    static void Adjust(const FontSizeAdjustment& adjustment, TextFont& font);

    std::unordered_map<const ORVFontFace*, FontMetrics> metrics_;
    std::unordered_map<const ORVFontFace*, bool> hasColours_;
    const ORVFontFace* lastPlain_ = nullptr;
    ORVFontQuery last_;
    DocumentFonts* lastOwn_ = nullptr;
    TextFont lastFont_;
    bool hasLast_ = false;
    std::size_t repeatedText_ = 0;
};

}  // namespace svg2
