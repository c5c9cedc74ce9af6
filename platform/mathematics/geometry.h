// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cmath>
#include <limits>
#include <optional>

/// A point in the plane.
struct ORVMathPoint2D {
    double x = 0.0, y = 0.0;  ///< coordinates, in the units of whatever uses the point
    friend bool operator==(const ORVMathPoint2D&, const ORVMathPoint2D&) = default;
};

/// A displacement in the plane.
struct ORVMathVector2D {
    double x = 0.0, y = 0.0;  ///< components, in the units of whatever uses the vector
    friend bool operator==(const ORVMathVector2D&, const ORVMathVector2D&) = default;
};

/// A 2 x 2 matrix that multiplies column vectors. The identity by default.
struct ORVMath2x2Matrix {
    double m11 = 1.0, m12 = 0.0, m21 = 0.0, m22 = 1.0;  ///< mRC is the element in row R, column C
    constexpr ORVMath2x2Matrix() = default;
    /// Constructs the matrix from its elements, row by row.
    constexpr ORVMath2x2Matrix(double a11, double a12, double a21, double a22)
        : m11(a11), m12(a12), m21(a21), m22(a22) {}
    friend bool operator==(const ORVMath2x2Matrix&, const ORVMath2x2Matrix&) = default;
};

/// An affine transformation: maps p to (m11 x + m12 y + dx, m21 x + m22 y + dy).
struct ORVMathAffine2D {
    double m11 = 1.0, m12 = 0.0, m21 = 0.0, m22 = 1.0, dx = 0.0, dy = 0.0;  ///< the identity by default

    /// Transforms a point.
    ORVMathPoint2D operator()(const ORVMathPoint2D& p) const {
        return {m11 * p.x + m12 * p.y + dx, m21 * p.x + m22 * p.y + dy};
    }
    /// The composition: applies `inner` first, then this transformation.
    ORVMathAffine2D operator*(const ORVMathAffine2D& inner) const {
        return {m11 * inner.m11 + m12 * inner.m21,    m11 * inner.m12 + m12 * inner.m22,
                m21 * inner.m11 + m22 * inner.m21,    m21 * inner.m12 + m22 * inner.m22,
                m11 * inner.dx + m12 * inner.dy + dx, m21 * inner.dx + m22 * inner.dy + dy};
    }
    /// Determinant of the linear part: the factor by which areas change, negative for a transformation that
    /// mirrors.
    double Determinant() const { return m11 * m22 - m12 * m21; }
    /// Whether all six elements are finite.
    bool IsFinite() const { return std::isfinite(m11 + m12 + m21 + m22 + dx + dy); }

    /// Translation by (x, y).
    static constexpr ORVMathAffine2D Translation(double x, double y) { return {1.0, 0.0, 0.0, 1.0, x, y}; }
    /// Scaling by x and y about the origin.
    static constexpr ORVMathAffine2D Scaling(double x, double y) { return {x, 0.0, 0.0, y, 0.0, 0.0}; }

    /// The larger of the scale factors along the x and y axes.
    double Enlargement() const {
        const double x = std::hypot(m11, m21), y = std::hypot(m12, m22);
        return x < y ? y : x;
    }
    /// The inverse transformation; nullopt when there is none or its elements are not finite.
    std::optional<ORVMathAffine2D> Inverse() const {
        const double area = Determinant();
        if (area == 0.0 || !std::isfinite(area)) return std::nullopt;
        ORVMathAffine2D inverse{m22 / area, -m12 / area, -m21 / area, m11 / area, 0.0, 0.0};
        inverse.dx = -(inverse.m11 * dx + inverse.m12 * dy);
        inverse.dy = -(inverse.m21 * dx + inverse.m22 * dy);
        if (!inverse.IsFinite()) return std::nullopt;
        return inverse;
    }
    friend bool operator==(const ORVMathAffine2D&, const ORVMathAffine2D&) = default;
};

/// An axis-parallel bounding box. Starts empty and grows with the points added; points that are not finite
/// are ignored.
struct ORVMathBox2D {
    double xMin = std::numeric_limits<double>::infinity();   ///< left edge
    double xMax = -std::numeric_limits<double>::infinity();  ///< right edge
    double yMin = std::numeric_limits<double>::infinity();   ///< edge with the smaller y
    double yMax = -std::numeric_limits<double>::infinity();  ///< edge with the larger y

    /// Whether the box contains no point.
    bool IsEmpty() const { return !(xMin <= xMax); }
    /// Extends the box to include a point.
    void Add(const ORVMathPoint2D& p) {
        if (!std::isfinite(p.x) || !std::isfinite(p.y)) return;
        xMin = p.x < xMin ? p.x : xMin;
        xMax = p.x > xMax ? p.x : xMax;
        yMin = p.y < yMin ? p.y : yMin;
        yMax = p.y > yMax ? p.y : yMax;
    }
    /// Extends the box to include another box, which may be empty.
    void Unite(const ORVMathBox2D& other) {
        xMin = other.xMin < xMin ? other.xMin : xMin;
        xMax = other.xMax > xMax ? other.xMax : xMax;
        yMin = other.yMin < yMin ? other.yMin : yMin;
        yMax = other.yMax > yMax ? other.yMax : yMax;
    }
    /// The area common to both boxes, which may be only an edge or a corner; empty when the boxes are
    /// disjoint.
    ORVMathBox2D Intersection(const ORVMathBox2D& other) const {
        const ORVMathBox2D both{other.xMin > xMin ? other.xMin : xMin, other.xMax < xMax ? other.xMax : xMax,
                                other.yMin > yMin ? other.yMin : yMin, other.yMax < yMax ? other.yMax : yMax};
        return both.xMin <= both.xMax && both.yMin <= both.yMax ? both : ORVMathBox2D();
    }
    /// Like Intersection, but empty when the common area is zero.
    ORVMathBox2D Overlap(const ORVMathBox2D& other) const {
        const ORVMathBox2D both = Intersection(other);
        return both.xMin < both.xMax && both.yMin < both.yMax ? both : ORVMathBox2D();
    }
    /// The bounding box of the four transformed corners; empty when this box is empty.
    ORVMathBox2D MappedBy(const ORVMathAffine2D& map) const {
        ORVMathBox2D mapped;
        if (IsEmpty()) return mapped;
        mapped.Add(map({xMin, yMin}));
        mapped.Add(map({xMax, yMin}));
        mapped.Add(map({xMin, yMax}));
        mapped.Add(map({xMax, yMax}));
        return mapped;
    }
};
