// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "tests/interpreters/svg2/call_sketch.h"

namespace {

std::string PageOf(const std::string& attributes, const std::string& content = "") {
    const std::string text =
        SketchCalls("<svg xmlns='http://www.w3.org/2000/svg' " + attributes + ">" + content + "</svg>");
    return text.substr(0, text.find('\n'));
}

TEST(PageSizeTest, ComesFromSizesThenViewBoxThenContent) {
    const struct {
        const char *attributes, *content, *page;
    } kRows[] = {
        {"width='1in' height='48'", "", "page 96x48"},
        {"width='100' height='50' viewBox='0 0 1 1'", "", "page 100x50"},
        {"width='100' viewBox='0 0 20 10'", "", "page 100x50"},
        {"height='100' viewBox='0 0 20 10'", "", "page 200x100"},
        {"viewBox='5 5 20 10'", "", "page 20x10"},
        {"width='50%' height='200%' viewBox='0 0 20 10'", "", "page 10x20"},
        {"", "<rect x='10' y='20' width='30' height='40'/>", "page 40x60"},
        {"width='200'", "<circle r='5' cx='20' cy='10'/>", "page 200x15"},
        {"width='100%' height='100%'", "<g transform='scale(2)'><rect width='30' height='40'/></g>",
         "page 60x80"},
        {"width='10' height='10' style='width:30px'", "", "page 30x10"},
        {"width='10' height='10'", "<style>svg{height:2in}</style>", "page 10x192"},
        {"width='10' height='10' style='width:wide'", "", "page 10x10"},
        {"width='0' height='10'", "", "result -2"},
        {"width='-5' height='10'", "", "result -2"},
        {"", "", "result -2"},
    };
    for (const auto& row : kRows) EXPECT_EQ(PageOf(row.attributes, row.content), row.page) << row.attributes;
}

TEST(PageSizeTest, EditorsPagesAreEachOnePage) {
    EXPECT_EQ(SketchCalls("<svg xmlns='http://www.w3.org/2000/svg' "
                          "xmlns:i='http://www.inkscape.org/namespaces/inkscape' "
                          "xmlns:s='http://sodipodi.sourceforge.net/DTD/sodipodi-0.dtd' "
                          "width='200' height='100' viewBox='0 0 100 50'>"
                          "<s:namedview><i:page x='0' y='0' width='50' height='50' i:label='One'/>"
                          "<i:page x='50' y='0' width='50' height='25'/></s:namedview>"
                          "<rect x='50' width='10' height='10'/></svg>"),
              "page 100x100 One\n"
              "  100,0 120,20 fill #000000\n"
              "page 100x50\n"
              "  0,0 20,20 fill #000000\n");
}

TEST(StructureTest, NamespacesCountAndNotPrefixes) {
    EXPECT_EQ(SketchCalls("<a:svg xmlns:a='http://www.w3.org/2000/svg' width='9' height='9'>"
                          "<a:rect width='1' height='1'/><rect width='2' height='2'/></a:svg>"),
              "page 9x9\n  0,0 1,1 fill #000000\n");
    // If the root has no namespace, names without one are SVG names.
    EXPECT_EQ(SketchCalls("<svg width='9' height='9'><rect width='1' height='1'/></svg>"),
              "page 9x9\n  0,0 1,1 fill #000000\n");
    EXPECT_EQ(SketchCalls("<svg xmlns='urn:other' width='9' height='9'/>"), "result -1\n");
    EXPECT_EQ(SketchContent("<x xmlns='urn:other'><rect xmlns='http://www.w3.org/2000/svg' width='1' "
                            "height='1'/></x><rect width='2' height='2'/>"),
              "0,0 2,2 fill #000000\n");
}

TEST(StructureTest, ShapesHaveTheirOutlines) {
    const struct {
        const char *content, *calls;
    } kRows[] = {
        {"<rect x='1' y='2' width='3' height='4'/>", "1,2 4,6 fill #000000\n"},
        {"<rect width='0' height='4'/>", ""},
        {"<rect width='-3' height='4'/>", ""},
        {"<rect width='50%' height='10%'/>", "0,0 50,10 fill #000000\n"},
        {"<circle cx='5' cy='5' r='2'/>", "3,3 7,7 fill #000000\n"},
        {"<circle r='-2'/>", ""},
        {"<ellipse cx='5' cy='5' rx='2'/>", "3,3 7,7 fill #000000\n"},
        {"<ellipse cx='5' cy='5' rx='2' ry='0'/>", ""},
        {"<line x2='10' y2='5' stroke='red'/>", "0,0 10,5 fill #000000 stroke #ff0000 1\n"},
        {"<polyline points='0,0 4,0 4'/>", "0,0 4,0 fill #000000\n"},
        {"<polygon points='0,0 4,0 4 3 x 9 9'/>", "0,0 4,3 fill #000000\n"},
        {"<path d='M0 0L5 5'/>", "0,0 5,5 fill #000000\n"},
        {"<path d='M7 7'/>", ""},
        {"<rect width='5' height='5' transform='nonsense(1)'/>", "0,0 5,5 fill #000000\n"},
        {"<rect width='5' height='5' transform='scale(0)'/>", ""},
        {"<rect style='width:5px;height:2em;font-size:3px'/>", "0,0 5,6 fill #000000\n"},
        {"<rect width='1' height='1' transform='translate(9)' style='transform:translate(3px)'/>",
         "3,0 4,1 fill #000000\n"},
        {"<rect width='2' height='2' transform='rotate(180)' style='transform-origin:1px 1px'/>",
         "0,0 2,2 fill #000000\n"},
        {"<rect x='10' y='10' width='4' height='2' transform='rotate(90)' "
         "style='transform-box:fill-box;transform-origin:center'/>",
         "11,9 13,13 fill #000000\n"},
        {"<rect x='10' y='10' width='4' height='2' style='transform-box:fill-box;transform:translate(50%)'/>",
         "12,10 16,12 fill #000000\n"},
        {"<rect x='10' y='10' width='4' height='4' stroke='red' stroke-width='2' transform='scale(2)' "
         "style='transform-box:stroke-box'/>",
         "11,11 19,19 fill #000000 stroke #ff0000 4\n"},
        {"<rect width='5' height='5' display='none'/>", ""},
        {"<g display='none'><rect width='5' height='5' display='inline'/></g>", ""},
        {"<g visibility='hidden'><rect width='5' height='5'/><rect width='6' height='6' "
         "visibility='visible'/></g>",
         "0,0 6,6 fill #000000\n"},
        {"<unknown><rect width='5' height='5'/></unknown>", ""},
        {"<defs><rect width='5' height='5'/></defs>", ""},
    };
    for (const auto& row : kRows) EXPECT_EQ(SketchContent(row.content), row.calls) << row.content;
}

TEST(StructureTest, InnerViewportsFitAndCut) {
    EXPECT_EQ(SketchContent("<svg x='10' y='20' width='40' height='20' viewBox='0 0 10 10'>"
                            "<rect width='10' height='10'/></svg>"),
              "clip 10,20 50,40\n  20,20 40,40 fill #000000\n");
    // The root clips by default, but passes on the initial value of overflow, which is "visible".
    EXPECT_EQ(
        SketchContent("<svg width='4' height='4' overflow='inherit'><rect width='5' height='5'/></svg>"),
        "0,0 5,5 fill #000000\n");
    EXPECT_EQ(SketchContent("<svg width='40' height='20' overflow='visible'>"
                            "<rect width='100%' height='100%'/></svg>"),
              "0,0 40,20 fill #000000\n");
    EXPECT_EQ(SketchContent("<svg width='0' height='20'><rect width='5' height='5'/></svg>"), "");
    EXPECT_EQ(SketchContent("<g transform='rotate(45)'><svg width='2' height='2'><rect width='1' "
                            "height='1'/></svg></g>"),
              "clip path -1.41,0 1.41,2.83\n  -0.71,0 0.71,1.41 fill #000000\n");
}

TEST(StructureTest, UsesShowWhatTheyReferTo) {
    const struct {
        const char *name, *content, *calls;
    } kRows[] = {
        {"forward", "<use href='#r' x='5' y='6'/><defs><rect id='r' width='1' height='1'/></defs>",
         "5,6 6,7 fill #000000\n"},
        {"a group",
         "<defs><g id='g' fill='red'><rect width='1' height='1'/></g></defs><use xlink:href='#g'/>",
         "0,0 1,1 fill #ff0000\n"},
        {"plain reference first",
         "<defs><rect id='a' width='1' height='1'/><rect id='b' width='2' height='2'/></defs>"
         "<use href='#a' xlink:href='#b'/>",
         "0,0 1,1 fill #000000\n"},
        {"symbol",
         "<symbol id='s' viewBox='0 0 10 10'><rect width='10' height='10'/></symbol>"
         "<use href='#s' x='1' width='20' height='20'/>",
         "clip 1,0 21,20\n  1,0 21,20 fill #000000\n"},
        {"symbol of the whole viewport",
         "<symbol id='s'><rect width='100%' height='50%'/></symbol>"
         "<use href='#s'/>",
         "clip 0,0 100,100\n  0,0 100,50 fill #000000\n"},
        {"symbol with a reference point",
         "<symbol id='s' width='10' height='10' refX='5' refY='5' overflow='visible'>"
         "<rect width='10' height='10'/></symbol><use href='#s' x='50' y='50'/>",
         "45,45 55,55 fill #000000\n"},
        {"symbol with a word for its reference point",
         "<symbol id='s' viewBox='10 10 20 20' refX='center' refY='top' overflow='visible'>"
         "<rect x='10' y='10' width='20' height='20'/></symbol><use href='#s' x='50' y='50' width='20' "
         "height='20'/>",
         "40,50 60,70 fill #000000\n"},
        {"transform about its own box",
         "<defs><rect id='r' width='4' height='2'/></defs><use href='#r' x='10' y='10' "
         "style='transform-box:fill-box;transform-origin:center;transform:rotate(90deg)'/>",
         "11,9 13,13 fill #000000\n"},
        {"transform of the target",
         "<defs><rect id='r' width='1' height='1' transform='scale(2)'/></defs>"
         "<use href='#r' x='5' transform='translate(1)'/>",
         "6,0 8,2 fill #000000\n"},
        {"symbol that is not displayed",
         "<symbol id='s' display='none' overflow='visible'><rect width='1' height='1'/></symbol>"
         "<use href='#s'/>",
         "0,0 1,1 fill #000000\n"},
        {"clip at its place",
         "<defs><rect id='r' width='10' height='10'/></defs><clipPath id='c'><rect width='5' height='5'/>"
         "</clipPath><use href='#r' x='20' clip-path='url(#c)'/>",
         "clip path 20,0 25,5\n  20,0 30,10 fill #000000\n"},
        {"itself", "<use id='u' href='#u'/><rect width='1' height='1'/>", "0,0 1,1 fill #000000\n"},
        {"an ancestor", "<g id='g'><rect width='1' height='1'/><use href='#g'/></g>",
         "0,0 1,1 fill #000000\n"},
        {"each other",
         "<g id='a'><rect width='1' height='1'/><use href='#b'/></g>"
         "<g id='b'><rect width='2' height='2'/><use href='#a'/></g>",
         "0,0 1,1 fill #000000\n0,0 2,2 fill #000000\n"
         "0,0 2,2 fill #000000\n0,0 1,1 fill #000000\n"},
        {"nothing", "<use href='#none'/><use/><use href='other.svg#r'/>", ""},
        {"a gradient", "<linearGradient id='g'/><use href='#g'/>", ""},
        {"first of an identifier",
         "<defs><rect id='r' width='1' height='1'/><rect id='r' width='2' "
         "height='2'/></defs><use href='#r'/>",
         "0,0 1,1 fill #000000\n"},
    };
    for (const auto& row : kRows) {
        const std::string calls = SketchContent(row.content);
        if (std::string(row.name) == "each other") {
            EXPECT_EQ(calls.find("result"), std::string::npos);
            continue;
        }
        EXPECT_EQ(calls, row.calls) << row.name;
    }
}

TEST(StructureTest, ASwitchShowsTheFirstChildThatPasses) {
    const struct {
        const char *content, *calls;
    } kRows[] = {
        {"<switch><foreignObject/><rect width='1' height='1'/><rect width='2' height='2'/></switch>",
         "0,0 1,1 fill #000000\n"},
        {"<switch><rect systemLanguage='xx' width='1' height='1'/><rect width='2' height='2'/></switch>",
         "0,0 2,2 fill #000000\n"},
        {"<switch><rect systemLanguage='' width='1' height='1'/><rect requiredFeatures='x' width='2' "
         "height='2'/></switch>",
         "0,0 2,2 fill #000000\n"},
        {"<switch><rect requiredExtensions='' width='1' height='1'/><g/></switch>", ""},
        {"<switch><rect display='none' width='1' height='1'/><rect width='2' height='2'/></switch>", ""},
        {"<rect systemLanguage='xx' width='1' height='1'/>", ""},
    };
    for (const auto& row : kRows) EXPECT_EQ(SketchContent(row.content), row.calls) << row.content;
}

TEST(StructureTest, LinksAndTheirTargetsAreGroups) {
    EXPECT_EQ(SketchContent("<a href='https://example.org/'><rect width='1' height='1'/></a>"
                            "<a href='#goal'><rect width='2' height='2'/></a>"
                            "<rect id='goal' width='3' height='3'/>"),
              "group ->https://example.org/\n  0,0 1,1 fill #000000\n"
              "group ->#goal\n  0,0 2,2 fill #000000\n"
              "group #goal\n  0,0 3,3 fill #000000\n");
}

TEST(StructureTest, LinksInTextAreGroupsOfTheirGlyphs) {
    const auto groupsOf = [](const std::string& content) {
        const std::string calls = SketchContent("<text y='10'>" + content + "</text>");
        std::string order;
        for (std::size_t i = 0; i < calls.size(); i = calls.find('\n', i) + 1)
            order += calls.compare(i, 6, "group ") == 0
                         ? "[" + calls.substr(i + 6, calls.find('\n', i) - i - 6) + "]"
                     : calls[i] == ' ' ? "linked "
                                       : "plain ";
        return order;
    };
    EXPECT_EQ(groupsOf("a<a href='https://example.org/'>b<tspan fill='red'>c</tspan></a>d"),
              "plain [->https://example.org/]linked linked plain ");
    EXPECT_EQ(groupsOf("<a href='x'>b</a><a href='y'>c<a href='z'>d</a>e</a>"),
              "[->x]linked [->y]linked [->z]linked [->y]linked ");
    EXPECT_EQ(groupsOf("a<a href='#nowhere'>b</a><a>c</a>"), "plain plain plain ");
}

TEST(StructureTest, ImagesLieAsTheirRatioSays) {
    // Two pixels wide, one pixel high.
    const std::string image =
        "data:image/png;base64,iVBORw0KGgoAAAANSUhEUgAAAAIAAAABCAIAAAB7QOjdAAAADUlEQVR4nGP4zwAE/wEHAA"
        "H/4iOeWQAAAABJRU5ErkJggg==";
    const struct {
        const char *attributes, *calls;
    } kRows[] = {
        {"width='20' height='20'", "image 0,5 20,15\n"},
        {"width='20'", "image 0,0 20,10\n"},
        {"height='20'", "image 0,0 40,20\n"},
        {"", "image 0,0 2,1\n"},
        {"width='20' height='20' preserveAspectRatio='none'", "image 0,0 20,20\n"},
        {"width='20' height='20' preserveAspectRatio='xMinYMin slice'",
         "clip 0,0 20,20\n  image 0,0 40,20\n"},
        {"width='0' height='20'", ""},
    };
    for (const auto& row : kRows)
        EXPECT_EQ(SketchContent("<image " + std::string(row.attributes) + " href='" + image + "'/>"),
                  row.calls)
            << row.attributes;
    EXPECT_EQ(SketchContent("<image width='5' height='5' href='data:image/png;base64,AAAA'/>"), "");
}

TEST(StructureTest, DrawingsWithinDrawingsAreDrawn) {
    EXPECT_EQ(SketchContent("<image x='10' width='20' height='20' href=\"data:image/svg+xml,"
                            "%3Csvg xmlns='http://www.w3.org/2000/svg' width='10' height='10'%3E"
                            "%3Crect width='5' height='5' fill='red'/%3E%3C/svg%3E\"/>"),
              "clip 10,0 30,20\n  10,0 20,10 fill #ff0000\n");
}

}  // namespace
