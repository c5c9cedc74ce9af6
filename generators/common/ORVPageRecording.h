// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <deque>
#include <limits>
#include <span>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "generators/common/ORVCallMapper.h"
#include "generators/common/generator_powers.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/fonts/ORVFontFace.h"
#include "platform/visualization/fonts/ORVTextLayout.h"
#include "platform/visualization/images/ORVPixelImage.h"

/// What a page shows, kept so that parts of it can be drawn again and again: all calls between BeginPage and
/// EndPage, with what they refer to. Images are shared, symbols are kept once. Memory grows with the calls;
/// it is given back by the destructor only. Nothing fails but for memory (std::bad_alloc).
///
/// Replaying leaves out what lies outside of the part wanted. Parts are asked for by bands: a band is looked
/// for in all of the recording, the parts of a band in the band only.
class ORVPageRecording final : public ORVPrintGenerator {
public:
    ORVPageRecording() = default;
    // What is kept refers to itself.
    ORVPageRecording(const ORVPageRecording&) = delete;
    ORVPageRecording& operator=(const ORVPageRecording&) = delete;

    // Of documents and pages nothing is kept.
    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return 1; }
    int BeginPage(const ORVPrintPageInfo& /*info*/) override { return 1; }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override;
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
    unsigned int GetPowers() const override { return kAllPowers; }
    int BeginClipPath(const ORVPrintClipPath& clip) override;
    int EndClipPath() override;
    int BeginLayer(const ORVPrintLayer& layer) override;
    int EndLayer() override;
    int BeginMask(const ORVPrintMask& mask) override;
    int EndMask() override;
    int BeginFilter(const ORVPrintFilter& filter) override;
    int EndFilter() override;
    int BeginFilterInput() override;
    int EndFilterInput() override;
    int BeginSymbol(const ORVPrintSymbol& symbol) override;
    int EndSymbol() override;
    bool KeepsIdentifiers() const override { return true; }  // those that are given
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;

    /// Ends the recording.
    /// @param page  what of the coordinates will ever be asked for
    void Finish(const ORVMathBox2D& page);
    /// Chooses what touches the band between two heights for the calls of Replay that follow.
    void SelectBand(double yMin, double yMax);
    /// Draws what touches the box, which lies in the band, in its order. Groups around it are begun and
    /// ended. The first group of an identifier that links lead to is reported as their target one single
    /// time, also when it shows nothing.
    /// @return 1, or what the target returned when it was not 1
    /// @param map  that all calls are put under
    [[nodiscard]] int Replay(ORVPrintGenerator& target, const ORVMathBox2D& box,
                             const ORVMathAffine2D& map = {});
    /// Draws what touches the box of all that was recorded so far. What is open is ended; the recording
    /// can go on.
    [[nodiscard]] int ReplaySoFar(ORVPrintGenerator& target, const ORVMathBox2D& box,
                                  const ORVMathAffine2D& map = {});
    /// What of the coordinates all that was recorded so far reaches; parts that are open count as they are.
    ORVMathBox2D GetBox() const { return bodies_.front().box.Whole(); }
    /// How far a call reaches at most.
    static ORVMathBox2D BoxOf(const ORVPrintShape& shape);
    static ORVMathBox2D BoxOf(const ORVPrintText& text);
    static ORVMathBox2D BoxOf(const ORVPrintImage& image);

