#include "platform/print/ORVPrintModelRender.h"

#include <algorithm>
#include <cmath>
#include <concepts>
#include <limits>
#include <new>
#include <optional>
#include <type_traits>
#include <vector>

#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/visit_primitive.h"
#include "platform/print/ORVPrintGenerator.h"
#include "platform/print/ORVPrintOutlineBuilder.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPath.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/print/ellipse_frame.h"
#include "platform/print/link_targets.h"
#include "platform/print/primitive_count.h"
#include "platform/print/symbol_table.h"
#include "platform/print/text_placement.h"

namespace {

constexpr int kDone = 1;

// User units squared that a repeat may paint, on average.
constexpr double kAreaPerRepeat = 4096.0;
// Areas are added up, and sums are to stay numbers.
constexpr double kLargestArea = 1e200;

// Points that are worth giving back before the model goes.
constexpr std::size_t kLongOutline = 1024;

bool Fills(int drawStyle) {
    return drawStyle == kDrawFill || drawStyle == kDrawFillAndStroke || drawStyle == kDrawUndecided;
}

bool Strokes(int drawStyle) {
    return drawStyle == kDrawStroke || drawStyle == kDrawFillAndStroke || drawStyle == kDrawUndecided;
}

bool HasArea(const ORVPrtImageElt& page) {
    double width = 0.0, height = 0.0;
    page.GetSize(width, height);
    return width > 0.0 && height > 0.0 && std::isfinite(width) && std::isfinite(height) &&
           std::isfinite(page.GetOrigin().x) && std::isfinite(page.GetOrigin().y);
}

/// Model coordinates (y up from the page's lower left corner) to page coordinates (y down from its upper
/// left corner).
ORVMathAffine2D ModelToPage(const ORVPrtImageElt& page) {
    double width = 0.0, height = 0.0;
    page.GetSize(width, height);
    const ORVMathAffine2D flip{1.0, 0.0, 0.0, -1.0, -page.GetOrigin().x, page.GetOrigin().y + height};
    // A page matrix that is not a number comes with a box without width or height, and means nothing.
    const ORVMath2x2Matrix& m = page.GetMatrix();
    if (m == ORVMath2x2Matrix() || !std::isfinite(m.m11 + m.m12 + m.m21 + m.m22)) return flip;
    return flip * ORVMathAffine2D{m.m11, m.m12, m.m21, m.m22, 0.0, 0.0};
}

/// Where the drawing's own y axis, which points down, has its zero in the model. Drawings are mirrored
/// against the height of their page; fragments, whose pages end at zero, against zero.
double DrawingTop(const ORVPrtImageElt& page) {
    double width = 0.0, height = 0.0;
    page.GetSize(width, height);
    return page.GetOrigin().y == -height ? 0.0 : height;
}

/// Primitives whose children are drawn one by one.
bool IsWalked(const ORVPrtGraphicPrimitiveElt& primitive) {
    const ORVPrtKind kind = primitive.GetKind();
    return kind == ORVPrtKind::kGroup || kind == ORVPrtKind::kSymbol || kind == ORVPrtKind::kRegion;
}

/// Primitives that may continue a line that was begun by those before them.
bool IsOpenLine(const ORVPrtGraphicPrimitiveElt& primitive) {
    switch (primitive.GetKind()) {
        case ORVPrtKind::kPolyline:
        case ORVPrtKind::kPolyCubicBezier:
        case ORVPrtKind::kPolyQuadraticBezier:
        case ORVPrtKind::kEllipticalArc: return true;
        default: return false;
    }
}

/// Factor by which a map enlarges, at most.
double Scale(const ORVMathAffine2D& map) {
    return std::max(std::hypot(map.m11, map.m21), std::hypot(map.m12, map.m22));
}

/// A map that takes areas to areas; everything else draws nothing.
bool IsUsable(const ORVMathAffine2D& map) {
    const double determinant = map.Determinant();
    return map.IsFinite() && determinant != 0.0 && std::isfinite(determinant);
}

/// User units in one pixel of an image: one, unless it states its pixels per metre.
double UserUnitsPerPixel(double resolution) {
    constexpr double kUserUnitsPerMetre = 90.0 / 0.0254;
    return resolution > 0.0 && std::isfinite(resolution) ? kUserUnitsPerMetre / resolution : 1.0;
}

/// Tile of a fill from its pixels to the page.
ORVMathAffine2D PatternToPage(const ORVPixelImage& image) {
    return ORVMathAffine2D::Scaling(UserUnitsPerPixel(image.GetHorizontalResolution()),
                                    UserUnitsPerPixel(image.GetVerticalResolution()));
}

/// Gives the memory of points back that are drawn and not going to be again.
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

/// What the dashes of a line count for besides the area that they lie in.
/// @param length  of the line, about, in the units of the stroke
double DashSurcharge(const ORVPrintStroke& stroke, double length) {
    constexpr double kMostDashes = 1e5, kAreaPerDash = 64.0;
    if (stroke.dashes.empty()) return 0.0;
    double period = 0.0;
    for (const double dash : stroke.dashes) period += dash;
    const double dashes = length / period * static_cast<double>(stroke.dashes.size());
    return (dashes < kMostDashes ? dashes : kMostDashes) * kAreaPerDash;
}

/// How long the outlines of a text are, about: four times its size a glyph.
double OutlineLength(const ORVTextLayout& layout) {
    double length = 0.0;
    for (const ORVGlyphRun& run : layout.runs)
        length += 4.0 * run.size * static_cast<double>(run.glyphs.size());
    return length;
}

/// What the pages of one drawing share.
struct Progress {
    explicit Progress(const std::vector<const ORVPrtImageElt*>& pages) : links(pages), symbols(links) {}

