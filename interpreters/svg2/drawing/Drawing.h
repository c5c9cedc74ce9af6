// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "interpreters/svg2/drawing/Bounds.h"
#include "interpreters/svg2/drawing/DrawState.h"
#include "interpreters/svg2/drawing/DrawingBudget.h"
#include "interpreters/svg2/drawing/Images.h"
#include "interpreters/svg2/drawing/pattern_tiles.h"
#include "interpreters/svg2/filters/FilterReader.h"
#include "interpreters/svg2/paint/Paints.h"
#include "interpreters/svg2/text/FontMetrics.h"
#include "interpreters/svg2/tree/Scene.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

struct FusedShape;

/// Draws the content of a document's pages to a generator.
class Drawing {
public:
    /// All arguments must outlive the drawing.
    Drawing(Scene& scene, ORVPrintGenerator& generator, DrawingBudget& budget, Images& images,
            TextFonts& fonts);
    ~Drawing();
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;

    /// Reports an element to the generator as if it were the target of a link.
    /// @param element  may be kNoElement
    void Report(ElementIndex element) {
        if (element != kNoElement) linkTargets_.insert(element);
    }

    /// Enables reporting of the layers of the document's editor; hidden ones are included if the generator
    /// can hide content.
    void ReportContentLayers();

    /// Draws the root element and its content.
    /// @param toPage    from px of the root's viewport to page coordinates
    /// @param viewport  of the root, in px
    /// @param page      bounding box of the page, in page coordinates
    /// @return 1, a failure of ORVPrintModelRender, or a failure of the generator
    [[nodiscard]] int Draw(const ORVMathAffine2D& toPage, const Viewport& viewport, const ORVMathBox2D& page);

    /// Draws the glyph of a font.
    /// @param glyph     an element of the document, drawn without the transforms of its ancestors
    /// @param toPage    from px of the root's viewport to page coordinates
    /// @param viewport  of the root, in px
    /// @param context   the paints of the text, and the colour that the glyph inherits
    /// @return like Draw()
    [[nodiscard]] int DrawGlyph(ElementIndex glyph, const ORVMathAffine2D& toPage, const Viewport& viewport,
                                const ORVMathBox2D& page, const ContextPaints& context);

private:
    friend class TextDrawing;

    /// Which call closes an open part of the drawing.
    enum class End : std::uint8_t { kGroup, kLayer, kClip, kClipPath, kFilter };

    // ---- traversal (Drawing.cpp) ----
    void DrawElement(ElementIndex element, const Style& parent, const DrawState& state);
    /// Like DrawElement, for an element whose style is already computed.
    void DrawStyled(ElementIndex element, const Style& style, const DrawState& state);
    void DrawContent(ElementIndex element, const Style& style, const DrawState& state);
    void DrawChildren(ElementIndex element, const Style& style, const DrawState& state);
    void DrawUse(ElementIndex element, const Style& style, const DrawState& state);
    void DrawInnerViewport(ElementIndex element, const Style& style, const DrawState& state, ElementIndex use,
                           const Style* useStyle);
    void DrawImage(ElementIndex element, const Style& style, const DrawState& state);
    void PrepareDrawing(ImageContent& content, const Viewport& size, int depth);
    void DrawSvgImage(ImageContent& content, const Rectangle& place, const AspectRatio& ratio,
                      const DrawState& state);
    /// Sets the element that the following calls draw, for generators that follow origins.
    void NoteDrawn(ElementIndex element);
    void BeginGroups(ElementIndex element, const Style& style);
    void SetLink(ElementIndex element, ORVPrintGroup& group) const;
    /// Begins the group of an "a" element in a text, if it has a link target.
    void BeginLink(ElementIndex element);
    bool IsContentLayer(ElementIndex element) const;

    // ---- effects (effects.cpp) ----
    /// Begins the layer and the clips of an element.
    /// @return false if nothing of the element is visible
    [[nodiscard]] bool BeginEffects(ElementIndex element, const Style& style, const DrawState& state);
    bool NeedsLayer(ElementIndex element, const Style& style) const;
    /// @param clipPath  value of the property, on the element or on its clip path
    [[nodiscard]] bool BeginClipping(std::string_view clipPath, ElementIndex element, const Style& style,
                                     const DrawState& state);
    [[nodiscard]] bool BeginReferencedClip(ElementIndex clip, ElementIndex element, const Style& style,
                                           const DrawState& state);
    [[nodiscard]] bool BeginMasking(ElementIndex element, const Style& style, const DrawState& state);
    bool FindMask(const Style& style, ElementIndex& mask) const;
    void DrawClipContent(ElementIndex clip, const DrawState& state);
    void BeginRectangle(const Rectangle& rectangle, const ORVMathAffine2D& toPage);
    void BeginOutline(const ORVPrintPath& path, const ORVMathAffine2D& toPage, bool isEvenOdd);
    /// Closes everything that was opened since there were `mark` ends.
    void EndBack(std::size_t mark);
    /// The part of the opacity that is applied to the paints, where this avoids a layer.
    double PaintOpacity(ElementIndex element, const Style& style) const;

