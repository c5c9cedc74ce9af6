// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/path_data.h"

#include <algorithm>
#include <utility>

#include "interpreters/svg/geometry/elliptical_arc.h"
#include "interpreters/svg/geometry/path_scanner.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "interpreters/svg/values/length.h"
#include "platform/model/ORVPrtClosedFigureElt.h"
#include "platform/model/ORVPrtClosedFigureRegionElt.h"
#include "platform/model/ORVPrtEllipticalArcElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/ORVPrtPolyCubicBezierElt.h"
#include "platform/model/ORVPrtPolyQuadraticBezierElt.h"
#include "platform/model/ORVPrtPolylineElt.h"
#include "platform/system/number_conversion.h"

namespace {

// A path with at most this many vertices has no interior.
constexpr std::size_t kDegenerateVertices = 2;
// Numbers usually take at least this many characters, including a separator.
constexpr std::size_t kCharactersOfNumber = 3;
constexpr std::size_t kMostReserved = 256;

char UpperCase(char letter) { return letter >= 'a' ? static_cast<char>(letter - 'a' + 'A') : letter; }

}  // namespace

PathDataInterpreter::PathDataInterpreter(const SvgDrawState& state, ORVPrtGroupElt& group, bool keepsVertices)
    : state_(state),
      group_(group),
      keepsVertices_(keepsVertices),
      pointsLeft_(ORVPrintLimits::Get(ORVPrintLimit::kPathPoints)) {}

PathDataInterpreter::~PathDataInterpreter() = default;

int PathDataInterpreter::Interpret(std::string_view data) {
    if (data.empty()) return kUnusable;

    PathScanner scanner(data);
    char letter = 0;
    if (!scanner.NextCommand(letter)) return kDone;

    if (ORVFills(state_.drawStyle)) {
        figure_ = ORVRef<ORVPrtClosedFigureElt>(state_.model->Create<ORVPrtClosedFigureElt>());
        if (figure_) {
            figure_->SetDrawStyle(state_.drawStyle);
            figure_->SetStrokeAttributes(state_.stroke);
            figure_->SetFillAttributes(state_.fill);
            group_.AddChild(figure_.get());
            StartRegion();
        }
    }
    // Reserves enough for most paths.
    const std::size_t numbers = std::min(data.size() / kCharactersOfNumber, kMostReserved);
    numbers_.reserve(numbers);
    points_.reserve(numbers / 2 + 1);
    // The upper left corner of the page if y is flipped; used in either case, on purpose.
    current_ = subpathStart_ = lastControl_ = {0.0, state_.pageHeight};
    do {
        Execute(letter, scanner);
    } while (!isCutOff_ && scanner.NextCommand(letter));
    FlushPoints();
    if (figure_ && vertexCount_ <= kDegenerateVertices) DissolveFigure();
    return kDone;
}

void PathDataInterpreter::Execute(char letter, PathScanner& scanner) {
    const bool relative = letter >= 'a';
    switch (UpperCase(letter)) {
        case 'M': return MoveTo(relative, scanner);
        case 'L': return LineTo(relative, scanner);
        case 'Z': return ClosePath();
        case 'C': return CubicTo(relative, scanner);
        case 'S': return SmoothCubicTo(relative, scanner);
        case 'H': return HorizontalTo(relative, scanner);
        case 'V': return VerticalTo(relative, scanner);
        case 'Q': return QuadraticTo(relative, scanner);
        case 'T': return SmoothQuadraticTo(relative, scanner);
        case 'A': return ArcTo(relative, scanner);
    }
}

void PathDataInterpreter::MoveTo(bool relative, PathScanner& scanner) {
    FlushPoints();
    if (figure_ && region_ && !region_->GetChildren().empty()) StartRegion();
    ReadPairs(scanner, relative, 1);
    for (std::size_t i = 0; i < numbers_.size() / 2; ++i) {
        AppendPoint(Pair(i));
        AddVertex(Pair(i));
    }
    if (numbers_.size() >= 2) {
        subpathStart_ = Pair(0);
        current_ = Pair(numbers_.size() / 2 - 1);
    }
    lastControl_ = current_;
}

