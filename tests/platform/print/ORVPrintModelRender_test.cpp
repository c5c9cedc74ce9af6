#include "platform/print/ORVPrintModelRender.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "platform/mathematics/constants.h"
#include "platform/print/ORVPrintParameters.h"
#include "tests/platform/print/make_primitives.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/support/named_rows.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

int DrawAll(OnePage& page, RecordingGenerator& generator, const ORVPrintParameters& parameters = {}) {
    return ORVPrintModelRender(page.GetModel(), &generator, parameters).Draw();
}

/// What is drawn of a page of 100 x 50 with these primitives.
std::vector<std::string> Drawn(std::initializer_list<ORVRef<ORVPrtGraphicPrimitiveElt>> primitives) {
    OnePage page;
    for (const auto& primitive : primitives) page.Add(primitive);
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    return generator.GetDrawn();
}

ORVPrtStrokeAttributes Dashed(std::vector<float> lengths) {
    ORVPrtStrokeAttributes stroke;
    stroke.SetStrokeType(kLineUserDash);
    stroke.SetStrokeDashPattern(lengths.data(), static_cast<std::uint8_t>(lengths.size()));
    return stroke;
}

TEST(ModelRenderTest, FramesPagesAndDocument) {
    OnePage page;
    page.GetPage().SetTitle("Plan");
    RecordingGenerator generator;
    EXPECT_EQ(DrawAll(page, generator), 1);
    EXPECT_EQ(generator.GetText(), "document \"Plan\" 1\npage 1 100x50\nend page\nend document\n");
}

TEST(ModelRenderTest, YPointsDownFromTheUpperLeftCorner) {
    EXPECT_THAT(Drawn({MakeRectangle(10.0, 50.0, 20.0, 40.0)}),
                ElementsAre("fill #000000 M10,0 L20,0 L20,10 L10,10 Z"));
}

TEST(ModelRenderTest, PageOriginIsTheLowerLeftCorner) {
    OnePage page;
    page.GetPage().SetOrigin({5.0, -20.0});
    page.Add(MakeLine(5.0, -20.0, 105.0, 30.0));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetDrawn(), ElementsAre("stroke #000000 w1 M0,50 L100,0"));
}

TEST(ModelRenderTest, PageMatrixThatIsNoNumberCountsAsIdentity) {
    OnePage page;
    page.GetPage().SetMatrix({std::nan(""), 0.0, 0.0, std::nan("")});
    page.Add(MakeLine(0.0, 0.0, 1.0, 0.0));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetDrawn(), ElementsAre("stroke #000000 w1 M0,50 L1,50"));
}

TEST(ModelRenderTest, PageMatrixScales) {
    OnePage page;
    page.GetPage().SetMatrix({2.0, 0.0, 0.0, 2.0});
    page.Add(MakeLine(0.0, 0.0, 10.0, 5.0));
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_THAT(generator.GetDrawn(), ElementsAre("stroke #000000 w1 M0,50 L20,40"));
}

struct DrawStyleCase {
    const char* name;
    int style;
    const char* start;  // of the line that is drawn; empty for none
};
class DrawStyleTest : public testing::TestWithParam<DrawStyleCase> {};
TEST_P(DrawStyleTest, DecidesWhatIsPainted) {
    const auto rectangle = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    rectangle->SetDrawStyle(GetParam().style);
    const std::vector<std::string> drawn = Drawn({rectangle});
    if (*GetParam().start == '\0') {
        EXPECT_THAT(drawn, IsEmpty());
    } else {
        EXPECT_THAT(drawn, ElementsAre(StartsWith(GetParam().start)));
    }
}
INSTANTIATE_TEST_SUITE_P(
    DrawStyle, DrawStyleTest,
    testing::Values(DrawStyleCase{"Nothing", kDrawNothing, ""},
                    DrawStyleCase{"Stroke", kDrawStroke, "stroke #000000 w1 M"},
                    DrawStyleCase{"Fill", kDrawFill, "fill #000000 M"},
                    DrawStyleCase{"Both", kDrawFillAndStroke, "fill #000000 stroke #000000 w1 M"},
                    DrawStyleCase{"Undecided", kDrawUndecided, "fill #000000 stroke #000000 w1 M"}),
    kNameOfRow);

