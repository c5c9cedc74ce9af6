// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// An outline that text runs along: places by their distance from its start.
class TextPath {
public:
    /// @param transform  from the outline's coordinates
    void Add(const ORVPrintPath& outline, const ORVMathAffine2D& transform);
    /// Lets it run the other way.
    void Reverse();

    /// Length of all lines; 0 when there is nothing that text could run along.
    double GetLength() const { return lengths_.empty() ? 0.0 : lengths_.back(); }
    /// True for one line that ends where it begins.
    bool IsClosed() const { return isClosed_; }

    struct Place {
        ORVMathPoint2D point;
        double degrees = 0.0;  ///< of the direction in which the path goes on
    };
    /// @param distance  from 0 to the length, which is not 0
    Place At(double distance) const;

private:
    /// A straight line, or a curve.
    struct Piece {
        std::array<ORVMathPoint2D, 4> points;
        bool isStraight = true;

        ORVMathPoint2D PointAt(double t) const;
        ORVMathPoint2D DirectionAt(double t) const;
        double Length() const;
        double FindParameter(double distance) const;
    };
    void AddLine(const ORVMathPoint2D& from, const ORVMathPoint2D& to);
    void AddPiece(const Piece& piece);

    std::vector<Piece> pieces_;
    std::vector<double> lengths_;  // up to the end of each piece
    bool isClosed_ = false;
};

}  // namespace svg2