    ORVPrintLinkTargets links;
    ORVPrintSymbolTable symbols;
    bool takesSymbols = true;  // until the generator says that it does not
    bool isLast = false;       // nothing is drawn again
    std::uint64_t drawn = 0;
    std::uint64_t workLeft = 0;  // see ORVDrawingWork
    double areaLeft = 0.0;       // user units squared that may still be painted
};

/// Whether drawing ended for a reason of our own, so that the generator still takes what closes its output.
bool IsGivenUp(int result) {
    return result == ORVPrintModelRender::kLowMemory || result == ORVPrintModelRender::kTooManyRepeats ||
           result == ORVPrintModelRender::kTextNotSet;
}

bool AreDistinct(std::vector<const ORVPrtImageElt*> pages) {
    std::sort(pages.begin(), pages.end());
    return std::adjacent_find(pages.begin(), pages.end()) == pages.end();
}

/// Draws the primitives of one page, keeping what can be used again from shape to shape.
class PageDrawing {
public:
    PageDrawing(ORVPrintGenerator& generator, const ORVPrtImageElt& page, Progress& progress)
        : generator_(generator), page_(page), progress_(progress), drawingTop_(DrawingTop(page)) {}

    int Draw() {
        open_.push_back({page_.GetChildList(), 0, ModelToPage(page_), false, false, false});
        int result = kDone;
        while (result == kDone && !open_.empty()) result = Step();
        if (IsGivenUp(result)) CloseGroups();
        return result;
    }

    // One overload a class: draws it with the map of the frame and its own.
    int Draw(const ORVPrtClosedFigureElt& figure);
    int Draw(const ORVPrtTextElt& text);
    int Draw(const ORVPrtBitmapImageElt& bitmap);
    int Draw(const ORVPrtPolylineElt& polyline) { return AddOpen(polyline, false); }
    int Draw(const ORVPrtPolyCubicBezierElt& curve) { return AddOpen(curve, true); }
    int Draw(const ORVPrtPolyQuadraticBezierElt& curve) { return AddOpen(curve, true); }
    int Draw(const ORVPrtEllipticalArcElt& arc) {
        if (arc.GetDrawStyle() == kDrawStroke) return AddOpen(arc, true);
        return DrawOutline(arc);
    }
    int Draw(const ORVPrtContainerElt& /*container*/) { return kDone; }  // walked by Step
    template <std::derived_from<ORVPrtStroked> Primitive>
    int Draw(const Primitive& primitive) {
        return DrawOutline(primitive);
    }

private:
    /// A container that is being walked.
    struct Frame {
        const ORVPrtChildList* children;
        std::size_t next;
        ORVMathAffine2D toPage;
        bool isGroup;   // reported to the generator
        bool isSymbol;  // announced to it, and being drawn for it
        bool isShared;  // stands at several places, alone or within something else
    };