TEST(ModelRenderTest, ColoursComeFromTheTableWithTheirOpacity) {
    const auto rectangle = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    ORVPrtFillAttributes fill;
    fill.SetFillColourIndex(1);
    fill.SetFillColourTransparency(128);
    fill.SetFillRule(kFillEvenOdd);
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill #ff0000@128 eo M")));
}

TEST(ModelRenderTest, WhatIsWhollyTransparentIsNotDrawn) {
    const auto rectangle = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    ORVPrtFillAttributes fill;
    fill.SetFillColourTransparency(0);
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), IsEmpty());
}

TEST(ModelRenderTest, StrokesNeedAWidth) {
    for (const double width : {0.0, -1.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        const auto line = MakeLine(0.0, 0.0, 1.0, 0.0);
        ORVPrtStrokeAttributes stroke;
        stroke.SetStrokeWidth(width);
        line->SetStrokeAttributes(stroke);
        EXPECT_THAT(Drawn({line}), IsEmpty()) << width;
    }
}

TEST(ModelRenderTest, CapsAndJoinsAreResolved) {
    const auto line = MakeLine(0.0, 50.0, 1.0, 50.0);
    ORVPrtStrokeAttributes stroke;
    stroke.SetStrokeColourIndex(2);
    stroke.SetStrokeWidth(3.0);
    stroke.SetStrokeCap(kCapRound);
    stroke.SetStrokeJoin(kJoinBevel);
    line->SetStrokeAttributes(stroke);
    EXPECT_THAT(Drawn({line}), ElementsAre("stroke #00ff00 w3 round-cap bevel-join M0,0 L1,0"));
}

struct DashCase {
    const char* name;
    std::vector<float> lengths;
    const char* expected;
};
class DashTest : public testing::TestWithParam<DashCase> {};
TEST_P(DashTest, BecomesAListOfEvenLength) {
    const auto line = MakeLine(0.0, 50.0, 1.0, 50.0);
    line->SetStrokeAttributes(Dashed(GetParam().lengths));
    EXPECT_THAT(Drawn({line}),
                ElementsAre(std::string("stroke #000000 w1") + GetParam().expected + " M0,0 L1,0"));
}
INSTANTIATE_TEST_SUITE_P(Dash, DashTest,
                         testing::Values(DashCase{"Even", {4.0F, 2.0F}, " d4,2"},
                                         DashCase{"OddCountsTwice", {4.0F}, " d4,4"},
                                         DashCase{"AllZeroIsSolid", {0.0F, 0.0F}, ""},
                                         DashCase{"NegativeIsSolid", {4.0F, -1.0F}, ""},
                                         DashCase{"NotANumberIsSolid", {std::nanf(""), 1.0F}, ""},
                                         DashCase{"EmptyIsSolid", {}, ""}),
                         kNameOfRow);

TEST(ModelRenderTest, CircleIsFourCurvesWhenSmall) {
    const auto drawn = Drawn({MakeCircle(10.0, 40.0, 10.0)});
    EXPECT_THAT(drawn, ElementsAre("fill #000000 M20,10 C20,4.477 15.523,0 10,0 C4.477,0 0,4.477 0,10 "
                                   "C0,15.523 4.477,20 10,20 C15.523,20 20,15.523 20,10 Z"));
}

TEST(ModelRenderTest, RadiiThatAreNotPositiveDrawNothing) {
    EXPECT_THAT(Drawn({MakeCircle(0.0, 0.0, 0.0), MakeCircle(0.0, 0.0, -3.0)}), IsEmpty());
}

TEST(ModelRenderTest, TransformsOfContainersAndPrimitivesMultiply) {
    const auto line = MakeLine(0.0, 0.0, 1.0, 0.0);
    line->SetTransformAttributes(Translation(5.0, 0.0));
    const auto symbol = MakeContainer<ORVPrtSymbolElt>({line});
    symbol->SetTransformAttributes(Matrix(2.0, 0.0, 0.0, 2.0));
    EXPECT_THAT(Drawn({symbol}), ElementsAre("stroke #000000 w1 M10,50 L12,50"));
}

TEST(ModelRenderTest, MapsWithoutAreaDrawNothing) {
    const auto flat = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    flat->SetTransformAttributes(Matrix(1.0, 0.0, 0.0, 0.0));
    const auto group = MakeContainer<ORVPrtGroupElt>({MakeRectangle(0.0, 0.0, 1.0, 1.0)});
    group->SetTransformAttributes(Matrix(std::nan(""), 0.0, 0.0, 1.0));
    EXPECT_THAT(Drawn({flat, group}), IsEmpty());
}

TEST(ModelRenderTest, PolylineThatComesBackIsClosed) {
    EXPECT_THAT(Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {9.0, 50.0}, {9.0, 40.0}, {0.0, 50.0}}),
                       MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {9.0, 50.0}, {9.0, 40.0}})}),
                ElementsAre("stroke #000000 w1 M0,0 L9,0 L9,10 L0,0 Z", "stroke #000000 w1 M0,0 L9,0 L9,10"));
}

