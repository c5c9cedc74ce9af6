// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "tests/library/check/checked.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/support/built_model.h"
#include "tests/support/named_rows.h"

// The check of paint must match the output: it reports a finding if, and only if, a shape is filled or
// stroked differently from SVG.

namespace {

struct Painted {
    bool isFilled = false, isStroked = false;
    bool operator==(const Painted&) const = default;
};

Painted PaintedAs(const std::string& content) {
    const BuiltModel built(Drawing(content), {.backend = Backend::kLight});
    RecordingGenerator generator;
    EXPECT_EQ(ORVPrintModelRender(built.GetModel(), &generator, {}).Draw(), 1);
    Painted painted;
    for (const std::string& line : generator.GetDrawn()) {
        painted.isFilled |= line.find("fill") != std::string::npos;
        painted.isStroked |= line.find("stroke") != std::string::npos;
    }
    return painted;
}

struct ShapeCase {
    const char* name;
    const char* element;  // attributes are appended
    bool hasInside;
};
class DrawnTest : public testing::TestWithParam<ShapeCase> {};

TEST_P(DrawnTest, IsFoundWhereItDiffers) {
    std::size_t differing = 0, same = 0;
    for (const std::string fill : {"", "none", "red"})
        for (const std::string stroke : {"", "none", "red"})
            for (const std::string hiding :
                 {"", "display='none'", "visibility='hidden'", "visibility='visible'"})
                for (const bool isOnGroup : {false, true}) {
                    std::string paint;
                    if (!fill.empty()) paint += " fill='" + fill + "'";
                    if (!stroke.empty()) paint += " stroke='" + stroke + "'";
                    const std::string content =
                        isOnGroup ? "<g " + hiding + ">" + GetParam().element + paint + "/></g>"
                                  : GetParam().element + paint + " " + hiding + "/>";
                    const bool isShown = hiding.empty() || hiding == "visibility='visible'";
                    const Painted expected{isShown && GetParam().hasInside && fill != "none",
                                           isShown && stroke == "red"};
                    const bool differs = PaintedAs(content) != expected;
                    EXPECT_EQ(KindsOf(CheckText(CheckedDrawing(content))) != "", differs)
                        << content << " " << KindsOf(CheckText(CheckedDrawing(content)));
                    ++(differs ? differing : same);
                }
    EXPECT_GT(differing, 0U);
    EXPECT_GT(same, 0U);
}

INSTANTIATE_TEST_SUITE_P(Shapes, DrawnTest,
                         testing::Values(ShapeCase{"Rectangle", "<rect width='9' height='9'", true},
                                         ShapeCase{"Circle", "<circle r='9'", true},
                                         ShapeCase{"Line", "<line x2='9' y2='9'", false},
                                         ShapeCase{"Polyline", "<polyline points='1,1 9,1 9,9'", true},
                                         ShapeCase{"StraightPolyline", "<polyline points='1,1 9,9'", false},
                                         ShapeCase{"Polygon", "<polygon points='1,1 9,1 9,9'", true},
                                         ShapeCase{"Path", "<path d='M1 1 L9 1 9 9 Z'", true},
                                         ShapeCase{"PathOfALine", "<path d='M1 1 L9 9'", false},
                                         ShapeCase{"PathOfACurve", "<path d='M1 1 C9 1 9 1 9 9'", true},
                                         ShapeCase{"PathOfAnArc", "<path d='M1 1 A5 5 0 0 1 9 9'", true},
                                         ShapeCase{"PathOfCurves", "<path d='M1 1 Q9 1 9 9 T1 9'", true}),
                         kNameOfRow);

}  // namespace
