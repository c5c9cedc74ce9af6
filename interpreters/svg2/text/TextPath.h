// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <vector>

#include "platform/mathematics/geometry.h"
#include "platform/print/ORVPrintPath.h"

namespace svg2 {

/// A path for text: maps distances from its start to points and directions.
class TextPath {
public:
    /// @param transform  from the coordinates of the outline
    void Add(const ORVPrintPath& outline, const ORVMathAffine2D& transform);
    /// Reverses the direction.
    void Reverse();

    /// Total length; 0 if text cannot run along it.
    double GetLength() const { return lengths_.empty() ? 0.0 : lengths_.back(); }
    /// True for a single closed subpath.
    bool IsClosed() const { return isClosed_; }

    struct Place {
        ORVMathPoint2D point;
        double degrees = 0.0;  ///< direction of the tangent
    };
    /// @param distance  from 0 to the length, which must not be 0
    Place At(double distance) const;

private:
    /// A line or curve.
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
    std::vector<double> lengths_;  // accumulated length at the end of each piece
    bool isClosed_ = false;
};

}  // namespace svg2
