// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/svg_path.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <numbers>
#include <string_view>
#include <vector>

#include "generators/common/number_text.h"

namespace {

using Verb = ORVPrintPath::Verb;

constexpr double kPi = std::numbers::pi;

/// A point in fixed point.
struct FixedPoint {
    std::int64_t x = 0, y = 0;
    FixedPoint operator-(const FixedPoint& other) const { return {x - other.x, y - other.y}; }
};

class PathText {
public:
    PathText(std::string& text, int places) : text_(text), places_(places) {}

    void Move(const FixedPoint& p) {
        Append('M', {p.x, p.y});
        start_ = current_ = p;
    }
    void Line(const FixedPoint& p) {
        const FixedPoint step = p - current_;
        if (step.y == 0)
            AppendShorter('h', {step.x}, 'H', {p.x});
        else if (step.x == 0)
            AppendShorter('v', {step.y}, 'V', {p.y});
        else
            AppendShorter('l', {step.x, step.y}, 'L', {p.x, p.y});
        current_ = p;
    }
    void Cubic(const FixedPoint& a, const FixedPoint& b, const FixedPoint& end) {
        const FixedPoint da = a - current_, db = b - current_, dend = end - current_;
        AppendShorter('c', {da.x, da.y, db.x, db.y, dend.x, dend.y}, 'C', {a.x, a.y, b.x, b.y, end.x, end.y});
        current_ = end;
    }
    void Close() {
        text_ += 'z';
        last_ = 'z';
        current_ = start_;
    }

private:
    using Numbers = std::initializer_list<std::int64_t>;

    /// Repeated commands omit the letter.
    void Write(std::string& text, char letter, Numbers numbers) const {
        bool separate = letter == last_;
        if (!separate) text += letter;
        for (const std::int64_t number : numbers) {
            if (separate && number >= 0) text += ' ';
            AppendFixed(text, number, places_);
            separate = true;
        }
    }
    void Append(char letter, Numbers numbers) {
        Write(text_, letter, numbers);
        // Coordinates after a move are those of lines.
        last_ = letter == 'M' ? 'L' : letter;
    }
    void AppendShorter(char relative, Numbers steps, char absolute, Numbers places) {
        const std::size_t before = text_.size();
        Write(text_, relative, steps);
        other_.clear();
        Write(other_, absolute, places);
        if (other_.size() >= text_.size() - before) {
            last_ = relative;
            return;
        }
        text_.resize(before);
        text_ += other_;
        last_ = absolute;
    }

