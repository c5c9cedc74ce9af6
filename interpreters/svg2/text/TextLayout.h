// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "interpreters/svg2/text/FontMetrics.h"
#include "interpreters/svg2/tree/Scene.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/visualization/fonts/ORVTextLayout.h"

namespace svg2 {

/// An element of a text: "text" itself, "tspan", "textPath", "a".
struct TextSpan {
    ElementIndex element = kNoElement;
    const Style* style = nullptr;
    std::size_t parent = 0;                           ///< span around it; its own number for the text itself
    std::size_t first = 0, end = 0;                   ///< characters in it
    double opacity = 1.0;                             ///< of it and those around it, but for the text's own
    double shift = 0.0;                               ///< of its baseline, up, in user units
    std::size_t path = static_cast<std::size_t>(-1);  ///< that its text runs along
};

/// Glyphs that are placed together.
struct TextSegment {
    std::size_t first = 0, end = 0;  ///< characters
    std::size_t span = 0;
    std::string text;
    ORVTextLayout layout;
    TextFont font;
    double advance = 0.0;    ///< along the line, spacing behind it not included
    double spacing = 0.0;    ///< letter spacing of the span and of text lengths
    double expansion = 1.0;  ///< of widths
    bool isVertical = false;
    bool isSideways = false;  ///< in vertical text: lines of letters that are turned by a quarter
    bool isShown = true;      ///< false beyond the ends of a path
    ORVMathAffine2D toUser;   ///< from the layout's space, y up
};

/// A text with its glyphs in their places.
class TextLayout {
public:
    /// @param fonts  must outlive the layout
    TextLayout(Scene& scene, TextFonts& fonts) : scene_(scene), fonts_(fonts) {}

    /// Lays a "text" element out.
    /// @return false when a text cannot be set as it should: ORVGetTextFailure() tells why
    [[nodiscard]] bool LayOut(ElementIndex element, const Style& style, const Viewport& viewport);

    const std::vector<TextSegment>& GetSegments() const { return segments_; }
    const TextSpan& SpanOf(const TextSegment& segment) const { return spans_[segment.span]; }
    /// The em boxes of all glyphs, in user units.
    ORVMathBox2D GetBox() const;
    ORVMathBox2D BoxOf(const TextSegment& segment) const;

private:
    /// A character that is left once white space has been collapsed.
    struct Character {
        std::size_t offset, size;  // in the text
        std::size_t span;
        bool hasX = false, hasY = false;
        bool isUpright = false;    // in vertical text
        bool isMark = false;       // goes with the character before it
        bool isCollapsed = false;  // a space that goes away at the end of the text
        double x = 0.0, y = 0.0, dx = 0.0, dy = 0.0, rotation = 0.0;
    };
    /// An outline that text runs along, as lines.
    struct Path {
        std::vector<ORVMathPoint2D> points;
        std::vector<double> lengths;  // up to each point
        std::vector<bool> jumps;      // no line leads to the point
        double offset = 0.0;          // where the text starts
        bool isUsable = false;
    };
    /// Segments that are anchored together.
    struct Chunk {
        std::size_t first, end;  // segments
    };
    static constexpr std::size_t kNoPath = static_cast<std::size_t>(-1);

    void Collect(ElementIndex element, const Style& style, std::size_t parent, int depth);
    void AddText(std::string_view text, std::size_t span);
    void AddPath(TextSpan& span);
    void ApplyLists();
    void ApplyList(const TextSpan& span, Name name, Axis axis);
    void ApplyRotation(const TextSpan& span);
    double ShiftOf(const TextSpan& span);
    void MakeSegments();
    [[nodiscard]] bool Shape(TextSegment& segment);
    [[nodiscard]] bool FitLengths();
    void PlaceChunks();
    void PlaceChunk(const Chunk& chunk, ORVMathPoint2D& pen);
    void PlaceOnPath(const Chunk& chunk, const Path& path, ORVMathPoint2D& pen);
    double GapAfter(std::size_t segment, std::size_t end) const;
    bool StartsChunk(std::size_t segment) const;
    double AdvanceOfWordSpaces(TextSegment& segment, double spacing) const;

    Scene& scene_;
    TextFonts& fonts_;
    Viewport viewport_;
    std::string text_;
    std::vector<Character> characters_;
    std::vector<TextSpan> spans_;
    std::vector<std::unique_ptr<Style>> styles_;
    std::vector<Path> paths_;
    std::vector<TextSegment> segments_;
    bool endsWithSpace_ = true;
};

}  // namespace svg2
