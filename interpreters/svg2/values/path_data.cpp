// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/values/path_data.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "interpreters/svg2/values/scanner.h"
#include "platform/system/ORVPrintLimits.h"

namespace svg2 {
namespace {

ORVMathPoint2D Between(const ORVMathPoint2D& a, const ORVMathPoint2D& b, double share) {
    return {a.x + (b.x - a.x) * share, a.y + (b.y - a.y) * share};
}

class PathReader {
public:
    PathReader(std::string_view text, ORVPrintPath& path, std::vector<std::size_t>* segmentEnds)
        : scanner_(text), path_(path), segmentEnds_(segmentEnds) {}

    bool Read();

private:
    /// Kind of the previous segment, for smooth continuations.
    enum class Last { kOther, kCubic, kQuadratic };

    bool ReadSegments(char command);
    bool ReadSegment(char lower);
    bool TakeNumber(double& value);
    bool TakePoint(ORVMathPoint2D& point);
    bool TakeFlag(bool& flag);
    bool ReadMove();
    bool ReadCurve(char lower);
    bool ReadQuadratic(char lower);
    bool ReadArc();
    void Close();
    /// Starts a new subpath if the previous one was closed.
    void Open();
    void LineTo(const ORVMathPoint2D& to);
    ORVMathPoint2D Mirrored(Last kind) const {
        if (last_ != kind) return current_;
        return {2.0 * current_.x - control_.x, 2.0 * current_.y - control_.y};
    }
    void EndSegment(Last last) {
        last_ = last;
        if (segmentEnds_) segmentEnds_->push_back(path_.verbs.size());
    }

