// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "tests/interpreters/svg2/call_sketch.h"
#include "tests/support/test_texts.h"

namespace {

struct Row {
    const char *name, *content, *calls;
};

template <std::size_t kCount>
void Check(const Row (&rows)[kCount]) {
    for (const Row& row : rows) EXPECT_EQ(SketchContent(row.content), row.calls) << row.name;
}

TEST(StrokeTest, HasItsWidthAndDashes) {
    Check({
        {"width", "<rect width='9' height='9' fill='none' stroke='red' stroke-width='2'/>",
         "0,0 9,9 stroke #ff0000 2\n"},
        {"percentage", "<rect width='9' height='9' fill='none' stroke='red' stroke-width='5%'/>",
         "0,0 9,9 stroke #ff0000 5\n"},
        {"zero", "<rect width='9' height='9' fill='none' stroke='red' stroke-width='0'/>", ""},
        {"negative is as absent",
         "<g stroke-width='3'><rect width='9' height='9' fill='none' stroke='red' "
         "stroke-width='-2'/></g>",
         "0,0 9,9 stroke #ff0000 3\n"},
        {"dashes",
         "<path d='M0 0h9' fill='none' stroke='red' stroke-dasharray='1 2,3' stroke-dashoffset='-1'/>",
         "0,0 9,0 stroke #ff0000 1 -1 -2 -3 -1 -2 -3 from 11\n"},
        {"negative dash is solid", "<path d='M0 0h9' fill='none' stroke='red' stroke-dasharray='1 -2'/>",
         "0,0 9,0 stroke #ff0000 1\n"},
        {"zero dashes are solid", "<path d='M0 0h9' fill='none' stroke='red' stroke-dasharray='0 0'/>",
         "0,0 9,0 stroke #ff0000 1\n"},
        {"path length", "<path d='M0 0h10' pathLength='5' fill='none' stroke='red' stroke-dasharray='1'/>",
         "0,0 10,0 stroke #ff0000 1 -2 -2\n"},
        {"non-scaling",
         "<g transform='scale(10)'><path d='M0 0h1' fill='none' stroke='red' "
         "vector-effect='non-scaling-stroke'/></g>",
         "0,0 10,0 stroke #ff0000 1\n"},
        {"stroke first", "<rect width='9' height='9' stroke='red' paint-order='stroke'/>",
         "0,0 9,9 stroke #ff0000 1\n0,0 9,9 fill #000000\n"},
        {"opacities multiply",
         "<rect width='9' height='9' fill='rgba(255,0,0,.5)' fill-opacity='50%' "
         "opacity='.5'/>",
         "0,0 9,9 fill #ff0000/32\n"},
    });
}

TEST(GradientTest, IsResolvedOnTheShape) {
    Check({
        {"box units",
         "<linearGradient id='g'><stop stop-color='red'/><stop offset='1' "
         "stop-color='blue'/></linearGradient><rect x='10' width='20' height='10' fill='url(#g)'/>",
         "10,0 30,10 fill linear(10,0 to 30,0, #ff0000 0, #0000ff 1)\n"},
        {"user space",
         "<linearGradient id='g' gradientUnits='userSpaceOnUse' x1='5' x2='50%' y2='2' "
         "spreadMethod='reflect'><stop/><stop offset='50%' stop-opacity='.5'/></linearGradient>"
         "<rect width='20' height='10' fill='url(#g)'/>",
         "0,0 20,10 fill linear(5,0 to 50,2 reflect, #000000 0, #000000/128 0.5)\n"},
        {"transform",
         "<linearGradient id='g' gradientUnits='userSpaceOnUse' x2='10' "
         "gradientTransform='translate(5)'><stop/><stop offset='1'/></linearGradient>"
         "<rect width='20' height='10' fill='url(#g)' transform='scale(2)'/>",
         "0,0 40,20 fill linear(10,0 to 30,0, #000000 0, #000000 1)\n"},
        {"radial",
         "<radialGradient id='g' gradientUnits='userSpaceOnUse' cx='50' cy='40' r='30' fx='45' "
         "fr='2'><stop stop-color='red'/><stop offset='1'/></radialGradient>"
         "<rect width='9' height='9' fill='url(#g)'/>",
         "0,0 9,9 fill radial(45,40 to 50,40 r 2 to 30, #ff0000 0, #000000 1)\n"},
        {"template",
         "<linearGradient id='a' x2='50%' spreadMethod='repeat'><stop stop-color='red'/><stop "
         "offset='1'/></linearGradient><linearGradient id='b' href='#a' x1='10%'/>"
         "<rect width='10' height='10' fill='url(#b)'/>",
         "0,0 10,10 fill linear(1,0 to 5,0 repeat, #ff0000 0, #000000 1)\n"},
        {"templates in a circle",
         "<linearGradient id='a' href='#b'><stop stop-color='red'/></linearGradient>"
         "<linearGradient id='b' href='#a'/><rect width='9' height='9' "
         "fill='url(#b)'/>",
         "0,0 9,9 fill #ff0000\n"},
        {"offsets ascend",
         "<linearGradient id='g'><stop offset='.5' stop-color='red'/><stop "
         "offset='.2'/><stop offset='3' stop-color='blue'/></linearGradient>"
         "<rect width='9' height='9' fill='url(#g)'/>",
         "0,0 9,9 fill linear(0,0 to 9,0, #ff0000 0.5, #000000 0.5, #0000ff 1)\n"},
        {"one stop",
         "<linearGradient id='g'><stop stop-color='red'/></linearGradient>"
         "<rect width='9' height='9' fill='url(#g)'/>",
         "0,0 9,9 fill #ff0000\n"},
        {"no stop", "<linearGradient id='g'/><rect width='9' height='9' fill='url(#g) red'/>", ""},
        {"no length",
         "<linearGradient id='g' x2='0'><stop stop-color='red'/><stop "
         "stop-color='blue'/></linearGradient><rect width='9' height='9' fill='url(#g)'/>",
         "0,0 9,9 fill #0000ff\n"},
        {"singular",
         "<linearGradient id='g' gradientTransform='scale(0)'><stop/><stop "
         "offset='1'/></linearGradient><rect width='9' height='9' fill='url(#g) red'/>",
         ""},
        {"box without area",
         "<linearGradient id='g'><stop/><stop offset='1'/></linearGradient>"
         "<path d='M0 0h9' stroke='url(#g) red'/>",
         "0,0 9,0 fill #000000 stroke #ff0000 1\n"},
        {"lost", "<rect width='9' height='9' fill='url(#none) blue'/>", "0,0 9,9 fill #0000ff\n"},
        {"lost without fallback", "<rect width='9' height='9' fill='url(#none)'/>", ""},
        {"quoted",
         "<linearGradient id='g'><stop stop-color='red'/></linearGradient>"
         "<rect width='9' height='9' fill=\"url( '#g' )\"/>",
         "0,0 9,9 fill #ff0000\n"},
        {"fill opacity",
         "<linearGradient id='g'><stop stop-color='red'/><stop offset='1'/></linearGradient>"
         "<rect width='9' height='9' fill='url(#g)' fill-opacity='.5'/>",
         "0,0 9,9 fill linear(0,0 to 9,0, #ff0000/128 0, #000000/128 1)\n"},
        {"current colour of the stop",
         "<linearGradient id='g' color='lime'><stop "
         "stop-color='currentColor'/></linearGradient>"
         "<rect width='9' height='9' color='red' fill='url(#g)'/>",
         "0,0 9,9 fill #00ff00\n"},
    });
}

// A file with a hundred thousand separate dots would be large.
TEST(PatternTest, ManyPlainTilesAreLeftToGeneratorsThatRepeatThem) {
    const std::string rect = "<rect x='10' y='10' width='80' height='80' fill='url(#p)'/>";
    const auto pattern = [&](const std::string& attributes, const std::string& content) {
        return "<pattern id='p' patternUnits='userSpaceOnUse' " + attributes + ">" + content + "</pattern>" +
               rect;
    };
    const std::string dot = "<rect width='1' height='1'/>";
    EXPECT_EQ(SketchContent(pattern("width='2' height='2'", dot), true),
              "clip path 10,10 90,90\n  tiles 0,0 2,2 every 2,2 from 0,0 on 10,10 90,90\n"
              "    0,0 1,1 fill #000000\n");
    // Lengths are in page units, which formats round.
    EXPECT_EQ(SketchContent(pattern("x='.01' width='.02' height='.02' patternTransform='scale(100)'",
                                    "<rect width='.01' height='.01'/>"),
                            true),
              "clip path 10,10 90,90\n  tiles 1,0 3,2 every 2,2 from 0,0 on 10,10 90,90\n"
              "    1,0 2,1 fill #000000\n");
    // Tiles are clipped, whatever "overflow" says.
    EXPECT_EQ(SketchContent(pattern("width='2' height='2' overflow='visible'", dot), true),
              SketchContent(pattern("width='2' height='2'", dot), true));
    // A line that the cell holds, with the tips of its joins, leaves no gaps.
    const std::string corner = "<path d='M.5 .5h1v1z' stroke='red' stroke-width='.3' stroke-miterlimit='";
    EXPECT_NE(SketchContent(pattern("width='2' height='2'", corner + "9'/>"), true).find("tiles 0,0 2,2"),
              std::string::npos);
    // A few tiles remain vector graphics.
    for (const std::string& other :
         {pattern("width='8' height='8'", dot),
          // Viewers show gaps between pattern cells.
          pattern("width='2' height='2'", "<rect width='2' height='1'/>"),
          pattern("width='2' height='2'", "<path d='M1 0v2' stroke='red' stroke-width='.5'/>"),
          pattern("width='2' height='2'", dot + "<rect x='1' y='1' width='1' height='1'/>")})
        EXPECT_EQ(SketchContent(other, true), SketchContent(other)) << other;
    const std::string unlimited =
        pattern("width='.0001' height='.0001'", "<rect width='.0001' height='.00005'/>");
    for (const bool takesTiles : {true, false})
        EXPECT_NE(SketchContent(unlimited, takesTiles).find("result"), std::string::npos);
}

TEST(PatternTest, TilesOfOtherContentAreOfferedAsSuch) {
    const auto pattern = [](const std::string& id, const std::string& attributes,
                            const std::string& content) {
        return "<pattern id='" + id + "' patternUnits='userSpaceOnUse' height='5' " + attributes + ">" +
               content + "</pattern>";
    };
    const std::string faint = "<g opacity='.5'><rect width='1' height='1'/></g>";
    const auto rect = [](const std::string& id, const std::string& attributes = {}) {
        return "<rect width='10' height='5' fill='url(#" + id + ")' " + attributes + "/>";
    };
    const auto tiles = [](int key, const std::string& fill) {
        return "  mixed tiles " + std::to_string(key) + ": 0,0 5,5 every 5,5 from 0,0 on 0,0 10,5\n    " +
               fill;
    };
    const std::string dot = "layer 0.5\n      0,0 1,1 fill #000000\n";
    // Tiles with the same content have the same number; others do not.
    EXPECT_EQ(SketchContent(pattern("p", "width='5'", faint) + pattern("q", "width='5'", faint) + rect("p") +
                                rect("p") + rect("q") + rect("p"),
                            true),
              "clip path 0,0 10,5\n" + tiles(1, dot) + tiles(1, dot) + tiles(2, dot) + tiles(1, dot));
    const std::string scaled =
        SketchContent(pattern("p", "width='5'", faint) + rect("p") + rect("p", "transform='scale(2)'"), true);
    EXPECT_NE(scaled.find("mixed tiles 2"), std::string::npos) << scaled;
    // One tile is drawn as it is.
    const std::string single = pattern("p", "width='10'", faint) + rect("p");
    EXPECT_EQ(SketchContent(single, true), SketchContent(single));
}

/// The kinds of tiles of a page, in order.
std::string KindsOfTiles(const std::string& calls) {
    std::string kinds;
    for (std::size_t at = calls.find("tiles "); at != std::string::npos; at = calls.find("tiles ", at + 1)) {
        const std::string before = calls.substr(0, at);
        kinds += before.ends_with("heavy ") ? "heavy " : before.ends_with("mixed ") ? "mixed " : "plain ";
    }
    return kinds;
}

// 202 points for each of 2,500 tiles: a page has room for three of these.
TEST(PatternTest, PlainTilesAreHeavyWhenTheirShapesWouldHaveTooManyPoints) {
    const std::string pattern =
        "<pattern id='p' width='2' height='2' patternUnits='userSpaceOnUse'><path d='M0 1h2' stroke='red' "
        "stroke-width='.5'/></pattern>";
    const std::string rect = "<rect width='100' height='100' fill='url(#p)'/>";
    EXPECT_EQ(KindsOfTiles(SketchContent(pattern + Repeat(rect, 3), true)), "");
    EXPECT_EQ(KindsOfTiles(SketchContent(pattern + Repeat(rect, 5), true)), "heavy heavy ");
    // Generators that do not repeat tiles draw the shapes.
    const std::string two = SketchContent(pattern + Repeat(rect, 2));
    EXPECT_EQ(SketchContent(pattern + Repeat(rect, 4)), two + two.substr(two.find('\n') + 1));
    const auto pages = [&](const std::string& content) {
        return SketchCalls(
            "<svg xmlns='http://www.w3.org/2000/svg' width='100' height='100' "
            "xmlns:i='http://www.inkscape.org/namespaces/inkscape' "
            "xmlns:s='http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd'><s:namedview>"
            "<i:page x='0' y='0' width='100' height='100'/><i:page x='0' y='0' "
            "width='100' height='100'/></s:namedview>" +
                content + "</svg>",
            true);
    };
    EXPECT_EQ(KindsOfTiles(pages(pattern + Repeat(rect, 3))), "");
    EXPECT_EQ(KindsOfTiles(pages(pattern + Repeat(rect, 4))), "heavy heavy ");
}

// Each of the outer tiles may be drawn, with all inner ones.
TEST(PatternTest, TilesWithinTilesAreHeavyWhenThereAreMany) {
    const auto nested = [](const std::string& size) {
        return "<pattern id='p' width='50' height='50' patternUnits='userSpaceOnUse'><rect width='40' "
               "height='40' fill='url(#q)'/></pattern><pattern id='q' width='" +
               size + "' height='" + size +
               "' patternUnits='userSpaceOnUse'><g opacity='.5'><rect width='.5' height='.5'/></g></pattern>"
               "<rect width='100' height='100' fill='url(#p)'/>";
    };
    EXPECT_EQ(KindsOfTiles(SketchContent(nested("2"), true)), "mixed mixed ");
    EXPECT_EQ(KindsOfTiles(SketchContent(nested("1"), true)), "mixed heavy ");
}

TEST(PatternTest, IsDrawnTileByTileWithinTheOutline) {
    Check({
        {"user space",
         "<pattern id='p' width='5' height='10' patternUnits='userSpaceOnUse'><rect width='1' "
         "height='1'/></pattern><rect width='10' height='10' fill='url(#p)'/>",
         "clip path 0,0 10,10\n  0,0 6,1 fill #000000\n"},
        {"content that is drawn tile by tile",
         "<pattern id='p' width='5' height='10' patternUnits='userSpaceOnUse'><g opacity='.5'><rect "
         "width='1' height='1'/></g></pattern><rect width='10' height='10' fill='url(#p)'/>",
         "clip path 0,0 10,10\n"
         "  clip 0,0 5,10\n    layer 0.5\n      0,0 1,1 fill #000000\n"
         "  clip 5,0 10,10\n    layer 0.5\n      5,0 6,1 fill #000000\n"},
        {"content that reaches out of its tile",
         "<pattern id='p' width='5' height='5' patternUnits='userSpaceOnUse'><circle cx='5' r='3'/>"
         "<path d='M0 0h5' fill='none' stroke='red'/></pattern><rect width='10' height='10' fill='url(#p)'/>",
         "clip path 0,0 10,10\n  2,0 10,8 fill #000000\n  0,0 10,5.5 fill #ff0000\n"},
        {"contours that stay within their tile beside one that does not",
         "<pattern id='p' width='5' height='5' patternUnits='userSpaceOnUse'><path d='M2 2h1M0 4h5' "
         "fill='none' stroke='red' stroke-width='.5'/></pattern><rect width='10' height='10' "
         "fill='url(#p)'/>",
         "clip path 0,0 10,10\n  2,2 8,7 stroke #ff0000 0.5\n  0,3.75 10,9.25 fill #ff0000\n"},
        {"translucent contours, which may overlap",
         "<pattern id='p' width='5' height='5' patternUnits='userSpaceOnUse'><path d='M2 2h1M0 4h5' "
         "fill='none' stroke='red' stroke-width='.5' stroke-opacity='.5'/></pattern><rect width='10' "
         "height='10' fill='url(#p)'/>",
         "clip path 0,0 10,10\n  0,1.75 10,9.25 fill #ff0000/128\n"},
        {"box units",
         "<pattern id='p' width='1' height='.5' patternContentUnits='objectBoundingBox'><rect "
         "width='.5' height='.5' fill='red'/></pattern><rect x='10' width='20' height='20' "
         "fill='url(#p)'/>",
         "clip path 10,0 30,20\n  10,0 20,20 fill #ff0000\n"},
        {"fallback for a box without height",
         "<pattern id='p' width='.5' height='.5'><rect width='1' height='1'/></pattern>"
         "<path d='M0 5h9' stroke='url(#p) red'/>",
         "0,5 9,5 fill #000000 stroke #ff0000 1\n"},
        {"view box",
         "<pattern id='p' width='10' height='10' patternUnits='userSpaceOnUse' viewBox='0 0 5 5'>"
         "<rect width='5' height='5'/></pattern><rect width='10' height='10' fill='url(#p)'/>",
         "clip path 0,0 10,10\n  clip 0,0 10,10\n    0,0 10,10 fill #000000\n"},
        {"no area",
         "<pattern id='p' width='0' height='5' patternUnits='userSpaceOnUse'><rect width='1' "
         "height='1'/></pattern><rect width='10' height='10' fill='url(#p)'/>",
         ""},
        {"in itself",
         "<pattern id='p' width='10' height='10' patternUnits='userSpaceOnUse'><rect width='1' "
         "height='1' fill='url(#p)'/></pattern><rect width='10' height='10' fill='url(#p)'/>",
         "clip path 0,0 10,10\n  clip 0,0 10,10\n"},
        {"stroke",
         "<pattern id='p' width='100' height='100' patternUnits='userSpaceOnUse'><rect width='1' "
         "height='1'/></pattern><path d='M0 5h9' fill='none' stroke='url(#p)' stroke-width='3'/>",
         "layer 1\n  mask by opacity 0,0 100,100\n    0,5 9,5 stroke #000000 3\n  clip path 0,0 100,100\n"
         "    clip 0,0 100,100\n      0,0 1,1 fill #000000\n"},
        {"opacity",
         "<pattern id='p' width='10' height='10' patternUnits='userSpaceOnUse'><rect width='1' "
         "height='1'/></pattern><rect width='10' height='10' fill='url(#p)' fill-opacity='.5'/>",
         "layer 0.5\n  clip path 0,0 10,10\n    clip 0,0 10,10\n      0,0 1,1 fill #000000\n"},
    });
}

TEST(MarkerTest, StandsAtVerticesAndTurns) {
    const std::string marker =
        "<marker id='m' markerWidth='2' markerHeight='2' overflow='visible' orient='auto'><rect width='2' "
        "height='1'/></marker>";
    const std::string line = "0,0 10,10 stroke #000000 1\n";
    const auto drawn = [&](const std::string& attributes) {
        return SketchContent(marker + "<path d='M0 0H10V10' fill='none' stroke='black' " + attributes + "/>");
    };
    EXPECT_EQ(drawn("marker-start='url(#m)'"), line + "0,0 2,1 fill #000000\n");
    EXPECT_EQ(drawn("marker-end='url(#m)'"), line + "9,10 10,12 fill #000000\n");
    EXPECT_EQ(drawn("marker-mid='url(#m)'"), line + "9.29,0 11.41,2.12 fill #000000\n");
    EXPECT_EQ(drawn("style='marker:url(#m)'"), line +
                                                   "0,0 2,1 fill #000000\n"
                                                   "9.29,0 11.41,2.12 fill #000000\n"
                                                   "9,10 10,12 fill #000000\n");
    EXPECT_EQ(drawn("stroke-width='2' marker-start='url(#m)'"),
              "0,0 10,10 stroke #000000 2\n0,0 4,2 fill #000000\n");
    EXPECT_EQ(drawn("marker-start='url(#none)'"), line);
}

TEST(MarkerTest, IsCutToItsViewportAndTakesPaintsOfTheContext) {
    EXPECT_EQ(SketchContent("<marker id='m' markerWidth='4' markerHeight='4' viewBox='0 0 2 2' refX='1' "
                            "refY='1' orient='0' markerUnits='userSpaceOnUse'><rect width='9' height='2' "
                            "fill='context-stroke' stroke='context-fill'/></marker>"
                            "<path d='M50 50h10' fill='lime' stroke='red' marker-start='url(#m)'/>"),
              "50,50 60,50 fill #00ff00 stroke #ff0000 1\n"
              "clip 48,48 52,52\n  48,48 66,52 fill #ff0000 stroke #00ff00 2\n");
}

TEST(ContextPaintTest, IsThatOfTheNearestUse) {
    Check({
        {"gradient of the whole use",
         "<linearGradient id='g'><stop stop-color='red'/><stop offset='1' "
         "stop-color='blue'/></linearGradient>"
         "<defs><g id='s'><rect width='5' height='9' fill='context-fill'/><rect x='15' width='5' height='9' "
         "fill='context-fill'/></g></defs><use href='#s' x='10' fill='url(#g)'/>",
         "10,0 15,9 fill linear(10,0 to 30,0, #ff0000 0, #0000ff 1)\n"
         "25,0 30,9 fill linear(10,0 to 30,0, #ff0000 0, #0000ff 1)\n"},
        {"nested",
         "<defs><rect id='r' width='5' height='5' fill='context-fill'/><use id='u' href='#r' fill='lime'/>"
         "</defs><use href='#u' fill='red'/>",
         "0,0 5,5 fill #00ff00\n"},
        {"passed on",
         "<defs><rect id='r' width='5' height='5' fill='context-fill'/><use id='u' href='#r' "
         "fill='context-stroke'/></defs><use href='#u' fill='red' stroke='lime'/>",
         "0,0 5,5 fill #00ff00 stroke #00ff00 1\n"},
    });
}

TEST(GradientTest, OfEqualCirclesHasTheLastColourOutside) {
    EXPECT_EQ(
        SketchContent("<radialGradient id='g' fr='.5' spreadMethod='repeat'><stop stop-color='red'/><stop "
                      "offset='1' stop-color='blue'/></radialGradient><rect width='10' height='10' "
                      "fill='url(#g)'/>"),
        "0,0 10,10 fill radial(5,5 to 5,5 r 0.5 to 0.5, #ff0000 0, #0000ff 1)\n");
}

TEST(MarkerTest, SegmentsWithoutLengthTakeTheNextDirection) {
    // At a corner followed by a zero-length segment, the marker bisects the two other segments.
    EXPECT_EQ(SketchContent("<marker id='m' markerUnits='userSpaceOnUse' orient='auto' overflow='visible'>"
                            "<path d='M0 0h10v1'/></marker>"
                            "<path d='M0 0H50h0V50' fill='none' marker-mid='url(#m)'/>"),
              "50,0 57.07,7.78 fill #000000\n49,0 50,10 fill #000000\n");
}

TEST(MarkerTest, MarksClosedOutlinesAtTheirStartTwice) {
    const std::string calls = SketchContent(
        "<marker id='m' orient='auto' overflow='visible' markerUnits='userSpaceOnUse'><rect width='1' "
        "height='1'/></marker><path d='M0 0H10V10z' fill='none' marker-start='url(#m)' "
        "marker-end='url(#m)'/>");
    const std::size_t half = calls.size() / 2;
    EXPECT_EQ(calls.substr(0, half), calls.substr(half));
}

}  // namespace