void PathDataInterpreter::LineTo(bool relative, PathScanner& scanner) {
    // Plain points, which nearly all are, are processed in batches; from the first other argument on, a list
    // is used.
    PathScanner::Behind behind = PathScanner::Behind::kMore;
    while (behind == PathScanner::Behind::kMore && !isCutOff_) {
        std::size_t count = 0;
        behind = scanner.NextPlainPairs(relative ? 'l' : 'L', pairs_.data(), pairs_.size(), count);
        for (std::size_t i = 0; i < count && TakePoint(); ++i) {
            ORVMathPoint2D point = pairs_[i];
            if (state_.yFlip == 1) point.y = state_.pageHeight - point.y;
            if (relative) point = Offset(current_, point);
            AppendPoint(point);
            AddVertex(point);
            current_ = point;
        }
    }
    lastControl_ = current_;
    if (behind != PathScanner::Behind::kOther || isCutOff_) return;

    ReadPairs(scanner, relative, 1);
    for (std::size_t i = 0; i < numbers_.size() / 2; ++i) {
        current_ = Pair(i);
        AppendPoint(current_);
        AddVertex(current_);
    }
    lastControl_ = current_;
}

void PathDataInterpreter::HorizontalTo(bool relative, PathScanner& scanner) {
    std::string_view argument;
    while (scanner.NextArgument(argument)) {
        double x = 0.0;
        if (!ReadHorizontal(argument, x)) continue;
        if (!TakePoint()) break;
        current_.x = relative ? current_.x + x : x;
        AppendPoint(current_);
        AddVertex(current_);
    }
    lastControl_ = current_;
}

void PathDataInterpreter::VerticalTo(bool relative, PathScanner& scanner) {
    std::string_view argument;
    while (scanner.NextArgument(argument)) {
        double y = 0.0;
        if (!ReadVertical(argument, y)) continue;
        if (!TakePoint()) break;
        if (relative) y = state_.yFlip == 1 ? current_.y + y - state_.pageHeight : current_.y + y;
        current_.y = y;
        AppendPoint(current_);
        AddVertex(current_);
    }
    lastControl_ = current_;
}

void PathDataInterpreter::ClosePath() {
    if (!TakePoint()) return;
    AppendPoint(subpathStart_);
    AddVertex(subpathStart_);
    FlushPoints();
    if (figure_) StartRegion();
    current_ = lastControl_ = subpathStart_;
    AppendPoint(current_);
}

void PathDataInterpreter::CubicTo(bool relative, PathScanner& scanner) {
    FlushPoints();
    ReadPairs(scanner, relative, 3);
    const std::size_t curves = numbers_.size() / 6;
    if (curves > 0) {
        std::vector<ORVMathPoint2D> points;
        points.reserve(1 + 3 * curves);
        points.push_back(current_);
        for (std::size_t i = 0; i < 3 * curves; ++i) points.push_back(Pair(i));
        for (std::size_t i = 1; i <= curves; ++i) AddVertex(points[3 * i]);
        current_ = points.back();
        lastControl_ = points[points.size() - 2];
        AddRun<ORVPrtPolyCubicBezierElt>(std::move(points));
    }
    RestartPoints();
}

void PathDataInterpreter::SmoothCubicTo(bool relative, PathScanner& scanner) {
    FlushPoints();
    ReadPairs(scanner, relative, 2);
    const std::size_t curves = numbers_.size() / 4;
    if (curves > 0) {
        std::vector<ORVMathPoint2D> points;
        points.reserve(1 + 3 * curves);
        points.push_back(current_);
        for (std::size_t i = 0; i < curves; ++i) {
            points.push_back(ReflectedControl());
            lastControl_ = Pair(2 * i);
            current_ = Pair(2 * i + 1);
            points.push_back(lastControl_);
            points.push_back(current_);
            AddVertex(current_);
        }
        AddRun<ORVPrtPolyCubicBezierElt>(std::move(points));
    }
    RestartPoints();
}

