// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/style/text_element.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <string>

#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtTextElt.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/visualization/fonts/ORVFont.h"
#include "tests/platform/print/recording_generator.h"
#include "tests/support/built_model.h"
#include "tests/support/named_rows.h"
#include "tests/support/page_state.h"
#include "tests/support/parsed_element.h"

namespace {

class TextElementTest : public testing::TestWithParam<Backend> {
protected:
    // The first text on a page of 200 x 100.
    void Build(const std::string& content) {
        built_ = std::make_unique<BuiltModel>(Drawing(content), BuildOptions{GetParam()});
        text_ = static_cast<const ORVPrtTextElt*>(built_->GetPage().GetChildren().at(0));
    }
    const ORVPrtTextElt& Text() const { return *text_; }
    std::string String() const { return std::string(text_->GetText().GetView()); }

private:
    std::unique_ptr<BuiltModel> built_;
    const ORVPrtTextElt* text_ = nullptr;
};
INSTANTIATE_TEST_SUITE_P(Backends, TextElementTest, testing::ValuesIn(kBackends),
                         [](const auto& row) { return std::string(NameOf(row.param)); });

TEST_P(TextElementTest, LineBreaksGoAndBlanksAtTheEndsGo) {
    Build("<text fill='red'>  Hello\n  World </text>");
    EXPECT_EQ(String(), "Hello  World");
    Build("<text fill='red'>&#9;a&#13;b&#10; </text>");
    EXPECT_EQ(String(), "ab");
    Build("<text fill='red'> &#160; </text>");
    EXPECT_EQ(String(), "\u00A0");
    Build("<text fill='red'>   </text>");
    EXPECT_EQ(String(), "");
}

TEST_P(TextElementTest, OnlyItsOwnCharacters) {
    Build("<text fill='red'>a<tspan>b</tspan>c<![CDATA[<d>]]><title>t</title>e</text>");
    EXPECT_EQ(String(), "ac<d>e");
}

TEST_P(TextElementTest, PositionAddsDxAndTheUnmirroredDy) {
    Build("<text fill='red' x='10' dx='5' y='20' dy='3'>a</text>");
    EXPECT_EQ(Text().GetPosition(), (ORVMathPoint2D{15.0, 83.0}));
    Build("<text fill='red' x='50%' dx='10%' y='50%' dy='10%'>a</text>");
    EXPECT_EQ(Text().GetPosition(), (ORVMathPoint2D{120.0, 60.0}));
    Build("<text fill='red'>a</text>");
    EXPECT_EQ(Text().GetPosition(), (ORVMathPoint2D{0.0, 100.0}));
    Build("<text fill='red' x='1 2 3' dx='q'>a</text>");
    EXPECT_EQ(Text().GetPosition(), (ORVMathPoint2D{1.0, 100.0}));
}

TEST_P(TextElementTest, RotationNeverReachesTheText) {
    Build("<text fill='red' rotate='90' textLength='50' lengthAdjust='spacing'>a</text>");
    EXPECT_EQ(Text().GetTextAttributes(), ORVPrtTextAttributes());
}

TEST_P(TextElementTest, ViewBoxClips) {
    Build("<text fill='red'>a</text>");
    EXPECT_EQ(Text().GetClippingBox(), nullptr);
    Build("<text fill='red' viewBox='1 2 3 4'>a</text>");
    ASSERT_NE(Text().GetClippingBox(), nullptr);
    EXPECT_EQ(Text().GetClippingBox()->y, 2.0);
    EXPECT_EQ(Text().GetClippingBox()->height, 4.0);
    Build("<text fill='red' viewBox=''>a</text>");
    EXPECT_EQ(Text().GetClippingBox(), nullptr);
    Build("<text fill='red' viewBox=' ' style='letter-spacing:9'>a</text>");
    ASSERT_NE(Text().GetClippingBox(), nullptr);
    EXPECT_EQ(Text().GetClippingBox()->width, 9.0);
    Build("<text fill='red' viewBox=' '>a</text>");
    ASSERT_NE(Text().GetClippingBox(), nullptr);
    EXPECT_EQ(Text().GetClippingBox()->width, 200.0);
    EXPECT_EQ(Text().GetClippingBox()->height, 100.0);
}

TEST_P(TextElementTest, TheLastDescriptionWins) {
    Build("<text fill='red'><desc>A</desc><title>B</title><desc/></text>");
    EXPECT_EQ(Text().GetDescription().GetView(), "B");
    EXPECT_EQ(Text().GetTitle().GetView(), "");
}

TEST_P(TextElementTest, IdentifierTransformAndVersion) {
    Build("<text id='t' fill='red' transform='scale(2)' tlv:text-version='3'>a</text>");
    EXPECT_EQ(Text().GetID().GetView(), "t");
    EXPECT_EQ(Text().GetTransformAttributes().GetOperations().size(), 6U);
    EXPECT_EQ(Text().GetTextAttributes().GetTextVersion(), 3);
}

TEST_P(TextElementTest, AnEmptyTransformAddsNothing) {
    Build("<text fill='red' transform=''>a</text>");
    EXPECT_TRUE(Text().GetTransformAttributes().IsEmpty());
    Build("<text fill='red' patternTransform='scale(2)'>a</text>");
    EXPECT_TRUE(Text().GetTransformAttributes().IsEmpty());
    Build("<text fill='red' transform=' '>a</text>");
    EXPECT_EQ(Text().GetTransformAttributes().GetOperations().size(), 4U);
}

TEST_P(TextElementTest, StyleOverridesWhatComesBeforeIt) {
    Build(
        "<text fill='red' stroke='red' stroke-width='2' writing-mode='tb' display='none' "
        "style='writing-mode:rl;stroke-width:3;fill:none'>a</text>");
    EXPECT_EQ(Text().GetTextAttributes().GetWritingMode(), 1);
    EXPECT_EQ(Text().GetStrokeAttributes().GetStrokeWidth(), 3.0);
    EXPECT_EQ(Text().GetDrawStyle(), kDrawStroke);
}

TEST_P(TextElementTest, TextAttributesOverrideTheStyle) {
    Build(
        "<text fill='red' letter-spacing='50%' text-anchor='end' font-family='serif' font-size='8' "
        "font-weight='100' style='letter-spacing:0;text-anchor:middle;font-family:monospace;font-size:9;"
        "font-weight:900'>a</text>");
    const ORVPrtTextAttributes& text = Text().GetTextAttributes();
    EXPECT_EQ(text.GetExtraSpacing(), std::sqrt(100.0 * 100.0 * 0.5) * 50.0 / 100.0);
    EXPECT_EQ(text.GetAnchor(), 37);
    EXPECT_EQ(text.GetFont()->GetName().GetView(), "times.ttf");
    EXPECT_EQ(text.GetHeight(), 8.0);
    EXPECT_EQ(text.GetWeight(), 24);
}

TEST_P(TextElementTest, PercentagesFollowThePageWidthOfTheStyle) {
    Build("<text fill='red' x='50%' dx='10%' style='letter-spacing:10'>a</text>");
    EXPECT_EQ(Text().GetPosition(), (ORVMathPoint2D{6.0, 100.0}));
}

TEST_P(TextElementTest, TheStateIsInherited) {
    const BuiltModel built(Drawing("<g fill='red' stroke='blue' font-size='20' text-anchor='middle' "
                                   "letter-spacing='3' opacity='.5'><text fill=''>a</text></g>"),
                           {GetParam()});
    const auto& group = static_cast<const ORVPrtGroupElt&>(*built.GetPage().GetChildren().at(0));
    const auto& text = static_cast<const ORVPrtTextElt&>(*group.GetChildren().at(0));
    EXPECT_EQ(text.GetTextAttributes().GetHeight(), 20.0);
    EXPECT_EQ(text.GetTextAttributes().GetAnchor(), 33);
    EXPECT_EQ(text.GetTextAttributes().GetExtraSpacing(), 3.0);
    EXPECT_EQ(text.GetFillAttributes().GetFillColourTransparency(), 128);
    EXPECT_EQ(text.GetFillAttributes().GetFillColourIndex(), 1U);
    EXPECT_EQ(text.GetDrawStyle(), kDrawFillAndStroke);
}

TEST_P(TextElementTest, SiblingsSeeNothing) {
    const BuiltModel built(Drawing("<text fill='red' color='blue' style='letter-spacing:5' font-size='99' "
                                   "opacity='.5' display='none'>a</text>"
                                   "<text fill='currentColor' x='50%'>b</text>"),
                           {GetParam()});
    const auto& second = static_cast<const ORVPrtTextElt&>(*built.GetPage().GetChildren().at(1));
    EXPECT_EQ(second.GetPosition().x, 100.0);
    EXPECT_EQ(second.GetTextAttributes(), ORVPrtTextAttributes());
    EXPECT_EQ(second.GetFillAttributes(), ORVPrtFillAttributes());
    EXPECT_EQ(second.GetDrawStyle(), kDrawFill);
}

template <class Element>
class BuildTextTest : public testing::Test {};
TYPED_TEST_SUITE(BuildTextTest, ElementAccesses);

TYPED_TEST(BuildTextTest, NullIsUnusable) {
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    const ParsedElement<TypeParam> parsed("<text/>");
    EXPECT_EQ(BuildText(PageState(1.0, 1.0), parsed.Get(), nullptr, *container), -1);
}

TYPED_TEST(BuildTextTest, AnythingElseEndsTheChainOfHandlers) {
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    for (const char* document : {"<text/>", "<text fill='red' x='q' transform='q'>a<tspan/></text>"}) {
        const ORVRef<ORVPrtTextElt> text(new ORVPrtTextElt);
        const ParsedElement<TypeParam> parsed(document);
        EXPECT_EQ(BuildText(PageState(1.0, 1.0), parsed.Get(), text.get(), *container), 0);
    }
}

// The position of clipped text on its page, which every way of sizing a page must preserve.
struct ClippedCase {
    const char* name;
    bool embedded;
    const char* attributes;  // of the page
    const char* text;        // its attributes
};
class ClippedTextPageTest : public testing::TestWithParam<ClippedCase> {};

TEST_P(ClippedTextPageTest, ShowsTheTextInItsBox) {
    const BuiltModel built(
        DrawingWith(GetParam().attributes,
                    "<rect y='20' width='200' height='100' fill='none'/><text fill='black' x='10' " +
                        std::string(GetParam().text) + ">Hello</text>"),
        {.backend = Backend::kLight, .embedded = GetParam().embedded});
    RecordingGenerator generator;
    EXPECT_EQ(ORVPrintModelRender(built.GetModel(), &generator, {}).Draw(), 1);
    EXPECT_THAT(generator.GetDrawn(),
                testing::ElementsAre(testing::AllOf(testing::StartsWith("text \"Hello\" [1 0 0 -1 10 40]"),
                                                    testing::EndsWith(" clip M0,0 L100,0 L100,90 L0,90 Z"))));
}

constexpr const char* kAt40 = "y='40' viewBox='0 0 100 90'";
constexpr const char* kAt60 = "y='60' viewBox='0 20 100 90'";
constexpr const char* kAt140 = "y='140' viewBox='0 100 100 90'";

INSTANTIATE_TEST_SUITE_P(
    Pages, ClippedTextPageTest,
    testing::Values(ClippedCase{"Document", false, "width='200' height='100'", kAt40},
                    ClippedCase{"DocumentWithAViewBox", false, "viewBox='0 20 200 100'", kAt60},
                    ClippedCase{"DocumentThatBeginsAtItsHeight", false, "viewBox='0 100 200 100'", kAt140},
                    ClippedCase{"DocumentSizedByItsContent", false, "", kAt60},
                    ClippedCase{"Fragment", true, "width='200' height='100'", kAt40},
                    ClippedCase{"FragmentWithAViewBox", true, "viewBox='0 20 200 100'", kAt60},
                    ClippedCase{"FragmentThatBeginsAtItsHeight", true, "viewBox='0 100 200 100'", kAt140},
                    ClippedCase{"FragmentSizedByItsContent", true, "", kAt60}),
    kNameOfRow);

}  // namespace
