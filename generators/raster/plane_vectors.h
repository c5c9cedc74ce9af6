// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/mathematics/geometry.h"

// Vector arithmetic of the stroker.

inline ORVMathPoint2D operator+(const ORVMathPoint2D& p, const ORVMathVector2D& v) {
    return {p.x + v.x, p.y + v.y};
}
inline ORVMathPoint2D operator-(const ORVMathPoint2D& p, const ORVMathVector2D& v) {
    return {p.x - v.x, p.y - v.y};
}
inline ORVMathVector2D operator*(const ORVMathVector2D& v, double factor) {
    return {v.x * factor, v.y * factor};
}
inline ORVMathVector2D LeftOf(const ORVMathVector2D& v) { return {-v.y, v.x}; }
inline double Dot(const ORVMathVector2D& a, const ORVMathVector2D& b) { return a.x * b.x + a.y * b.y; }
inline double Cross(const ORVMathVector2D& a, const ORVMathVector2D& b) { return a.x * b.y - a.y * b.x; }
inline ORVMathPoint2D Mix(const ORVMathPoint2D& a, const ORVMathPoint2D& b, double t) {
    return {a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t};
}
/// Applies the linear part of a transformation to a vector.
inline ORVMathVector2D Turned(const ORVMathAffine2D& map, const ORVMathVector2D& v) {
    return {map.m11 * v.x + map.m12 * v.y, map.m21 * v.x + map.m22 * v.y};
}
