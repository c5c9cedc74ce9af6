// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/interpreters/svg2/call_sketch.h"

namespace {

struct Row {
    const char *name, *content, *calls;
};

template <std::size_t kCount>
void Check(const Row (&rows)[kCount]) {
    for (const Row& row : rows) EXPECT_EQ(SketchContent(row.content), row.calls) << row.name;
}

TEST(LayerTest, IsMadeWhereOpacityIsOfMoreThanOnePaint) {
    Check({
        {"group", "<g opacity='.5'><rect width='1' height='1'/></g>", "layer 0.5\n  0,0 1,1 fill #000000\n"},
        {"one paint", "<rect width='1' height='1' opacity='.5'/>", "0,0 1,1 fill #000000/128\n"},
        {"two paints", "<rect width='1' height='1' stroke='red' opacity='.5'/>",
         "layer 0.5\n  0,0 1,1 fill #000000 stroke #ff0000 1\n"},
        {"nothing", "<g opacity='0'><rect width='1' height='1'/></g>", ""},
        {"clamped", "<g opacity='7'><rect width='1' height='1'/></g>", "0,0 1,1 fill #000000\n"},
        {"blend mode", "<rect width='1' height='1' style='mix-blend-mode:multiply'/>",
         "layer 1 blend 1\n  0,0 1,1 fill #000000\n"},
        {"no attribute", "<rect width='1' height='1' mix-blend-mode='multiply'/>", "0,0 1,1 fill #000000\n"},
        {"isolation", "<g style='isolation:isolate'><rect width='1' height='1'/></g>",
         "layer 1\n  0,0 1,1 fill #000000\n"},
    });
}

TEST(ClipTest, IsAnOutlineWhereItsShapesDoNotOverlap) {
    Check({
        {"circle",
         "<clipPath id='c'><circle cx='5' cy='5' r='5'/></clipPath><rect width='9' height='9' "
         "clip-path='url(#c)'/>",
         "clip path 0,0 10,10\n  0,0 9,9 fill #000000\n"},
        {"two apart",
         "<clipPath id='c'><rect width='1' height='1'/><rect x='2' width='1' height='1' "
         "/></clipPath><rect width='9' height='9' clip-path='url(#c)'/>",
         "clip path 0,0 3,1\n  0,0 9,9 fill #000000\n"},
        {"two that overlap",
         "<clipPath id='c'><rect width='2' height='2'/><circle r='1'/></clipPath>"
         "<rect width='9' height='9' clip-path='url(#c)'/>",
         "layer 1\n  mask by opacity 0,0 100,100\n    0,0 2,2 fill #000000\n    -1,-1 1,1 fill #000000\n"
         "  0,0 9,9 fill #000000\n"},
        {"rule",
         "<clipPath id='c' clip-rule='evenodd'><rect width='1' height='1'/></clipPath>"
         "<rect width='9' height='9' clip-path='url(#c)'/>",
         "clip path 0,0 1,1 evenodd\n  0,0 9,9 fill #000000\n"},
        {"box units",
         "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='.5' height='1'/>"
         "</clipPath><rect x='10' width='10' height='10' clip-path='url(#c)'/>",
         "clip path 10,0 15,10\n  10,0 20,10 fill #000000\n"},
        {"transform",
         "<clipPath id='c' transform='translate(5)'><rect width='1' height='1' "
         "transform='scale(2)'/></clipPath><rect width='9' height='9' clip-path='url(#c)'/>",
         "clip path 5,0 7,2\n  0,0 9,9 fill #000000\n"},
        {"clip of the clip",
         "<clipPath id='a'><rect width='1' height='1'/></clipPath><clipPath id='b' "
         "clip-path='url(#a)'><rect width='2' height='2'/></clipPath>"
         "<rect width='9' height='9' clip-path='url(#b)'/>",
         "clip path 0,0 1,1\n  clip path 0,0 2,2\n    0,0 9,9 fill #000000\n"},
        {"empty", "<clipPath id='c'/><rect width='9' height='9' clip-path='url(#c)'/>", ""},
        {"hidden child",
         "<clipPath id='c'><rect width='1' height='1' visibility='hidden'/></clipPath>"
         "<rect width='9' height='9' clip-path='url(#c)'/>",
         ""},
        {"groups do not count",
         "<clipPath id='c'><g><rect width='1' height='1'/></g></clipPath>"
         "<rect width='9' height='9' clip-path='url(#c)'/>",
         ""},
        {"lost", "<rect width='9' height='9' clip-path='url(#none)'/>", "0,0 9,9 fill #000000\n"},
        {"itself",
         "<clipPath id='c' clip-path='url(#c)'><rect width='1' height='1'/></clipPath>"
         "<rect width='9' height='9' clip-path='url(#c)'/>",
         "clip path 0,0 1,1\n  0,0 9,9 fill #000000\n"},
        {"box without area",
         "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='1' "
         "height='1'/></clipPath><path d='M0 0h9' stroke='red' clip-path='url(#c)'/>",
         ""},
    });
}

// With clipPathUnits="objectBoundingBox", the corners of the clip show which box is used.
TEST(ClipTest, BoxUnitsAreOfAllThatAnElementDraws) {
    const struct {
        const char *content, *box;
    } kRows[] = {
        {"<g clip-path='url(#c)'><rect x='1' y='2' width='3' height='4'/><circle cx='9' cy='9' r='1'/></g>",
         "1,2 10,10"},
        {"<g clip-path='url(#c)'><g transform='translate(5) scale(2)'><path d='M0 0C0 4 4 4 4 0'/></g></g>",
         "5,0 13,6"},
        {"<g clip-path='url(#c)'><rect width='9' height='9' display='none'/><rect width='2' height='2' "
         "visibility='hidden'/></g>",
         "0,0 2,2"},
        {"<use clip-path='url(#c)' href='#r' x='5'/>", "5,0 9,4"},
        {"<use clip-path='url(#c)' href='#s' width='20' height='10'/>", "5,0 15,10"},
        {"<svg clip-path='url(#c)' x='3' width='10' height='10' viewBox='0 0 1 1'><rect width='1' "
         "height='1'/></svg>",
         "3,0 13,10"},
        {"<switch clip-path='url(#c)'><rect systemLanguage='xx' width='9' height='9'/><rect width='2' "
         "height='3'/></switch>",
         "0,0 2,3"},
        {"<g clip-path='url(#c)'><image x='1' y='2' width='3' height='4'/></g>", "1,2 4,6"},
        {"<text clip-path='url(#c)' x='10' y='50' font-family='DejaVu Sans Mono' font-size='10'>abc</text>",
         "10,40.72 28.06,52.36"},
        {"<g clip-path='url(#c)'><g id='loop'><use href='#loop'/><rect width='1' height='1'/></g></g>",
         "0,0 1,1"},
    };
    for (const auto& row : kRows) {
        const std::string calls = SketchContent(
            "<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='1' height='1'/></clipPath>"
            "<defs><rect id='r' width='4' height='4'/><symbol id='s' viewBox='0 0 1 1'><rect width='1' "
            "height='1'/></symbol></defs>" +
            std::string(row.content));
        EXPECT_EQ(calls.substr(0, calls.find('\n')), std::string("clip path ") + row.box) << row.content;
    }
}

TEST(ClipTest, TakesShapesOfStyleSheets) {
    Check({
        {"inset", "<rect width='10' height='20' style='clip-path:inset(1px 2px)'/>",
         "clip path 2,1 8,19\n  0,0 10,20 fill #000000\n"},
        {"circle", "<rect width='10' height='10' style='clip-path:circle(2px at 5px 5px)'/>",
         "clip path 3,3 7,7\n  0,0 10,10 fill #000000\n"},
        {"inset with a corner", "<rect width='10' height='10' style='clip-path:inset(0 round 4px 0 0)'/>",
         "clip path 0,0 10,10\n  0,0 10,10 fill #000000\n"},
        {"inset with a negative corner",
         "<rect width='10' height='10' style='clip-path:inset(0 round -4px)'/>", "0,0 10,10 fill #000000\n"},
        {"ellipse of one radius", "<rect width='10' height='20' style='clip-path:ellipse(2px)'/>",
         "0,0 10,20 fill #000000\n"},
        {"closest side", "<rect width='10' height='20' style='clip-path:circle()'/>",
         "clip path 0,5 10,15\n  0,0 10,20 fill #000000\n"},
        {"ellipse", "<rect width='10' height='20' style='clip-path:ellipse(50% 25%)'/>",
         "clip path 0,5 10,15\n  0,0 10,20 fill #000000\n"},
        {"polygon", "<rect width='10' height='10' style='clip-path:polygon(evenodd,0 0,50% 0,5px 5px)'/>",
         "clip path 0,0 5,5 evenodd\n  0,0 10,10 fill #000000\n"},
        {"path", "<rect width='10' height='10' style=\"clip-path:path('M0 0h3v3z')\"/>",
         "clip path 0,0 3,3\n  0,0 10,10 fill #000000\n"},
        {"view box", "<rect width='10' height='10' style='clip-path:inset(10px) view-box'/>",
         "clip path 10,10 90,90\n  0,0 10,10 fill #000000\n"},
        {"box alone",
         "<rect width='10' height='10' stroke='red' stroke-width='2' "
         "style='clip-path:stroke-box'/>",
         "clip path -1,-1 11,11\n  0,0 10,10 fill #000000 stroke #ff0000 2\n"},
    });
}

TEST(ClipTest, CountsPercentagesOfTheViewport) {
    // 50% of the viewport is 50, as outside of clip paths. In units of the bounding box, this is far outside
    // the shape.
    EXPECT_EQ(SketchContent("<clipPath id='c' clipPathUnits='objectBoundingBox'><rect x='50%' width='1' "
                            "height='1'/></clipPath><rect width='10' height='10' clip-path='url(#c)'/>"),
              "clip path 500,0 510,10\n  0,0 10,10 fill #000000\n");
}

TEST(ClipTest, OfASymbolHasItsBox) {
    EXPECT_EQ(
        SketchContent("<clipPath id='c' clipPathUnits='objectBoundingBox'><rect width='1' height='1'/>"
                      "</clipPath><symbol id='s' clip-path='url(#c)' viewBox='0 0 2 2' overflow='visible'>"
                      "<rect width='2' height='1'/></symbol><use href='#s' width='20' height='20'/>"),
        "clip path 0,0 20,10\n  0,0 20,10 fill #000000\n");
}

TEST(MaskTest, IsDrawnBeforeTheContent) {
    Check({
        {"linear light",
         "<mask id='m' color-interpolation='linearRGB'><rect width='9' height='9' fill='white'/></mask><rect "
         "width='10' height='10' mask='url(#m)'/>",
         "layer 1\n  mask by linear light -1,-1 11,11\n    0,0 9,9 fill #ffffff\n  0,0 10,10 fill #000000\n"},
        {"light",
         "<mask id='m'><rect width='9' height='9' fill='white'/></mask><rect width='10' height='10' "
         "mask='url(#m)'/>",
         "layer 1\n  mask by light -1,-1 11,11\n    0,0 9,9 fill #ffffff\n  0,0 10,10 fill #000000\n"},
        {"opacity",
         "<mask id='m' mask-type='alpha' maskUnits='userSpaceOnUse' x='1' y='2' width='3' "
         "height='4'/><rect width='10' height='10' mask='url(#m)'/>",
         "layer 1\n  mask by opacity 1,2 4,6\n  0,0 10,10 fill #000000\n"},
        {"content in box units",
         "<mask id='m' maskContentUnits='objectBoundingBox'><rect width='.5' "
         "height='1'/></mask><rect width='10' height='10' mask='url(#m)'/>",
         "layer 1\n  mask by light -1,-1 11,11\n    0,0 5,10 fill #000000\n  0,0 10,10 fill #000000\n"},
        {"mask of the mask",
         "<mask id='a'><rect width='1' height='1'/></mask><mask id='b' "
         "mask='url(#a)'><rect width='2' height='2'/></mask>"
         "<rect width='10' height='10' mask='url(#b)'/>",
         "layer 1\n  mask by light -1,-1 11,11\n    layer 1\n      mask by light -1,-1 11,11\n"
         "        0,0 1,1 fill #000000\n      0,0 2,2 fill #000000\n  0,0 10,10 fill #000000\n"},
        {"with opacity", "<mask id='m'/><rect width='10' height='10' opacity='.5' mask='url(#m)'/>",
         "layer 0.5\n  mask by light -1,-1 11,11\n  0,0 10,10 fill #000000\n"},
        {"lost", "<rect width='10' height='10' mask='url(#none)'/>", "0,0 10,10 fill #000000\n"},
        {"itself",
         "<mask id='m'><rect width='2' height='2' mask='url(#m)'/></mask>"
         "<rect width='10' height='10' mask='url(#m)'/>",
         "layer 1\n  mask by light -1,-1 11,11\n    0,0 2,2 fill #000000\n  0,0 10,10 fill #000000\n"},
    });
}

TEST(SVG2ClipTest, AClipThatBeginsAgainStaysOpen) {
    const std::string clip = "<clipPath id='c'><circle cx='5' cy='5' r='5'/></clipPath>";
    const std::string other = "<clipPath id='d'><circle cx='5' cy='5' r='4'/></clipPath>";
    EXPECT_EQ(SketchContent(clip + other +
                            "<g clip-path='url(#c)'><path d='M0 0h1v1z'/></g>"
                            "<path d='M0 0h2v2z' clip-path='url(#c)'/>"
                            "<path d='M0 0h3v3z' clip-path='url(#d)'/>"
                            "<path d='M0 0h4v4z'/>"
                            "<path d='M0 0h5v5z' clip-path='url(#d)' transform='translate(1)'/>"),
              "clip path 0,0 10,10\n  0,0 1,1 fill #000000\n  0,0 2,2 fill #000000\n"
              "clip path 1,1 9,9\n  0,0 3,3 fill #000000\n"
              "0,0 4,4 fill #000000\n"
              "clip path 2,1 10,9\n  1,0 6,5 fill #000000\n");
}

}  // namespace
