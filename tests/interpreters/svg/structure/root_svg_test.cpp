// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/structure/root_svg.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <ostream>
#include <string>

#include "platform/model/ORVPrtColourTable.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/system/ORVUnicodeString.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"
#include "tests/support/page_state.h"
#include "tests/support/parsed_element.h"
#include "tests/support/sketch_case.h"

namespace {

// Origin and size of a page: "(x,y) w x h", followed by the matrix if it is not the identity.
std::string FrameOf(const ORVPrtImageElt& page) {
    double width = 0.0, height = 0.0;
    page.GetSize(width, height);
    char text[120];
    std::snprintf(text, sizeof text, "(%.10g,%.10g) %.10gx%.10g", page.GetOrigin().x + 0.0,
                  page.GetOrigin().y + 0.0, width, height);
    std::string frame = text;
    const ORVMath2x2Matrix& m = page.GetMatrix();
    if (std::isnan(m.m11) && std::isnan(m.m22) && m.m12 == 0.0 && m.m21 == 0.0) {
        frame += " nan";
    } else if (!(m == ORVMath2x2Matrix())) {
        frame += " another matrix";
    }
    return frame;
}

struct FrameCase {
    const char* name;
    const char* attributes;
    const char* content;
    const char* expected;          // as a document
    const char* expectedEmbedded;  // as a fragment of a QVXML document

