// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/outline_overlaps.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstddef>

namespace {

/// Number of verbs of all contours; kMostOverlapVerbs + 1 for any greater number.
std::uint32_t CountVerbs(const RasterGeometry& geometry) {
    std::uint32_t verbs = 0;
    for (std::uint32_t i = 0; i < geometry.contourCount && verbs <= kMostOverlapVerbs; ++i)
        verbs += std::min(geometry.contours[i].verbCount, kMostOverlapVerbs + 1);
    return std::min(verbs, kMostOverlapVerbs + 1);
}

bool IsLine(const RasterContour& contour, std::uint32_t verb) {
    return contour.verbs[verb] == RasterContour::Verb::kLine;
}

std::uint32_t PointsOf(RasterContour::Verb verb) { return verb == RasterContour::Verb::kLine ? 1 : 3; }

/// Calls edge(first point, number of points to the last one) for each verb of a contour.
template <class Edge>
void ForEachEdge(const RasterContour& contour, Edge&& edge) {
    const RasterPoint* point = contour.points;
    for (std::uint32_t i = 0; i < contour.verbCount; ++i) {
        const std::uint32_t count = PointsOf(contour.verbs[i]);
        edge(point, count);
        point += count;
    }
}

/// Whether edges cross few enough rows, over all.
bool HasFewRows(const RasterGeometry& geometry) {
    float rows = 0.0F;
    for (std::uint32_t i = 0; i < geometry.contourCount; ++i)
        ForEachEdge(geometry.contours[i], [&](const RasterPoint* from, std::uint32_t count) {
            for (std::uint32_t k = 0; k < count; ++k) rows += std::fabs(from[k + 1].y - from[k].y);
        });
    return rows <= kMostOverlapRows;
}

/// Measures how much of a line runs back beside itself.
class RetracedLength {
public:
    /// @param width  of the pen, in pixels
    explicit RetracedLength(float width) : width_(width) {}

    void AddContour(const RasterContour& contour) {
        Piece first;
        last_ = {};
        ForEachEdge(contour, [&](const RasterPoint* from, std::uint32_t count) {
            const Piece begin = PieceFrom(from[0], from[1]);
            Add(begin);
            if (first.length == 0.0F) first = begin;
            if (count == 1) return;
            // Of a curve, only the ends tell where it runs. They are far apart.
            total_ += PieceFrom(from[1], from[2]).length;
            last_ = {};
            Add(PieceFrom(from[2], from[3]));
        });
        if (contour.closed) Add(first);
    }
    /// True for a part that is seen.
    bool IsLong() const {
        constexpr float kLeastShare = 0.125F;
        return retraced_ > kLeastShare * total_;
    }

private:
    struct Piece {
        float x = 0.0F, y = 0.0F, length = 0.0F;
    };
    static Piece PieceFrom(const RasterPoint& from, const RasterPoint& to) {
        const float x = to.x - from.x, y = to.y - from.y;
        return {x, y, std::sqrt(x * x + y * y)};
    }

    void Add(const Piece& piece) {
        total_ += piece.length;
        // Shorter pieces do not separate those before and after.
        if (piece.length < width_) return;
        const float along = last_.x * piece.x + last_.y * piece.y;
        const float across = std::fabs(last_.x * piece.y - last_.y * piece.x);
        // All of the shorter piece is closer to the other one than the pen is wide.
        if (across < -along && across < width_ * std::max(last_.length, piece.length))
            retraced_ += std::min(last_.length, piece.length);
        last_ = piece;
    }

    float width_, total_ = 0.0F, retraced_ = 0.0F;
    Piece last_;
};

std::size_t HashOf(const RasterPoint& a, const RasterPoint& b) {
    const auto bits = [](float value) { return std::uint64_t{std::bit_cast<std::uint32_t>(value)}; };
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15U;
    const std::uint64_t first = (bits(a.x) << 32U | bits(a.y)) * kOdd;
    return static_cast<std::size_t>(((first ^ first >> 29U) + (bits(b.x) << 32U | bits(b.y))) * kOdd >> 32U);
}

}  // namespace

bool ORVRepeatsEdges(const RasterGeometry& geometry, SeenEdges& seen) {
    if (geometry.contourCount < 2) return false;
    const std::uint32_t verbs = CountVerbs(geometry);
    if (verbs > kMostOverlapVerbs) return false;
    // At most half full.
    const std::size_t size = std::bit_ceil(std::size_t{2} * verbs + 2), mask = size - 1;
    seen.assign(size, nullptr);
    bool repeats = false;
    // Edges are known by their ends: the next point is the end of a line or the first control of a curve.
    const auto add = [&](const RasterPoint* from, std::uint32_t count) {
        if (repeats || from[0] == from[count]) return;
        std::size_t slot = HashOf(from[0], from[1]) & mask;
        for (; seen[slot]; slot = (slot + 1) & mask)
            if (seen[slot][0] == from[0] && seen[slot][1] == from[1]) {
                repeats = true;
                return;
            }
        seen[slot] = from;
    };
    for (std::uint32_t i = 0; i < geometry.contourCount && !repeats; ++i)
        ForEachEdge(geometry.contours[i], add);
    return repeats && HasFewRows(geometry);
}

bool ORVTurnsBack(const RasterGeometry& geometry, const StrokePen& pen) {
    if (pen.IsDashed() || CountVerbs(geometry) > kMostOverlapVerbs) return false;
    RetracedLength retraced(static_cast<float>(2.0 * pen.radius));
    for (std::uint32_t i = 0; i < geometry.contourCount; ++i) {
        const RasterContour& contour = geometry.contours[i];
        const bool isDrawnOnce =
            pen.DrawsOnce(contour.verbCount) && contour.closed && IsLine(contour, 0) && IsLine(contour, 1);
        if (!isDrawnOnce) retraced.AddContour(contour);
    }
    return retraced.IsLong() && HasFewRows(geometry);
}