TEST(ModelRenderTest, PointsThatAreNotFiniteAreLeftOut) {
    const double bad = std::numeric_limits<double>::infinity();
    EXPECT_THAT(
        Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {bad, 0.0}, {5.0, 50.0}}),
               MakeRectangle(0.0, 0.0, bad, 1.0), MakeCircle(0.0, 0.0, bad), MakeLine(0.0, 0.0, bad, 0.0)}),
        ElementsAre("stroke #000000 w1 M0,0 L5,0"));
}

TEST(ModelRenderTest, QuadraticCurvesAreRaisedByADegree) {
    EXPECT_THAT(Drawn({MakePoints<ORVPrtPolyQuadraticBezierElt>({{0.0, 50.0}, {3.0, 44.0}, {6.0, 50.0}})}),
                ElementsAre("stroke #000000 w1 M0,0 C2,4 4,4 6,0"));
}

TEST(ModelRenderTest, ArcRunsFromItsStartToItsEnd) {
    const auto up = MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, ORVPI / 2.0);
    const auto down = MakeArc(0.0, 50.0, 10.0, 10.0, ORVPI / 2.0, 0.0);
    up->SetDrawStyle(kDrawStroke);
    down->SetDrawStyle(kDrawStroke);
    EXPECT_THAT(Drawn({up}), ElementsAre("stroke #000000 w1 M10,0 C10,-5.523 5.523,-10 0,-10"));
    EXPECT_THAT(Drawn({down}), ElementsAre("stroke #000000 w1 M0,-10 C5.523,-10 10,-5.523 10,0"));
}

TEST(ModelRenderTest, ArcObeysItsDrawStyle) {
    const auto hidden = MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, 1.0);
    hidden->SetDrawStyle(kDrawNothing);
    const auto filled = MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, 1.0);
    EXPECT_THAT(Drawn({hidden, filled}), ElementsAre(StartsWith("fill #000000 M")));
}

TEST(ModelRenderTest, PiecesOfAPathAreStrokedAsOneLine) {
    const auto group = MakeContainer<ORVPrtGroupElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {6.0, 50.0}}),
         MakePoints<ORVPrtPolyCubicBezierElt>({{6.0, 50.0}, {9.0, 50.0}, {9.0, 44.0}, {6.0, 44.0}}),
         MakePoints<ORVPrtPolylineElt>({{6.0, 44.0}, {0.0, 50.0}})});
    EXPECT_THAT(Drawn({group}), ElementsAre("stroke #000000 w1 M0,0 L6,0 C9,0 9,6 6,6 L0,0 Z"));
}

