// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/namespace.h"

namespace orvprint {

/// How a primitive with an inside is drawn.
enum ORVPrtDrawStyle : int {
    kDrawNothing = 0,
    kDrawStroke = 1,
    kDrawFill = 2,
    kDrawFillAndStroke = 3,
    kDrawUndecided = 4,  ///< drawn as kDrawFillAndStroke
};

/// Whether a draw style fills the inside.
constexpr bool ORVFills(int drawStyle) {
    return drawStyle == kDrawFill || drawStyle == kDrawFillAndStroke || drawStyle == kDrawUndecided;
}
/// Whether a draw style strokes the outline.
constexpr bool ORVStrokes(int drawStyle) {
    return drawStyle == kDrawStroke || drawStyle == kDrawFillAndStroke || drawStyle == kDrawUndecided;
}

/// One enumeration of the model serves line types, caps and joins.
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

/// What an inside is painted with.
enum ORVPrtFillStyle : int { kFillSolid = 1, kFillPattern = 2 };
/// Which points of an outline that crosses itself are inside.
enum ORVPrtFillRule : int { kFillNonZero = 0, kFillEvenOdd = 1 };

/// One enumeration of the model serves text weights and anchors. An anchor is kAnchorFirst + 4 h + v with
/// h = 0 start, 1 middle, 2 end and v = 0 descender line, 1 baseline, 2 half height, 3 ascender line.
enum ORVPrtTextAttribute : int {
    kWeightLight = 24,
    kWeightNormal = 25,
    kWeightBold = 26,
    kWeightHeavy = 27,
    kAnchorFirst = 28,
    kAnchorStartBaseline = 29,
    kAnchorLast = 39,
};

/// How the characters of a text follow each other.
enum ORVPrtWritingMode : int { kLeftToRight = 0, kRightToLeft = 1, kTopToBottom = 2 };

/// What a viewer does with the target of a link.
enum ORVPrintLinkShow : int { kLinkShowUnset = 0, kLinkShowNew = 1, kLinkShowReplace = 2 };

/// Unit code of a page whose coordinates are in 1/90 inch.
inline constexpr int kUnitNinetiethInch = 1;

}  // namespace orvprint
