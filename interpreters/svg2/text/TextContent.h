// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "interpreters/svg2/text/FontMetrics.h"
#include "interpreters/svg2/text/TextPath.h"
#include "interpreters/svg2/tree/Scene.h"

namespace svg2 {

/// An element of a text: `text` itself, `tspan`, `textPath`, `a` or `tref`.
struct TextSpan {
    static constexpr std::size_t kNoPath = std::numeric_limits<std::size_t>::max();

    ElementIndex element = kNoElement;
    const Style* style = nullptr;
    std::size_t parent = 0;          ///< index of the enclosing span; its own index for the text element
    std::size_t first = 0, end = 0;  ///< range of characters
    double opacity = 1.0;            ///< accumulated from enclosing spans, except for the text element's own
    double shift = 0.0;              ///< shift of its baseline upwards, in user units
    std::size_t path = kNoPath;      ///< the path it runs along
    int depth = 0;                   ///< nesting depth
    bool isHidden = false;           ///< not displayed: its characters only consume values of position lists
    TextFont font;

    /// Specified length of its glyphs, in user units; not negative.
    double FontSize() const { return std::max(style->fontSize, 0.0) * font.enlargement; }
};

/// A character that remains after white space has been collapsed.
struct TextCharacter {
    std::uint32_t span = 0;
    std::uint32_t offset = 0;      ///< position in the text; hidden characters have none
    bool isUpright : 1 = false;    ///< for vertical text
    bool isPart : 1 = false;       ///< belongs to the preceding character
    bool isCollapsed : 1 = false;  ///< a collapsed run of white space
    bool isHidden : 1 = false;
};

/// The position given by attributes.
struct TextPlace {
    bool hasX = false, hasY = false;
    double x = 0.0, y = 0.0, dx = 0.0, dy = 0.0;
    bool IsAbsolute() const { return hasX || hasY; }
};

/// The path of a textPath, and the start offset on it.
struct TextRail {
    TextPath path;
    double offset = 0.0;
    bool IsUsable() const { return path.GetLength() > 0.0; }
};

/// The characters of a text element in its spans, with collapsed white space, and the positions from lists.
class TextContent {
public:
    /// @param fonts  must outlive the content
    TextContent(Scene& scene, TextFonts& fonts) : scene_(scene), fonts_(fonts) {}

    /// Collects the content of a `text` element.
    /// @return false if it cannot be set correctly; ORVGetTextFailure() has the reason
    [[nodiscard]] bool Collect(ElementIndex element, const Style& style, const Viewport& viewport);

    bool IsEmpty() const { return characters_.empty(); }
    const std::vector<TextCharacter>& GetCharacters() const { return characters_; }
    /// The code points of the displayed characters.
    std::u32string_view GetCodePoints() const { return codePoints_; }
    const std::vector<TextSpan>& GetSpans() const { return spans_; }
    const TextSpan& SpanOf(std::size_t character) const { return spans_[characters_[character].span]; }
    const TextRail& GetRail(std::size_t number) const { return rails_[number]; }
    /// The bytes of the displayed characters.
    std::string_view GetBytes(std::size_t first, std::size_t end) const;

    TextPlace PlaceOf(std::size_t character) const {
        return character < places_.size() ? places_[character] : TextPlace();
    }
    double RotationOf(std::size_t character) const {
        return character < rotations_.size() ? rotations_[character] : 0.0;
    }
    bool HasRotations() const { return !rotations_.empty(); }
    /// True if any character is moved from its natural position.
    bool HasMoves() const { return hasMoves_; }
    /// True for a single span at a single position, whose characters follow each other as in the font.
    bool IsPlain() const;
    bool IsVertical() const { return spans_[0].style->writingMode != WritingMode::kHorizontal; }

    Scene& GetScene() const { return scene_; }
    const Viewport& GetViewport() const { return viewport_; }

private:
    void AddSpan(ElementIndex element, const Style& style, std::size_t parent);
    void CollectChildren(std::size_t span);
    void CollectChild(ElementIndex child, std::size_t parent);
    std::string_view Transformed(std::string_view text, std::size_t span, std::string& memory);
    void AddText(std::string_view written, std::size_t span);
    bool AddReferenced(std::size_t span);
    void AddRail(TextSpan& span);
    void ReadStartOffset(const TextSpan& span, ElementIndex target, TextRail& rail);
    double ShiftOf(const TextSpan& span) const;
    void DropSpaceAtEnd();
    [[nodiscard]] bool FindParts();
    void FindUpright();
    bool IsTurned(std::size_t character) const;
    void ApplyLists();
    void ApplyList(const TextSpan& span, Name name, Axis axis);
    void ApplyRotation(const TextSpan& span);

    Scene& scene_;
    TextFonts& fonts_;
    Viewport viewport_;
    std::string text_;
    std::u32string codePoints_;
    std::vector<TextCharacter> characters_;
    std::vector<TextSpan> spans_;
    std::vector<std::unique_ptr<Style>> styles_;
    std::vector<TextRail> rails_;
    std::vector<TextPlace> places_;  // for the first characters
    std::vector<double> rotations_;  // the same, in degrees
    bool endsWithSpace_ = true;
    bool hasMoves_ = false, hasMarks_ = false, isTooLong_ = false, hasFailed_ = false;
};

}  // namespace svg2