TEST(ModelRenderTest, LinesThatTouchStayApart) {
    EXPECT_THAT(Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {6.0, 50.0}}),
                       MakePoints<ORVPrtPolylineElt>({{6.0, 50.0}, {6.0, 40.0}})}),
                ElementsAre("stroke #000000 w1 M0,0 L6,0", "stroke #000000 w1 M6,0 L6,10"));
}

TEST(ModelRenderTest, PiecesOfDifferentPaintOrPlaceStayApart) {
    const auto red =
        MakePoints<ORVPrtPolyCubicBezierElt>({{6.0, 50.0}, {9.0, 50.0}, {9.0, 44.0}, {6.0, 44.0}});
    ORVPrtStrokeAttributes stroke;
    stroke.SetStrokeColourIndex(1);
    red->SetStrokeAttributes(stroke);
    EXPECT_THAT(
        Drawn({MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {6.0, 50.0}}), red,
               MakePoints<ORVPrtPolyCubicBezierElt>({{7.0, 50.0}, {9.0, 50.0}, {9.0, 44.0}, {7.0, 44.0}})}),
        ElementsAre("stroke #000000 w1 M0,0 L6,0", "stroke #ff0000 w1 M6,0 C9,0 9,6 6,6",
                    "stroke #000000 w1 M7,0 C9,0 9,6 7,6"));
}

TEST(ModelRenderTest, RegionsAreContoursOfOneShape) {
    const auto outer = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {9.0, 50.0}}),
         MakePoints<ORVPrtPolyCubicBezierElt>({{9.0, 50.0}, {9.0, 45.0}, {5.0, 41.0}, {0.0, 41.0}}),
         MakePoints<ORVPrtPolylineElt>({{0.0, 41.0}, {0.0, 50.0}})});
    const auto open = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakePoints<ORVPrtPolylineElt>({{1.0, 49.0}, {2.0, 49.0}, {2.0, 48.0}})});
    const auto empty = Make<ORVPrtClosedFigureRegionElt>();
    const auto figure = MakeContainer<ORVPrtClosedFigureElt>({outer, open, empty});
    figure->SetDrawStyle(kDrawFillAndStroke);
    EXPECT_THAT(Drawn({figure}), ElementsAre("fill #000000 stroke #000000 w1 M0,0 L9,0 C9,5 5,9 0,9 L0,0 Z "
                                             "M1,1 L2,1 L2,2"));
}

TEST(ModelRenderTest, PiecesOfARegionThatDoNotMeetAreJoined) {
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {5.0, 50.0}}),
         MakePoints<ORVPrtPolylineElt>({{5.0, 45.0}, {0.0, 45.0}})});
    EXPECT_THAT(Drawn({MakeContainer<ORVPrtClosedFigureElt>({region})}),
                ElementsAre("fill #000000 M0,0 L5,0 L5,5 L0,5"));
}

TEST(ModelRenderTest, PiecesRegionsAndFiguresAreMovedOneAfterTheOther) {
    const auto piece = MakePoints<ORVPrtPolylineElt>({{0.0, 0.0}, {1.0, 0.0}, {1.0, 1.0}});
    piece->SetTransformAttributes(Matrix(10.0, 0.0, 0.0, 10.0));
    const auto plain = MakePoints<ORVPrtPolylineElt>({{10.0, 10.0}, {0.0, 10.0}});
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>({piece, plain});
    region->SetTransformAttributes(Translation(5.0, 0.0));
    const auto figure = MakeContainer<ORVPrtClosedFigureElt>({region});
    figure->SetTransformAttributes(Translation(0.0, 20.0));
    EXPECT_THAT(Drawn({figure}), ElementsAre("fill #000000 M5,30 L15,30 L15,20 L5,20"));
}

