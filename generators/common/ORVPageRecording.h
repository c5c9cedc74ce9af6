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

/// Records the calls between BeginPage and EndPage with everything they refer to, so that regions of the page
/// can be drawn repeatedly. Images are shared, symbols are stored once. Memory grows with the number of calls
/// and is only released by the destructor. The only error is lack of memory (std::bad_alloc). Not
/// thread-safe.
///
/// Replay skips what lies outside the requested region. Select a band first: SelectBand searches the whole
/// recording, Replay only what the band selected.
class ORVPageRecording final : public ORVPrintGenerator {
public:
    ORVPageRecording() = default;
    // Recorded data contains pointers into this object.
    ORVPageRecording(const ORVPageRecording&) = delete;
    ORVPageRecording& operator=(const ORVPageRecording&) = delete;

    // Document and page information is not recorded.
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
    bool KeepsIdentifiers() const override { return true; }  // records all identifiers
    int DrawShape(const ORVPrintShape& shape) override;
    int DrawText(const ORVPrintText& text) override;
    int DrawImage(const ORVPrintImage& image) override;

    /// Ends the recording.
    /// @param page  area of the page that may be replayed later
    void Finish(const ORVMathBox2D& page);
    /// Selects the calls whose bounding boxes intersect a band, for the following calls of Replay.
    void SelectBand(double yMin, double yMax);
    /// Replays, in order, the calls that intersect a box inside the selected band, together with the groups
    /// around them. For each identifier that links refer to, the first group is replayed once as a link
    /// target, even if nothing of it shows.
    /// @return 1, or the first other result of the target
    /// @param map  transformation applied to all calls
    [[nodiscard]] int Replay(ORVPrintGenerator& target, const ORVMathBox2D& box,
                             const ORVMathAffine2D& map = {});
    /// Replays what was recorded so far and intersects the box. Open parts are ended for the target only;
    /// recording can continue.
    [[nodiscard]] int ReplaySoFar(ORVPrintGenerator& target, const ORVMathBox2D& box,
                                  const ORVMathAffine2D& map = {});
    /// Bounding box of everything recorded so far; open parts count with what they contain.
    ORVMathBox2D GetBox() const { return bodies_.front().box.Whole(); }
    /// Conservative bounding box of a call.
    static ORVMathBox2D BoxOf(const ORVPrintShape& shape);
    static ORVMathBox2D BoxOf(const ORVPrintText& text);
    static ORVMathBox2D BoxOf(const ORVPrintImage& image);

private:
    // Each end follows its beginning; drawing calls come last.
    enum class Kind : std::uint8_t {
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
    /// Bounding box of a call, rounded outwards to floats.
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
        // A group that is a link target but shows nothing, or a part that contains one.
        bool isNeeded = false;
        std::uint32_t index;    // into the vector of that kind
        std::uint32_t end = 0;  // for a beginning: index of its end
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
        std::size_t verbs, points;  // indices of the first
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
    /// The calls of the page or of a symbol.
    struct Body {
        const void* key = nullptr;
        std::vector<Call> calls;
        std::vector<std::uint32_t> openParts;  // indices of their beginnings
        Box box;
    };

    /// Parts have a beginning and an end. A part with nothing to replay is skipped as a whole.
    static bool BeginsPart(Kind kind) {
        return kind == Kind::kBeginGroup || kind == Kind::kBeginClipPath || kind == Kind::kBeginLayer ||
               kind == Kind::kBeginMask || kind == Kind::kBeginFilter || kind == Kind::kBeginFilterInput;
    }
    static bool EndsPart(Kind kind) {
        return kind == Kind::kEndGroup || kind == Kind::kEndClipPath || kind == Kind::kEndLayer ||
               kind == Kind::kEndMask || kind == Kind::kEndFilter || kind == Kind::kEndFilterInput;
    }
    /// True if the target declined a mask or the input of a filter.
    static bool IsSkipped(Kind kind, int answer) {
        return (kind == Kind::kBeginMask && answer == kSkipMask) ||
               (kind == Kind::kBeginFilterInput && answer == kSkipInput);
    }
    static Kind EndOf(Kind begin) { return static_cast<Kind>(static_cast<std::uint8_t>(begin) + 1); }
    /// Calls that are replayed whenever the part around them is.
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

    /// @param places  indices of the page's calls that may be replayed; null for all
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

    std::deque<Body> bodies_{1};  // the first one is the page's
    std::vector<std::size_t> openBodies_{0};
    std::unordered_map<const void*, std::uint32_t> symbols_;  // indices of bodies by key
    std::vector<std::uint32_t> openPlacements_;  // calls whose boxes are unknown until their symbols end

    std::vector<Group> groups_;
    std::vector<ORVMathBox2D> clips_;
    std::vector<ClipPath> clipPaths_;
    std::vector<ORVPrintLayer> layers_;
    std::vector<ORVPrintMask> masks_;
    std::deque<Filter> filters_;
    std::vector<Shape> shapes_;
    std::deque<Text> texts_;
    ORVKeptFaces keptFaces_;  // faces used by texts
    std::vector<Image> images_;
    std::vector<Placement> placements_;
    std::vector<ORVMathAffine2D> maps_;
    std::vector<ORVPrintFill> fills_;
    std::vector<Stroke> strokes_;
    std::vector<double> dashes_;
    std::deque<ORVPrintGradient> gradients_;
    std::deque<std::vector<ORVPrintGradientStop>> stops_;
    std::unordered_multimap<std::uint64_t, std::uint32_t> knownStops_;  // indices by hash of their content
    std::vector<std::string> ids_;
    std::vector<ORVPrintPath::Verb> verbs_;
    std::vector<ORVMathPoint2D> points_;
    std::vector<ORVRef<const ORVPixelImage>> keptImages_;
    std::unordered_set<const ORVPixelImage*> knownImages_;

    std::vector<std::uint32_t> band_;  // indices into the page's calls
    ORVCallMapper mapper_;
    ORVPrintPath path_;
    ORVPrintStroke stroke_;
};