private:
    enum class Kind : std::uint8_t {  // ends follow their beginnings; what is drawn comes last
        kBeginGroup,
        kEndGroup,
        kBeginClip,
        kEndClip,
        kBeginClipPath,
        kEndClipPath,
        kBeginLayer,
        kEndLayer,
        kBeginMask,
        kEndMask,
        kBeginFilter,
        kEndFilter,
        kBeginFilterInput,
        kEndFilterInput,
        kSymbol,
        kShape,
        kText,
        kImage,
    };
    /// Extent of a call, rounded away from its middle.
    struct Box {
        float xMin = std::numeric_limits<float>::infinity(), xMax = -std::numeric_limits<float>::infinity();
        float yMin = std::numeric_limits<float>::infinity(), yMax = -std::numeric_limits<float>::infinity();
        bool IsEmpty() const { return !(xMin <= xMax); }
        ORVMathBox2D Whole() const;
        void Add(const Box& other);
        bool Touches(const ORVMathBox2D& box) const;
    };
    struct Call {
        Kind kind;
        bool isNeeded = false;  // a group with a target that shows nothing, or what holds such a group
        std::uint32_t index;    // of what belongs to the kind
        std::uint32_t end = 0;  // of a part: the place of its end
        Box box;
    };
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};

    struct Group {
        std::string id, description, linkElementId, linkURL;
        int linkShow;
        bool isLinkTarget, isLayer;
        std::string layerLabel;
        bool isLayerShown, isLayerLocked;
    };
    struct Path {
        std::size_t verbs, points;  // where they begin
        std::uint32_t verbCount, pointCount;
    };
    struct Filter {
        ORVPrintFilter filter;
        std::vector<ORVPrintFilterStep> steps;
    };
    struct Shape {
        Path path;
        std::uint32_t map, fill, stroke, id;
    };
    struct ClipPath {
        Path path;
        std::uint32_t map;
        bool evenOdd;
    };
    struct Text {
        ORVTextLayout layout;
        std::string text;
        std::uint32_t map, fill, stroke, id;
        bool isClipped;
        ORVPrintPath clip;
    };
    struct Image {
        const ORVPixelImage* image;
        std::uint32_t map, id;
        bool isSmooth;
    };
    struct Placement {
        std::uint32_t symbol, map;
    };
    struct Stroke {
        ORVPrintStroke stroke;
        std::size_t dashes;
        std::uint32_t dashCount;
    };
    /// Calls that belong together: those of the page, or those of a symbol.
    struct Body {
        const void* key = nullptr;
        std::vector<Call> calls;
        std::vector<std::uint32_t> openParts;  // places of their beginnings
        Box box;
    };

    /// Parts are begun and ended, and are left out as a whole when nothing in them is wanted.
    static bool BeginsPart(Kind kind) {
        return kind == Kind::kBeginGroup || kind == Kind::kBeginClipPath || kind == Kind::kBeginLayer ||
               kind == Kind::kBeginMask || kind == Kind::kBeginFilter || kind == Kind::kBeginFilterInput;
    }
    static bool EndsPart(Kind kind) {
        return kind == Kind::kEndGroup || kind == Kind::kEndClipPath || kind == Kind::kEndLayer ||
               kind == Kind::kEndMask || kind == Kind::kEndFilter || kind == Kind::kEndFilterInput;
    }
    /// Whether a target answered that it has no use for masks, or for inputs of filters.
    static bool IsSkipped(Kind kind, int answer) {
        return (kind == Kind::kBeginMask && answer == kSkipMask) ||
               (kind == Kind::kBeginFilterInput && answer == kSkipInput);
    }
    static Kind EndOf(Kind begin) { return static_cast<Kind>(static_cast<std::uint8_t>(begin) + 1); }
    /// Beginnings and ends that are replayed wherever what holds them is.
    static bool IsFrame(Kind kind) {
        return kind == Kind::kBeginClip || kind == Kind::kEndClip || kind == Kind::kBeginMask ||
               kind == Kind::kBeginFilterInput || EndsPart(kind);
    }

    Body& Open() { return bodies_[openBodies_.back()]; }
    void Add(Kind kind, std::uint32_t index, const Box& box);
    void Spread(Body& body, const Box& box);
    int BeginPart(Kind kind, std::uint32_t index);
    int EndPart(Kind kind);
    Box ShownBox(const Call& part) const;
    ORVMathBox2D ClipBox(const ClipPath& clip) const;
    Path AddPath(const ORVPrintPath& path);
    const ORVPrintGradient* AddGradient(const ORVPrintGradient* gradient);
    std::span<const ORVPrintGradientStop> AddStops(std::span<const ORVPrintGradientStop> stops);
    static Box Extent(const ORVMathBox2D& box);
    std::uint32_t AddMap(const ORVMathAffine2D& map);
    std::uint32_t AddFill(const ORVPrintFill* fill);
    std::uint32_t AddStroke(const ORVPrintStroke* stroke);
    std::uint32_t AddId(std::string_view id);
    void Keep(const ORVPixelImage& image);

    /// @param places  of calls of the page that may be wanted; null for all
    int ReplayPlaces(ORVPrintGenerator& target, const std::vector<std::uint32_t>* places,
                     const ORVMathBox2D& box, const ORVMathAffine2D& map);
    int ReplayFrame(ORVPrintGenerator& target, Call& call, const ORVMathAffine2D& map);
    const ORVPrintPath& PathOf(const Path& kept);
    int ReplayCall(ORVPrintGenerator& target, const Call& call, const ORVMathAffine2D& map);
    int ReplayBody(ORVPrintGenerator& target, const Placement& placement, const ORVMathAffine2D& outer);
    int BeginReplayedGroup(ORVPrintGenerator& target, Call& call);
    const ORVPrintFill* FillOf(std::uint32_t index) const;
    const ORVPrintStroke* StrokeOf(std::uint32_t index);
    std::string_view IdOf(std::uint32_t index) const {
        return index == kNone ? std::string_view() : ids_[index];
    }

    std::deque<Body> bodies_{1};  // the page's comes first
    std::vector<std::size_t> openBodies_{0};
    std::unordered_map<const void*, std::uint32_t> symbols_;  // places of bodies by their keys
    std::vector<std::uint32_t> openPlacements_;               // calls that wait for their symbols' boxes

    std::vector<Group> groups_;
    std::vector<ORVMathBox2D> clips_;
    std::vector<ClipPath> clipPaths_;
    std::vector<ORVPrintLayer> layers_;
    std::vector<ORVPrintMask> masks_;
    std::deque<Filter> filters_;
    std::vector<Shape> shapes_;
    std::deque<Text> texts_;
    ORVKeptFaces keptFaces_;  // of texts
    std::vector<Image> images_;
    std::vector<Placement> placements_;
    std::vector<ORVMathAffine2D> maps_;
    std::vector<ORVPrintFill> fills_;
    std::vector<Stroke> strokes_;
    std::vector<double> dashes_;
    std::deque<ORVPrintGradient> gradients_;
    std::deque<std::vector<ORVPrintGradientStop>> stops_;
    std::unordered_multimap<std::uint64_t, std::uint32_t> knownStops_;  // places by their contents
    std::vector<std::string> ids_;
    std::vector<ORVPrintPath::Verb> verbs_;
    std::vector<ORVMathPoint2D> points_;
    std::vector<ORVRef<const ORVPixelImage>> keptImages_;
    std::unordered_set<const ORVPixelImage*> knownImages_;

    std::vector<std::uint32_t> band_;  // places in the page's body
    ORVCallMapper mapper_;
    ORVPrintPath path_;
    ORVPrintStroke stroke_;
};
