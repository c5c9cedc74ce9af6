#include "plugin/style/text_element.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "platform/model/ORVPrtTextElt.h"
#include "tests/plugin/values/page_state.h"
#include "tests/support/built_model.h"

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

TEST(BuildTextTest, NullIsUnusable) {
    const ORVRef<ORVPrtTextElt> container(new ORVPrtTextElt);
    EXPECT_EQ(BuildText(PageState(1.0, 1.0), LightElementAccess(nullptr), nullptr, *container), -1);
}

}  // namespace
