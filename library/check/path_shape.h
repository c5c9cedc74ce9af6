// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <limits>
#include <string_view>

#include "platform/mathematics/geometry.h"

/// Miter lengths of the corners of an outline, in stroke widths.
struct Corners {
    /// The renderer's fixed miter limit.
    static constexpr double kLimit = 4.0;
    double leastBeyond = std::numeric_limits<double>::infinity();  ///< smallest miter length above kLimit
    double mostWithin = 0.0;                                       ///< greatest miter length within kLimit

    /// Adds the corner between two directions; zero-length directions are ignored.
    void Add(const ORVMathVector2D& in, const ORVMathVector2D& out);
    /// Whether a different miter limit would bevel different corners.
    bool DependOn(double limit) const { return limit > kLimit ? leastBeyond <= limit : mostWithin > limit; }
};

/// What path data draw according to SVG, and where the interpreter draws them differently.
struct PathShape {
    ORVMathBox2D box;             ///< of all points and whole ellipses; contains everything drawn
    bool hasDot = false;          ///< has a zero-length subpath, where caps are drawn
    bool hasOtherArc = false;     ///< has an arc that the interpreter draws elsewhere
    bool hasOtherSmooth = false;  ///< an S after Q or T, or a T after C or S, that reuses its control point
    bool hasJoinedEnds = false;   ///< has a subpath that returns to its start without being closed
    bool hasLooseArc = false;     ///< has a subpath that starts with an arc and is closed by a line
    Corners corners;
    std::size_t readable = 0;  ///< number of bytes that are valid in SVG
    bool isReadable = true;    ///< all bytes are valid
};
PathShape ReadPathShape(std::string_view data);
