// SPDX-License-Identifier: Apache-2.0
#include "library/check/document_check.h"

#include <gtest/gtest.h>

#include <fstream>
#include <ostream>
#include <set>
#include <string>

#include "tests/library/check/checked.h"
#include "tests/support/named_rows.h"
#include "tests/support/sample_images.h"
#include "tests/support/scratch_folder.h"

namespace {

using enum FindingCode;

struct DocumentCase {
    const char* name;
    const char* content;
    const char* kinds;
};
class DocumentCheckTest : public testing::TestWithParam<DocumentCase> {};

TEST_P(DocumentCheckTest, Finds) {
    EXPECT_EQ(KindsOf(CheckText(CheckedDrawing(GetParam().content))), GetParam().kinds) << GetParam().content;
}

INSTANTIATE_TEST_SUITE_P(
    Documents, DocumentCheckTest,
    testing::Values(
        DocumentCase{"NothingInNothing", "", ""},
        DocumentCase{"NothingInsideWhatIsNotPrinted", "<switch><blink/><rect foo='1'/></switch>", "switch"},
        DocumentCase{"NothingInMetadata", "<metadata><rdf/><rect foo='1'/></metadata>", ""},
        DocumentCase{"NothingInForeignElements", "<e:g xmlns:e='urn:e'><blink/></e:g>", ""},
        DocumentCase{"NothingInAForeignDefaultNamespace", "<html xmlns='urn:html'><p/></html>", ""},
        DocumentCase{"AGroupsDefinitionsEndWithIt",
                     "<g><defs><rect id='d'/></defs></g><use xlink:href='#d'/>", "unreachable-reference"},
        DocumentCase{"ADefinitionComesBeforeItsUse", "<use xlink:href='#d'/><defs><rect id='d'/></defs>",
                     "unreachable-reference"},
        DocumentCase{"OnlyDirectChildrenOfDefsAreFound",
                     "<defs><g><rect id='d'/></g></defs><use xlink:href='#d'/>", "unreachable-reference"},
        DocumentCase{"ADefinitionIsNotFoundFromInside", "<defs><g id='d'><use xlink:href='#d'/></g></defs>",
                     "unreachable-reference"},
        DocumentCase{"ALinkLeadsAnywhere", "<a xlink:href='#b'/><g id='b'/>", ""},
        DocumentCase{"ALinkToWhatIsNotPrinted", "<a xlink:href='#b'/><linearGradient id='b'/>",
                     "unreachable-reference"},
        DocumentCase{"ALinkToNowhere", "<a xlink:href='#b'/>", "missing-reference"},
        DocumentCase{"AMarkerThatIsMissing", "<g marker-end='url(#m)'/>", "missing-reference"},
        DocumentCase{"NoMarkerIsNotMissing", "<g marker-end='none'/>", ""},
        DocumentCase{"AMarkerThatComesLater", "<path d='M1 1L2 2 3 1' marker-end='url(#m)'/><marker id='m'/>",
                     "unreachable-reference"},
        DocumentCase{"AStrokePattern", "<pattern id='p'/><rect stroke='url(#p)'/>", "bad-reference"},
        DocumentCase{"AFillWithAFallback", "<pattern id='p'/><rect fill='url(#p) red'/>", "bad-reference"},
        DocumentCase{"AFillThatIsNoPattern", "<symbol id='p'/><rect fill='url(#p)'/>", "bad-reference"},
        DocumentCase{"AMissingFill", "<rect fill='url(#p)'/>", "missing-reference"},
        DocumentCase{"PaintOfItsOwnShowsAHiddenShape", "<rect display='none' fill='red'/>",
                     "hidden-but-printed"},
        DocumentCase{"ALineIsNeverHidden", "<line x2='9' stroke='red' visibility='hidden'/>",
                     "hidden-but-printed"},
        DocumentCase{"AHiddenPathKeepsItsOutline", "<g display='none'><path d='M0 0L9 0 9 9z'/></g>",
                     "hidden-but-printed"},
        DocumentCase{"APathWithoutPaintIsStroked", "<path d='M0 0L9 0 9 9z' fill='none'/>", "always-stroked"},
        DocumentCase{"AnArcWithoutPaintIsNot", "<path d='M0 0A5 5 0 0 1 9 9' fill='none'/>", ""},
        DocumentCase{"ALineAsAPathIsStrokedWithoutFill", "<path d='M0 0L9 9'/>", "path-not-filled"},
        DocumentCase{"AnArcAsAPathIsStrokedWithoutFill", "<path d='M0 0A5 5 0 0 1 9 9'/>", "path-not-filled"},
        DocumentCase{"AnArcWithAStrokeLosesItsFill", "<path d='M0 0A5 5 0 0 1 9 9' stroke='red'/>",
                     "path-not-filled"},
        DocumentCase{"TwoArcsAreFilled", "<path d='M0 0A5 5 0 0 1 9 9A5 5 0 0 1 0 0'/>", ""},
        DocumentCase{"APointIsNothing", "<path d='M0 0'/>", ""},
        DocumentCase{"WhatIsVisibleInAHiddenGroupIsSeen",
                     "<g visibility='hidden'><rect visibility='visible' fill='red' stroke='red'/></g>", ""},
        DocumentCase{"WhatIsVisibleInARemovedGroupIsNot",
                     "<g display='none'><rect visibility='visible' fill='red' stroke='red'/></g>",
                     "hidden-but-printed"},
        DocumentCase{"AVisibleGroupIsFoundOnce", "<g visibility='visible'><rect/><rect/></g>",
                     "painted-visible"},
        DocumentCase{"FontsOfDefinitionsAreReplaced",
                     "<symbol id='s'><text font-size='30'>a</text></symbol><use xlink:href='#s'/>",
                     "repainted-definition"},
        DocumentCase{"WhatADefinitionDoesNotSayIsNotReplaced",
                     "<symbol id='s'><rect/></symbol><use xlink:href='#s' fill='red'/>", ""},
        DocumentCase{"WhatADefinitionUsesIsItsOwn",
                     "<defs><rect id='r' fill='red'/><g id='g'><use xlink:href='#r' fill='red'/></g></defs>"
                     "<use xlink:href='#g'/>",
                     "repainted-definition"},
        DocumentCase{"SpansInGroupsAreFoundOnce", "<text><tspan><tspan>a</tspan></tspan></text>",
                     "text-span"},
        DocumentCase{"TextPropertiesSayNothingOnShapes",
                     "<rect style='font-style:italic' font-size='9' text-anchor='end'/>"
                     "<path style='font-size:medium;block-progression:tb'/>",
                     ""},
        DocumentCase{"ItalicsHaveNoEffect", "<text font-style='italic'>a</text>", "attribute-without-effect"},
        DocumentCase{"TheAttributeOfATextWins",
                     "<text font-family='serif' style='font-family:No Such Family'>a</text>",
                     "attribute-wins"},
        DocumentCase{"AStyleWinsElsewhere",
                     "<g font-family='serif' style='font-family:No Such Family'><text>a</text></g>",
                     "font-missing"},
        DocumentCase{"AFamilyIsFoundOncePerPlace",
                     "<g font-family='No Such Family'><text>a</text><text>b</text></g>", "font-missing"},
        DocumentCase{"ACharacterIsFoundOnce", "<text>&#x10FFFD;</text><text>&#x10FFFD;</text>",
                     "missing-glyph"},
        DocumentCase{"ATransformOfANestedDrawing", "<svg transform='scale(2)'/>", "attribute-without-effect"},
        DocumentCase{"ManyFindingsAreCounted", "<rect foo='1'/><rect foo='2'/><rect foo='3'/>",
                     "unknown-attribute x3"},
        DocumentCase{"PropertiesThatSayNothingAreLeftAlone",
                     "<rect style='mix-blend-mode:normal;line-height:1.5;font-variant-caps:normal'/>", ""},
        DocumentCase{"PropertiesThatSaySomethingAreNot", "<rect style='mix-blend-mode:multiply'/>",
                     "unknown-property"},
        DocumentCase{"AnInheritedPaintIsTurnedOn", "<g fill='none'><rect fill='inherit'/></g>", "bad-value"},
        DocumentCase{"AnInheritedPaintThatIsOnStays", "<g fill='red'><rect fill='inherit'/></g>", ""},
        DocumentCase{"TheStrokeLiesOnTheFill", "<rect stroke='red' opacity='0.5'/>", "group-opacity"},
        DocumentCase{"OpacitiesOfAFillMultiply", "<g fill-opacity='0.5'><rect fill-opacity='0.5'/></g>",
                     "opacity-combined"},
        DocumentCase{"TheLastOpacityOfAStyleWins", "<rect style='opacity:0.4;fill-opacity:0.6'/>",
                     "opacity-combined"},
        DocumentCase{"OneOpacityOfAStyleIsPlain", "<rect style='opacity:0.4'/>", ""},
        DocumentCase{"APictureKeepsItsOpacity", "<image style='opacity:0.4' xlink:href='none.png'/>",
                     "image-refused, ignored-property"},
        DocumentCase{"ColorBehindCurrentColorComesTooLate", "<rect style='fill:currentColor;color:red'/>",
                     "current-colour"},
        DocumentCase{"ColorBeforeCurrentColorIsTaken", "<rect style='color:red;fill:currentColor'/>", ""},
        DocumentCase{"AWordIsNoColour", "<rect fill='rgbred'/><rect fill='r ed'/>", "bad-colour x2"},
        DocumentCase{"NamesOfTransformsHaveTheirLetters", "<rect transform='Rotate(30)'/>", "bad-transform"},
        DocumentCase{"TransformsTakeTheirNumbers", "<rect transform='translate(1 2 3)'/>", "bad-transform"},
        DocumentCase{"UnitsInPathsAreNoPathData", "<path d='M1mm 1L9 9 1 9z'/>", "bad-path-data"},
        DocumentCase{"FlagsOfArcsAreNoughtOrOne", "<path d='M1 1A9 9 0 0 2 9 9L1 9z'/>", "bad-path-data"},
        DocumentCase{"ACommaAtTheEndOfAPathIsNothing", "<path d='M1,1,9,9,1,9,'/>", ""},
        DocumentCase{"AUseDoesNotStroke", "<defs><rect id='d'/></defs><use xlink:href='#d' stroke='red'/>",
                     "repainted-definition"},
        DocumentCase{"BlackThatIsSaidIsReplaced",
                     "<defs><rect id='d' fill='black'/></defs><use xlink:href='#d' fill='red'/>",
                     "repainted-definition"},
        DocumentCase{"AUseIsNeverHidden",
                     "<defs><rect id='d'/></defs><g display='none'><use xlink:href='#d'/></g>",
                     "hidden-but-printed"},
        DocumentCase{"LettersOfIdentifiersCountElsewhere",
                     "<defs><rect id='D'/></defs><use xlink:href='#d'/>", "bad-reference"},
        DocumentCase{"AClosingLineIsNotJoinedToAnArc",
                     "<path d='M1 9A5 5 0 0 1 11 9z' stroke='red' stroke-width='3'/>", "joined-ends"},
        DocumentCase{"TheLimitOfMitersIsNotRead",
                     "<path d='M1 8L20 10 1 12' fill='none' stroke='red' stroke-miterlimit='20'/>",
                     "ignored-property"},
        DocumentCase{"BluntCornersNeedNoLimit",
                     "<path d='M1 1L20 1 20 20z' fill='none' stroke='red' stroke-miterlimit='20'/>", ""},
        DocumentCase{"WritingModesAreOthers",
                     "<text writing-mode='rl'>a</text><text writing-mode='tb'>a</text><text "
                     "writing-mode='lr'>a</text>",
                     "extra-effect x2"},
        DocumentCase{"WritingModesWithoutTextSayNothing",
                     "<g writing-mode='tb'><rect/><text/><text writing-mode='lr'>a</text></g>", ""},
        DocumentCase{"AWritingModeIsFoundWithItsTexts",
                     "<g style='writing-mode:tb'><text>a</text><text>b</text></g>", "extra-effect x2"},
        DocumentCase{"CentredTextIsTheSameFromRightToLeft",
                     "<text writing-mode='rl-tb' text-anchor='middle'>a</text>", ""},
        DocumentCase{"DocumentsAreNotIncluded",
                     "<g xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='a.svg'><xi:fallback>"
                     "<rect/></xi:fallback></xi:include></g>",
                     "unprinted-element"},
        DocumentCase{"AnInheritedOpacityIsNotTakenOver", "<g opacity='0.5'><rect opacity='inherit'/></g>",
                     "opacity-combined"},
        DocumentCase{"TheUnitOfAStrokeThatIsNotDrawnSaysNothing", "<rect stroke-width='9mm'/>", ""},
        DocumentCase{"TheUnitOfAStrokeCounts",
                     "<g stroke-width='9mm'><rect stroke='red' width='9' height='9'/></g>", "unit-scale"},
        DocumentCase{"TheUnitOfAFontSizeCounts", "<g font-size='9mm'><rect/><text>a</text></g>",
                     "unit-scale"},
        DocumentCase{"ALineThereAndBackIsClosed",
                     "<polyline points='1,1 9,1 1,1' fill='none' stroke='red' stroke-width='3'/>",
                     "joined-ends"},
        DocumentCase{"ALineThatEndsElsewhereIsNot",
                     "<polyline points='1,1 9,1 5,1' fill='none' stroke='red' stroke-width='3'/>", ""},
        DocumentCase{"EndsOfThinLinesAreNotSeen",
                     "<polyline points='1,1 9,1 9,9 1,1' fill='none' stroke='red'/>", ""},
        DocumentCase{"DefinitionsInheritFromWhatPlacesThem",
                     "<symbol id='s'><rect stroke='inherit'/></symbol><use xlink:href='#s' stroke='red'/>",
                     ""},
        DocumentCase{"WhatIsLeftOfAnotherShapeSaysNothing",
                     "<ellipse d='M1 1' rx='2' ry='2' x='5'/><path d='M1 1' cx='5'/>", ""},
        DocumentCase{"NoTextIsOfANegativeSize",
                     "<text font-family='Liberation Sans' font-size='-9' x='1' y='9'>a</text>", "shape-size"},
        DocumentCase{"OneRadiusIsNotBoth", "<ellipse rx='9'/>", "shape-size"},
        DocumentCase{"ASubpathWithoutLengthHasNoCaps",
                     "<path d='M1 1L9 9 M5 5L5 5' fill='none' stroke='red' stroke-linecap='round'/>",
                     "zero-length"},
        DocumentCase{"BlanksAtTheEndsAreDropped", "<text xml:space='preserve'>  one</text>", "text-blanks"},
        DocumentCase{
            "WhatIsTransformedOutOfANestedSvg",
            "<g><svg width='9' height='9'><g transform='translate(5 0)'><rect width='9' height='5'/></g>"
            "</svg></g>",
            "not-clipped"},
        DocumentCase{"ASymbolIsNotCutOff",
                     "<symbol id='s' viewBox='0 0 9 9'><rect width='20' height='5'/></symbol>"
                     "<use xlink:href='#s' width='9' height='9'/>",
                     "not-clipped"},
        DocumentCase{"OverflowOfAGroupSaysNothing", "<g overflow='hidden'><rect/></g>", ""},
        DocumentCase{"EmptyAttributesSayNothing", "<rect fill='' width='' transform='' style=''/>", ""},
        DocumentCase{"TheOtherRadiusIsNotBoth", "<ellipse ry='9'/>", "shape-size"},
        DocumentCase{"AnEllipseOfNoRadiusIsNothing", "<ellipse rx='0'/><ellipse ry='0'/>", ""},
        DocumentCase{"BlanksBehindACentredTextAreDropped",
                     "<text xml:space='preserve' text-anchor='middle'>one </text>", "text-blanks"},
        DocumentCase{"BlanksBehindATextThatEndsThereAreDropped",
                     "<text xml:space='preserve' text-anchor='end'>one </text>", "text-blanks"},
        DocumentCase{"BlanksBehindOtherTextsAreNotSeen", "<text xml:space='preserve'>one </text>", ""},
        DocumentCase{"APictureThatSaysItsOwnOpacity", "<image style='opacity:1' xlink:href='none.png'/>",
                     "image-refused"},
        DocumentCase{"ANestedSvgMayOverflow",
                     "<g><svg width='9' height='9' overflow='auto'><rect width='20' height='5'/></svg></g>",
                     ""},
        DocumentCase{"ANestedSvgMayScroll",
                     "<g><svg width='9' height='9' overflow='scroll'><rect width='20' height='5'/></svg></g>",
                     "not-clipped"},
        DocumentCase{"ALittleBeyondANestedSvgIsSeen",
                     "<g><svg width='90' height='90'><rect width='92' height='5'/></svg></g>", "not-clipped"},
        DocumentCase{"NextToNothingBeyondANestedSvgIsNot",
                     "<g><svg width='90' height='90'><rect width='90.5' height='5'/></svg></g>", ""},
        DocumentCase{"CornersThatTurnBackHaveNoMiter",
                     "<path d='M0 0L9 0 0 0' fill='none' stroke='red' stroke-miterlimit='1e30'/>"
                     "<path d='M0 0L9 0 0 .000001' fill='none' stroke='red' stroke-miterlimit='1e30'/>",
                     ""},
        DocumentCase{"AnAddressWithoutASchemeIsRemote",
                     "<image width='2' height='2' xlink:href='//example.org/a.png'/>", "image-remote"},
        DocumentCase{"APlainPathIsClosedWhereItsMarkersStand",
                     "<marker id='m' markerWidth='9' markerHeight='9'><rect width='9' height='9'/></marker>"
                     "<path d='M1 1L9 9 20 1z' marker-mid='url(#m)'/>",
                     ""},
        DocumentCase{"APathThatGoesOnBehindItsCloseHasOtherMarkers",
                     "<marker id='m' markerWidth='9' markerHeight='9'><rect width='9' height='9'/></marker>"
                     "<path d='M1 1L9 9 20 1z L30 30' marker-mid='url(#m)'/>",
                     "marker-place"},
        DocumentCase{"APolylineOnOneLineHasNoInside", "<polyline points='1,1 2,2 5,5 3,3' stroke='red'/>",
                     ""}),
    kNameOfRow);

TEST(DocumentCheckTest, TellsWhereAndWhat) {
    const Findings findings =
        CheckText("<svg width='9'\n     height='9'>\n  <g>\n    <rect x='1'\n      y='2em'/></g></svg>");
    ASSERT_EQ(findings.GetKept().size(), 1U);
    const Finding& finding = findings.GetKept().front();
    EXPECT_EQ(finding.code, kUnknownUnit);
    EXPECT_EQ(finding.line, 5U);
    EXPECT_EQ(finding.column, 7U);
    EXPECT_EQ(finding.element, "rect");
    EXPECT_EQ(finding.attribute, "y");
    EXPECT_EQ(finding.value, "2em");
    EXPECT_EQ(finding.message, "'em' is not a unit: read as 2");
}

// Skipped elements must be counted, or all following positions would be wrong.
TEST(DocumentCheckTest, CountsTheElementsItPassesOver) {
    const Findings findings = CheckText(
        "<svg width='9' height='9'>\n<metadata><a><b/></a><c/></metadata>\n<rect><title>t</title></rect>\n"
        "<switch><g><g/></g></switch>\n<text><tspan><g/></tspan></text>\n<defs><g><rect/></g></defs>\n<blink/"
        "></svg>");
    ASSERT_FALSE(findings.GetKept().empty());
    EXPECT_EQ(findings.GetKept().back().element, "blink");
    EXPECT_EQ(findings.GetKept().back().line, 7U);
}

TEST(DocumentCheckTest, LooksAtFragmentsOnly) {
    const Findings findings = CheckText(
        "<report><blink/><svg width='9' height='9'>\n<rect foo='1'/></svg><x><svg width='9' height='9'>\n"
        "<rect id='a' bar='1'/></svg></x></report>",
        {}, true);
    EXPECT_EQ(KindsOf(findings), "unknown-attribute x2");
    EXPECT_EQ(findings.GetKept().at(0).line, 2U);
    EXPECT_EQ(findings.GetKept().at(1).line, 3U);
}

TEST(DocumentCheckTest, FragmentsHaveNoHeightToBePartOf) {
    EXPECT_EQ(
        KindsOf(CheckText("<r><svg width='9' height='9'><rect width='50%'/><rect height='50%'/></svg></r>",
                          {}, true)),
        "percentage-of-nothing");
}

// For each attribute, whether its percentage refers to the height.
TEST(DocumentCheckTest, FragmentsHaveNoPercentagesOfTheirHeight) {
    struct Row {
        const char *element, *attribute;
        bool isVertical;
    };
    for (const Row& row :
         {Row{"rect", "x", false}, Row{"rect", "y", true}, Row{"rect", "width", false},
          Row{"rect", "height", true}, Row{"ellipse", "cx", false}, Row{"ellipse", "cy", true},
          Row{"ellipse", "rx", false}, Row{"ellipse", "ry", true}, Row{"circle", "cx", false},
          Row{"circle", "cy", true}, Row{"circle", "r", false}, Row{"line", "x1", false},
          Row{"line", "y1", true}, Row{"line", "x2", false}, Row{"line", "y2", true},
          Row{"marker", "refX", false}, Row{"marker", "refY", true}, Row{"marker", "markerWidth", false},
          Row{"marker", "markerHeight", true}}) {
        const std::string element = std::string("<") + row.element + " " + row.attribute + "='50%'/>";
        const Findings findings =
            CheckText("<r><svg width='9' height='9'>" + element + "</svg></r>", {}, true);
        EXPECT_EQ(findings.GetCount(kPercentageOfNothing), row.isVertical ? 1U : 0U) << element;
    }
}

TEST(DocumentCheckTest, APageThatIsHiddenKeepsItsLines) {
    EXPECT_EQ(
        KindsOf(CheckText("<svg width='9' height='9' display='none'><line x2='9' stroke='red'/></svg>")),
        "hidden-but-printed");
}

TEST(DocumentCheckTest, IdentifiersBelongToTheirPage) {
    EXPECT_EQ(
        KindsOf(CheckText("<svg><svg width='1'><g id='a'/></svg><svg width='1'><g id='a'/></svg></svg>")),
        "page-set");
}

TEST(DocumentCheckTest, StyleSheetsInFrontOfTheRootAreFound) {
    EXPECT_EQ(KindsOf(CheckText("<?xml-stylesheet href='a.css'?><svg width='9' height='9'/>")),
              "style-sheet");
}

TEST(DocumentCheckTest, NumbersOnAPageInMillimetresAreFoundOnce) {
    EXPECT_EQ(
        KindsOf(CheckText("<svg width='9mm' height='9mm'><rect width='9'/><path d='M1 1L9 9 1 9z'/></svg>")),
        "unit-scale");
    EXPECT_EQ(KindsOf(CheckText("<svg width='9mm' height='9mm'><rect width='9mm'/></svg>")), "");
}

TEST(DocumentCheckTest, TheDefaultFontIsFoundOnce) {
    const Findings findings = CheckText("<svg width='9' height='9'><text>a</text><text>b</text></svg>");
    EXPECT_EQ(KindsOf(findings), "font-unspecified");
    EXPECT_EQ(findings.GetKept().at(0).message.find("set in none"), std::string::npos);
    EXPECT_EQ(KindsOf(CheckText("<svg width='9' height='9'><text> </text></svg>")), "");
}

TEST(DocumentCheckTest, AUseDecidesWhatFontItsTextIsSetIn) {
    const auto kindsWith = [](const std::string& attributes) {
        return KindsOf(
            CheckText("<svg width='9' height='9' xmlns:xlink='http://www.w3.org/1999/xlink'>"
                      "<symbol id='s'><text>a</text></symbol><use xlink:href='#s' " +
                      attributes + "/></svg>"));
    };
    EXPECT_EQ(kindsWith("font-family='serif'"), "");
    EXPECT_EQ(kindsWith(""), "font-unspecified");
}

TEST(DocumentCheckTest, ForeignNamesAreCountedOnly) {
    const Findings findings =
        CheckText(CheckedDrawing("<e:view xmlns:e='urn:e'/><g xmlns:e='urn:e' e:label='x' e:mode='y'/>"));
    EXPECT_EQ(KindsOf(findings), "");
    EXPECT_EQ(findings.GetForeignCount(), 3U);
}

// The image has 2 x 2 pixels. Distortions below 2 % are invisible and not reported.
TEST(DocumentCheckTest, PicturesOfAnotherShapeAreStretched) {
    const ScratchFolder folder;
    std::ofstream(folder.Path() / "here.png", std::ios::binary) << SamplePng(2, 2);
    for (const auto& [size, kinds] : {std::pair{"width='2.03' height='2'", ""},
                                      {"width='2.05' height='2'", "image-stretched"},
                                      {"width='2' height='2.03'", ""},
                                      {"width='2' height='2.05'", "image-stretched"}})
        EXPECT_EQ(
            KindsOf(CheckText(CheckedDrawing(std::string("<image xlink:href='here.png' ") + size + "/>"),
                              folder.PathOf("drawing.svg"))),
            kinds)
            << size;
}

TEST(CheckPageSizeTest, TellsBothSizes) {
    const Findings findings = CheckText("<svg width='210mm' height='297mm' viewBox='0 0 900 450'/>");
    ASSERT_EQ(findings.GetKept().size(), 1U);
    EXPECT_EQ(findings.GetKept()[0].message,
              "the page is 254.0 x 127.0 mm, not 210.0 x 297.0 mm of width and height");
    // Invisible differences are not reported.
    EXPECT_EQ(KindsOf(CheckText("<svg width='900' height='450' viewBox='0 0 900.01 450'/>")), "");
    EXPECT_EQ(KindsOf(CheckText("<svg width='900' height='500' viewBox='0 0 900 450'/>")),
              "view-box-not-scaled");
    EXPECT_EQ(KindsOf(CheckText("<svg width='800' height='450' viewBox='0 0 900 450'/>")),
              "view-box-not-scaled");
}

}  // namespace
