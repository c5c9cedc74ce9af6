// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

#include "interpreters/svg2/drawing/Drawing.h"
#include "interpreters/svg2/tree/shapes.h"
#include "interpreters/svg2/values/scanner.h"
#include "interpreters/svg2/values/transform.h"
#include "platform/print/ORVPrintModelRender.h"

namespace svg2 {
namespace {

using Direction = std::optional<ORVMathVector2D>;

/// A potential marker position.
struct Vertex {
    ORVMathPoint2D point;
    Direction in, out;  ///< of the adjacent segments; empty for zero-length segments
    bool beginsSubpath = false, closesSubpath = false;
};

Direction Between(const ORVMathPoint2D& from, const ORVMathPoint2D& to) {
    const double x = to.x - from.x, y = to.y - from.y, length = std::hypot(x, y);
    if (!(length > 0.0) || !std::isfinite(length)) return std::nullopt;
    return ORVMathVector2D{x / length, y / length};
}

/// Directions at both ends of a segment. Control points equal to an end point are skipped.
struct SegmentDirections {
    Direction start, end;
};

SegmentDirections DirectionsOfCurve(const ORVMathPoint2D (&p)[4]) {
    SegmentDirections directions;
    for (int i = 1; i < 4 && !directions.start; ++i) directions.start = Between(p[0], p[i]);
    for (int i = 2; i >= 0 && !directions.end; --i) directions.end = Between(p[i], p[3]);
    return directions;
}

/// Collects the vertices of a path, one for each end of a segment.
class VertexCollector {
public:
    VertexCollector(const ORVPrintPath& path, const std::vector<std::size_t>& segmentEnds)
        : path_(path), segmentEnds_(segmentEnds) {}

    std::vector<Vertex> Collect();

private:
    void AddVerb(ORVPrintPath::Verb verb);
    void EndSegment(ORVPrintPath::Verb verb);

