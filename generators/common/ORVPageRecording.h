#pragma once

#include <cstdint>
#include <deque>
#include <limits>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "generators/common/ORVCallMapper.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/system/ORVRef.h"
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
    // Of documents and pages nothing is kept.
    int BeginDocument(const ORVPrintDocumentInfo& /*info*/) override { return 1; }
    int BeginPage(const ORVPrintPageInfo& /*info*/) override { return 1; }
    int EndPage() override { return 1; }
    int EndDocument() override { return 1; }

    int BeginGroup(const ORVPrintGroup& group) override;
    int EndGroup() override;
    int BeginClip(const ORVMathBox2D& box) override;
    int EndClip() override;
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
    [[nodiscard]] int Replay(ORVPrintGenerator& target, const ORVMathBox2D& box);

private:
    enum class Kind : std::uint8_t {
        kBeginGroup,
        kEndGroup,
        kBeginClip,
        kEndClip,
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
        void Add(const Box& other);
        bool Touches(const ORVMathBox2D& box) const;
    };
    struct Call {
        Kind kind;
        bool isNeeded = false;  // a group with a target that shows nothing
        std::uint32_t index;    // of what belongs to the kind
        std::uint32_t end = 0;  // of a group: the place of its end
        Box box;
    };
    static constexpr std::uint32_t kNone = ~std::uint32_t{0};

    struct Group {
        std::string id, description, linkElementId, linkURL;
        int linkShow;
        bool isLinkTarget;
    };
    struct Shape {
        std::size_t verbs, points;  // where they begin
        std::uint32_t verbCount, pointCount;
        std::uint32_t map, fill, stroke, id;
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
        std::vector<std::uint32_t> openGroups;  // places of their beginnings
        Box box;
    };

    Body& Open() { return bodies_[openBodies_.back()]; }
    void Add(Kind kind, std::uint32_t index, const Box& box);
    static Box Extent(const ORVMathBox2D& box);
    std::uint32_t AddMap(const ORVMathAffine2D& map);
    std::uint32_t AddFill(const ORVPrintFill* fill);
    std::uint32_t AddStroke(const ORVPrintStroke* stroke);
    std::uint32_t AddId(std::string_view id);
    void Keep(const ORVPixelImage& image);
    void Need(std::uint32_t group);

    int ReplayCall(ORVPrintGenerator& target, const Call& call, const ORVMathAffine2D& map);
    int ReplayBody(ORVPrintGenerator& target, const Placement& placement);
    int BeginReplayedGroup(ORVPrintGenerator& target, const Call& call);
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
    std::vector<Shape> shapes_;
    std::deque<Text> texts_;
    std::vector<Image> images_;
    std::vector<Placement> placements_;
    std::vector<ORVMathAffine2D> maps_;
    std::vector<ORVPrintFill> fills_;
    std::vector<Stroke> strokes_;
    std::vector<double> dashes_;
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
