// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <limits>
#include <string_view>

#include "platform/mathematics/geometry.h"

/// How far the corners of an outline reach when their edges go on until they meet, in stroke widths.
struct Corners {
    /// The limit that the renderer has.
    static constexpr double kLimit = 4.0;
    double leastBeyond = std::numeric_limits<double>::infinity();  ///< of those that are past it
    double mostWithin = 0.0;                                       ///< of the others

    /// A corner between two directions; those without length make none.
    void Add(const ORVMathVector2D& in, const ORVMathVector2D& out);
    /// Whether another limit cuts other corners.
    bool DependOn(double limit) const { return limit > kLimit ? leastBeyond <= limit : mostWithin > limit; }
};

/// What path data draw in SVG, and where the interpreter draws them otherwise.
struct PathShape {
    ORVMathBox2D box;          ///< of all points and of whole ellipses: at least what is drawn
    bool hasDot = false;       ///< a subpath of segments without any length, on which caps would stand
    bool hasOtherArc = false;  ///< an arc that the interpreter draws elsewhere
    bool hasOtherSmooth =
        false;  ///< an S behind Q or T, or a T behind C or S, that takes its control point over
    bool hasJoinedEnds = false;  ///< a subpath that comes back to its start and is not closed
    bool hasLooseArc = false;    ///< a subpath that begins with an arc and is closed by a line
    Corners corners;
    std::size_t readable = 0;  ///< bytes that SVG takes
    bool isReadable = true;    ///< all of it
};
PathShape ReadPathShape(std::string_view data);