TEST(ModelRenderTest, ArcsInARegionEndWhereTheNextPieceStarts) {
    // The angles are floats: the arc ends near (0, 60), the line starts there.
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakeArc(0.0, 50.0, 10.0, 10.0, 0.0, ORVPI / 2.0),
         MakePoints<ORVPrtPolylineElt>({{0.0, 60.0}, {0.0, 50.0}, {10.0, 50.0}})});
    EXPECT_THAT(Drawn({MakeContainer<ORVPrtClosedFigureElt>({region})}),
                ElementsAre("fill #000000 M10,0 C10,-5.523 5.523,-10 0,-10 L0,0 L10,0 Z"));
}

TEST(ModelRenderTest, HiddenFigureIsNotDrawnNorAreItsPieces) {
    const auto region = MakeContainer<ORVPrtClosedFigureRegionElt>(
        {MakePoints<ORVPrtPolylineElt>({{0.0, 50.0}, {5.0, 50.0}})});
    const auto figure = MakeContainer<ORVPrtClosedFigureElt>({region});
    figure->SetDrawStyle(kDrawNothing);
    EXPECT_THAT(Drawn({figure}), IsEmpty());
}

TEST(ModelRenderTest, PatternDrawsNothing) {
    EXPECT_THAT(Drawn({MakeContainer<ORVPrtPatternElt>({MakeRectangle(0.0, 0.0, 1.0, 1.0)})}), IsEmpty());
}

ORVRef<ORVPixelImage> MakeImage(int width, int height) {
    const std::vector<std::uint8_t> pixels(static_cast<std::size_t>(width * height) * 4, 255);
    return ORVRef<ORVPixelImage>(ORVPixelImage::CreateFromPixels(width, height, pixels));
}

TEST(ModelRenderTest, PatternFillTilesFromThePageOrigin) {
    const auto image = MakeImage(4, 4);
    const auto rectangle = MakeRectangle(10.0, 10.0, 20.0, 20.0);
    ORVPrtFillAttributes fill;
    fill.SetFillStyle(kFillPattern);
    fill.SetFillPatternImage(image.get());
    rectangle->SetFillAttributes(fill);
    rectangle->SetTransformAttributes(Translation(3.0, 3.0));
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill pattern@255[1 0 0 1 0 0] M")));
}

TEST(ModelRenderTest, PatternWithoutBitmapLeavesTheColour) {
    const auto rectangle = MakeRectangle(10.0, 10.0, 20.0, 20.0);
    ORVPrtFillAttributes fill;
    fill.SetFillStyle(kFillPattern);
    fill.SetFillColourIndex(1);
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill #ff0000 M")));
}

TEST(ModelRenderTest, BitmapIsStretchedIntoItsBox) {
    const auto image = MakeImage(2, 3);
    const auto bitmap = Make<ORVPrtBitmapImageElt>();
    bitmap->SetOrigin({10.0, 20.0});
    bitmap->SetSize(30.0, 15.0);
    EXPECT_THAT(Drawn({bitmap}), IsEmpty());  // no pixels
    bitmap->SetPixelImage(image.get());
    EXPECT_THAT(Drawn({bitmap}), ElementsAre("image 2x3 [30 0 0 15 10 15]"));
    bitmap->SetSize(30.0, 0.0);
    EXPECT_THAT(Drawn({bitmap}), IsEmpty());
}

ORVRef<ORVPrtTextElt> MakeText(const char* string, double x, double y) {
    auto text = Make<ORVPrtTextElt>();
    text->SetText(string);
    text->SetPosition({x, y});
    return text;
}

TEST(ModelRenderTest, TextStandsUprightAtItsPosition) {
    EXPECT_THAT(Drawn({MakeText("Word", 10.0, 40.0)}),
                ElementsAre("text \"Word\" [1 0 0 -1 10 10] fill #000000"));
}

