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

/// The chosen font and the fallback fonts for missing characters.
struct OrderedFont {
    ORVFontChoice choice;
    std::vector<const ORVFontFace*> order;  ///< see ORVShapingFont
};

/// The embedded fonts of a document ("@font-face"). Each is opened on first use and released with this
/// object; generators keep those that they need longer. Used by one thread at a time.
class DocumentFonts {
public:
    /// @param rules  must outlive this object, as must their style sheet
    explicit DocumentFonts(std::span<const FontFaceRule> rules);
    ~DocumentFonts();
    DocumentFonts(const DocumentFonts&) = delete;
    DocumentFonts& operator=(const DocumentFonts&) = delete;

    bool IsEmpty() const { return fonts_.empty(); }
    /// Chooses a font for a query whose families include a usable font of the document.
    /// @return null if the query involves installed fonts only; otherwise valid as long as this object
    const OrderedFont* Choose(const ORVFontQuery& query);

    /// Limits on the number of fonts opened and their total size; further fonts are treated as unreadable.
    static constexpr std::size_t kMostFonts = 256, kMostBytes = std::size_t{128} << 20U;

    /// Opens the font of a rule.
    /// @return null if none of its sources can be used
    const ORVFontFace* Open(std::size_t rule);

private:
    /// A rule and its font, opened on first use.
    struct Font {
        const FontFaceRule& rule;
        std::shared_ptr<const ORVFontFace> own;  // the embedded font
        const ORVFontFace* face = nullptr;       // the embedded font or an installed one
        bool isOpened = false;
    };
    /// The properties of a font that are relevant to a query.
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
    std::unordered_map<std::string, std::unique_ptr<OrderedFont>> chosen_;  // null: use installed fonts only
    std::unordered_map<std::string, std::shared_ptr<const ORVFontFace>> varied_;
    std::size_t opened_ = 0, bytes_ = 0;
};

}  // namespace svg2
