// SPDX-License-Identifier: Apache-2.0
#include "platform/print/page_walk.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <vector>

#include "platform/model/walk_prefetch.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/shape_drawing.h"

namespace {

constexpr int kDone = 1;

// Outlines with at least this many points are freed early.
constexpr std::size_t kLongOutline = 1024;

/// From model coordinates (y up, from the page's lower left corner) to page coordinates (y down, from its
/// upper left corner).
ORVMathAffine2D ModelToPage(const ORVPrtImageElt& page) {
    double width = 0.0, height = 0.0;
    page.GetSize(width, height);
    const ORVMathAffine2D flip{1.0, 0.0, 0.0, -1.0, -page.GetOrigin().x, page.GetOrigin().y + height};
    // An invalid page matrix occurs only together with an empty view box, and is ignored.
    const ORVMath2x2Matrix& m = page.GetMatrix();
    if (m == ORVMath2x2Matrix() || !std::isfinite(m.m11 + m.m12 + m.m21 + m.m22)) return flip;
    return flip * ORVMathAffine2D{m.m11, m.m12, m.m21, m.m22, 0.0, 0.0};
}

/// Whether the children of a primitive are drawn one by one.
bool IsWalked(const ORVPrtGraphicPrimitiveElt& primitive) {
    const ORVPrtKind kind = primitive.GetKind();
    return kind == ORVPrtKind::kGroup || kind == ORVPrtKind::kSymbol || kind == ORVPrtKind::kRegion;
}

/// Whether a primitive can continue the line of the one before it.
bool IsOpenLine(const ORVPrtGraphicPrimitiveElt& primitive) {
    switch (primitive.GetKind()) {
        case ORVPrtKind::kPolyline:
        case ORVPrtKind::kPolyCubicBezier:
        case ORVPrtKind::kPolyQuadraticBezier:
        case ORVPrtKind::kEllipticalArc: return true;
        default: return false;
    }
}

/// Frees the points of a primitive that has been drawn and will not be drawn again.
void ForgetPoints(ORVPrtGraphicPrimitiveElt& primitive) {
    VisitPrimitive(primitive, [&]<class Primitive>(Primitive& one) {
        if constexpr (std::is_base_of_v<ORVPrtPointList, Primitive>) {
            if (one.GetPoints().size() >= kLongOutline) one.ForgetPoints();
        } else if constexpr (std::is_same_v<Primitive, ORVPrtClosedFigureElt>) {
            for (ORVPrtGraphicPrimitiveElt* region : one.GetChildren())
                if (region->GetKind() == ORVPrtKind::kRegion && region->GetReferenceCount() == 1)
                    for (ORVPrtGraphicPrimitiveElt* piece : *region->GetChildList())
                        if (piece->GetReferenceCount() == 1) ForgetPoints(*piece);
        }
    });
}

bool AreDistinct(std::span<const ORVPrtImageElt* const> given) {
    std::vector<const ORVPrtImageElt*> pages(given.begin(), given.end());
    std::sort(pages.begin(), pages.end());
    return std::adjacent_find(pages.begin(), pages.end()) == pages.end();
}

/// For frames that hold a single primitive.
const ORVPrtChildList& NoChildren() {
    static const ORVPrtChildList none{};
    return none;
}

/// Walks the primitives of one page in order, reporting groups and symbols.
class PageWalk {
public:
    PageWalk(ORVPrintGenerator& generator, const ORVPrtImageElt& page, ORVPrintProgress& progress)
        : generator_(generator),
          page_(page),
          progress_(progress),
          shapes_(generator, page, progress.budget) {}

    int Draw() {
        open_.push_back({page_.GetChildList(), 0, ModelToPage(page_), false, false, false});
        int result = ReportTarget();
        while (result == kDone && !open_.empty()) result = Step();
        if (ORVIsGivenUp(result)) CloseGroups();
        return result;
    }

private:
    /// A container being walked.
    struct Frame {
        const ORVPrtChildList* children;
        std::size_t next;
        ORVMathAffine2D toPage;
        bool isGroup;   // reported to the generator
        bool isSymbol;  // announced to the generator and being drawn for it
        bool isShared;  // occurs several times, by itself or within another container
    };