    const ORVPrintPath& path_;
    const std::vector<std::size_t>& segmentEnds_;
    std::vector<Vertex> vertices_;
    std::size_t point_ = 0, subpath_ = 0;
    ORVMathPoint2D current_, start_;
    Direction first_, last_;  // of the segment being read
};

void VertexCollector::AddVerb(ORVPrintPath::Verb verb) {
    using Verb = ORVPrintPath::Verb;
    SegmentDirections directions;
    ORVMathPoint2D end = current_;
    switch (verb) {
        case Verb::kMove: end = start_ = path_.points[point_++]; break;
        case Verb::kLine:
            end = path_.points[point_++];
            directions.start = directions.end = Between(current_, end);
            break;
        case Verb::kCubic: {
            const ORVMathPoint2D curve[4] = {current_, path_.points[point_], path_.points[point_ + 1],
                                             path_.points[point_ + 2]};
            directions = DirectionsOfCurve(curve);
            end = curve[3];
            point_ += 3;
            break;
        }
        case Verb::kClose:
            end = start_;
            directions.start = directions.end = Between(current_, end);
            break;
    }
    current_ = end;
    if (!first_) first_ = directions.start;
    if (directions.end) last_ = directions.end;
}

void VertexCollector::EndSegment(ORVPrintPath::Verb verb) {
    using Verb = ORVPrintPath::Verb;
    if (verb == Verb::kMove) {
        subpath_ = vertices_.size();
        vertices_.push_back({current_, std::nullopt, std::nullopt, true, false});
    } else {
        if (!vertices_.empty()) vertices_.back().out = first_;
        vertices_.push_back({current_, last_, std::nullopt, false, verb == Verb::kClose});
        if (verb == Verb::kClose && subpath_ < vertices_.size()) {
            // At both ends of a closed subpath, the direction bisects its last and its first segment.
            vertices_.back().out = vertices_[subpath_].out;
            vertices_[subpath_].in = last_;
        }
    }
    first_ = last_ = std::nullopt;
}

std::vector<Vertex> VertexCollector::Collect() {
    std::size_t verb = 0;
    for (const std::size_t end : segmentEnds_) {
        if (end <= verb) continue;
        // A subpath that starts where the previous one was closed begins with an inserted move.
        const bool startsAnew = path_.verbs[verb] == ORVPrintPath::Verb::kMove && end > verb + 1;
        if (startsAnew) {
            AddVerb(path_.verbs[verb]);
            subpath_ = vertices_.empty() ? 0 : vertices_.size() - 1;
            ++verb;
        }
        for (; verb < end; ++verb) AddVerb(path_.verbs[verb]);
        EndSegment(path_.verbs[end - 1]);
    }
    return std::move(vertices_);
}

/// The marker direction in degrees, which bisects the segments at the vertex. Zero-length segments take the
/// direction of the following segments, or else of the preceding ones.
double DegreesAt(const std::vector<Vertex>& vertices, std::size_t index) {
    Direction in = vertices[index].in, out = vertices[index].out;
    const auto behind = [&](std::size_t from) {
        Direction found;
        for (std::size_t i = from; i < vertices.size() && !found; ++i) {
            if (i > index && vertices[i].beginsSubpath) break;
            found = vertices[i].out;
        }
        return found;
    };
    const auto before = [&](std::size_t from) {
        Direction found = vertices[from].in;
        for (std::size_t i = from; i > 0 && !found && !vertices[i].beginsSubpath; --i)
            found = vertices[i - 1].in;
        return found;
    };
    const bool isFirst = vertices[index].beginsSubpath;
    const bool isLast = index + 1 == vertices.size() || vertices[index + 1].beginsSubpath;
    if (!isFirst && !in) in = behind(index);
    if (!isLast && !out) out = behind(index + 1);
    if (!isFirst && !in) in = before(index);
    if (!isLast && !out) out = before(index);
    constexpr double kDegrees = 180.0 / std::numbers::pi;
    if (!in && !out) return 0.0;
    if (!in || !out) {
        const ORVMathVector2D& only = in ? *in : *out;
        return std::atan2(only.y, only.x) * kDegrees;
    }
    const double inAngle = std::atan2(in->y, in->x) * kDegrees;
    double turn = std::atan2(out->y, out->x) * kDegrees - inAngle;
    if (turn > 180.0) turn -= 360.0;
    if (turn < -180.0) turn += 360.0;
    return inAngle + turn / 2.0;
}

}  // namespace

void Drawing::DrawMarkers(const ORVPrintPath& path, const std::vector<std::size_t>& segmentEnds,
                          const Style& style, const DrawState& state) {
    const Document& document = scene_.GetDocument();
    const auto markerOf = [&](std::string_view id) {
        const ElementIndex marker = id.empty() ? kNoElement : document.FindById(id);
        const bool isUsable = marker != kNoElement && document[marker].tag == Tag::kMarker &&
                              std::find(active_.begin(), active_.end(), marker) == active_.end();
        return isUsable ? marker : kNoElement;
    };
    const ElementIndex start = markerOf(style.markerStart), mid = markerOf(style.markerMid),
                       end = markerOf(style.markerEnd);
    if (start == kNoElement && mid == kNoElement && end == kNoElement) return;

    const std::vector<Vertex> vertices = VertexCollector(path, segmentEnds).Collect();
    const Style copy = style;  // style slots are reused for the content of markers
    const ContextPaints context{&copy, [&path] { return BoxOf(path); }, state.viewport, state.toPage,
                                state.context};
    if (vertices.empty()) return;
    if (!IsRepeated()) budget_.AllowForPlaces(vertices.size());
    const auto draw = [&](ElementIndex marker, std::size_t index, bool isStart) {
        if (marker != kNoElement && !IsStopped())
            DrawMarker(marker, vertices[index].point, DegreesAt(vertices, index), isStart, copy, state,
                       context);
    };
    draw(start, 0, true);
    for (std::size_t i = 1; i + 1 < vertices.size(); ++i) draw(mid, i, false);
    draw(end, vertices.size() - 1, false);
}

void Drawing::DrawMarker(ElementIndex marker, const ORVMathPoint2D& point, double degrees, bool isStart,
                         const Style& style, const DrawState& state, const ContextPaints& context) {
    if (!MayDescend(state.depth + 1) || !TakeElement(marker)) return;
    const Document& document = scene_.GetDocument();
    const Style& markerStyle = scene_.StyleInPlace(marker);
    const bool isInUserSpace = Trim(document.ValueOf(marker, Name::kMarkerUnits)) == "userSpaceOnUse";
    const double scale = isInUserSpace ? 1.0 : style.strokeWidth.Resolve(state.viewport.Diagonal());
    const Viewport& outer = state.viewport;
    constexpr double kDefaultSize = 3.0;
    const double width =
        scene_.LengthOf(marker, Name::kMarkerWidth, markerStyle, outer, Axis::kX, kDefaultSize);
    const double height =
        scene_.LengthOf(marker, Name::kMarkerHeight, markerStyle, outer, Axis::kY, kDefaultSize);
    if (!(scale > 0.0) || !(width > 0.0) || !(height > 0.0)) return;

    const std::string_view orient = Trim(document.ValueOf(marker, Name::kOrient));
    if (orient == "auto-start-reverse") {
        if (isStart) degrees += 180.0;
    } else if (orient != "auto") {
        Scanner scanner(orient);
        if (!TakeAngle(scanner, degrees)) degrees = 0.0;
    }

    DrawState inner = state;
    ++inner.depth;
    inner.context = &context;
    const Rectangle rectangle{0.0, 0.0, width, height};
    ORVMathAffine2D toViewport;
    Viewport ofReference{width, height};
    const std::optional<Rectangle> viewBox = ReadViewBox(document.ValueOf(marker, Name::kViewBox));
    if (viewBox) {
        if (viewBox->width == 0.0 || viewBox->height == 0.0) return;
        toViewport = FitViewBox(
            *viewBox, ReadAspectRatio(document.ValueOf(marker, Name::kPreserveAspectRatio)), rectangle);
        ofReference = {viewBox->width, viewBox->height};
    }
    const auto referenceOf = [&](Name name, Axis axis) {
        const std::string_view text = Trim(document.ValueOf(marker, name));
        const Rectangle box = viewBox.value_or(rectangle);
        const double origin = axis == Axis::kX ? box.x : box.y;
        const double size = axis == Axis::kX ? box.width : box.height;
        if (text == "left" || text == "top") return origin;
        if (text == "center") return origin + size / 2.0;
        if (text == "right" || text == "bottom") return origin + size;
        return scene_.LengthOf(marker, name, markerStyle, ofReference, axis);
    };
    const ORVMathPoint2D reference =
        toViewport({referenceOf(Name::kRefX, Axis::kX), referenceOf(Name::kRefY, Axis::kY)});
    const ORVMathAffine2D viewportToPage = state.toPage * ORVMathAffine2D::Translation(point.x, point.y) *
                                           Rotation(degrees) * ORVMathAffine2D::Scaling(scale, scale) *
                                           ORVMathAffine2D::Translation(-reference.x, -reference.y);
    inner.toPage = viewportToPage * toViewport;
    if (!IsInvertible(inner.toPage)) return;

    if (!Enter(marker)) return;
    const std::size_t mark = ends_.size();
    if (markerStyle.hidesOverflow) BeginRectangle(rectangle, viewportToPage);
    if (BeginEffects(marker, markerStyle, inner)) DrawChildren(marker, markerStyle, inner);
    EndBack(mark);
    Leave();
}

}  // namespace svg2
