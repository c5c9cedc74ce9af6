// SPDX-License-Identifier: Apache-2.0

// Each kind of finding: a minimal document that has it, and a corrected version that has not.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <string>

#include "library/check/document_check.h"
#include "tests/library/check/checked.h"
#include "tests/support/sample_images.h"
#include "tests/support/scratch_folder.h"

namespace {

using enum FindingCode;

struct KindCase {
    FindingCode code;
    const char* wrong;
    const char* right;

    friend std::ostream& operator<<(std::ostream& out, const KindCase& row) {
        return out << GetFindingKind(row.code).name;
    }
};

// Whole documents if they start with "<svg"; otherwise, the content of a drawing.
const KindCase kKindCases[] = {
    {kUnknownElement, "<blink/>", "<g/>"},
    {kPrefixedElement, "<s:rect xmlns:s='http://www.w3.org/2000/svg'/>", "<s:rect xmlns:s='urn:editor'/>"},
    {kMisplacedElement, "<rect><circle/></rect>", "<g><circle/></g>"},
    {kNotOnAPage, "<svg><svg width='1'/><svg width='1'/><rect/></svg>",
     "<svg width='9' height='9'><svg width='1' height='1'/><rect/></svg>"},
    {kPageSet, "<svg><svg width='1' height='1'/><svg width='1' height='1'/></svg>",
     "<svg width='9' height='9'><g><svg width='1' height='1'/><svg width='1' height='1'/></g></svg>"},
    {kForeignNamespace, "<g xmlns='urn:other'><rect/><rect/></g>",
     "<g xmlns='http://www.w3.org/2000/svg'><rect/></g>"},
    {kGradient, "<defs><linearGradient id='g'/></defs><rect fill='url(#g)'/>",
     "<defs><linearGradient id='g'/></defs><rect fill='red'/>"},
    {kClipPath, "<rect clip-path='url(#c)'/>", "<rect clip-path='none'/>"},
    {kMask, "<rect style='mask:url(#m)'/>", "<rect style='mask:none'/>"},
    {kFilter, "<rect filter='url(#f)'/>", "<filter/><rect/>"},
    {kStyleSheet, "<style>rect { fill: red }</style>", "<style> </style>"},
    {kScript, "<script/>", "<rect onyx:click='' xmlns:onyx='urn:editor'/>"},
    {kAnimation, "<rect><animate/></rect>", "<rect><title>animate</title></rect>"},
    {kTextSpan, "<text>a<tspan>b</tspan></text>", "<text>ab</text>"},
    {kSwitch, "<switch><rect/></switch>", "<g><rect/></g>"},
    {kForeignObject, "<foreignObject/>", "<metadata/>"},
    {kSvgFont, "<defs><font/></defs>", "<defs><g/></defs>"},
    {kUnprintedElement, "<mesh/>", "<view/>"},
    {kHrefWithoutPrefix, "<a href='x'/>", "<a xlink:href='x' href='x'/>"},
    {kPrefixedAttribute, "<a xmlns:l='http://www.w3.org/1999/xlink' l:href='x'/>",
     "<a xmlns:l='urn:editor' l:href='x'/>"},
    {kMissingReference, "<use xlink:href='#d'/>", "<defs><g id='d'/></defs><use xlink:href='#d'/>"},
    {kUnreachableReference, "<g id='d'/><use xlink:href='#d'/>",
     "<symbol id='d'/><g><use xlink:href='#d'/></g>"},
    {kBadReference, "<use xlink:href='other.svg#d'/>", "<a xlink:href='other.svg#d'/>"},
    {kDuplicateId, "<rect id='a'/><rect id='A'/>", "<rect id='a'/><rect id='b'/>"},
    {kImageMissing, "<image width='2' height='2' xlink:href='none.png'/>",
     "<image width='2' height='2' xlink:href='here.png'/>"},
    {kScriptLink, "<a xlink:href='javascript:alert(1)'/>",
     "<a xlink:href='http://example.org/#javascript:'/>"},
    {kImageRefused, "<image width='2' height='2' xlink:href='../here.png'/>",
     "<image width='2' height='2' xlink:href='here.png'/>"},
    {kImageRemote, "<image width='2' height='2' xlink:href='https://example.org/a.png'/>",
     "<image width='2' height='2' xlink:href='here.png'/>"},
    {kImageFormat, "<image width='2' height='2' xlink:href='data:image/gif;base64,R0lG'/>",
     "<image width='2' height='2' xlink:href='here.png'/>"},
    {kImageBroken, "<image width='2' height='2' xlink:href='broken.png'/>",
     "<image width='2' height='2' xlink:href='here.png'/>"},
    {kImageColours, "<image width='2' height='2' xlink:href='coloured.png'/>",
     "<image width='2' height='2' xlink:href='here.png'/>"},
    {kImageNotTurned, "<image width='2' height='2' xlink:href='turned.png'/>",
     "<image width='2' height='2' xlink:href='turned.jpg'/>"},
    {kImageStretched, "<image width='2' height='4' xlink:href='here.png'/>",
     "<image width='4' height='4' xlink:href='here.png'/>"},
    {kUnknownAttribute, "<rect colour='red'/>",
     "<rect class='red' data-x='1' e:y='2' xmlns:e='urn:editor'/>"},
    {kAttributeWithoutEffect, "<text textLength='9'>a</text>", "<text x='9'>a</text>"},
    {kIgnoredProperty, "<rect stroke-dashoffset='3'/>", "<rect stroke-dashoffset='0'/>"},
    {kUnknownProperty, "<rect style='colour:red'/>", "<rect style='color:red;-editor-x:1'/>"},
    {kAttributeOnlyProperty, "<rect style='display:none'/>", "<rect style='display:inline'/>"},
    {kLostDeclarations, "<rect style='fill:red;;stroke:blue'/>", "<rect style='fill:red; stroke:blue;'/>"},
    {kBrokenDeclaration, "<rect style='fill red'/>", "<rect style='fill: red; '/>"},
    {kBadColour, "<rect fill='rgba(1,2,3,0.5)'/>", "<rect fill='rgb(1,2,3)' stroke='currentColor'/>"},
    {kBadLength, "<rect width='wide'/>", "<rect width='12px'/>"},
    {kUnknownUnit, "<rect width='2em'/>", "<rect width='2px'/>"},
    {kBadValue, "<rect fill-rule='odd'/>", "<rect fill-rule='evenodd'/>"},
    {kBadTransform, "<g transform='translate(1-2)'/>", "<g transform='translate(1 -2) scale(2)'/>"},
    {kBadViewBox, "<svg viewBox='0,0,9,9'/>", "<svg viewBox='0 0 9 9'/>"},
    {kBadPoints, "<polygon points='1,2 3'/>", "<polygon points='1,2 3,4'/>"},
    {kBadPathData, "<path d='M0 0 L1.5.5 2 3 3 4 9'/>", "<path d='M0 0 L1.5 .5 2-2z'/>"},
    {kOpacityRange, "<rect fill-opacity='50%'/>", "<rect fill-opacity='0.5'/>"},
    {kViewBoxNotScaled, "<svg width='210mm' height='297mm' viewBox='0 0 210 297'/>",
     "<svg width='210mm' height='297mm' viewBox='0 0 744.09 1052.36'/>"},
    {kPageWithoutSize, "<svg><rect/></svg>", "<svg viewBox='0 0 9 9'><rect/></svg>"},
    {kUnitScale, "<rect width='2mm'/>", "<rect width='0mm'/>"},
    {kPercentageOfNothing, "<svg width='100%' height='50'/>", "<svg width='100' height='50'/>"},
    {kPercentageInNestedSvg, "<svg><rect width='50%'/></svg>", "<rect width='50%'/>"},
    {kSquareCorners, "<rect rx='3'/>", "<rect rx='0'/>"},
    {kShapeSize, "<rect width='-5' height='5'/>", "<rect width='5' height='5'/>"},
    {kZeroLength, "<line x1='9' x2='9' stroke='red' stroke-linecap='round'/>",
     "<line x1='9' x2='9' stroke='red'/>"},
    {kJoinedEnds, "<polyline points='1,1 9,1 9,9 1,1' fill='none' stroke='red' stroke-width='3'/>",
     "<polygon points='1,1 9,1 9,9 1,1' fill='none' stroke='red'/><path d='M1 1H9V9z' fill='none' "
     "stroke='red'/>"},
    {kArcShape, "<path d='M10 50A40 20 30 0 1 90 50L50 90z'/>",
     "<path d='M10 50A40 20 0 0 1 90 50L50 90z'/>"},
    {kSmoothControl, "<path d='M10 50Q30 10 50 50S80 90 90 50z'/>", "<path d='M10 50Q30 10 50 50T90 50z'/>"},
    {kAlwaysStroked, "<line x2='9'/>", "<line x2='9' stroke='black'/>"},
    {kPolylineNotFilled, "<polyline points='1,1 9,9 1,9' stroke='red'/>",
     "<polyline points='1,1 9,9 1,9' stroke='red' fill='none'/>"},
    {kPathNotFilled, "<path d='M0 0 C9 0 9 0 9 9' stroke='red'/>",
     "<path d='M0 0 A5 5 0 0 1 9 9Z' stroke='red'/><path d='M0 0 C9 0 9 0 9 9' stroke='red' fill='none'/>"},
    {kHiddenButPrinted, "<g display='none'><rect fill='red'/></g>", "<g display='none'><rect/></g>"},
    {kRepaintedDefinition, "<symbol id='s'><rect fill='red'/></symbol><use xlink:href='#s'/>",
     "<symbol id='s'><rect fill='red'/></symbol><use xlink:href='#s' fill='red'/>"},
    {kPaintedVisible, "<rect visibility='visible'/>", "<rect visibility='visible' stroke='none'/>"},
    {kFittedUse,
     "<defs><rect id='d' width='3' height='3'/></defs><use xlink:href='#d' width='9' height='9'/>",
     "<symbol id='d' viewBox='0 0 3 3'/><use xlink:href='#d' width='9' height='9'/>"},
    {kUnfittedSymbol, "<symbol id='d' viewBox='0 0 3 3'/><use xlink:href='#d'/>",
     "<symbol id='d'/><use xlink:href='#d'/>"},
    {kNotClipped, "<g><svg width='9' height='9'><rect width='20' height='5'/></svg></g>",
     "<g><svg width='9' height='9' overflow='visible'><rect width='20' height='5'/></svg></g>"},
    {kPatternWithoutImage, "<pattern id='p'><rect/></pattern><rect fill='url(#p)'/>",
     "<pattern id='p' patternUnits='userSpaceOnUse' width='2' height='2'><image xlink:href='here.png' "
     "width='2' "
     "height='2'/></pattern><rect fill='url(#p)'/>"},
    {kPatternTile,
     "<pattern id='p' width='2' height='2'><image xlink:href='here.png' width='2' height='2'/></pattern>"
     "<rect fill='url(#p)'/>",
     "<pattern id='p' patternUnits='userSpaceOnUse' width='2' height='2'><image xlink:href='here.png' "
     "width='2' "
     "height='2'/></pattern><g fill='url(#p)'><rect/></g>"},
    {kMarkerNotTurned, "<marker id='m' orient='auto'/>", "<marker id='m' orient='0'/>"},
    {kMarkerSize,
     "<marker id='m' markerWidth='9' markerHeight='9'><rect width='9' height='9'/></marker>"
     "<path d='M1 1L9 9 20 1' stroke-width='3' marker-end='url(#m)'/>",
     "<marker id='m' markerWidth='9' markerHeight='9' markerUnits='userSpaceOnUse'><rect width='9' "
     "height='9'/></marker>"
     "<path d='M1 1L9 9 20 1' stroke-width='3' marker-end='url(#m)'/>"},
    {kMarkerPlace,
     "<marker id='m' markerWidth='9' markerHeight='9'><rect width='9' height='9'/></marker>"
     "<polygon points='1,1 9,9 20,1' marker-end='url(#m)'/>",
     "<marker id='m' markerWidth='9' markerHeight='9'><rect width='9' height='9'/></marker>"
     "<polygon points='1,1 9,9 20,1' marker-start='url(#m)'/>"},
    {kExtraEffect, "<g patternTransform='translate(9 9)'><rect/></g>",
     "<g transform='translate(9 9)'><rect/></g>"},
    {kCurrentColour, "<g color='red' fill='currentColor'><rect color='blue'/></g>",
     "<g color='red' fill='currentColor'><rect/></g>"},
    {kGroupOpacity, "<g opacity='0.5'><rect/><rect/></g>", "<g opacity='0.5'><rect/></g>"},
    {kOpacityCombined, "<rect opacity='0.5' fill-opacity='0.5'/>",
     "<g opacity='0.5'><rect opacity='0.5'/></g><rect fill-opacity='0.5'/>"},
    {kAttributeWins, "<text font-size='9' style='font-size:20px'>a</text>",
     "<g font-size='9' style='font-size:20px'><text>a</text></g>"},
    {kFontSizePercentage, "<text font-size='50%'>a</text>", "<text font-size='6'>a</text>"},
    {kFontWeightReversed, "<text style='font-weight:bolder'>a</text>",
     "<text style='font-weight:bold'>a</text>"},
    {kLetterSpacingInStyle, "<text style='letter-spacing:2'>a</text>", "<text letter-spacing='2'>a</text>"},
    {kTextPositions, "<text x='1 2 3'>abc</text>", "<text x='1'>abc</text>"},
    {kTextShiftUp, "<text dy='2'>abc</text>", "<text dy='0'>abc</text>"},
    {kJoinedWords, "<text>one\ntwo</text>", "<text>\n  one\n two\n</text>"},
    {kTextBlanks, "<text>one   two</text>",
     "<text xml:space='preserve'>one   two</text><text>  one two  </text>"},
    {kFontUnspecified, "<svg width='9' height='9'><text>a</text></svg>",
     "<svg width='9' height='9'><text font-family='serif'>a</text></svg>"},
    {kFontMissing, "<text font-family='No Such Family'>a</text>",
     "<g font-family='No Such Family'><rect/></g>"},
    {kFontFallback, "<text font-family='No Such Family, serif'>a</text>",
     "<text font-family='serif'>a</text>"},
    {kMissingGlyph, "<text>&#x10FFFD;</text>", "<text>A</text>"},
};

class KindTest : public testing::TestWithParam<KindCase> {
protected:
    Findings Check(const std::string& content) const {
        std::filesystem::create_directories(folder_.Path() / "inner");
        std::ofstream(folder_.Path() / "here.png", std::ios::binary) << SamplePng(2, 2);
        std::ofstream(folder_.Path() / "inner" / "here.png", std::ios::binary) << SamplePng(2, 2);
        std::ofstream(folder_.Path() / "inner" / "broken.png", std::ios::binary)
            << SamplePng(2, 2).substr(0, 40);
        const auto write = [&](const char* name, const std::string& bytes) {
            std::ofstream(folder_.Path() / "inner" / name, std::ios::binary) << bytes;
        };
        write("coloured.png", WithPngChunk(SamplePng(2, 2), "iCCP", "no profile"));
        write("turned.png", WithPngChunk(SamplePng(2, 2), "eXIf", SampleExif(6)));
        write("turned.jpg",
              WithJpegSegment(SampleJpeg(2, 2), 0xE1, std::string("Exif\0\0", 6) + SampleExif(6)));
        const std::string document = content.starts_with("<svg") && GetParam().code != kPercentageInNestedSvg
                                         ? content
                                         : CheckedDrawing(content);
        return CheckText(document, (folder_.Path() / "inner" / "drawing.svg").string());
    }

private:
    ScratchFolder folder_;
};

TEST_P(KindTest, IsFoundWhereItIsAndNothingElse) {
    EXPECT_EQ(KindsOf(Check(GetParam().wrong)), GetFindingKind(GetParam().code).name) << GetParam().wrong;
}

TEST_P(KindTest, IsNotFoundWhereItIsNot) {
    EXPECT_EQ(KindsOf(Check(GetParam().right)), "") << GetParam().right;
}

INSTANTIATE_TEST_SUITE_P(Kinds, KindTest, testing::ValuesIn(kKindCases), [](const auto& row) {
    std::string name(GetFindingKind(row.param.code).name);
    std::erase(name, '-');
    return name;
});

TEST(FindingKindsTest, EveryKindHasACase) {
    std::set<FindingCode> codes;
    for (const KindCase& row : kKindCases) codes.insert(row.code);
    // Whether text can be set depends on the machine: see tests/apps/fonts_test.cpp.
    for (const FindingKind& kind : GetFindingKinds())
        EXPECT_TRUE(codes.contains(kind.code) || kind.code == kTextCannotBeSet) << kind.name;
}

}  // namespace