TEST(ModelRenderTest, EmptyAndHiddenTextsAreNotDrawn) {
    const auto hidden = MakeText("Word", 1.0, 1.0);
    hidden->SetDrawStyle(kDrawNothing);
    const auto flat = MakeText("Word", 1.0, 1.0);
    ORVPrtTextAttributes attributes;
    attributes.SetHeight(0.0);
    flat->SetTextAttributes(attributes);
    EXPECT_THAT(Drawn({MakeText("", 1.0, 1.0), hidden, flat}), IsEmpty());
}

TEST(ModelRenderTest, TextIsTurnedAndSlantedAboutItsPosition) {
    const auto text = MakeText("Word", 10.0, 40.0);
    ORVPrtTextAttributes attributes;
    attributes.SetDirection(static_cast<float>(ORVPI / 2.0));
    text->SetTextAttributes(attributes);
    EXPECT_THAT(Drawn({text}), ElementsAre(HasSubstr("[0 -1 -1 0 10 10]")));
    attributes.SetDirection(0.0F);
    attributes.SetSlant(static_cast<float>(ORVPI / 4.0));
    text->SetTextAttributes(attributes);
    EXPECT_THAT(Drawn({text}), ElementsAre(HasSubstr("[1 1 0 -1 10 10]")));
}

TEST(ModelRenderTest, ClippingBoxIsMeasuredDownwardsFromTheTop) {
    const auto text = MakeText("Word", 10.0, 40.0);
    text->SetClippingBox(1.0, 2.0, 30.0, 10.0);
    EXPECT_THAT(Drawn({text}), ElementsAre(HasSubstr(" clip M1,2 L31,2 L31,12 L1,12 Z")));
}

TEST(ModelRenderTest, GroupsThatSaySomethingAreReported) {
    const auto silent = MakeContainer<ORVPrtGroupElt>({MakeLine(0.0, 50.0, 1.0, 50.0)});
    const auto named = MakeContainer<ORVPrtGroupElt>({silent});
    named->SetID("n");
    named->SetDescription("what");
    OnePage page;
    page.Add(named);
    RecordingGenerator generator;
    DrawAll(page, generator);
    EXPECT_EQ(generator.GetText(),
              "document \"\" 1\npage 1 100x50\ngroup #n \"what\"\nstroke #000000 w1 M0,0 L1,0\nend "
              "group\nend page\n"
              "end document\n");
}

ORVRef<ORVPrtGroupElt> MakeLink(const char* elementId, const char* url) {
    ORVPrintLinkURI link;
    link.SetElementId(elementId);
    link.SetBaseURL(url);
    ORVPrtGroupAttributes attributes;
    attributes.SetLinkURI(link);
    auto group = Make<ORVPrtGroupElt>();
    group->SetGroupAttributes(attributes);
    return group;
}

TEST(ModelRenderTest, LinksLeadOnlyToGroupsThatAreThere) {
    const auto target = Make<ORVPrtGroupElt>();
    target->SetID("here");
    const auto unlinked = Make<ORVPrtGroupElt>();
    unlinked->SetID("other");
    OnePage page;
    for (const auto& group :
         {MakeLink("here", ""), MakeLink("nowhere", ""), MakeLink("", "http://x/"), target, target, unlinked})
        page.Add(group);
    RecordingGenerator generator;
    DrawAll(page, generator);
    std::vector<std::string> groups;
    for (const std::string& line : generator.GetLines())
        if (line.starts_with("group")) groups.push_back(line);
    EXPECT_THAT(groups, ElementsAre("group ->#here", "group ->http://x/", "group #here target", "group #here",
                                    "group #other"));
}