void PathDataInterpreter::QuadraticTo(bool relative, PathScanner& scanner) {
    FlushPoints();
    ReadPairs(scanner, relative, 2);
    const std::size_t curves = numbers_.size() / 4;
    if (curves > 0) {
        std::vector<ORVMathPoint2D> points;
        points.reserve(1 + 2 * curves);
        points.push_back(current_);
        for (std::size_t i = 0; i < curves; ++i) {
            lastControl_ = Pair(2 * i);
            current_ = Pair(2 * i + 1);
            points.push_back(lastControl_);
            points.push_back(current_);
            AddVertex(current_);
        }
        AddRun<ORVPrtPolyQuadraticBezierElt>(std::move(points));
    }
    RestartPoints();
}

void PathDataInterpreter::SmoothQuadraticTo(bool relative, PathScanner& scanner) {
    FlushPoints();
    ReadPairs(scanner, relative, 1);
    const std::size_t curves = numbers_.size() / 2;
    if (curves > 0) {
        std::vector<ORVMathPoint2D> points;
        points.reserve(1 + 2 * curves);
        points.push_back(current_);
        for (std::size_t i = 0; i < curves; ++i) {
            lastControl_ = ReflectedControl();
            current_ = Pair(i);
            points.push_back(lastControl_);
            points.push_back(current_);
            AddVertex(current_);
        }
        AddRun<ORVPrtPolyQuadraticBezierElt>(std::move(points));
    }
    RestartPoints();
}

void PathDataInterpreter::ArcTo(bool relative, PathScanner& scanner) {
    FlushPoints();
    for (std::vector<double>& list : arcNumbers_) list.clear();
    std::string_view argument;
    // An invalid argument is omitted only from the list of its own position.
    for (std::size_t place = 0; scanner.NextArgument(argument); place = (place + 1) % 7) {
        if (place == 0 && !TakePoint()) break;
        double number = 0.0;
        bool read = false;
        switch (place) {
            case 0:
            case 5: read = ReadHorizontal(argument, number); break;
            case 1: read = ParseVerticalLength(state_, argument, number) == kRead; break;  // never mirrored
            case 6: read = ReadVertical(argument, number); break;
            default: read = ORVConvertToDouble(argument, number) == kRead;
        }
        if (read) arcNumbers_[place].push_back(number);
    }
    std::size_t count = arcNumbers_[0].size();
    for (const std::vector<double>& list : arcNumbers_) count = std::min(count, list.size());

    ORVMathPoint2D base = current_;
    for (std::size_t i = 0; i < count; ++i) {
        ORVMathPoint2D end{arcNumbers_[5][i], arcNumbers_[6][i]};
        if (relative) {
            base = end = Offset(base, end);
        }
        DrawArc(
            {arcNumbers_[0][i], arcNumbers_[1][i], arcNumbers_[2][i], arcNumbers_[3][i], arcNumbers_[4][i]},
            end);
    }
    RestartPoints();
}

void PathDataInterpreter::DrawArc(const double (&values)[5], const ORVMathPoint2D& end) {
    EndpointArc arc{current_, values[0], values[1], values[2], values[3], values[4], end};
    // Mirroring reverses the direction.
    if (state_.yFlip == 1) arc.sweepFlag = arc.sweepFlag != 0.0 ? 0.0 : 1.0;
    CenterArc center;
    switch (ConvertArc(arc, center)) {
        case ArcShape::kStraight:
            AppendPoint(current_);
            AppendPoint(end);
            FlushPoints();
            break;
        case ArcShape::kArc: {
            const ORVRef<ORVPrtEllipticalArcElt> primitive(state_.model->Create<ORVPrtEllipticalArcElt>());
            if (!primitive) break;
            primitive->SetDrawStyle(state_.drawStyle);
            primitive->SetStrokeAttributes(state_.stroke);
            primitive->SetFillAttributes(state_.fill);
            primitive->SetCenter(center.center);
            primitive->SetHorzRadius(center.horzRadius);
            primitive->SetVertRadius(center.vertRadius);
            primitive->SetStartAngle(static_cast<float>(center.startAngle));
            primitive->SetEndAngle(static_cast<float>(center.endAngle));
            primitive->SetSlope(static_cast<float>(center.slope));
            AddToOutline(*primitive);
            break;
        }
        case ArcShape::kNothing: break;
    }
    current_ = lastControl_ = end;
    AddVertex(end);
}

