// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "interpreters/svg2/css/font_faces.h"
#include "platform/visualization/fonts/ORVFont.h"

class ORVFontFace;

namespace svg2 {

/// A font that was chosen, and the others that characters are looked for in.
struct OrderedFont {
    ORVFontChoice choice;
    std::vector<const ORVFontFace*> order;  ///< see ORVShapingFont
};

/// The fonts that a document brings ("@font-face"). Each is opened when a text asks for it, and goes with
/// this object; generators keep those that they need longer. For one thread at a time.
class DocumentFonts {
public:
    /// @param rules  must outlive this object, and their sheet likewise
    explicit DocumentFonts(std::span<const FontFaceRule> rules);
    ~DocumentFonts();
    DocumentFonts(const DocumentFonts&) = delete;
    DocumentFonts& operator=(const DocumentFonts&) = delete;

    bool IsEmpty() const { return fonts_.empty(); }
    /// The font of a query whose families name one of the document's fonts that can be used.
    /// @return null for a query that installed fonts meet alone; else what stays as long as this object
    const OrderedFont* Choose(const ORVFontQuery& query);

    /// Fonts that a drawing may open, and bytes that they may have; the others are as if they could not be
    /// read.
    static constexpr std::size_t kMostFonts = 256, kMostBytes = std::size_t{128} << 20U;

    /// Opens the font of a rule. @return null where none of its sources can be used
    const ORVFontFace* Open(std::size_t rule);

private:
    /// A rule with its font, once that was asked for.
    struct Font {
        const FontFaceRule& rule;
        std::shared_ptr<const ORVFontFace> own;  // that the document brings
        const ORVFontFace* face = nullptr;       // that, or an installed one
        bool isOpened = false;
    };
    /// What a font can do for a query.
    struct Look {
        const ORVFontFace* face = nullptr;
        bool isItalic = false, isBold = false, dependsOnSize = false;
    };

    std::unique_ptr<OrderedFont> Make(const ORVFontQuery& query);
    void AddFamily(const std::vector<std::size_t>& family, const ORVFontQuery& query, OrderedFont& made);
    Look LookOf(Font& font, const ORVFontQuery& query);
    const ORVFontFace* OpenSource(const FontSource& source, Font& font);

    std::vector<Font> fonts_;
    std::unordered_map<std::string, std::vector<std::size_t>> byFamily_;
    std::unordered_map<std::string, std::unique_ptr<OrderedFont>> chosen_;  // null: by installed fonts alone
    std::unordered_map<std::string, std::shared_ptr<const ORVFontFace>> varied_;
    std::size_t opened_ = 0, bytes_ = 0;
};

}  // namespace svg2
