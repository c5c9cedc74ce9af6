#pragma once

#include <cstddef>
#include <string_view>

#include "platform/mathematics/geometry.h"

/// What path data draw in SVG, and where the interpreter draws them otherwise.
struct PathShape {
    ORVMathBox2D box;          ///< of all points and of whole ellipses: at least what is drawn
    bool hasDot = false;       ///< a subpath of segments without any length, on which caps would stand
    bool hasOtherArc = false;  ///< an arc that the interpreter draws elsewhere
    bool hasOtherSmooth =
        false;  ///< an S behind Q or T, or a T behind C or S, that takes its control point over
    std::size_t readable = 0;  ///< bytes that SVG takes
    bool isReadable = true;    ///< all of it
};
PathShape ReadPathShape(std::string_view data);