    // ---- filters (filtering.cpp) ----
    /// Begins the filter of an element.
    /// @return false if nothing of the element is visible
    [[nodiscard]] bool BeginFiltering(ElementIndex element, const Style& style, const DrawState& outer);
    [[nodiscard]] bool EnterRoot(DrawState& state, ORVMathAffine2D& toInner) const;
    bool IsDrawn(ElementIndex element, const Style& style, const Viewport& viewport) const;
    void EndFiltering();
    void DrawFilterImage(const FilterImage& image, const DrawState& state);
    void PlaceImage(ImageContent& content, const Rectangle& place, const AspectRatio& ratio, bool cuts,
                    ImageRendering rendering, std::string_view id, const DrawState& state);

    // ---- shapes (shape_drawing.cpp) ----
    void DrawShape(ElementIndex element, const Style& style, const DrawState& state);
    void DrawOutline(ElementIndex element, const ORVPrintPath& path, const Style& style,
                     const DrawState& state, double opacity);
    void DrawPart(PaintPart part, const ORVPrintPath& path, const Style& style, const DrawState& state,
                  const MadePaint& fill, const ORVPrintStroke* stroke, const MadePaint* pattern);
    void DrawStroke(const ORVPrintPath& path, const Style& style, const DrawState& state,
                    const ORVPrintStroke& stroke);
    void DrawPatternedStroke(const ORVPrintPath& path, const Style& style, const DrawState& state,
                             ORVPrintStroke stroke, const MadePaint& pattern);
    bool HasMarkers(ElementIndex element, const Style& style) const;

    // ---- markers (markers.cpp) ----
    void DrawMarkers(const ORVPrintPath& path, const std::vector<std::size_t>& segmentEnds,
                     const Style& style, const DrawState& state);
    void DrawMarker(ElementIndex marker, const ORVMathPoint2D& point, double degrees, bool isStart,
                    const Style& style, const DrawState& state, const ContextPaints& context);

    // ---- patterns (patterns.cpp) ----
    /// What repeats: plain shapes; what would make the output very large; anything else.
    enum class TileKind : std::uint8_t { kPlain, kHeavy, kOther };
    /// Fills an outline with a pattern.
    void DrawPattern(const ORVPrintPath& path, const ORVMathAffine2D& toPage, bool isEvenOdd,
                     const MadePaint& paint, const DrawState& state);
    /// @param shown  the area of the page that they cover
    void DrawTiles(ElementIndex content, const Style& style, const PatternTiles& all,
                   const ORVMathBox2D& shown, DrawState& inner);
    /// Lets the generator repeat one tile.
    /// @return false, with nothing drawn, if it cannot
    bool DrawOneTileForAll(ElementIndex content, const Style& style, const PatternTiles& all,
                           const ORVMathBox2D& shown, DrawState& inner, TileKind kind);
    /// A number for the content of tiles.
    std::uint64_t KeyOf(const TileContent& content);
    // ---- tiles of plain shapes (fused_tiles.cpp) ----
    /// Counts the points of shapes in all tiles.
    /// @return false, with nothing counted, if there would be too many
    bool TakePoints(const std::vector<FusedShape>& shapes, const TileRange& range);
    /// Draws shapes in all tiles of a pattern at once.
    void DrawFusedTiles(const std::vector<FusedShape>& shapes, const PatternTiles& tiles);
    /// @return false unless all content consists of plain shapes
    bool CollectFused(ElementIndex parent, const Style& style, const PatternTiles& tiles,
                      const ORVMathAffine2D& toPattern, int depth, std::vector<FusedShape>& shapes);
    void DrawFused(const FusedShape& shape, const PatternTiles& tiles);
    void DrawFusedLine(const FusedShape& shape, const PatternTiles& tiles, const ORVPrintStroke& pen);

    /// Records the result of a call.
    /// @return false from the first failure on
    bool Do(int result) {
        if (status_ == 1) status_ = result;
        return status_ == 1;
    }
    bool IsStopped() const { return status_ != 1; }
    /// Whether the content being drawn may be drawn more than once.
    bool IsRepeated() const { return !uses_.empty() || !active_.empty(); }
    /// Counts an element against the budget.
    /// @return false if the budget is exhausted, which is recorded in the status
    [[nodiscard]] bool TakeElement(ElementIndex element);
    /// @return false if the nesting is too deep, which is recorded in the status
    [[nodiscard]] bool MayDescend(int depth);
    /// Marks a definition as being drawn.
    /// @return false if too many are nested
    bool Enter(ElementIndex definition);
    void Leave() { active_.pop_back(); }
    Style& StyleAt(int depth);

    Scene& scene_;
    ORVPrintGenerator& generator_;
    DrawingBudget& budget_;
    Images& images_;
    Bounds bounds_;
    Paints paints_;
    TextFonts& fonts_;
    int status_ = 1;
    ORVMathBox2D page_;
    ORVMathAffine2D rootToPage_;
    std::vector<End> ends_;
    std::vector<std::unique_ptr<Style>> styles_;  // by depth
    std::vector<ElementIndex> uses_;              // targets of "use" being drawn
    std::vector<ElementIndex> active_;            // clips, masks, markers and patterns being drawn
    std::vector<ORVMathBox2D> pages_;             // previous values of page_, one per open filter
    std::unordered_set<ElementIndex> linkTargets_;
    bool keepsIdentifiers_, followsOrigins_;
    ElementIndex drawn_ = kNoElement;  // element of the current calls, for generators that follow origins
    struct KnownTiles {
        TileContent content;
        std::uint64_t key = 0;
    };
    std::array<KnownTiles, 8> knownTiles_;
    std::uint64_t tilesSeen_ = 0;
    bool reportsLayers_ = false, reportsHiddenLayers_ = false;
};

}  // namespace svg2
