// SPDX-License-Identifier: Apache-2.0
#include "generators/common/path_range.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

namespace {

using Points = std::vector<ORVMathPoint2D>;

// Keeps differences and products of coordinates finite.
constexpr double kLargestCoordinate = 1e100;
// Segments of a curve that has to be clipped.
constexpr int kPiecesOfCurve = 128;

ORVMathPoint2D Tame(const ORVMathPoint2D& p) {
    return {std::clamp(p.x, -kLargestCoordinate, kLargestCoordinate),
            std::clamp(p.y, -kLargestCoordinate, kLargestCoordinate)};
}

ORVMathPoint2D Mix(const ORVMathPoint2D& a, const ORVMathPoint2D& b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}

void AppendCurve(const ORVMathPoint2D& start, const ORVMathPoint2D& control1, const ORVMathPoint2D& control2,
                 const ORVMathPoint2D& end, Points& contour) {
    for (int i = 1; i < kPiecesOfCurve; ++i) {
        const double t = static_cast<double>(i) / kPiecesOfCurve;
        const ORVMathPoint2D middle = Mix(control1, control2, t);
        contour.push_back(
            Mix(Mix(Mix(start, control1, t), middle, t), Mix(middle, Mix(control2, end, t), t), t));
    }
    contour.push_back(end);
}

/// Clips a polygon by a line: keeps the side on which `inside` is not negative.
template <class Inside>
void CutPolygon(Points& polygon, Points& scratch, Inside inside) {
    scratch.clear();
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const ORVMathPoint2D& from = polygon[i];
        const ORVMathPoint2D& to = polygon[(i + 1) % polygon.size()];
        const double a = inside(from), b = inside(to);
        if (a >= 0.0) scratch.push_back(from);
        if ((a >= 0.0) != (b >= 0.0)) scratch.push_back(Mix(from, to, a / (a - b)));
    }
    polygon.swap(scratch);
}

/// Clips a segment to the square around the origin. @return false if nothing is left
bool CutSegment(ORVMathPoint2D& from, ORVMathPoint2D& to, double limit) {
    double first = 0.0, last = 1.0;
    const auto cut = [&](double start, double step) {
        // start + t * step must be between -limit and limit.
        if (step == 0.0) return std::fabs(start) <= limit;
        const double a = (-limit - start) / step, b = (limit - start) / step;
        first = std::max(first, std::min(a, b));
        last = std::min(last, std::max(a, b));
        return first <= last;
    };
    if (!cut(from.x, to.x - from.x) || !cut(from.y, to.y - from.y)) return false;
    const ORVMathPoint2D start = from, end = to;
    if (first > 0.0) from = Mix(start, end, first);
    if (last < 1.0) to = Mix(start, end, last);
    return true;
}

class Fitting {
public:
    Fitting(double limit, PathUse use, const ORVMathAffine2D& fromDevice, ORVPrintPath& out)
        : limit_(limit), use_(use), fromDevice_(fromDevice), out_(out) {}

    /// Adds a contour in device coordinates, and clears it.
    void Add(Points& contour, bool closed) {
        if (contour.size() > 1) {
            if (use_ == PathUse::kFill)
                AddArea(contour);
            else
                AddLine(contour, closed);
        }
        contour.clear();
    }

private:
    void AddArea(Points& contour) {
        CutPolygon(contour, scratch_, [this](const ORVMathPoint2D& p) { return p.x + limit_; });
        CutPolygon(contour, scratch_, [this](const ORVMathPoint2D& p) { return limit_ - p.x; });
        CutPolygon(contour, scratch_, [this](const ORVMathPoint2D& p) { return p.y + limit_; });
        CutPolygon(contour, scratch_, [this](const ORVMathPoint2D& p) { return limit_ - p.y; });
        if (contour.size() < 3) return;
        out_.MoveTo(fromDevice_(contour.front()));
        for (std::size_t i = 1; i < contour.size(); ++i) out_.LineTo(fromDevice_(contour[i]));
        out_.Close();
    }

    void AddLine(Points& contour, bool closed) {
        if (closed) contour.push_back(contour.front());
        bool connected = false, whole = true;
        for (std::size_t i = 0; i + 1 < contour.size(); ++i) {
            ORVMathPoint2D from = contour[i], to = contour[i + 1];
            const bool visible = CutSegment(from, to, limit_);
            if (visible) {
                if (!connected) out_.MoveTo(fromDevice_(from));
                out_.LineTo(fromDevice_(to));
            }
            connected = visible && to == contour[i + 1];
            whole = whole && connected && from == contour[i];
        }
        if (closed && whole) out_.Close();
    }

    const double limit_;
    const PathUse use_;
    const ORVMathAffine2D& fromDevice_;
    ORVPrintPath& out_;
    Points scratch_;
};

}  // namespace

const ORVPrintPath& FitPathToRange(const ORVPrintPath& path, const ORVMathAffine2D& toDevice, double limit,
                                   PathUse use, ORVPrintPath& storage) {
    const bool fits = std::all_of(path.points.begin(), path.points.end(), [&](const ORVMathPoint2D& p) {
        const ORVMathPoint2D device = toDevice(p);
        return std::fabs(device.x) <= limit && std::fabs(device.y) <= limit;
    });
    if (fits) return path;

    storage.Clear();
    const std::optional<ORVMathAffine2D> fromDevice = toDevice.Inverse();
    if (!fromDevice) return storage;

    Fitting fitting(limit, use, *fromDevice, storage);
    Points contour;
    auto point = path.points.begin();
    const auto next = [&] { return Tame(toDevice(*point++)); };
    for (const ORVPrintPath::Verb verb : path.verbs) {
        switch (verb) {
            case ORVPrintPath::Verb::kMove:
                fitting.Add(contour, false);
                contour.push_back(next());
                break;
            case ORVPrintPath::Verb::kLine: contour.push_back(next()); break;
            case ORVPrintPath::Verb::kCubic: {
                const ORVMathPoint2D start = contour.empty() ? ORVMathPoint2D{} : contour.back();
                const ORVMathPoint2D control1 = next(), control2 = next(), end = next();
                AppendCurve(start, control1, control2, end, contour);
                break;
            }
            case ORVPrintPath::Verb::kClose: fitting.Add(contour, true); break;
        }
    }
    fitting.Add(contour, false);
    return storage;
}