TEST(ModelRenderTest, DeepTreesCostNoStack) {
    ORVRef<ORVPrtGraphicPrimitiveElt> tree = MakeLine(0.0, 50.0, 1.0, 50.0);
    for (int i = 0; i < 100'000; ++i) tree = MakeContainer<ORVPrtGroupElt>({tree});
    EXPECT_THAT(Drawn({tree}), ElementsAre("stroke #000000 w1 M0,0 L1,0"));
}

TEST(ModelRenderTest, LimitCountsSharedPrimitivesEachTimeBeforeOutputBegins) {
    const auto shared = MakeRectangle(0.0, 0.0, 1.0, 1.0);
    const auto group = MakeContainer<ORVPrtGroupElt>({shared, shared, shared, shared});
    group->SetID("g");
    OnePage page;
    page.Add(group);
    ORVPrintParameters parameters;
    parameters.SetDrawLimit(5);
    RecordingGenerator enough;
    EXPECT_EQ(DrawAll(page, enough, parameters), 1);
    EXPECT_EQ(enough.GetDrawn().size(), 4U);

    parameters.SetDrawLimit(4);
    RecordingGenerator tooFew;
    EXPECT_EQ(DrawAll(page, tooFew, parameters), ORVPrintModelRender::kTooManyPrimitives);
    EXPECT_EQ(tooFew.GetText(), "");
}

TEST(ModelRenderTest, PageWithoutAreaBeginsNoOutput) {
    for (const double width : {0.0, -5.0, std::nan(""), std::numeric_limits<double>::infinity()}) {
        OnePage page;
        page.GetPage().SetSize(width, 10.0);
        RecordingGenerator generator;
        EXPECT_EQ(DrawAll(page, generator), ORVPrintModelRender::kPageWithoutArea);
        EXPECT_THAT(generator.GetLines(), IsEmpty());
    }
}

TEST(ModelRenderTest, GeneratorsFailureEndsTheDrawing) {
    for (std::size_t call = 2; call <= 4; ++call) {
        OnePage page;
        page.Add(MakeRectangle(0.0, 0.0, 1.0, 1.0));
        RecordingGenerator generator;
        generator.FailAt(call);
        EXPECT_EQ(DrawAll(page, generator), -99);
        EXPECT_EQ(generator.GetLines().size(), call + 1);
        EXPECT_EQ(generator.GetLines().back(), "end document failed");
    }
    OnePage page;
    RecordingGenerator generator;
    generator.FailAt(1);
    EXPECT_EQ(DrawAll(page, generator), -99);
    EXPECT_EQ(generator.GetLines().size(), 1U);  // what did not begin has no end
}

/// A model of three pages, 10, 20 and 30 wide.
class ThreePagesTest : public testing::Test {
protected:
    ThreePagesTest() {
        for (const double width : {10.0, 20.0, 30.0}) {
            const auto page = Make<ORVPrtImageElt>();
            page->SetSize(width, 1.0);
            model_->AddImage(page.get());
        }
    }
    ORVRef<ORVPrtModel> model_{new ORVPrtModel};
    RecordingGenerator generator_;
    ORVPrintParameters parameters_;
};

TEST_F(ThreePagesTest, OnePageIsDrawnByNumber) {
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(2), 1);
    EXPECT_EQ(generator_.GetText(), "document \"\" 1\npage 1 20x1\nend page\nend document\n");
}

TEST_F(ThreePagesTest, PageThatIsNotThereDrawsNothing) {
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(4), 0);
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(0), 0);
    EXPECT_THAT(generator_.GetLines(), IsEmpty());
}

TEST_F(ThreePagesTest, ParametersChooseAndOrderPages) {
    parameters_.SetPages({3, 1, 9});
    EXPECT_EQ(ORVPrintModelRender(*model_, &generator_, parameters_).Draw(), 1);
    EXPECT_EQ(generator_.GetText(),
              "document \"\" 2\npage 1 30x1\nend page\npage 2 10x1\nend page\nend document\n");
}

TEST_F(ThreePagesTest, InspectorSeesTheModelFirst) {
    class Counter final : public ORVPrintModelInspector {
    public:
        void Inspect(const ORVPrtModel& model) override { pages = model.GetImages()->size(); }
        std::size_t pages = 0;
    } counter;
    parameters_.SetModelInspector(&counter);
    EXPECT_EQ(ORVPrintModelRender(*model_, nullptr, parameters_).Draw(), 1);
    EXPECT_EQ(counter.pages, 3U);
}