    /// Open primitives that follow each other, to be stroked as one line.
    struct PendingLine {
        ORVPrtStrokeAttributes stroke;
        ORVMathAffine2D toPage;
        bool endsWithCurve;
    };

    int Step();
    int Enter(const ORVPrtGraphicPrimitiveElt& container, const ORVMathAffine2D& toPage);
    int Leave();
    int Close(const Frame& frame);
    void CloseGroups();
    /// Announces a primitive that stands at several places, if that is worth it.
    /// @param map  in: from its coordinates to the page; out: to what it is to be drawn in
    /// @return kDrawSymbol, kSymbolKnown or kNoSymbols as the generator answered, or a failure
    int Announce(const ORVPrtGraphicPrimitiveElt& primitive, ORVMathAffine2D& map);
    int DrawOne(const ORVPrtGraphicPrimitiveElt& primitive);
    int DrawShared(const ORVPrtGraphicPrimitiveElt& primitive, bool isAlone);
    int FlushLine();

    template <class Primitive>
    int AddOpen(const Primitive& primitive, bool isCurve);
    template <class Primitive>
    int DrawOutline(const Primitive& primitive);
    int DrawPath(const ORVMathAffine2D& toPage, const ORVPrintFill* fill, const ORVPrintStroke* stroke);

    template <class Primitive>
    ORVMathAffine2D MapOf(const Primitive& primitive) const {
        const ORVMathAffine2D& outer = open_.back().toPage;
        if (primitive.GetTransformAttributes().IsEmpty()) return outer;
        return outer * primitive.GetTransformAttributes().GetAffine();
    }

    ORVPrintColour Colour(unsigned int index, std::uint8_t opacity) const {
        const ORVPrtColourTable* table = page_.GetColourTable();
        const ORVPrtColourTable::Colour colour =
            table ? table->GetColour(index) : ORVPrtColourTable::Colour{};
        return {colour.red, colour.green, colour.blue, opacity};
    }
    const ORVPrintFill* MakeFill(const ORVPrtFillAttributes& attributes);
    const ORVPrintStroke* MakeStroke(const ORVPrtStrokeAttributes& attributes);
    void MakeDashes(const std::vector<float>& pattern);
    /// Puts the text's clipping box into the clip. @return false when it has none
    bool MakeClip(const ORVPrtTextElt& text, const ORVMathAffine2D& map);

    /// Counts one primitive. Memory may have run short, which generators that keep what is drawn are to see
    /// in time; it is looked at now and then only.
    int Count(const ORVPrtGraphicPrimitiveElt& primitive) {
        constexpr std::uint64_t kInterval = 1024;
        constexpr double kLowMemoryFraction = 0.9;
        if (++progress_.drawn % kInterval == 0 && ORVPrintPropertiesManager::IsLowMemory(kLowMemoryFraction))
            return ORVPrintModelRender::kLowMemory;
        const std::uint64_t work = ORVDrawingWork(primitive);
        if (work > progress_.workLeft) return ORVPrintModelRender::kTooManyRepeats;
        progress_.workLeft -= work;
        return kDone;
    }

    /// Takes what painting a box costs generators that make pixels. @return kTooManyRepeats when it is too
    /// much
    int TakeArea(const ORVMathBox2D& box, double margin, double surcharge);
    int TakeArea(const ORVPrintPath& path, const ORVMathAffine2D& toPage, const ORVPrintStroke* stroke);

    ORVPrintGenerator& generator_;
    const ORVPrtImageElt& page_;
    Progress& progress_;
    const double drawingTop_;

