// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>

#include "interpreters/svg2/css/Style.h"
#include "platform/visualization/fonts/ORVFont.h"

class ORVFontFace;

namespace svg2 {

/// What a face says of itself, in em. Heights count up from the baseline.
struct FontMetrics {
    double ascent = 0.8, descent = 0.2;  ///< the latter down from the baseline
    double xHeight = 0.5;
    double underline = -1.0 / 9.0, underlineThickness = 1.0 / 12.0;  ///< of its middle
    double strikeout = 0.25, strikeoutThickness = 1.0 / 12.0;        ///< likewise
    double subscript = 0.2, superscript = 0.4;                       ///< how far down and up these stand
};

/// A font with its metrics.
struct TextFont {
    ORVFontChoice choice;
    FontMetrics metrics;
};

/// The fonts of a drawing's texts.
class TextFonts {
public:
    /// The font of a style; its choice's font is ORVFont::Unavailable() where there is none.
    TextFont Find(const InheritedStyle& style) {
        return Find({style.fontFamily, style.fontWeight, style.isItalic, style.fontStretch, style.fontSize,
                     style.fontVariationSettings});
    }
    TextFont Find(const ORVFontQuery& query);

    /// Whether glyphs of a face may have colours of their own.
    bool HasColours(const ORVFontFace& face);

    /// Counts text that is set although it stands elsewhere. @return false when that is out of proportion
    bool TakeRepeatedText(std::size_t bytes) {
        constexpr std::size_t kMost = std::size_t{1} << 22U;
        repeatedText_ += bytes;
        return repeatedText_ <= kMost;
    }

private:
    std::unordered_map<const ORVFontFace*, FontMetrics> metrics_;
    std::unordered_map<const ORVFontFace*, bool> hasColours_;
    const ORVFontFace* lastPlain_ = nullptr;
    ORVFontQuery last_;
    TextFont lastFont_;
    bool hasLast_ = false;
    std::size_t repeatedText_ = 0;
};

}  // namespace svg2
