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

/// An element of a text: "text" itself, "tspan", "textPath", "a", "tref".
struct TextSpan {
    static constexpr std::size_t kNoPath = std::numeric_limits<std::size_t>::max();

    ElementIndex element = kNoElement;
    const Style* style = nullptr;
    std::size_t parent = 0;          ///< span around it; its own number for the text itself
    std::size_t first = 0, end = 0;  ///< characters in it
    double opacity = 1.0;            ///< of it and those around it, but for the text's own
    double shift = 0.0;              ///< of its baseline, up, in user units
    std::size_t path = kNoPath;      ///< that its text runs along
    int depth = 0;                   ///< spans around it
    bool isHidden = false;           ///< not displayed: its characters only use up values of lists
    TextFont font;

    /// Of its glyphs, in user units; not negative.
    double FontSize() const { return std::max(style->fontSize, 0.0) * font.enlargement; }
};

/// A character that is left once white space has been collapsed.
struct TextCharacter {
    std::uint32_t span = 0;
    std::uint32_t offset = 0;      ///< in the text's bytes; none of its own when it is hidden
    bool isUpright : 1 = false;    ///< in vertical lines
    bool isPart : 1 = false;       ///< goes with the character before it
    bool isCollapsed : 1 = false;  ///< a space that stands for a run of them
    bool isHidden : 1 = false;
};

/// Where the document wants a character.
struct TextPlace {
    bool hasX = false, hasY = false;
    double x = 0.0, y = 0.0, dx = 0.0, dy = 0.0;
    bool IsAbsolute() const { return hasX || hasY; }
};

/// An outline that a part of a text runs along, and where it starts on it.
struct TextRail {
    TextPath path;
    double offset = 0.0;
    bool IsUsable() const { return path.GetLength() > 0.0; }
};

/// The characters of a text in its spans, with white space collapsed, and the places that lists give them.
class TextContent {
public:
    /// @param fonts  must outlive the content
    TextContent(Scene& scene, TextFonts& fonts) : scene_(scene), fonts_(fonts) {}

    /// Collects a "text" element.
    /// @return false when it cannot be set as it should: ORVGetTextFailure() tells why
    [[nodiscard]] bool Collect(ElementIndex element, const Style& style, const Viewport& viewport);

    bool IsEmpty() const { return characters_.empty(); }
    const std::vector<TextCharacter>& GetCharacters() const { return characters_; }
    /// Their code points.
    std::u32string_view GetCodePoints() const { return codePoints_; }
    const std::vector<TextSpan>& GetSpans() const { return spans_; }
    const TextSpan& SpanOf(std::size_t character) const { return spans_[characters_[character].span]; }
    const TextRail& GetRail(std::size_t number) const { return rails_[number]; }
    /// The bytes of characters that are displayed.
    std::string_view GetBytes(std::size_t first, std::size_t end) const;

    TextPlace PlaceOf(std::size_t character) const {
        return character < places_.size() ? places_[character] : TextPlace();
    }
    double RotationOf(std::size_t character) const {
        return character < rotations_.size() ? rotations_[character] : 0.0;
    }
    bool HasRotations() const { return !rotations_.empty(); }
    /// Whether any character is moved from where it would come by itself.
    bool HasMoves() const { return hasMoves_; }
    /// Whether it is one span in one place, in which characters follow each other as the font has them.
    bool IsPlain() const;
    bool IsVertical() const { return spans_[0].style->writingMode != WritingMode::kHorizontal; }

    Scene& GetScene() const { return scene_; }
    const Viewport& GetViewport() const { return viewport_; }

private:
    void AddSpan(ElementIndex element, const Style& style, std::size_t parent);
    void CollectChildren(std::size_t span);
    void CollectChild(ElementIndex child, std::size_t parent);
    void AddText(std::string_view text, std::size_t span);
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
    std::vector<TextPlace> places_;  // of the first characters
    std::vector<double> rotations_;  // likewise, in degrees
    bool endsWithSpace_ = true;
    bool hasMoves_ = false, hasMarks_ = false, isTooLong_ = false;
};

}  // namespace svg2