    Scanner scanner_;
    ORVPrintPath& path_;
    std::vector<std::size_t>* const segmentEnds_;
    ORVMathPoint2D current_, start_, control_;
    Last last_ = Last::kOther;
    bool isRelative_ = false;
    bool isFirstNumber_ = true;  // of a segment; the following ones may be preceded by a comma
    bool isClosed_ = false;
};

bool PathReader::TakeNumber(double& value) {
    if (isFirstNumber_)
        scanner_.SkipSpace();
    else
        scanner_.SkipCommaSpace();
    isFirstNumber_ = false;
    return scanner_.TakeNumber(value);
}

bool PathReader::TakePoint(ORVMathPoint2D& point) {
    ORVMathPoint2D read;
    if (!TakeNumber(read.x) || !TakeNumber(read.y)) return false;
    point = isRelative_ ? ORVMathPoint2D{current_.x + read.x, current_.y + read.y} : read;
    return true;
}

// A flag is a single digit; the next number may follow it directly.
bool PathReader::TakeFlag(bool& flag) {
    scanner_.SkipCommaSpace();
    const char c = scanner_.Peek();
    if (c != '0' && c != '1') return false;
    flag = c == '1';
    scanner_.Advance();
    return true;
}

void PathReader::Open() {
    if (!isClosed_) return;
    path_.MoveTo(start_);
    isClosed_ = false;
}

void PathReader::LineTo(const ORVMathPoint2D& to) {
    Open();
    path_.LineTo(to);
    current_ = to;
    EndSegment(Last::kOther);
}

bool PathReader::ReadMove() {
    ORVMathPoint2D to;
    if (!TakePoint(to)) return false;
    path_.MoveTo(to);
    current_ = start_ = to;
    isClosed_ = false;
    EndSegment(Last::kOther);
    return true;
}

bool PathReader::ReadCurve(char lower) {
    ORVMathPoint2D first = Mirrored(Last::kCubic), second, to;
    if (lower == 'c' && !TakePoint(first)) return false;
    if (!TakePoint(second) || !TakePoint(to)) return false;
    Open();
    path_.CubicTo(first, second, to);
    control_ = second;
    current_ = to;
    EndSegment(Last::kCubic);
    return true;
}

bool PathReader::ReadQuadratic(char lower) {
    // Fraction of the distance to the control point, when converted to a cubic curve.
    constexpr double kShare = 2.0 / 3.0;
    ORVMathPoint2D control = Mirrored(Last::kQuadratic), to;
    if (lower == 'q' && !TakePoint(control)) return false;
    if (!TakePoint(to)) return false;
    Open();
    path_.CubicTo(Between(current_, control, kShare), Between(to, control, kShare), to);
    control_ = control;
    current_ = to;
    EndSegment(Last::kQuadratic);
    return true;
}

bool PathReader::ReadArc() {
    double rx = 0.0, ry = 0.0, rotation = 0.0;
    bool isLarge = false, isClockwise = false;
    ORVMathPoint2D to;
    if (!TakeNumber(rx) || !TakeNumber(ry) || !TakeNumber(rotation) || !TakeFlag(isLarge) ||
        !TakeFlag(isClockwise) || !TakePoint(to))
        return false;
    Open();
    AddArc(path_, current_, rx, ry, rotation, isLarge, isClockwise, to);
    current_ = to;
    EndSegment(Last::kOther);
    return true;
}

void PathReader::Close() {
    if (!isClosed_) {
        path_.Close();
        EndSegment(Last::kOther);
    }
    isClosed_ = true;
    current_ = start_;
    last_ = Last::kOther;
}

bool PathReader::ReadSegment(char lower) {
    ORVMathPoint2D to = current_;
    switch (lower) {
        case 'm': return ReadMove();
        case 'l':
            if (!TakePoint(to)) return false;
            break;
        case 'h':
            if (!TakeNumber(to.x)) return false;
            if (isRelative_) to.x += current_.x;
            break;
        case 'v':
            if (!TakeNumber(to.y)) return false;
            if (isRelative_) to.y += current_.y;
            break;
        case 'c':
        case 's': return ReadCurve(lower);
        case 'q':
        case 't': return ReadQuadratic(lower);
        case 'a': return ReadArc();
        default: return false;
    }
    LineTo(to);
    return true;
}

bool PathReader::ReadSegments(char command) {
    char lower = ToLower(command);
    isRelative_ = command == lower;
    if (lower == 'z') {
        Close();
        return true;
    }
    const std::uint64_t most = ORVPrintLimits::Get(ORVPrintLimit::kPathPoints);
    for (isFirstNumber_ = true;; isFirstNumber_ = false) {
        if (path_.points.size() >= most || !ReadSegment(lower)) return false;
        if (lower == 'm') lower = 'l';  // further points of a move are lines
        const std::size_t position = scanner_.GetPosition();
        const bool hasComma = scanner_.SkipCommaSpace();
        const char next = scanner_.Peek();
        const bool goesOn = IsDigit(next) || next == '.' || next == '-' || next == '+';
        scanner_.SetPosition(position);
        if (!goesOn) return !hasComma;
    }
}

bool PathReader::Read() {
    scanner_.SkipSpace();
    if (EqualsIgnoringCase(scanner_.Rest(), "none")) return true;
    for (bool isFirst = true; !scanner_.AtEnd(); isFirst = false) {
        const char command = scanner_.Peek();
        if (isFirst && ToLower(command) != 'm') return false;
        scanner_.Advance();
        if (!ReadSegments(command)) return false;
        scanner_.SkipSpace();
    }
    return true;
}

/// The centre parametrisation of an arc.
struct ArcCentre {
    ORVMathPoint2D centre;
    double rx, ry, start, sweep;  // angles in radians
};

// The conversion from endpoint to centre parametrisation in SVG's implementation notes.
ArcCentre FindCentre(const ORVMathPoint2D& from, const ORVMathPoint2D& to, double rx, double ry,
                     double cosine, double sine, bool isLarge, bool isClockwise) {
    const double halfX = (from.x - to.x) / 2.0, halfY = (from.y - to.y) / 2.0;
    const double x = cosine * halfX + sine * halfY, y = cosine * halfY - sine * halfX;
    const double excess = (x * x) / (rx * rx) + (y * y) / (ry * ry);
    if (excess > 1.0) {
        rx *= std::sqrt(excess);
        ry *= std::sqrt(excess);
    }
    const double denominator = rx * rx * y * y + ry * ry * x * x;
    const double quotient = denominator > 0.0 ? (rx * rx * ry * ry - denominator) / denominator : 0.0;
    const double factor = (isLarge == isClockwise ? -1.0 : 1.0) * std::sqrt(std::max(quotient, 0.0));
    const double cx = factor * rx * y / ry, cy = -factor * ry * x / rx;
    const double start = std::atan2((y - cy) / ry, (x - cx) / rx);
    double sweep = std::atan2((-y - cy) / ry, (-x - cx) / rx) - start;
    if (isClockwise && sweep < 0.0) sweep += 2.0 * std::numbers::pi;
    if (!isClockwise && sweep > 0.0) sweep -= 2.0 * std::numbers::pi;
    return {
        {cosine * cx - sine * cy + (from.x + to.x) / 2.0, sine * cx + cosine * cy + (from.y + to.y) / 2.0},
        rx,
        ry,
        start,
        sweep};
}

}  // namespace

void AddArc(ORVPrintPath& path, const ORVMathPoint2D& from, double rx, double ry, double rotationDegrees,
            bool isLarge, bool isClockwise, const ORVMathPoint2D& to) {
    if (from == to) return;
    rx = std::fabs(rx);
    ry = std::fabs(ry);
    if (rx == 0.0 || ry == 0.0) {
        path.LineTo(to);
        return;
    }
    const double rotation = rotationDegrees * std::numbers::pi / 180.0;
    const double cosine = std::cos(rotation), sine = std::sin(rotation);
    const ArcCentre arc = FindCentre(from, to, rx, ry, cosine, sine, isLarge, isClockwise);
    if (!std::isfinite(arc.sweep) || !std::isfinite(arc.centre.x + arc.centre.y)) {
        path.LineTo(to);
        return;
    }
    const ORVMathAffine2D map{cosine * arc.rx, -sine * arc.ry, sine * arc.rx,
                              cosine * arc.ry, arc.centre.x,   arc.centre.y};
    // With tolerance, so that a quarter ellipse stays one curve.
    const double quarters = std::fabs(arc.sweep) / (std::numbers::pi / 2.0);
    const int count = std::max(1, static_cast<int>(std::ceil(quarters - 1e-9)));
    const double step = arc.sweep / count;
    const double reach = 4.0 / 3.0 * std::tan(step / 4.0);  // distance of the control points, in radii
    for (int i = 0; i < count; ++i) {
        const double a = arc.start + step * i, b = a + step;
        const ORVMathPoint2D end = i + 1 == count ? to : map({std::cos(b), std::sin(b)});
        path.CubicTo(map({std::cos(a) - reach * std::sin(a), std::sin(a) + reach * std::cos(a)}),
                     map({std::cos(b) + reach * std::sin(b), std::sin(b) - reach * std::cos(b)}), end);
    }
}

bool ReadPathData(std::string_view text, ORVPrintPath& path, std::vector<std::size_t>* segmentEnds) {
    return PathReader(text, path, segmentEnds).Read();
}

void ReadPoints(std::string_view text, std::vector<ORVMathPoint2D>& points) {
    const std::uint64_t most = ORVPrintLimits::Get(ORVPrintLimit::kPathPoints);
    Scanner scanner(text);
    scanner.SkipSpace();
    for (bool isFirst = true; points.size() < most; isFirst = false) {
        ORVMathPoint2D point;
        if (!isFirst) scanner.SkipCommaSpace();
        if (!scanner.TakeNumber(point.x)) return;
        scanner.SkipCommaSpace();
        if (!scanner.TakeNumber(point.y)) return;
        points.push_back(point);
    }
}

}  // namespace svg2