    std::string& text_;
    const int places_;
    std::string other_;
    FixedPoint start_, current_;
    char last_ = 0;
};

bool HasVerbs(const ORVPrintPath& path, std::initializer_list<Verb> verbs) {
    return path.verbs.size() == verbs.size() && std::equal(verbs.begin(), verbs.end(), path.verbs.begin());
}

bool IsClose(double a, double b, double tolerance) { return std::fabs(a - b) <= tolerance; }

SvgOutline RecogniseRectangle(const std::vector<ORVMathPoint2D>& points, const ORVMathAffine2D& map,
                              int places) {
    std::array<FixedPoint, 4> corners;
    for (std::size_t i = 0; i < corners.size(); ++i) {
        const ORVMathPoint2D p = map(points[i]);
        corners[i] = {ToFixed(p.x, places), ToFixed(p.y, places)};
    }
    const auto& [a, b, c, d] = corners;
    const bool isRectangle = (a.y == b.y && b.x == c.x && c.y == d.y && d.x == a.x) ||
                             (a.x == b.x && b.y == c.y && c.x == d.x && d.y == a.y);
    // A zero-sized rectangle element is not rendered, but the stroke of a path is.
    if (!isRectangle || a.x == c.x || a.y == c.y) return {};
    const double unit = std::pow(10.0, -places);
    return {SvgOutline::Kind::kRectangle, static_cast<double>(std::min(a.x, c.x)) * unit,
            static_cast<double>(std::min(a.y, c.y)) * unit, static_cast<double>(std::abs(a.x - c.x)) * unit,
            static_cast<double>(std::abs(a.y - c.y)) * unit};
}

/// Recognises ellipses made of 4 or 8 equal arcs, as the framework draws them.
SvgOutline RecogniseEllipse(const std::vector<ORVMathPoint2D>& points, const ORVMathAffine2D& map,
                            int places) {
    std::array<ORVMathPoint2D, 25> p;
    std::transform(points.begin(), points.end(), p.begin(), map);
    const std::size_t arcs = points.size() / 3;
    const ORVMathPoint2D opposite = p[3 * arcs / 2];
    const ORVMathPoint2D centre{0.5 * (p[0].x + opposite.x), 0.5 * (p[0].y + opposite.y)};
    double rx = 0.0, ry = 0.0;
    for (std::size_t i = 0; i < arcs; ++i) {
        rx = std::max(rx, std::fabs(p[3 * i].x - centre.x));
        ry = std::max(ry, std::fabs(p[3 * i].y - centre.y));
    }
    // A rotated circle has none of its points on the axes.
    const double radius = std::hypot(p[0].x - centre.x, p[0].y - centre.y);
    if (IsClose(radius, std::hypot(p[3].x - centre.x, p[3].y - centre.y), 1e-6 * radius) &&
        radius >= std::max(rx, ry) * (1.0 - 1e-6) && IsClose(rx, ry, 0.3 * radius))
        rx = ry = radius;
    const double unit = std::pow(10.0, -places);
    if (!(rx > unit) || !(ry > unit) || !std::isfinite(rx) || !std::isfinite(ry)) return {};

    const double start = std::atan2((p[0].y - centre.y) / ry, (p[0].x - centre.x) / rx);
    const double second = std::atan2((p[3].y - centre.y) / ry, (p[3].x - centre.x) / rx);
    const double step = std::copysign(2.0 * kPi / static_cast<double>(arcs), std::sin(second - start));
    const double handle = 4.0 / 3.0 * std::tan(step / 4.0);
    const double toleranceX = std::max(0.5 * unit, 1e-4 * rx), toleranceY = std::max(0.5 * unit, 1e-4 * ry);
    const auto isAt = [&](const ORVMathPoint2D& point, double x, double y) {
        return IsClose(point.x, centre.x + rx * x, toleranceX) &&
               IsClose(point.y, centre.y + ry * y, toleranceY);
    };
    for (std::size_t i = 0; i < arcs; ++i) {
        const double from = start + step * static_cast<double>(i), to = from + step;
        const double c0 = std::cos(from), s0 = std::sin(from), c1 = std::cos(to), s1 = std::sin(to);
        if (!isAt(p[3 * i], c0, s0) || !isAt(p[3 * i + 1], c0 - handle * s0, s0 + handle * c0) ||
            !isAt(p[3 * i + 2], c1 + handle * s1, s1 - handle * c1) || !isAt(p[3 * i + 3], c1, s1))
            return {};
    }
    const bool isCircle = ToFixed(rx, places) == ToFixed(ry, places);
    return {isCircle ? SvgOutline::Kind::kCircle : SvgOutline::Kind::kEllipse, centre.x, centre.y, rx, ry};
}

}  // namespace

SvgOutline RecogniseOutline(const ORVPrintPath& path, const ORVMathAffine2D& map, int places) {
    if (path.points.size() == 4 &&
        HasVerbs(path, {Verb::kMove, Verb::kLine, Verb::kLine, Verb::kLine, Verb::kClose}))
        return RecogniseRectangle(path.points, map, places);
    if ((path.points.size() == 13 || path.points.size() == 25) &&
        path.verbs.size() == path.points.size() / 3 + 2 && path.verbs.front() == Verb::kMove &&
        path.verbs.back() == Verb::kClose &&
        std::all_of(path.verbs.begin() + 1, path.verbs.end() - 1,
                    [](Verb verb) { return verb == Verb::kCubic; }))
        return RecogniseEllipse(path.points, map, places);
    return {};
}

void AppendSvgPath(std::string& text, const ORVPrintPath& path, const ORVMathAffine2D& map, int places) {
    PathText data(text, places);
    auto point = path.points.begin();
    const auto next = [&]() -> FixedPoint {
        const ORVMathPoint2D p = map(*point++);
        return {ToFixed(p.x, places), ToFixed(p.y, places)};
    };
    for (const Verb verb : path.verbs) {
        switch (verb) {
            case Verb::kMove: data.Move(next()); break;
            case Verb::kLine: data.Line(next()); break;
            case Verb::kCubic: {
                const FixedPoint control1 = next(), control2 = next(), end = next();
                data.Cubic(control1, control2, end);
                break;
            }
            case Verb::kClose: data.Close(); break;
        }
    }
}