TEST_F(ThreePagesTest, WithoutGeneratorNothingIsDone) {
    EXPECT_EQ(ORVPrintModelRender(*model_, nullptr, parameters_).Draw(), 0);
}

/// A page with long and short outlines, alone and shared, which nothing but the page holds.
class ModelTakenApartTest : public testing::Test {
protected:
    ModelTakenApartTest() {
        std::vector<ORVMathPoint2D> points;
        for (int i = 0; i < 1024; ++i) points.push_back({static_cast<double>(i % 100), i % 2 * 40.0});
        const auto add = [this](const auto& primitive) {
            page_.Add(primitive);
            return primitive.get();
        };
        long_ = add(MakePoints<ORVPrtPolylineElt>(points));
        polygon_ = add(MakePoints<ORVPrtPolygonElt>(points));
        short_ = add(MakePoints<ORVPrtPolylineElt>({points.begin(), points.end() - 1}));
        const auto figure = Make<ORVPrtClosedFigureElt>();
        {
            const auto region = Make<ORVPrtClosedFigureRegionElt>();
            const auto piece = MakePoints<ORVPrtPolylineElt>(points);
            inFigure_ = piece.get();
            region->AddChild(piece.get());
            figure->AddChild(region.get());
        }
        page_.Add(figure);
        const auto group = Make<ORVPrtGroupElt>();
        {
            const auto piece = MakePoints<ORVPrtPolylineElt>(points);
            inShared_ = piece.get();
            group->AddChild(piece.get());
        }
        page_.Add(group);
        page_.Add(group);
        const auto twice = MakePoints<ORVPrtPolylineElt>(points);
        shared_ = twice.get();
        page_.Add(twice);
        page_.Add(twice);
    }

    std::string Draw() {
        RecordingGenerator generator;
        EXPECT_EQ(DrawAll(page_, generator), 1);
        return generator.GetText();
    }
    /// Draws the model and takes it apart.
    std::string DrawAway(const ORVPrintParameters& parameters = {}) {
        RecordingGenerator generator;
        EXPECT_EQ(ORVPrintModelRender(std::move(page_.GetModel()), &generator, parameters).Draw(), 1);
        return generator.GetText();
    }

    OnePage page_;
    const ORVPrtPolylineElt *long_, *short_, *inFigure_, *inShared_, *shared_;
    const ORVPrtPolygonElt* polygon_;
};

TEST_F(ModelTakenApartTest, GivesBackWhatIsLongAndDrawnOnce) {
    const std::string drawn = Draw();
    EXPECT_EQ(DrawAway(), drawn);
    EXPECT_THAT(long_->GetPoints(), IsEmpty());
    EXPECT_THAT(polygon_->GetPoints(), IsEmpty());
    EXPECT_THAT(inFigure_->GetPoints(), IsEmpty());
    EXPECT_THAT(short_->GetPoints(), testing::SizeIs(1023));
    EXPECT_THAT(inShared_->GetPoints(), testing::SizeIs(1024));
    EXPECT_THAT(shared_->GetPoints(), testing::SizeIs(1024));
}

TEST_F(ModelTakenApartTest, OtherPrintsKeepEverything) {
    Draw();
    EXPECT_THAT(long_->GetPoints(), testing::SizeIs(1024));
    EXPECT_THAT(inFigure_->GetPoints(), testing::SizeIs(1024));
}

TEST_F(ModelTakenApartTest, PageThatIsDrawnTwiceKeepsEverything) {
    ORVPrintParameters parameters;
    parameters.SetPages({1, 1});
    DrawAway(parameters);
    EXPECT_THAT(long_->GetPoints(), testing::SizeIs(1024));
}

}  // namespace