    friend std::ostream& operator<<(std::ostream& out, const FrameCase& row) { return out << row.attributes; }
};

class PageFrameTest : public testing::TestWithParam<FrameCase> {};

TEST_P(PageFrameTest, ComesFromTheAttributes) {
    for (const Backend backend : kBackends) {
        SCOPED_TRACE(NameOf(backend));
        const std::string document = DrawingWith(GetParam().attributes, GetParam().content);
        const BuiltModel model(document, {.backend = backend}),
            fragment(document, {.backend = backend, .embedded = true});
        EXPECT_EQ(FrameOf(model.GetPage()), GetParam().expected);
        EXPECT_EQ(FrameOf(fragment.GetPage()), GetParam().expectedEmbedded);
        EXPECT_EQ(model.GetPage().GetUnits(), 1);
    }
}

constexpr const char* kContent = "<rect x='5' y='6' width='10' height='20'/>";

INSTANTIATE_TEST_SUITE_P(
    Size, PageFrameTest,
    testing::Values(
        FrameCase{"WidthAndHeight", "width='200' height='100'", kContent, "(0,0) 200x100",
                  "(0,-100) 200x100"},
        FrameCase{"Units", "width='1in' height='10mm'", "", "(0,0) 89.9999978x35.43307",
                  "(0,-35.43307) 89.9999978x35.43307"},
        FrameCase{"HeightPercentIsOfTheMeanDiagonal", "width='100' height='50%'", "", "(0,0) 100x35.35533906",
                  "(0,-35.35533906) 100x35.35533906"},
        FrameCase{"WidthPercentIsOfNothing", "width='50%' height='100'", "", "(0,0) 0x100", "(0,-100) 0x100"},
        FrameCase{"PositionNeverMovesThePage", "x='5' y='5' width='200' height='100'", "", "(0,0) 200x100",
                  "(0,-100) 200x100"},
        FrameCase{"LetterSpacingStandsForTheWidth", "style='letter-spacing:50' height='10'", "",
                  "(0,0) 50x10", "(0,-10) 50x10"},
        FrameCase{"WidthReplacesLetterSpacing", "style='letter-spacing:50' width='20' height='10'", "",
                  "(0,0) 20x10", "(0,-10) 20x10"},
        FrameCase{"WidthPercentIsOfTheMeanDiagonal", "style='letter-spacing:100' width='50%'", "",
                  "(0,0) 35.35533906x0", "(0,0) 35.35533906x0"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    ViewBox, PageFrameTest,
    testing::Values(
        FrameCase{"GivesOriginAndSize", "viewBox='10 20 100 50'", kContent, "(10,-20) 100x50",
                  "(10,-70) 100x50"},
        FrameCase{"ReplacesTheSizeAndNeverScales", "width='200' height='200' viewBox='0 0 100 50'", "",
                  "(0,0) 100x50", "(0,-50) 100x50"},
        FrameCase{"Negative", "viewBox='-10 -20 100 50'", "", "(-10,20) 100x50", "(-10,-30) 100x50"},
        FrameCase{"EmptyIsNone", "width='200' height='100' viewBox=''", "", "(0,0) 200x100",
                  "(0,-100) 200x100"},
        FrameCase{"BlankIsTheSize", "width='200' height='100' viewBox=' '", "", "(0,0) 200x100",
                  "(0,-100) 200x100"},
        FrameCase{"ThreeNumbers", "width='200' height='100' viewBox='1 2 3'", "", "(1,-2) 200x3",
                  "(1,-5) 200x3"},
        FrameCase{"CommasDoNotSeparate", "width='200' height='100' viewBox='0,0,100,50'", "",
                  "(0,0) 200x0 nan", "(0,0) 200x0 nan"},
        FrameCase{"UnreadableNumbers", "width='200' height='100' viewBox='a b c d'", "", "(0,0) 200x100",
                  "(0,-100) 200x100"},
        FrameCase{"WidthZeroHasNoScale", "viewBox='0 0 0 50'", "", "(0,0) 0x50 nan", "(0,-50) 0x50 nan"},
        FrameCase{"HeightZeroHasNoScale", "viewBox='0 0 50 0'", "", "(0,0) 50x0 nan", "(0,0) 50x0 nan"},
        FrameCase{"WidthWithoutBoundsHasNoScale", "viewBox='0 0 1e999 50'", "", "(0,0) infx50 nan",
                  "(0,-50) infx50 nan"},
        FrameCase{"HeightWithoutBoundsHasNoScale", "viewBox='0 0 50 1e999'", "", "(0,0) 50xinf nan",
                  "(0,-inf) 50xinf nan"},
        FrameCase{"NegativeSizesHaveScaleOne", "viewBox='0 0 -50 -60'", "", "(0,0) -50x-60",
                  "(0,60) -50x-60"}),
    kNameOfRow);

// Without a size, the box of the content. In a document of no height, y is mirrored against 0.
INSTANTIATE_TEST_SUITE_P(
    SizeByContent, PageFrameTest,
    testing::Values(
        FrameCase{"NoAttributes", "", kContent, "(5,-26) 10x20", "(5,-26) 10x20"},
        FrameCase{"NoContent", "", "", "(0,0) 0x0", "(0,0) 0x0"},
        FrameCase{"ContentWithoutBox", "", "<polyline/>", "(0,0) 0x0", "(0,0) 0x0"},
        FrameCase{"APointIsContent", "", "<rect x='5' y='6'/>", "(5,-6) 0x0", "(5,-6) 0x0"},
        FrameCase{"StrokeWidthDoesNotCount", "stroke='red' stroke-width='9'", kContent, "(5,-26) 10x20",
                  "(5,-26) 10x20"},
        FrameCase{"ThroughTransforms", "",
                  "<g transform='scale(2)'><rect x='5' y='6' width='10' height='20'/></g>", "(10,-52) 20x40",
                  "(10,-52) 20x40"},
        FrameCase{"WidthAloneIsASize", "width='50'", kContent, "(0,0) 50x0", "(0,0) 50x0"},
        // The content of a fragment has no page height, so a height alone does not count as a size.
        FrameCase{"HeightAloneIsASizeOfADocument", "height='50'", kContent, "(0,0) 0x50", "(5,-26) 10x20"},
        FrameCase{"UnreadableSize", "width='auto' height='auto'", kContent, "(5,-26) 10x20", "(5,-26) 10x20"},
        FrameCase{"NegativeSize", "width='-5' height='-5'", "<rect x='5' width='10' height='20'/>",
                  "(5,-25) 10x20", "(5,-20) 10x20"},
        FrameCase{"EmptyViewBoxKeepsItsMatrix", "viewBox='1 2 0 0'", kContent, "(5,-26) 10x20 nan",
                  "(5,-26) 10x20 nan"},
        FrameCase{"NegativeViewBox", "viewBox='0 0 -5 -5'", "<rect x='5' width='10' height='20'/>",
                  "(5,-25) 10x20", "(5,-20) 10x20"}),
    kNameOfRow);

struct ContentCase {
    const char* name;
    const char* attributes;
    const char* content;
    const char* expected;
};

class PageContentTest : public testing::TestWithParam<ContentCase> {};

TEST_P(PageContentTest, IsPlacedOnThePage) {
    ExpectPaintedSketch(DrawingWith(GetParam().attributes, GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Content, PageContentTest,
    testing::Values(
        ContentCase{"MirroredAgainstTheBox", "width='200' height='200' viewBox='0 10 100 50'",
                    "<line y2='6'/>", "line(0,50 0,44) stroke=#000000"},
        ContentCase{"PercentagesAreOfTheBox", "width='200' height='200' viewBox='0 0 100 50'",
                    "<line x2='10%' y2='10%'/>", "line(0,50 10,45) stroke=#000000"},
        ContentCase{"RootPresentationIsInherited",
                    "height='100' fill='red' stroke='blue' opacity='0.5' font-size='20' visibility='visible'",
                    "<rect/><text>x</text>",
                    "rect(0,100 0,100):3 fill=#ff0000@128 stroke=#0000ff@128 text(0,100 'x'):3 "
                    "fill=#ff0000@128 stroke=#0000ff@128 h20"},
        ContentCase{"RootStyleIsInherited", "height='100' style='fill:red'", "<rect/>",
                    "rect(0,100 0,100):2 fill=#ff0000 stroke=#000000"},
        ContentCase{"TextVersion", "height='100' tlv:text-version='3'", "<text>x</text>",
                    "text(0,100 'x'):2 fill=#000000 stroke=#000000 v3"},
        ContentCase{"NegativeTextVersion", "height='100' tlv:text-version='-3'", "<text>x</text>",
                    "text(0,100 'x'):2 fill=#000000 stroke=#000000"},
        ContentCase{"UnreadableTextVersion", "height='100' tlv:text-version='x'", "<text>x</text>",
                    "text(0,100 'x'):2 fill=#000000 stroke=#000000"},
        ContentCase{"RootMarkersAreInherited", "height='100' marker-end='url(#m)'", "<symbol id='m'/><line/>",
                    "line(0,100 0,100) stroke=#000000 g[~100 t(0,0) ~100]{symbol#m{}}"},
        ContentCase{"RootTransformIsNotRead", "height='100' transform='scale(2)'", "<rect fill=''/>",
                    "rect(0,100 0,100):2 fill=#000000 stroke=#000000"}),
    kNameOfRow);

// The content of a fragment is mirrored against 0, whatever its box; percentages of the height are 0.
TEST(FragmentContentTest, HasNoPageHeight) {
    for (const char* attributes : {"width='200' height='100'", "viewBox='10 20 200 100'",
                                   "width='200' height='50' viewBox='0 0 200 100'"}) {
        const BuiltModel model(
            DrawingWith(attributes, "<line x2='10%' y2='6'/><rect y='10%' width='5' height='10%'/>"),
            {.embedded = true});
        EXPECT_EQ(SketchOfChildren(model.GetPage()), "line(0,0 20,-6) rect(0,0 5,0)") << attributes;
    }
}

struct PageTextCase {
    const char* name;
    const char* attributes;
    const char* content;
    const char* expected;
};

class PageTextTest : public testing::TestWithParam<PageTextCase> {};

TEST_P(PageTextTest, IsOfThePage) {
    for (const Backend backend : kBackends) {
        const BuiltModel model(DrawingWith(GetParam().attributes, GetParam().content), {.backend = backend});
        EXPECT_EQ(SketchOf(model.GetPage()), GetParam().expected) << NameOf(backend);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, PageTextTest,
    testing::Values(PageTextCase{"Identifier", "id='p'", "", "page#p{}"},
                    PageTextCase{"EmptyIdentifier", "id=''", "", "page{}"},
                    PageTextCase{"Title", "", "<title>T</title>", "page'T'{}"},
                    PageTextCase{"Description", "", "<desc>D</desc>", "page\"D\"{}"},
                    PageTextCase{"Both", "", "<title>T</title><desc>D</desc>", "page\"D\"'T'{}"},
                    PageTextCase{"LastOnesWin", "",
                                 "<title>T</title><desc>D</desc><title>U</title><desc>E</desc>",
                                 "page\"E\"'U'{}"},
                    PageTextCase{"EmptyOnesChangeNothing", "",
                                 "<title>T</title><title/><desc>D</desc><desc></desc>", "page\"D\"'T'{}"},
                    PageTextCase{"GroupKeepsItsOwn", "", "<g><title>T</title></g>", "page{g\"T\"{}}"},
                    PageTextCase{"MarkupInsideIsLeftOut", "", "<title>a<b>c</b>d</title>", "page'ad'{}"}),
    kNameOfRow);

TEST(PageTest, HasAColourTableThatStartsWithBlack) {
    for (const Backend backend : kBackends) {
        const BuiltModel model(Drawing("<rect fill='red'/>"), {.backend = backend});
        const ORVPrtColourTable* table = model.GetPage().GetColourTable();
        ASSERT_NE(table, nullptr);
        ASSERT_EQ(table->GetColours().size(), 2U);
        EXPECT_EQ(table->GetColour(0), ORVPrtColourTable::Colour());
        EXPECT_EQ(table->GetColour(1), (ORVPrtColourTable::Colour{255, 0, 0}));
        const BuiltModel empty(Drawing(""), {.backend = backend});
        EXPECT_EQ(empty.GetPage().GetColourTable()->GetColours().size(), 1U);
    }
}

TEST(PageTest, StartsAnewForEveryPage) {
    for (const Backend backend : kBackends) {
        SCOPED_TRACE(NameOf(backend));
        const BuiltModel model(
            "<svg xmlns:xlink='http://www.w3.org/1999/xlink'>"
            "<svg id='a' height='100' fill='red' marker='url(#s)' font-size='20'><defs><symbol "
            "id='s'/></defs></svg>"
            "<svg id='b' height='100'><line/><rect fill=''/><text fill=''>x</text><use "
            "xlink:href='#s'/></svg></svg>",
            {.backend = backend});
        ASSERT_EQ(model.GetPageCount(), 2U);
        EXPECT_EQ(model.GetPage(0).GetID(), "a");
        EXPECT_EQ(model.GetPage(1).GetID(), "b");
        EXPECT_EQ(PaintedSketchOfChildren(model.GetPage(1)),
                  "line(0,100 0,100) stroke=#000000 rect(0,100 0,100):2 fill=#000000 stroke=#000000 "
                  "text(0,100 'x'):2 fill=#000000 stroke=#000000 g{}");
        EXPECT_EQ(model.GetPage(1).GetColourTable()->GetColours().size(), 1U);
    }
}

template <class Access>
class PageResultTest : public testing::Test {
protected:
    // The result of building a page from an element with these children.
    int Build(std::initializer_list<ElementName> names) {
        std::vector<ORVXmlNode> nodes;
        for (const ElementName name : names) nodes.emplace_back().id = name;
        for (std::size_t i = 0; i + 1 < nodes.size(); ++i) nodes[i].nextSibling = &nodes[i + 1];
        ORVXmlNode root;
        root.id = ElementName::kSvg;
        if (!nodes.empty()) root.firstChild = nodes.data();
        const ORVRef<ORVPrtModel> model(new ORVPrtModel);
        const ORVUnicodeString path;
        const int result = BuildPage(SvgPageSource{path}, Access(&root), *model);
        EXPECT_EQ(model->GetImages()->size(), 1U);
        return result;
    }
};
TYPED_TEST_SUITE(PageResultTest, ElementAccesses);

TYPED_TEST(PageResultTest, IsThatOfTheLastChild) {
    EXPECT_EQ(this->Build({}), 0);
    EXPECT_EQ(this->Build({ElementName::kRect}), 1);
    EXPECT_EQ(this->Build({ElementName::kRect, ElementName::kText}), 0);
    EXPECT_EQ(this->Build({ElementName::kText, ElementName::kG}), 1);
    EXPECT_EQ(this->Build({ElementName::kUnknown}), 1);
}

// A document always has y flipped, so its origin is negated.
TYPED_TEST(PageResultTest, WithoutTheFlipTheOriginIsTheMinimum) {
    const ParsedElement<TypeParam> root("<svg viewBox='10 20 100 50'/>");
    for (const int flip : {0, 2}) {
        PageState state(200.0, 100.0, flip);
        SizePage(state, root.Get());
        EXPECT_EQ(FrameOf(*state.page), "(10,20) 100x50") << flip;
        EXPECT_EQ(state.pageHeight, 50.0);
    }
}

}  // namespace
