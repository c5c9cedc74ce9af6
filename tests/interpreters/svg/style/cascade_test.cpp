// SPDX-License-Identifier: Apache-2.0

// The order of the presentation steps, tested with whole elements.

#include <gtest/gtest.h>

#include "tests/support/built_model.h"
#include "tests/support/sketch_case.h"

namespace {

class CascadeTest : public testing::TestWithParam<SketchCase> {};
TEST_P(CascadeTest, GivesThePaint) { ExpectPaintedSketch(Drawing(GetParam().content), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    Shapes, CascadeTest,
    testing::Values(SketchCase{"StyleOverridesAttributes", "<rect fill='red' style='fill:blue'/>",
                               "rect(0,100 0,100):2 fill=#0000ff stroke=#000000"},
                    SketchCase{"PaintComesAfterDisplay", "<rect display='none' fill='red'/>",
                               "rect(0,100 0,100):2 fill=#ff0000 stroke=#000000"},
                    SketchCase{"DisplayWithoutPaintHides", "<rect display='none' fill=''/>",
                               "rect(0,100 0,100):0 fill=#000000 stroke=#000000"},
                    SketchCase{"DisplayInStyleIsIgnored",
                               "<rect fill='red' style='display:none;visibility:hidden'/>",
                               "rect(0,100 0,100):2 fill=#ff0000 stroke=#000000"},
                    SketchCase{"VisibleTurnsBothOn", "<rect fill='' visibility='visible'/>",
                               "rect(0,100 0,100):3 fill=#000000 stroke=#000000"},
                    SketchCase{"StyleColourComesTooLateForAttributes",
                               "<rect color='blue' fill='currentColor' style='color:red'/>",
                               "rect(0,100 0,100):2 fill=#0000ff stroke=#000000"},
                    SketchCase{"LetterSpacingInStyleChangesPercentages",
                               "<rect fill='red' width='50%' style='letter-spacing:10'/>",
                               "rect(0,100 5,100):2 fill=#ff0000 stroke=#000000"},
                    SketchCase{"SiblingsSeeNothing",
                               "<rect fill='red' style='letter-spacing:10'/><rect fill='' width='50%'/>",
                               "rect(0,100 0,100):2 fill=#ff0000 stroke=#000000 rect(0,100 100,100):2 "
                               "fill=#000000 stroke=#000000"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Texts, CascadeTest,
    testing::Values(SketchCase{"AnchorAttributeOverridesStyleOnText",
                               "<text fill='red' text-anchor='start' style='text-anchor:end'>a</text>",
                               "text(0,100 'a'):2 fill=#ff0000 stroke=#000000"},
                    SketchCase{"WeightAttributeOverridesStyleOnText",
                               "<text fill='red' font-weight='bold' style='font-weight:900'>a</text>",
                               "text(0,100 'a'):2 fill=#ff0000 stroke=#000000 w26"},
                    SketchCase{"SizeAttributeOverridesStyleOnText",
                               "<text fill='red' font-size='20' style='font-size:9'>a</text>",
                               "text(0,100 'a'):2 fill=#ff0000 stroke=#000000 h20"},
                    SketchCase{"PercentSizeMultipliesWhatTheStyleLeft",
                               "<text fill='red' font-size='2%' style='font-size:9'>a</text>",
                               "text(0,100 'a'):2 fill=#ff0000 stroke=#000000 h18"},
                    SketchCase{"StyleWinsOnGroups",
                               "<g font-size='20' style='font-size:9'><text fill='red'>a</text></g>",
                               "g{text(0,100 'a'):2 fill=#ff0000 stroke=#000000 h9}"}),
    kNameOfRow);

// Containers: the same steps in a different order, with the style last.
INSTANTIATE_TEST_SUITE_P(
    Groups, CascadeTest,
    testing::Values(SketchCase{"PaintComesAfterDisplay", "<g display='none' fill='red'><rect fill=''/></g>",
                               "g{rect(0,100 0,100):2 fill=#ff0000 stroke=#000000}"},
                    SketchCase{"HiddenReachesChildrenWithoutPaint",
                               "<g visibility='hidden' fill=''><rect fill=''/><rect fill='red'/></g>",
                               "g{rect(0,100 0,100):0 fill=#000000 stroke=#000000 "
                               "rect(0,100 0,100):2 fill=#ff0000 stroke=#000000}"},
                    SketchCase{"ColourComesBeforePaint",
                               "<g color='red' fill='currentColor'><rect fill=''/></g>",
                               "g{rect(0,100 0,100):2 fill=#ff0000 stroke=#000000}"},
                    SketchCase{"CurrentColourIsInherited",
                               "<g color='red' fill=''><rect fill='currentColor'/></g>",
                               "g{rect(0,100 0,100):2 fill=#ff0000 stroke=#000000}"},
                    SketchCase{"StyleOverridesEveryAttribute",
                               "<g fill='red' stroke='red' stroke-width='2' text-anchor='end' "
                               "font-weight='100' letter-spacing='5' style='fill:blue;stroke:none;"
                               "stroke-width:3;text-anchor:middle;font-weight:900;letter-spacing:inherit'>"
                               "<text fill=''>a</text></g>",
                               "g{text(0,100 'a'):2 fill=#0000ff stroke=#ff0000 w3 w27 a33 s5}"},
                    SketchCase{"OpacityCompoundsDownTheTree",
                               "<g fill='' opacity='.5'><g fill='' opacity='.5'><rect fill='' "
                               "opacity='.5'/></g></g><rect fill=''/>",
                               "g{g{rect(0,100 0,100):2 fill=#000000@32 stroke=#000000@32}} "
                               "rect(0,100 0,100):2 fill=#000000 stroke=#000000"}),
    kNameOfRow);

}  // namespace
