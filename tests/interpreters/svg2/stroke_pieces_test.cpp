// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/drawing/stroke_pieces.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

using svg2::Contour;
using Join = ORVPrintStroke::Join;

const Contour kLine{{{0, 0}, {3, 0}, {5, 0}}, false};
const Contour kSquare{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}, true};
// Sixty degrees at each corner.
const Contour kTriangle{{{0, 0}, {2, 0}, {1, std::sqrt(3.0)}}, true};
// Ninety degrees in the middle; the closing line, which would add sharper corners, is missing.
const Contour kAngle{{{0, 0}, {1, 0}, {1, 1}}, false};
const Contour kBack{{{0, 0}, {1, 0}, {0, 0}}, false};

TEST(StrokePiecesTest, TipsOfMiteredJoinsReachFromTheContour) {
    const struct {
        const char* name;
        Contour contour;
        Join join;
        double miterLimit, tip;
    } kRows[] = {
        {"a point", {{{1, 1}}, false}, Join::kMiter, 4.0, 1.0},
        {"straight on", kLine, Join::kMiter, 4.0, 1.0},
        {"square", kSquare, Join::kMiter, 4.0, std::sqrt(2.0)},
        {"triangle", kTriangle, Join::kMiter, 4.0, 2.0},
        {"triangle beyond the limit", kTriangle, Join::kMiter, 1.9, 1.0},
        {"clipped at the limit", kTriangle, Join::kMiterClip, 1.9, 1.9},
        {"clipped, within the limit", kTriangle, Join::kMiterClip, 4.0, 2.0},
        {"round", kTriangle, Join::kRound, 4.0, 1.0},
        {"bevelled", kTriangle, Join::kBevel, 4.0, 1.0},
        {"open", kAngle, Join::kMiter, 9.0, std::sqrt(2.0)},
        {"back", kBack, Join::kMiter, 1e9, 1.0},
    };
    for (const auto& row : kRows) {
        ORVPrintStroke pen;
        pen.join = row.join;
        pen.miterLimit = row.miterLimit;
        EXPECT_NEAR(svg2::LongestTip(row.contour, pen), row.tip, 1e-9) << row.name;
    }
}

}  // namespace
