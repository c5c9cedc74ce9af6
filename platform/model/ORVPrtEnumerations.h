// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/namespace.h"

namespace orvprint {

/// How a primitive that can be filled is drawn.
enum ORVPrtDrawStyle : int {
    kDrawNothing = 0,
    kDrawStroke = 1,
    kDrawFill = 2,
    kDrawFillAndStroke = 3,
    kDrawUndecided = 4,  ///< drawn as kDrawFillAndStroke
};

/// Whether a draw style fills the primitive.
constexpr bool ORVFills(int drawStyle) {
    return drawStyle == kDrawFill || drawStyle == kDrawFillAndStroke || drawStyle == kDrawUndecided;
}
/// Whether a draw style strokes the outline.
constexpr bool ORVStrokes(int drawStyle) {
    return drawStyle == kDrawStroke || drawStyle == kDrawFillAndStroke || drawStyle == kDrawUndecided;
}

/// Line types, caps and joins share one enumeration.
enum ORVPrtLineAttribute : int {
    kLineSolid = 0,
    kLineUserDash = 7,
    kCapButt = 10,
    kCapSquare = 11,
    kCapRound = 12,
    kJoinMiter = 13,
    kJoinRound = 14,
    kJoinBevel = 15,
};

/// Type of paint of a fill.
enum ORVPrtFillStyle : int { kFillSolid = 1, kFillPattern = 2 };
/// Which points are inside an outline that crosses itself.
enum ORVPrtFillRule : int { kFillNonZero = 0, kFillEvenOdd = 1 };

/// Text weights and anchors share one enumeration. An anchor is kAnchorFirst + 4 h + v with h = 0 start, 1
/// middle, 2 end and v = 0 descender, 1 baseline, 2 half height, 3 ascender.
enum ORVPrtTextAttribute : int {
    kWeightLight = 24,
    kWeightNormal = 25,
    kWeightBold = 26,
    kWeightHeavy = 27,
    kAnchorFirst = 28,
    kAnchorStartBaseline = 29,
    kAnchorLast = 39,
};

/// Direction of a text.
enum ORVPrtWritingMode : int { kLeftToRight = 0, kRightToLeft = 1, kTopToBottom = 2 };

/// Where a viewer opens the target of a link.
enum ORVPrintLinkShow : int { kLinkShowUnset = 0, kLinkShowNew = 1, kLinkShowReplace = 2 };

/// Unit code of pages with coordinates in 1/90 inch.
inline constexpr int kUnitNinetiethInch = 1;

}  // namespace orvprint