    /// Reports the page as the target of a link, by means of an empty group.
    int ReportTarget();
    int Step();
    /// Starts walking a group, symbol or region.
    int Enter(const ORVPrtGraphicPrimitiveElt& container);
    /// The group properties of a container that are reported to generators; empty for none.
    ORVPrintGroup GroupOf(const ORVPrtGraphicPrimitiveElt& container);
    int Leave();
    int Close(const Frame& frame);
    void CloseGroups();
    /// Announces a primitive that occurs several times, if it is worth storing.
    /// @param map  in: from its coordinates to the page; out: to the coordinates that it must be drawn in
    /// @return kDrawSymbol, kSymbolKnown or kNoSymbols from the generator, or an error
    int Announce(const ORVPrtGraphicPrimitiveElt& primitive, ORVMathAffine2D& map);
    /// Whether an identifier or description of a primitive without children is reported.
    bool IsNamed(const ORVPrtGraphicPrimitiveElt& primitive) const {
        if (progress_.NamesShapes() && !primitive.GetID().IsEmpty()) return true;
        return progress_.keepsIdentifiers && !primitive.GetDescription().IsEmpty();
    }
    /// Draws a primitive without children that has an identifier or description.
    int DrawNamed(const ORVPrtGraphicPrimitiveElt& primitive, bool isAlone);
    /// Draws a primitive without children, which may occur several times.
    int DrawLeaf(const ORVPrtGraphicPrimitiveElt& primitive, bool isAlone);
    int DrawShared(const ORVPrtGraphicPrimitiveElt& primitive, bool isAlone);
    int DrawOne(const ORVPrtGraphicPrimitiveElt& primitive) {
        return shapes_.Draw(primitive, open_.back().toPage);
    }
    ORVMathAffine2D MapOf(const ORVPrtGraphicPrimitiveElt& container) const;

    ORVPrintGenerator& generator_;
    const ORVPrtImageElt& page_;
    ORVPrintProgress& progress_;
    std::uint32_t primitives_ = 0;  // number of primitives visited
    ORVPrintShapeDrawing shapes_;
    std::vector<Frame> open_;
    unsigned int openSymbols_ = 0;
};

ORVMathAffine2D PageWalk::MapOf(const ORVPrtGraphicPrimitiveElt& container) const {
    ORVMathAffine2D map = open_.back().toPage;
    VisitPrimitive(container, [&]<class Primitive>(const Primitive& one) {
        if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>)
            if (!one.GetTransformAttributes().IsEmpty()) map = map * one.GetTransformAttributes().GetAffine();
    });
    return map;
}

int PageWalk::ReportTarget() {
    const std::string_view id = page_.GetID();
    if (id.empty() || !progress_.links.Arrive(id)) return kDone;
    ORVPrintGroup group;
    group.id = id;
    group.isLinkTarget = true;
    if (const int result = generator_.BeginGroup(group); result != kDone) return result;
    return generator_.EndGroup();
}

int PageWalk::Step() {
    Frame& frame = open_.back();
    if (frame.next == frame.children->size()) return Leave();

    ORVPrefetchForWalk(*frame.children, frame.next);
    ORVPrtGraphicPrimitiveElt& child = *(*frame.children)[frame.next++];
    if (const int result = progress_.budget.TakePrimitive(child); result != kDone) return result;
    shapes_.SetOrigin(++primitives_);
    if (IsWalked(child)) return Enter(child);
    const bool isAlone = frame.children->size() == 1;
    const bool isSpent = progress_.takesApart && child.GetReferenceCount() == 1 && !frame.isShared;
    const bool isNamed = openSymbols_ == 0 && IsNamed(child);
    const int result = isNamed ? DrawNamed(child, isAlone) : DrawLeaf(child, isAlone);
    if (isSpent) ForgetPoints(child);
    return result;
}

int PageWalk::DrawNamed(const ORVPrtGraphicPrimitiveElt& primitive, bool isAlone) {
    // A line with a name must not be joined to other lines.
    if (const int result = shapes_.Flush(); result != kDone) return result;
    const std::string_view id = primitive.GetID();
    const bool isLinkTarget = !id.empty() && progress_.links.Arrive(id);
    const bool isDescribed = progress_.keepsIdentifiers && !primitive.GetDescription().IsEmpty();
    if (isLinkTarget || isDescribed) {
        ORVPrintGroup group;
        group.id = id;
        if (isDescribed) group.description = primitive.GetDescription();
        group.isLinkTarget = isLinkTarget;
        if (const int result = generator_.BeginGroup(group); result != kDone) return result;
        open_.push_back({&NoChildren(), 0, open_.back().toPage, true, false, open_.back().isShared});
        return DrawLeaf(primitive, isAlone);
    }
    if (progress_.keepsIdentifiers) shapes_.SetId(id);
    int result = DrawLeaf(primitive, isAlone);
    if (result == kDone) result = shapes_.Flush();
    shapes_.SetId({});
    return result;
}

int PageWalk::DrawLeaf(const ORVPrtGraphicPrimitiveElt& primitive, bool isAlone) {
    const bool isShared = primitive.GetReferenceCount() > 1;
    return isShared && progress_.takesSymbols ? DrawShared(primitive, isAlone) : DrawOne(primitive);
}

ORVPrintGroup PageWalk::GroupOf(const ORVPrtGraphicPrimitiveElt& container) {
    ORVPrintGroup group;
    if (container.GetKind() == ORVPrtKind::kRegion) return group;
    group.id = container.GetID();
    group.description = container.GetDescription();
    group.isLinkTarget = !group.id.empty() && progress_.links.Arrive(group.id);
    if (container.GetKind() == ORVPrtKind::kGroup) {
        const ORVPrintLinkURI& link =
            static_cast<const ORVPrtGroupElt&>(container).GetGroupAttributes().GetLinkURI();
        if (progress_.links.Contains(link.GetElementId())) group.linkElementId = link.GetElementId();
        group.linkURL = link.GetBaseURL();
        group.linkShow = link.GetLinkShow();
    }
    return group;
}