bool PathDataInterpreter::ReadHorizontal(std::string_view text, double& number) const {
    return ParseHorizontalLength(state_, text, number) == kRead;
}

bool PathDataInterpreter::ReadVertical(std::string_view text, double& number) const {
    return ParseVerticalCoordinate(state_, text, number) == kRead;
}

// Arguments are alternately x and y. An invalid one is dropped, and the following numbers move up.
void PathDataInterpreter::ReadPairs(PathScanner& scanner, bool relative, std::size_t pairsPerSegment) {
    numbers_.clear();
    std::string_view argument;
    for (bool isX = true;; isX = !isX) {
        double number = 0.0;
        if (scanner.NextPlainNumber(number)) {
            if (numbers_.size() % 2 == 0 && !TakePoint()) break;
            numbers_.push_back(isX || state_.yFlip != 1 ? number : state_.pageHeight - number);
            continue;
        }
        if (!scanner.NextArgument(argument)) break;
        if (isX ? ReadHorizontal(argument, number) : ReadVertical(argument, number)) {
            if (numbers_.size() % 2 == 0 && !TakePoint()) break;
            numbers_.push_back(number);
        }
    }
    if (!relative) return;

    ORVMathPoint2D base = current_;
    for (std::size_t i = 0; i < numbers_.size() / 2; ++i) {
        const ORVMathPoint2D point = Offset(base, Pair(i));
        numbers_[2 * i] = point.x;
        numbers_[2 * i + 1] = point.y;
        if ((i + 1) % pairsPerSegment == 0) base = point;
    }
}

// Subtracting the page height undoes the mirroring, which must not apply to an offset.
ORVMathPoint2D PathDataInterpreter::Offset(const ORVMathPoint2D& base, const ORVMathPoint2D& offset) const {
    const double y = base.y + offset.y;
    return {base.x + offset.x, state_.yFlip == 1 ? y - state_.pageHeight : y};
}

ORVMathPoint2D PathDataInterpreter::ReflectedControl() const {
    return {2.0 * current_.x - lastControl_.x, 2.0 * current_.y - lastControl_.y};
}

bool PathDataInterpreter::TakePoint() {
    if (pointsLeft_ > 0) {
        --pointsLeft_;
        return true;
    }
    isCutOff_ = true;
    return state_.model->GetBudget().Refuse(ORVPrintLimit::kPathPoints);
}

void PathDataInterpreter::AppendPoint(const ORVMathPoint2D& point) {
    if (points_.empty() || !(points_.back() == point)) points_.push_back(point);
}

void PathDataInterpreter::AddVertex(const ORVMathPoint2D& point) {
    ++vertexCount_;
    if (!keepsVertices_) return;
    vertices_.push_back(point.x);
    vertices_.push_back(point.y);
}

void PathDataInterpreter::FlushPoints() {
    if (points_.size() >= 2) AddRun<ORVPrtPolylineElt>(points_);
    points_.clear();
}

// Starts a new run of lines at the end of a curve.
void PathDataInterpreter::RestartPoints() {
    points_.clear();
    points_.push_back(current_);
}

void PathDataInterpreter::StartRegion() {
    region_ = ORVRef<ORVPrtClosedFigureRegionElt>(state_.model->Create<ORVPrtClosedFigureRegionElt>());
    if (region_) figure_->AddChild(region_.get());
}

void PathDataInterpreter::AddToOutline(ORVPrtGraphicPrimitiveElt& primitive) {
    if (region_) {
        region_->AddChild(&primitive);
    } else {
        group_.AddChild(&primitive);
    }
}

template <class Primitive>
void PathDataInterpreter::AddRun(std::vector<ORVMathPoint2D> points) {
    const ORVRef<Primitive> primitive(state_.model->Create<Primitive>());
    if (!primitive) return;
    primitive->SetStrokeAttributes(state_.stroke);
    primitive->SetPoints(std::move(points));
    AddToOutline(*primitive);
}

// The content of the last region is then only stroked; earlier regions are removed with the figure.
void PathDataInterpreter::DissolveFigure() {
    if (region_)
        for (ORVPrtGraphicPrimitiveElt* child : region_->GetChildren()) group_.AddChild(child);
    group_.RemoveChild(figure_.get());
}
