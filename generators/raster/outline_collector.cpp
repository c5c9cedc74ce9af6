// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/outline_collector.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace {

RasterPoint ShortFrom(const ORVMathPoint2D& origin, const ORVMathPoint2D& p) {
    return {static_cast<float>(p.x - origin.x), static_cast<float>(p.y - origin.y)};
}

ORVMathPoint2D OriginOf(const ORVMathPoint2D& first) { return {std::floor(first.x), std::floor(first.y)}; }

}  // namespace

bool OutlineCollector::Collect(const ORVPrintPath& path, const ORVMathAffine2D& toDevice) {
    drafts_.clear();
    points_.clear();
    verbs_.clear();
    auto point = path.points.begin();
    bool isFar = false;
    bool isOpen = false, hasVerb = false;
    ORVMathPoint2D start, origin;
    const auto next = [&] {
        const ORVMathPoint2D p = toDevice(*point++);
        isFar = isFar || !IsWithinLimit(p);
        return p;
    };
    // Points are stored as floats: points equal as floats count as one.
    const auto equal = [&](const ORVMathPoint2D& a, const ORVMathPoint2D& b) {
        return ShortFrom(origin, a) == ShortFrom(origin, b);
    };
    const auto begin = [&](const ORVMathPoint2D& p) {
        if (points_.empty()) origin = OriginOf(p);
        drafts_.push_back({points_.size(), verbs_.size(), false});
        points_.push_back(start = p);
        isOpen = true;
        hasVerb = false;
    };
    // A contour that consists of a move only shows nothing, with any caps.
    const auto end = [&] {
        if (isOpen && !hasVerb) {
            points_.pop_back();
            drafts_.pop_back();
        }
        isOpen = false;
    };
    const auto line = [&](const ORVMathPoint2D& p) {
        if (equal(points_.back(), p)) return;
        points_.push_back(p);
        verbs_.push_back(RasterContour::Verb::kLine);
    };
    for (const ORVPrintPath::Verb verb : path.verbs) {
        if (verb == ORVPrintPath::Verb::kMove) {
            end();
            begin(next());
            continue;
        }
        if (!isOpen) begin(start);
        hasVerb = true;
        switch (verb) {
            case ORVPrintPath::Verb::kLine: line(next()); break;
            case ORVPrintPath::Verb::kCubic: {
                const ORVMathPoint2D from = points_.back();
                const ORVMathPoint2D control1 = next(), control2 = next(), to = next();
                if (equal(control1, from) && equal(control2, from) && equal(to, from)) break;
                points_.insert(points_.end(), {control1, control2, to});
                verbs_.push_back(RasterContour::Verb::kCubic);
                break;
            }
            default:
                line(start);
                drafts_.back().closed = true;
                end();
                break;
        }
    }
    end();
    return !isFar;
}

RasterGeometry OutlineCollector::Keep(RasterExtent& extent) {
    RasterGeometry geometry;
    const ORVMathPoint2D& first = points_.front();
    const ORVMathPoint2D origin = OriginOf(first);
    geometry.originX = PixelOf(first.x);
    geometry.originY = PixelOf(first.y);
    auto* points = arena_.Make<RasterPoint>(points_.size());
    auto* verbs = arena_.Make<RasterContour::Verb>(verbs_.size());
    auto* contours = arena_.Make<RasterContour>(drafts_.size());
    extent = {first.x, first.y, first.x, first.y};
    for (std::size_t i = 0; i < points_.size(); ++i) {
        const ORVMathPoint2D& p = points_[i];
        extent.left = std::min(extent.left, p.x);
        extent.right = std::max(extent.right, p.x);
        extent.top = std::min(extent.top, p.y);
        extent.bottom = std::max(extent.bottom, p.y);
        new (points + i) RasterPoint(ShortFrom(origin, p));
    }
    std::copy(verbs_.begin(), verbs_.end(), verbs);
    for (std::size_t i = 0; i < drafts_.size(); ++i) {
        const std::size_t end = i + 1 < drafts_.size() ? drafts_[i + 1].firstVerb : verbs_.size();
        new (contours + i)
            RasterContour{points + drafts_[i].firstPoint, verbs + drafts_[i].firstVerb,
                          static_cast<std::uint32_t>(end - drafts_[i].firstVerb), drafts_[i].closed};
    }
    geometry.contours = contours;
    geometry.contourCount = static_cast<std::uint32_t>(drafts_.size());
    return geometry;
}

bool OutlineCollector::Make(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, PathUse use,
                            RasterGeometry& geometry, RasterExtent& extent) {
    if (!Collect(path, toDevice))
        Collect(FitPathToRange(path, toDevice, kDeviceLimit, use, fitted_), toDevice);
    if (!HasContours()) return false;
    // Invisible parts need not be stored. If there is a pen, room for it is added.
    geometry = Keep(extent);
    return true;
}

bool OutlineCollector::IsBox() const {
    const auto isLevel = [](const ORVMathPoint2D& a, const ORVMathPoint2D& b) {
        return a.x == b.x || a.y == b.y;
    };
    const auto& p = points_;
    return drafts_.size() == 1 && p.size() == 5 && verbs_.size() == 4 && isLevel(p[0], p[1]) &&
           isLevel(p[1], p[2]) && isLevel(p[2], p[3]) && isLevel(p[3], p[0]);
}