int PageWalk::Enter(const ORVPrtGraphicPrimitiveElt& container) {
    const ORVMathAffine2D toPage = MapOf(container);
    if (const int result = shapes_.Flush(); result != kDone) return result;

    const ORVPrintGroup group = GroupOf(container);
    // Groups inside a symbol are not reported, because their identifiers would be repeated wherever it is
    // used.
    const bool isGroup = openSymbols_ == 0 && (!group.id.empty() || !group.description.empty() ||
                                               !group.linkElementId.empty() || !group.linkURL.empty());
    if (isGroup)
        if (const int result = generator_.BeginGroup(group); result != kDone) return result;

    Frame frame{container.GetChildList(),
                0,
                toPage,
                isGroup,
                false,
                open_.back().isShared || container.GetReferenceCount() > 1};
    if (container.GetReferenceCount() > 1 && progress_.takesSymbols) {
        const int answer = Announce(container, frame.toPage);
        if (answer == ORVPrintGenerator::kSymbolKnown) return Close(frame);
        if (answer != ORVPrintGenerator::kDrawSymbol && answer != ORVPrintGenerator::kNoSymbols)
            return answer;
        frame.isSymbol = answer == ORVPrintGenerator::kDrawSymbol;
        openSymbols_ += frame.isSymbol ? 1 : 0;
    }
    open_.push_back(frame);
    return kDone;
}

int PageWalk::Announce(const ORVPrtGraphicPrimitiveElt& primitive, ORVMathAffine2D& map) {
    ORVPrintSymbolPlace place;
    if (!progress_.symbols.Find(primitive, map, page_, place)) return ORVPrintGenerator::kNoSymbols;
    const int answer = generator_.BeginSymbol({place.key, place.toPage});
    if (answer == ORVPrintGenerator::kDrawSymbol) map = place.toSymbol;
    if (answer == ORVPrintGenerator::kNoSymbols) progress_.takesSymbols = false;
    return answer;
}

int PageWalk::DrawShared(const ORVPrtGraphicPrimitiveElt& primitive, bool isAlone) {
    // A part of a line is drawn together with its neighbours.
    if (IsOpenLine(primitive) && !isAlone) return DrawOne(primitive);
    if (const int result = shapes_.Flush(); result != kDone) return result;
    Frame frame{&NoChildren(), 0, open_.back().toPage, false, false, true};
    const int answer = Announce(primitive, frame.toPage);
    if (answer == ORVPrintGenerator::kSymbolKnown) return kDone;
    if (answer == ORVPrintGenerator::kNoSymbols) return DrawOne(primitive);
    if (answer != ORVPrintGenerator::kDrawSymbol) return answer;
    frame.isSymbol = true;
    ++openSymbols_;
    open_.push_back(frame);
    shapes_.SetId({});  // it would be repeated wherever the symbol is used
    return DrawOne(primitive);
}

int PageWalk::Leave() {
    if (const int result = shapes_.Flush(); result != kDone) return result;
    const Frame frame = open_.back();
    open_.pop_back();
    return Close(frame);
}

int PageWalk::Close(const Frame& frame) {
    if (frame.isSymbol) {
        --openSymbols_;
        if (const int result = generator_.EndSymbol(); result != kDone) return result;
    }
    return frame.isGroup ? generator_.EndGroup() : kDone;
}

void PageWalk::CloseGroups() {
    int result = shapes_.Flush();
    if (result == ORVPrintModelRender::kTooManyRepeats) result = kDone;
    for (; result == kDone && !open_.empty(); open_.pop_back()) result = Close(open_.back());
}

}  // namespace

ORVPrintProgress::ORVPrintProgress(const ORVPrtModel& model, std::span<const ORVPrtImageElt* const> pages,
                                   const ORVPrintGenerator& generator, const ORVPrintParameters& parameters,
                                   std::uint64_t distinctWork, bool isModelTaken)
    : links(pages, parameters.GetReportedElement().GetView()),
      symbols(links),
      budget(model, pages, parameters, distinctWork),
      keepsIdentifiers(generator.KeepsIdentifiers()),
      takesApart(isModelTaken && AreDistinct(pages)) {}

bool ORVIsGivenUp(int result) {
    return result == ORVPrintModelRender::kLowMemory || result == ORVPrintModelRender::kTooManyRepeats ||
           result == ORVPrintModelRender::kTextNotSet;
}

int ORVDrawPage(ORVPrintGenerator& generator, const ORVPrtImageElt& page, ORVPrintProgress& progress) {
    return PageWalk(generator, page, progress).Draw();
}