    std::vector<Frame> open_;
    unsigned int openSymbols_ = 0;
    std::optional<PendingLine> pending_;
    ORVPrintPath path_;
    ORVPrintOutlineBuilder outline_{path_};
    ORVPrintPath clip_;
    ORVPrintFill fill_;
    ORVPrintStroke stroke_;
    std::vector<double> dashes_;
};

int PageDrawing::Step() {
    Frame& frame = open_.back();
    if (frame.next == frame.children->size()) return Leave();

    ORVPrefetchForWalk(*frame.children, frame.next);
    ORVPrtGraphicPrimitiveElt& child = *(*frame.children)[frame.next++];
    if (const int result = Count(child); result != kDone) return result;
    const bool isShared = child.GetReferenceCount() > 1;
    if (isShared && progress_.takesSymbols && !IsWalked(child))
        return DrawShared(child, frame.children->size() == 1);
    const bool isSpent = progress_.isLast && !isShared && !frame.isShared;
    const int result = DrawOne(child);
    if (isSpent) ForgetPoints(child);
    return result;
}

int PageDrawing::DrawOne(const ORVPrtGraphicPrimitiveElt& child) {
    int result = kDone;
    VisitPrimitive(child, [&]<class Primitive>(const Primitive& one) {
        if constexpr (std::is_same_v<Primitive, ORVPrtGroupElt> ||
                      std::is_same_v<Primitive, ORVPrtSymbolElt> ||
                      std::is_same_v<Primitive, ORVPrtClosedFigureRegionElt>) {
            result = Enter(one, MapOf(one));
        } else {
            result = Draw(one);
        }
    });
    return result;
}

int PageDrawing::Enter(const ORVPrtGraphicPrimitiveElt& container, const ORVMathAffine2D& toPage) {
    if (const int result = FlushLine(); result != kDone) return result;

    ORVPrintGroup group;
    if (container.GetKind() != ORVPrtKind::kRegion) {
        group.id = container.GetID();
        group.description = container.GetDescription();
        group.isLinkTarget = !group.id.empty() && progress_.links.Arrive(group.id);
    }
    if (container.GetKind() == ORVPrtKind::kGroup) {
        const ORVPrintLinkURI& link =
            static_cast<const ORVPrtGroupElt&>(container).GetGroupAttributes().GetLinkURI();
        if (progress_.links.Contains(link.GetElementId())) group.linkElementId = link.GetElementId();
        group.linkURL = link.GetBaseURL();
        group.linkShow = link.GetLinkShow();
    }
    // Within a symbol there is nothing to report but identifiers, which every place of it would repeat.
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

int PageDrawing::Announce(const ORVPrtGraphicPrimitiveElt& primitive, ORVMathAffine2D& map) {
    ORVPrintSymbolPlace place;
    if (!progress_.symbols.Find(primitive, map, page_, drawingTop_, place))
        return ORVPrintGenerator::kNoSymbols;
    const int answer = generator_.BeginSymbol({place.key, place.toPage});
    if (answer == ORVPrintGenerator::kDrawSymbol) map = place.toSymbol;
    if (answer == ORVPrintGenerator::kNoSymbols) progress_.takesSymbols = false;
    return answer;
}

int PageDrawing::DrawShared(const ORVPrtGraphicPrimitiveElt& primitive, bool isAlone) {
    // A piece of a line is drawn with its neighbours.
    if (IsOpenLine(primitive) && !isAlone) return DrawOne(primitive);
    if (const int result = FlushLine(); result != kDone) return result;
    static const ORVPrtChildList kNoChildren{};
    Frame frame{&kNoChildren, 0, open_.back().toPage, false, false, true};
    const int answer = Announce(primitive, frame.toPage);
    if (answer == ORVPrintGenerator::kSymbolKnown) return kDone;
    if (answer == ORVPrintGenerator::kNoSymbols) return DrawOne(primitive);
    if (answer != ORVPrintGenerator::kDrawSymbol) return answer;
    frame.isSymbol = true;
    ++openSymbols_;
    open_.push_back(frame);
    return DrawOne(primitive);
}

int PageDrawing::Leave() {
    if (const int result = FlushLine(); result != kDone) return result;
    const Frame frame = open_.back();
    open_.pop_back();
    return Close(frame);
}

int PageDrawing::Close(const Frame& frame) {
    if (frame.isSymbol) {
        --openSymbols_;
        if (const int result = generator_.EndSymbol(); result != kDone) return result;
    }
    return frame.isGroup ? generator_.EndGroup() : kDone;
}

void PageDrawing::CloseGroups() {
    int result = FlushLine();
    if (result == ORVPrintModelRender::kTooManyRepeats) result = kDone;
    for (; result == kDone && !open_.empty(); open_.pop_back()) result = Close(open_.back());
}

const ORVPrintFill* PageDrawing::MakeFill(const ORVPrtFillAttributes& attributes) {
    if (attributes.GetFillColourTransparency() == 0) return nullptr;
    fill_.colour = Colour(attributes.GetFillColourIndex(), attributes.GetFillColourTransparency());
    fill_.evenOdd = attributes.GetFillRule() == kFillEvenOdd;
    // A pattern without a bitmap leaves the colour.
    fill_.pattern = attributes.GetFillStyle() == kFillPattern ? attributes.GetFillPatternImage() : nullptr;
    if (fill_.pattern) fill_.patternToPage = PatternToPage(*fill_.pattern);
    return &fill_;
}

void PageDrawing::MakeDashes(const std::vector<float>& pattern) {
    dashes_.clear();
    double sum = 0.0;
    for (const float length : pattern) {
        if (!(length >= 0.0F)) sum = std::numeric_limits<double>::infinity();
        sum += static_cast<double>(length);
    }
    // Without any length, or with one that is none, the line is solid.
    if (!(sum > 0.0) || !std::isfinite(sum)) return;
    dashes_.assign(pattern.begin(), pattern.end());
    // An odd list counts twice, dashes and gaps changing places.
    if (pattern.size() % 2 == 1) dashes_.insert(dashes_.end(), pattern.begin(), pattern.end());
}

const ORVPrintStroke* PageDrawing::MakeStroke(const ORVPrtStrokeAttributes& attributes) {
    const double width = attributes.GetStrokeWidth();
    if (attributes.GetStrokeColourTransparency() == 0 || !(width > 0.0) || !std::isfinite(width))
        return nullptr;
    stroke_.colour = Colour(attributes.GetStrokeColourIndex(), attributes.GetStrokeColourTransparency());
    stroke_.width = width;
    switch (attributes.GetStrokeCap()) {
        case kCapSquare: stroke_.cap = ORVPrintStroke::Cap::kSquare; break;
        case kCapRound: stroke_.cap = ORVPrintStroke::Cap::kRound; break;
        default: stroke_.cap = ORVPrintStroke::Cap::kButt; break;
    }
    switch (attributes.GetStrokeJoin()) {
        case kJoinRound: stroke_.join = ORVPrintStroke::Join::kRound; break;
        case kJoinBevel: stroke_.join = ORVPrintStroke::Join::kBevel; break;
        default: stroke_.join = ORVPrintStroke::Join::kMiter; break;
    }
    dashes_.clear();
    if (attributes.GetStrokeType() == kLineUserDash) MakeDashes(attributes.GetStrokeDashPattern());
    stroke_.dashes = dashes_;
    return &stroke_;
}

int PageDrawing::DrawPath(const ORVMathAffine2D& toPage, const ORVPrintFill* fill,
                          const ORVPrintStroke* stroke) {
    if (path_.IsEmpty() || (!fill && !stroke)) return kDone;
    if (const int result = TakeArea(path_, toPage, stroke); result != kDone) return result;
    return generator_.DrawShape({path_, toPage, fill, stroke});
}

int PageDrawing::TakeArea(const ORVMathBox2D& box, double margin, double surcharge) {
    double width = 0.0, height = 0.0;
    page_.GetSize(width, height);
    const auto extent = [margin](double least, double most, double end) {
        return std::min(most + margin, end) - std::max(least - margin, 0.0);
    };
    const double across = extent(box.xMin, box.xMax, width), down = extent(box.yMin, box.yMax, height);
    // What lies outside the page costs nothing, and what is no number neither.
    if (!(across > 0.0) || !(down > 0.0)) return kDone;
    progress_.areaLeft -= std::min(across * down + surcharge, kLargestArea);
    return progress_.areaLeft >= 0.0 ? kDone : ORVPrintModelRender::kTooManyRepeats;
}

int PageDrawing::TakeArea(const ORVPrintPath& path, const ORVMathAffine2D& toPage,
                          const ORVPrintStroke* stroke) {
    ORVMathBox2D box;
    for (const ORVMathPoint2D& point : path.points) box.Add(toPage(point));
    if (!stroke) return TakeArea(box, 0.0, 0.0);
    const double scale = Scale(toPage);
    const double length = (box.xMax - box.xMin + box.yMax - box.yMin) *
                          std::max(1.0, static_cast<double>(path.points.size()) / 4.0);
    return TakeArea(box, stroke->width * scale / 2.0, DashSurcharge(*stroke, length / scale));
}

int PageDrawing::FlushLine() {
    if (!pending_) return kDone;
    outline_.EndContour();
    const ORVPrintStroke* stroke = MakeStroke(pending_->stroke);
    const ORVMathAffine2D toPage = pending_->toPage;
    pending_.reset();
    return DrawPath(toPage, nullptr, stroke);
}

/// Where an open primitive starts; nothing when it has no points.
std::optional<ORVMathPoint2D> StartOf(const ORVPrtPointList& primitive) {
    if (primitive.GetPoints().empty()) return std::nullopt;
    return primitive.GetPoints().front();
}

std::optional<ORVMathPoint2D> StartOf(const ORVPrtEllipticalArcElt& arc) {
    return ORVEllipseFrame::FromRadii(arc.GetCenter(), arc.GetHorzRadius(), arc.GetVertRadius(),
                                      static_cast<double>(arc.GetSlope()))
        .At(static_cast<double>(arc.GetStartAngle()));
}

template <class Primitive>
int PageDrawing::AddOpen(const Primitive& primitive, bool isCurve) {
    const ORVMathAffine2D toPage = MapOf(primitive);
    const std::optional<ORVMathPoint2D> start = StartOf(primitive);
    if (!start || !IsUsable(toPage)) return kDone;

    // The pieces of an outline come one after the other and are stroked as one, so that joins are drawn
    // and dashes run through. Two runs of straight segments that touch are two outlines.
    const bool continues =
        pending_ && (isCurve || pending_->endsWithCurve) && primitive.GetTransformAttributes().IsEmpty() &&
        pending_->stroke == primitive.GetStrokeAttributes() && outline_.ContinuesAt(*start);
    if (!continues) {
        if (const int result = FlushLine(); result != kDone) return result;
        path_.Clear();
        outline_.SetMap({});
        outline_.SetScale(Scale(toPage));
        pending_ = PendingLine{primitive.GetStrokeAttributes(), toPage, isCurve};
    }
    outline_.Add(primitive);
    pending_->endsWithCurve = isCurve;
    // A piece that moved the line elsewhere is not to be continued by what has a transform of its own.
    return primitive.GetTransformAttributes().IsEmpty() ? kDone : FlushLine();
}

template <class Primitive>
int PageDrawing::DrawOutline(const Primitive& primitive) {
    if (const int result = FlushLine(); result != kDone) return result;
    const ORVPrintFill* fill = nullptr;
    const ORVPrintStroke* stroke = nullptr;
    if constexpr (std::is_base_of_v<ORVPrtFilled, Primitive>) {
        if (Fills(primitive.GetDrawStyle())) fill = MakeFill(primitive.GetFillAttributes());
        if (Strokes(primitive.GetDrawStyle())) stroke = MakeStroke(primitive.GetStrokeAttributes());
    } else {
        stroke = MakeStroke(primitive.GetStrokeAttributes());
    }
    if (!fill && !stroke) return kDone;
    const ORVMathAffine2D toPage = MapOf(primitive);
    if (!IsUsable(toPage)) return kDone;
    path_.Clear();
    outline_.SetMap({});
    outline_.SetScale(Scale(toPage));
    outline_.Add(primitive);
    outline_.EndContour();
    return DrawPath(toPage, fill, stroke);
}

int PageDrawing::Draw(const ORVPrtClosedFigureElt& figure) {
    if (const int result = FlushLine(); result != kDone) return result;
    const ORVMathAffine2D toPage = MapOf(figure);
    path_.Clear();
    outline_.SetScale(Scale(toPage));
    for (const ORVPrtGraphicPrimitiveElt* child : figure.GetChildren()) {
        if (const int result = Count(*child); result != kDone) return result;
        if (child->GetKind() != ORVPrtKind::kRegion) continue;
        const auto& region = static_cast<const ORVPrtClosedFigureRegionElt&>(*child);
        const ORVMathAffine2D regionMap = region.GetTransformAttributes().GetAffine();
        for (const ORVPrtGraphicPrimitiveElt* piece : region.GetChildren()) {
            if (const int result = Count(*piece); result != kDone) return result;
            VisitPrimitive(*piece, [&]<class Primitive>(const Primitive& one) {
                if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>) {
                    outline_.SetMap(one.GetTransformAttributes().IsEmpty()
                                        ? regionMap
                                        : regionMap * one.GetTransformAttributes().GetAffine());
                    outline_.Add(one);
                }
            });
        }
        outline_.EndContour();
    }
    if (!IsUsable(toPage)) return kDone;
    const ORVPrintFill* fill = Fills(figure.GetDrawStyle()) ? MakeFill(figure.GetFillAttributes()) : nullptr;
    const ORVPrintStroke* stroke =
        Strokes(figure.GetDrawStyle()) ? MakeStroke(figure.GetStrokeAttributes()) : nullptr;
    return DrawPath(toPage, fill, stroke);
}

int PageDrawing::Draw(const ORVPrtTextElt& text) {
    if (const int result = FlushLine(); result != kDone) return result;
    const ORVPrintFill* fill = Fills(text.GetDrawStyle()) ? MakeFill(text.GetFillAttributes()) : nullptr;
    const ORVPrintStroke* stroke =
        Strokes(text.GetDrawStyle()) ? MakeStroke(text.GetStrokeAttributes()) : nullptr;
    const ORVMathAffine2D map = MapOf(text);
    if (text.GetText().IsEmpty() || (!fill && !stroke) || !IsUsable(map)) return kDone;

    const ORVTextLayout layout = ORVLayoutText(text.GetText(), ORVTextStyleOf(text));
    if (!layout.isSet) return ORVPrintModelRender::kTextNotSet;
    const ORVTextPlacement placement = ORVPlaceText(text, {layout.advance, layout.ascent, layout.descent});
    const ORVMathAffine2D toPage = map * placement.toModel;
    if (layout.runs.empty() || !IsUsable(toPage)) return kDone;
    ORVMathBox2D box;
    for (const double x : {placement.box.xMin, placement.box.xMax})
        for (const double y : {placement.box.yMin, placement.box.yMax}) box.Add(toPage({x, y}));
    const double surcharge = stroke ? DashSurcharge(*stroke, OutlineLength(layout)) : 0.0;
    if (const int result = TakeArea(box, 0.0, surcharge); result != kDone) return result;
    const bool clipped = MakeClip(text, map);
    return generator_.DrawText({layout, text.GetText(), toPage, fill, stroke, clipped ? &clip_ : nullptr});
}

bool PageDrawing::MakeClip(const ORVPrtTextElt& text, const ORVMathAffine2D& map) {
    const ORVPrtTextElt::ClippingBox* box = text.GetClippingBox();
    if (!box) return false;
    clip_.Clear();
    const double top = drawingTop_ - box->y;
    const ORVMathPoint2D corners[]{{box->x, top},
                                   {box->x + box->width, top},
                                   {box->x + box->width, top - box->height},
                                   {box->x, top - box->height}};
    for (const ORVMathPoint2D& corner : corners) {
        const ORVMathPoint2D mapped = map(corner);
        if (!std::isfinite(mapped.x) || !std::isfinite(mapped.y)) return false;
        if (clip_.IsEmpty())
            clip_.MoveTo(mapped);
        else
            clip_.LineTo(mapped);
    }
    clip_.Close();
    return true;
}

int PageDrawing::Draw(const ORVPrtBitmapImageElt& bitmap) {
    if (const int result = FlushLine(); result != kDone) return result;
    const ORVPixelImage* image = bitmap.GetPixelImage();
    double width = 0.0, height = 0.0;
    bitmap.GetSize(width, height);
    if (!image || !(width > 0.0) || !(height > 0.0)) return kDone;
    const ORVEllipseFrame axes = ORVEllipseFrame::FromRadii(bitmap.GetOrigin(), width, height,
                                                            static_cast<double>(bitmap.GetOrientation()));
    // The image's upper left corner lies one height above the box's origin; its rows run down from there.
    const ORVMathAffine2D toModel{axes.first.x,
                                  -axes.second.x,
                                  axes.first.y,
                                  -axes.second.y,
                                  axes.center.x + axes.second.x,
                                  axes.center.y + axes.second.y};
    const ORVMathAffine2D toPage = MapOf(bitmap) * toModel;
    if (!IsUsable(toPage)) return kDone;
    ORVMathBox2D box;
    for (const double x : {0.0, 1.0})
        for (const double y : {0.0, 1.0}) box.Add(toPage({x, y}));
    if (const int result = TakeArea(box, 0.0, 0.0); result != kDone) return result;
    return generator_.DrawImage({*image, toPage});
}

}  // namespace

