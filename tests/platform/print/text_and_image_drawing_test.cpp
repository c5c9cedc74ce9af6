// SPDX-License-Identifier: Apache-2.0

// How patterns, images, texts and their clipping boxes are drawn.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

#include "platform/mathematics/constants.h"
#include "tests/platform/print/drawn_page.h"
#include "tests/platform/print/make_primitives.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/platform/visualization/written_images.h"
#include "tests/support/named_rows.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST(TextAndImageDrawingTest, PatternFillTilesFromThePageOrigin) {
    const auto image = MakeImage(4, 4);
    const auto rectangle = MakeRectangle(10.0, 10.0, 20.0, 20.0);
    ORVPrtFillAttributes fill;
    fill.SetFillStyle(kFillPattern);
    fill.SetFillPatternImage(image.get());
    rectangle->SetFillAttributes(fill);
    rectangle->SetTransformAttributes(Translation(3.0, 3.0));
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill pattern@255[1 0 0 1 0 0] M")));
}

TEST(TextAndImageDrawingTest, PatternTileIsAsLargeAsItsImageStates) {
    const auto image = ReadBmp(BmpToWrite::Info(1, 1, 24).With({0, 0, 0, 0}));
    ASSERT_TRUE(image);
    ASSERT_EQ(image->GetHorizontalResolution(), 2835.0);  // pixels per metre, which is 3543.3 user units
    ASSERT_EQ(image->GetVerticalResolution(), 3780.0);
    const auto rectangle = MakeRectangle(10.0, 10.0, 20.0, 20.0);
    ORVPrtFillAttributes fill;
    fill.SetFillStyle(kFillPattern);
    fill.SetFillPatternImage(image.get());
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill pattern@255[1.25 0 0 0.937 0 0] M")));
}

TEST(TextAndImageDrawingTest, PatternWithoutBitmapLeavesTheColour) {
    const auto rectangle = MakeRectangle(10.0, 10.0, 20.0, 20.0);
    ORVPrtFillAttributes fill;
    fill.SetFillStyle(kFillPattern);
    fill.SetFillColourIndex(1);
    rectangle->SetFillAttributes(fill);
    EXPECT_THAT(Drawn({rectangle}), ElementsAre(StartsWith("fill #ff0000 M")));
}

TEST(TextAndImageDrawingTest, BitmapIsStretchedIntoItsBox) {
    const auto image = MakeImage(2, 3);
    const auto bitmap = Make<ORVPrtBitmapImageElt>();
    bitmap->SetOrigin({10.0, 20.0});
    bitmap->SetSize(30.0, 15.0);
    EXPECT_THAT(Drawn({bitmap}), IsEmpty());  // no image yet
    bitmap->SetPixelImage(image.get());
    EXPECT_THAT(Drawn({bitmap}), ElementsAre("image 2x3 [30 0 0 15 10 15]"));
    bitmap->SetSize(30.0, 0.0);
    EXPECT_THAT(Drawn({bitmap}), IsEmpty());
}

TEST(TextAndImageDrawingTest, TextStandsUprightAtItsPosition) {
    EXPECT_THAT(Drawn({MakeText("Word", 10.0, 40.0)}),
                ElementsAre("text \"Word\" [1 0 0 -1 10 10] fill #000000"));
}

TEST(TextAndImageDrawingTest, EmptyAndHiddenTextsAreNotDrawn) {
    const auto hidden = MakeText("Word", 1.0, 1.0);
    hidden->SetDrawStyle(kDrawNothing);
    const auto flat = MakeText("Word", 1.0, 1.0);
    ORVPrtTextAttributes attributes;
    attributes.SetHeight(0.0);
    flat->SetTextAttributes(attributes);
    EXPECT_THAT(Drawn({MakeText("", 1.0, 1.0), hidden, flat}), IsEmpty());
}

TEST(TextAndImageDrawingTest, TextIsTurnedAndSlantedAboutItsPosition) {
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

struct ClipCase {
    const char* name;
    double mirrorHeight;
    ORVMathPoint2D origin;  // of the page's box
    const char* expected;
};
class ClippedTextTest : public testing::TestWithParam<ClipCase> {
protected:
    /// The drawn text, clipped by a box of 30 x 10 at (1, 2).
    std::string DrawnText(const ORVPrtTransformAttributes& transform = {}) {
        OnePage page;
        page.GetPage().SetOrigin(GetParam().origin);
        page.GetPage().SetMirrorHeight(GetParam().mirrorHeight);
        const auto text = MakeText("Word", GetParam().origin.x + 10.0, GetParam().origin.y + 40.0);
        text->SetClippingBox(1.0, 2.0, 30.0, 10.0);
        text->SetTransformAttributes(transform);
        page.Add(text);
        RecordingGenerator generator;
        DrawAll(page, generator);
        return generator.GetDrawn().at(0);
    }
};

TEST_P(ClippedTextTest, BoxIsMeasuredDownwardsFromTheMirrorHeight) {
    EXPECT_THAT(DrawnText(), HasSubstr(GetParam().expected));
}

// It does not matter whether the origin of coordinates is at the top or bottom of the page's box, or
// elsewhere.
INSTANTIATE_TEST_SUITE_P(
    Pages, ClippedTextTest,
    testing::Values(
        ClipCase{
            "Document", 50.0, {0.0, 0.0}, " [1 0 0 -1 10 10] fill #000000 clip M1,2 L31,2 L31,12 L1,12 Z"},
        ClipCase{
            "Fragment", 0.0, {0.0, -50.0}, " [1 0 0 -1 10 10] fill #000000 clip M1,2 L31,2 L31,12 L1,12 Z"},
        ClipCase{"FragmentThatBeginsElsewhere",
                 0.0,
                 {5.0, -70.0},
                 " [1 0 0 -1 10 10] fill #000000 clip M-4,-18 L26,-18 L26,-8 L-4,-8 Z"},
        ClipCase{"DocumentThatBeginsAtItsHeight",
                 50.0,
                 {0.0, -50.0},
                 " [1 0 0 -1 10 10] fill #000000 clip M1,-48 L31,-48 L31,-38 L1,-38 Z"}),
    kNameOfRow);

TEST(TextAndImageDrawingTest, ClippingBoxMovesWithItsText) {
    const auto text = MakeText("Word", 10.0, 40.0);
    text->SetClippingBox(1.0, 2.0, 30.0, 10.0);
    text->SetTransformAttributes(Matrix(2.0, 0.0, 0.0, 1.0));
    const auto group = MakeContainer<ORVPrtGroupElt>({text});
    group->SetTransformAttributes(Translation(3.0, -5.0));
    EXPECT_THAT(Drawn({group}), ElementsAre(HasSubstr(" clip M5,57 L65,57 L65,67 L5,67 Z")));
}

TEST(TextAndImageDrawingTest, ClippingBoxThatIsNotFiniteCutsNothingOff) {
    const double bad = std::numeric_limits<double>::infinity();
    for (const auto& [x, height] : {std::pair{bad, 10.0}, {-bad, 10.0}, {0.0, bad}, {0.0, std::nan("")}}) {
        const auto text = MakeText("Word", 10.0, 40.0);
        text->SetClippingBox(x, 2.0, 30.0, height);
        EXPECT_THAT(Drawn({text}), ElementsAre(Not(HasSubstr("clip")))) << x << " " << height;
    }
}

}  // namespace
