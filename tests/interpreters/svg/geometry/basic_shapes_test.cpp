// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/basic_shapes.h"

#include <gtest/gtest.h>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/model/ORVPrtCircleElt.h"
#include "platform/model/ORVPrtEllipseElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtLineElt.h"
#include "platform/model/ORVPrtPolygonElt.h"
#include "platform/model/ORVPrtPolylineElt.h"
#include "platform/model/ORVPrtRectangleElt.h"
#include "platform/system/ORVRef.h"
#include "tests/support/built_model.h"
#include "tests/support/parsed_element.h"
#include "tests/support/sketch_case.h"

namespace {

class BasicShapesTest : public testing::TestWithParam<SketchCase> {};

TEST_P(BasicShapesTest, BecomePrimitives) { ExpectSketch(Drawing(GetParam().content), GetParam().expected); }

// y is mirrored against the page height of 100.
INSTANTIATE_TEST_SUITE_P(
    Rect, BasicShapesTest,
    testing::Values(
        SketchCase{"CornersAreMirrored", "<rect x='5' y='10' width='20' height='30'/>", "rect(5,90 25,60)"},
        SketchCase{"AtTheOrigin", "<rect x='0' y='0' width='10' height='20'/>", "rect(0,100 10,80)"},
        SketchCase{"WithoutAttributesIsAPoint", "<rect/>", "rect(0,100 0,100)"},
        SketchCase{"WithoutWidthIsALine", "<rect x='3' y='4' height='5'/>", "rect(3,96 3,91)"},
        SketchCase{"WithoutHeightIsALine", "<rect x='3' y='4' width='5'/>", "rect(3,96 8,96)"},
        SketchCase{"CornersStaySquare", "<rect width='10' height='20' rx='5' ry='3'/>", "rect(0,100 10,80)"},
        SketchCase{"PercentagesAreOfWidthAndHeight", "<rect x='10%' y='10%' width='50%' height='50%'/>",
                   "rect(20,90 120,40)"},
        SketchCase{"UnitsAreResolved", "<rect x='1in' width='10mm' height='10mm'/>",
                   "rect(89.9999978,100 125.4330678,64.56693)"},
        SketchCase{"NegativeSizesStay", "<rect width='-10' height='-20'/>", "rect(0,100 -10,120)"},
        SketchCase{"UnreadableNumbersCountAsZero", "<rect x='a' y='b' width='c' height='d'/>",
                   "rect(0,100 0,100)"},
        SketchCase{"EmptyNumbersCountAsZero", "<rect x='' y='' width='' height=''/>", "rect(0,100 0,100)"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    CircleAndEllipse, BasicShapesTest,
    testing::Values(SketchCase{"Circle", "<circle cx='5' cy='10' r='3'/>", "circle(5,90 3)"},
                    SketchCase{"CircleWithoutAttributes", "<circle/>", "circle(0,100 0)"},
                    SketchCase{"RadiusPercentIsOfTheMeanDiagonal", "<circle r='10%'/>",
                               "circle(0,100 15.8113883)"},
                    SketchCase{"CenterPercents", "<circle cx='50%' cy='20%' r='1'/>", "circle(100,80 1)"},
                    SketchCase{"NegativeRadiusStays", "<circle r='-3'/>", "circle(0,100 -3)"},
                    SketchCase{"EmptyRadius", "<circle cx='1' r=''/>", "circle(1,100 0)"},
                    SketchCase{"UnreadableRadius", "<circle cx='1' r='x'/>", "circle(1,100 0)"},
                    SketchCase{"Ellipse", "<ellipse cx='5' cy='10' rx='3' ry='4'/>", "ellipse(5,90 3,4)"},
                    SketchCase{"EllipseWithoutAttributes", "<ellipse/>", "ellipse(0,100 0,0)"},
                    SketchCase{"RadiiPercents", "<ellipse rx='10%' ry='10%'/>", "ellipse(0,100 20,10)"},
                    SketchCase{"NegativeRadiiStay", "<ellipse rx='-3' ry='-4'/>", "ellipse(0,100 -3,-4)"},
                    SketchCase{"EllipseHasNoR", "<ellipse r='9'/>", "ellipse(0,100 0,0)"}),
    kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Lines, BasicShapesTest,
    testing::Values(
        SketchCase{"Line", "<line x1='1' y1='2' x2='3' y2='4'/>", "line(1,98 3,96)"},
        SketchCase{"LineWithoutAttributes", "<line/>", "line(0,100 0,100)"},
        SketchCase{"LinePercents", "<line x1='5%' y1='5%' x2='50%' y2='50%'/>", "line(10,95 100,50)"},
        SketchCase{"Polyline", "<polyline points='1,2 3,4 5,6'/>", "polyline(1,98 3,96 5,94)"},
        SketchCase{"Polygon", "<polygon points='1,2 3,4 5,6'/>", "polygon(1,98 3,96 5,94)"},
        SketchCase{"OddNumberIsDropped", "<polygon points='1,2,3,4,5'/>", "polygon(1,98 3,96)"},
        SketchCase{"OneNumberIsNoPoint", "<polygon points='7'/>", "polygon()"},
        SketchCase{"EmptyPoints", "<polyline points=''/><polygon points=''/>", "polyline() polygon()"},
        SketchCase{"AbsentPoints", "<polyline/><polygon/>", "polyline() polygon()"},
        SketchCase{"PointsWithUnits", "<polyline points='10% 10% 10mm 10mm'/>",
                   "polyline(20,90 35.43307,64.56693)"},
        SketchCase{"UnreadablePointsMoveUp", "<polyline points='x 1 2 3 4 5'/>", "polyline(99,2 97,4)"}),
    kNameOfRow);

// Attributes common to all shapes.
INSTANTIATE_TEST_SUITE_P(
    Texts, BasicShapesTest,
    testing::Values(
        SketchCase{
            "Identifiers",
            "<rect id='a'/><circle id='b'/><ellipse id='c'/><line id='d'/><polyline id='e'/><polygon "
            "id='f'/>",
            "rect#a(0,100 0,100) circle#b(0,100 0) ellipse#c(0,100 0,0) line#d(0,100 0,100) polyline#e() "
            "polygon#f()"},
        SketchCase{"EmptyIdentifier", "<rect id=''/>", "rect(0,100 0,100)"},
        SketchCase{
            "Transforms",
            "<rect transform='scale(2)'/><circle transform='scale(2)'/><ellipse transform='scale(2)'/>"
            "<line transform='scale(2)'/><polyline transform='scale(2)'/><polygon transform='scale(2)'/>",
            "rect[~100 sx(2) sy(2) ~100](0,100 0,100) circle[~100 sx(2) sy(2) ~100](0,100 0) "
            "ellipse[~100 sx(2) sy(2) ~100](0,100 0,0) line[~100 sx(2) sy(2) ~100](0,100 0,100) "
            "polyline[~100 sx(2) sy(2) ~100]() polygon[~100 sx(2) sy(2) ~100]()"},
        SketchCase{"EmptyTransformAddsNothing", "<rect transform=''/>", "rect(0,100 0,100)"},
        SketchCase{"PatternTransformIsNotForShapes", "<rect patternTransform='scale(2)'/>",
                   "rect(0,100 0,100)"},
        SketchCase{"DescriptionIsOfTheLastText", "<rect><desc>A</desc><title>B</title></rect>",
                   "rect\"B\"(0,100 0,100)"},
        SketchCase{"DescriptionAfterTitle", "<rect><title>B</title><desc>A</desc></rect>",
                   "rect\"A\"(0,100 0,100)"},
        SketchCase{"EmptyTextKeepsTheDescription", "<rect><desc>A</desc><title/></rect>",
                   "rect\"A\"(0,100 0,100)"},
        SketchCase{
            "EveryShapeHasADescription",
            "<circle><desc>A</desc></circle><ellipse><title>B</title></ellipse><line><desc>C</desc></line>"
            "<polyline><desc>D</desc></polyline><polygon><desc>E</desc></polygon>",
            "circle\"A\"(0,100 0) ellipse\"B\"(0,100 0,0) line\"C\"(0,100 0,100) polyline\"D\"() "
            "polygon\"E\"()"},
        SketchCase{"OtherChildrenAreNotDrawn", "<rect><circle/></rect>", "rect(0,100 0,100)"}),
    kNameOfRow);

class ShapePaintTest : public testing::TestWithParam<SketchCase> {};

TEST_P(ShapePaintTest, ReachesThePrimitive) {
    ExpectPaintedSketch(Drawing(GetParam().content), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, ShapePaintTest,
    testing::Values(
        SketchCase{"Rect", "<rect fill='red' stroke='blue' stroke-width='2'/>",
                   "rect(0,100 0,100):3 fill=#ff0000 stroke=#0000ff w2"},
        SketchCase{"Circle", "<circle fill='red' stroke='blue'/>",
                   "circle(0,100 0):3 fill=#ff0000 stroke=#0000ff"},
        SketchCase{"Ellipse", "<ellipse fill='red' stroke='blue'/>",
                   "ellipse(0,100 0,0):3 fill=#ff0000 stroke=#0000ff"},
        SketchCase{"Polygon", "<polygon fill='red' stroke='blue'/>",
                   "polygon():3 fill=#ff0000 stroke=#0000ff"},
        SketchCase{"LineHasAStrokeOnly", "<line fill='red' stroke='blue' stroke-linecap='round'/>",
                   "line(0,100 0,100) stroke=#0000ff c12"},
        SketchCase{"PolylineHasAStrokeOnly", "<polyline fill='red' stroke='blue' stroke-linejoin='bevel'/>",
                   "polyline() stroke=#0000ff j15"},
        SketchCase{"NothingReachesASibling", "<rect fill='red' stroke='blue' opacity='0.5'/><rect fill=''/>",
                   "rect(0,100 0,100):3 fill=#ff0000@128 stroke=#0000ff@128 "
                   "rect(0,100 0,100):2 fill=#000000 stroke=#000000"},
        SketchCase{"FillComesAfterDisplay", "<rect display='none' fill='red'/>",
                   "rect(0,100 0,100):2 fill=#ff0000 stroke=#000000"},
        SketchCase{"WithoutFillDisplayNoneStays", "<rect fill='' display='none'/>",
                   "rect(0,100 0,100):0 fill=#000000 stroke=#000000"},
        SketchCase{"VisibleComesBeforeStrokeNone", "<rect fill='' visibility='visible' stroke='none'/>",
                   "rect(0,100 0,100):2 fill=#000000 stroke=#000000"},
        SketchCase{"ColourComesBeforeFill", "<rect fill='currentColor' color='lime'/>",
                   "rect(0,100 0,100):2 fill=#00ff00 stroke=#000000"},
        SketchCase{"StyleComesLast", "<rect fill='red' style='fill:blue;stroke:lime'/>",
                   "rect(0,100 0,100):3 fill=#0000ff stroke=#00ff00"}),
    kNameOfRow);

template <class Access>
class ShapeHandlerTest : public testing::Test {};
TYPED_TEST_SUITE(ShapeHandlerTest, ElementAccesses);

TYPED_TEST(ShapeHandlerTest, RefusesANullPrimitive) {
    const ORVXmlNode node;
    const TypeParam element(&node);
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    const SvgDrawState state;
    EXPECT_EQ(HandleRect(state, element, nullptr, *container), kUnusable);
    EXPECT_EQ(HandleCircle(state, element, nullptr, *container), kUnusable);
    EXPECT_EQ(HandleEllipse(state, element, nullptr, *container), kUnusable);
    EXPECT_EQ(HandleLine(state, element, nullptr, *container), kUnusable);
    EXPECT_EQ(HandlePolyline(state, element, nullptr, *container), kUnusable);
    EXPECT_EQ(HandlePolygon(state, element, nullptr, *container), kUnusable);
}

TYPED_TEST(ShapeHandlerTest, SucceedsWithoutAnyAttribute) {
    const ORVXmlNode node;
    const TypeParam element(&node);
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    const SvgDrawState state;
    EXPECT_EQ(HandleRect(state, element, ORVRef(new ORVPrtRectangleElt).get(), *container), kDone);
    EXPECT_EQ(HandleCircle(state, element, ORVRef(new ORVPrtCircleElt).get(), *container), kDone);
    EXPECT_EQ(HandleEllipse(state, element, ORVRef(new ORVPrtEllipseElt).get(), *container), kDone);
    EXPECT_EQ(HandleLine(state, element, ORVRef(new ORVPrtLineElt).get(), *container), kDone);
    EXPECT_EQ(HandlePolyline(state, element, ORVRef(new ORVPrtPolylineElt).get(), *container), kDone);
    EXPECT_EQ(HandlePolygon(state, element, ORVRef(new ORVPrtPolygonElt).get(), *container), kDone);
}

TYPED_TEST(ShapeHandlerTest, RectGrowsUpwardsWithoutMirroring) {
    const ORVXmlTexts texts{"45", {}};
    ORVXmlTextPlace values[] = {{0, 1}, {1, 1}};
    ORVXmlNode node;
    node.attributeTexts = values;
    node.texts = &texts;
    node.attributeCount = 2;
    node.known = std::uint64_t{1} << static_cast<unsigned>(AttributeName::kY) |
                 std::uint64_t{1} << static_cast<unsigned>(AttributeName::kHeight);
    if (AttributeName::kHeight < AttributeName::kY) std::swap(values[0], values[1]);
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    const ORVRef<ORVPrtRectangleElt> rectangle(new ORVPrtRectangleElt);
    SvgDrawState state;
    state.pageHeight = 100.0;
    state.yFlip = 0;
    EXPECT_EQ(HandleRect(state, TypeParam(&node), rectangle.get(), *container), kDone);
    EXPECT_EQ(rectangle->GetFirstPoint(), (ORVMathPoint2D{0.0, 4.0}));
    EXPECT_EQ(rectangle->GetSecondPoint(), (ORVMathPoint2D{0.0, 9.0}));
}

}  // namespace