ORVPrintModelRender::ORVPrintModelRender(const ORVPrtModel& model, ORVPrintGenerator* generator,
                                         const ORVPrintParameters& parameters)
    : model_(model), generator_(generator), parameters_(parameters) {}

ORVPrintModelRender::~ORVPrintModelRender() = default;

int ORVPrintModelRender::Draw() {
    return DrawDocument([this](bool& begun) {
        if (!parameters_.GetPages().empty()) return DrawPages(parameters_.GetPages(), begun);
        std::vector<unsigned int> all(model_.GetImages()->size());
        for (unsigned int i = 0; i < all.size(); ++i) all[i] = i + 1;
        return DrawPages(all, begun);
    });
}

int ORVPrintModelRender::Draw(unsigned int page) {
    return DrawDocument([&](bool& begun) { return DrawPages({page}, begun); });
}

template <class Work>
int ORVPrintModelRender::DrawDocument(Work draw) {
    bool begun = false;
    int result = kLowMemory;
    try {
        result = draw(begun);
    } catch (const std::bad_alloc&) {  // that is what stands there already
    }
    if (!begun) return result;
    const int closed = generator_->EndDocument();
    return result == kDone ? closed : result;
}

int ORVPrintModelRender::DrawPages(const std::vector<unsigned int>& numbers, bool& begun) {
    if (ORVPrintModelInspector* inspector = parameters_.GetModelInspector()) {
        inspector->Inspect(model_);
        if (!generator_) return kDone;
    }
    std::vector<const ORVPrtImageElt*> pages;
    for (const unsigned int number : numbers)
        if (number >= 1 && number <= model_.GetImages()->size())
            pages.push_back((*model_.GetImages())[number - 1]);
    if (!generator_ || pages.empty()) return 0;
    // Asked before anything is drawn, so that no output is begun that cannot be finished.
    for (const ORVPrtImageElt* page : pages)
        if (!HasArea(*page)) return kPageWithoutArea;
    if (pages.size() > parameters_.GetPageLimit()) return kTooManyPages;
    std::uint64_t left = parameters_.GetDrawLimit(), distinct = 0;
    for (const ORVPrtImageElt* page : pages) {
        const std::uint64_t count = ORVCountPrimitives(*page, left + 1, distinct);
        if (count > left) return kTooManyPrimitives;
        left -= count;
    }

    Progress progress(pages);
    progress.isLast = parameters_.IsLast() && AreDistinct(pages);
    progress.workLeft = parameters_.GetRepeatLimit() + (1 + kGrowthPerPrimitive) * distinct;
    // Every primitive that the document itself makes may cover its page.
    double largestPage = 0.0;
    for (const ORVPrtImageElt* page : pages) {
        double width = 0.0, height = 0.0;
        page->GetSize(width, height);
        largestPage = std::max(largestPage, std::min(width * height, kLargestArea));
    }
    const ORVPrtPrimitiveBudget& budget = model_.GetBudget();
    progress.areaLeft = kAreaPerRepeat * static_cast<double>(parameters_.GetRepeatLimit()) +
                        2.0 * largestPage * static_cast<double>(budget.GetTaken() - budget.GetDuplicates());
    const ORVUnicodeString& title =
        parameters_.GetTitle().IsEmpty() ? pages.front()->GetTitle() : parameters_.GetTitle();
    if (const int result = generator_->BeginDocument({title, static_cast<unsigned int>(pages.size())});
        result != kDone)
        return result;
    begun = true;

    unsigned int number = 0;
    int result = kDone;
    for (const ORVPrtImageElt* page : pages) {
        ORVPrintPageInfo info;
        info.number = ++number;
        page->GetSize(info.width, info.height);
        info.id = page->GetID();
        info.title = page->GetTitle();
        info.description = page->GetDescription();
        result = generator_->BeginPage(info);
        if (result != kDone) break;
        result = PageDrawing(*generator_, *page, progress).Draw();
        if (result != kDone && !IsGivenUp(result)) break;
        const int ended = generator_->EndPage();
        if (result == kDone) result = ended;
        if (result != kDone) break;
    }
    return result;
}
