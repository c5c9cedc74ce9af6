// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/system/ORVRef.h"

class PathScanner;
class ORVPrtClosedFigureElt;
class ORVPrtClosedFigureRegionElt;
class ORVPrtGraphicPrimitiveElt;
class ORVPrtGroupElt;
struct SvgDrawState;

/// Converts path data to primitives: runs of lines become polylines, curves poly-Beziers, arcs elliptical
/// arcs. If the draw style fills, they are collected in the regions of one closed figure.
class PathDataInterpreter {
public:
    /// @param state          draw style, stroke, fill, page size and flip; must outlive the interpreter
    /// @param group          receives the primitives
    /// @param keepsVertices  whether GetVertices will be used
    PathDataInterpreter(const SvgDrawState& state, ORVPrtGroupElt& group, bool keepsVertices = true);
    ~PathDataInterpreter();

    /// Interprets the value of a "d" attribute. Incomplete groups of numbers draw nothing; unknown letters
    /// and invalid numbers are skipped.
    /// @return kDone, or kUnusable if `data` is empty
    int Interpret(std::string_view data);

    /// The end points of all commands in order, alternately x and y, in page coordinates; empty unless kept.
    const std::vector<double>& GetVertices() const { return vertices_; }

private:
    void Execute(char letter, PathScanner& scanner);
    void MoveTo(bool relative, PathScanner& scanner);
    void LineTo(bool relative, PathScanner& scanner);
    void HorizontalTo(bool relative, PathScanner& scanner);
    void VerticalTo(bool relative, PathScanner& scanner);
    void ClosePath();
    void CubicTo(bool relative, PathScanner& scanner);
    void SmoothCubicTo(bool relative, PathScanner& scanner);
    void QuadraticTo(bool relative, PathScanner& scanner);
    void SmoothQuadraticTo(bool relative, PathScanner& scanner);
    void ArcTo(bool relative, PathScanner& scanner);
    void DrawArc(const double (&values)[5], const ORVMathPoint2D& end);

    bool ReadHorizontal(std::string_view text, double& number) const;
    bool ReadVertical(std::string_view text, double& number) const;
    void ReadPairs(PathScanner& scanner, bool relative, std::size_t pairsPerSegment);
    ORVMathPoint2D Pair(std::size_t index) const { return {numbers_[2 * index], numbers_[2 * index + 1]}; }
    ORVMathPoint2D Offset(const ORVMathPoint2D& base, const ORVMathPoint2D& offset) const;
    ORVMathPoint2D ReflectedControl() const;

    /// Counts one point against the path's limit.
    /// @return false if the limit is reached, where the path ends
    bool TakePoint();
    void AppendPoint(const ORVMathPoint2D& point);
    void AddVertex(const ORVMathPoint2D& point);
    void FlushPoints();
    void RestartPoints();
    void StartRegion();
    void AddToOutline(ORVPrtGraphicPrimitiveElt& primitive);
    template <class Primitive>
    void AddRun(std::vector<ORVMathPoint2D> points);
    void DissolveFigure();

    const SvgDrawState& state_;
    ORVPrtGroupElt& group_;
    ORVRef<ORVPrtClosedFigureElt> figure_;        // null if the path is only stroked
    ORVRef<ORVPrtClosedFigureRegionElt> region_;  // current region of the figure
    ORVMathPoint2D current_, subpathStart_, lastControl_;
    std::vector<ORVMathPoint2D> points_;    // line points not drawn yet
    std::array<ORVMathPoint2D, 32> pairs_;  // buffer for plain line arguments
    std::vector<double> numbers_;           // arguments of the current command
    std::vector<double> arcNumbers_[7];     // arguments of the current arc command, by position
    const bool keepsVertices_;
    std::size_t vertexCount_ = 0;
    std::vector<double> vertices_;
    std::uint64_t pointsLeft_;
    bool isCutOff_ = false;
};
