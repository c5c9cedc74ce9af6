// Trees of primitives: references, copies, depth, budget.

#include <gtest/gtest.h>

#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/model/visit_primitive.h"
#include "platform/system/ORVRef.h"

namespace {

template <class Primitive>
ORVRef<Primitive> Make() {
    return ORVRef<Primitive>(new Primitive);
}

TEST(PrimitiveTreeTest, ContainerReferencesItsChildren) {
    const auto group = Make<ORVPrtGroupElt>();
    const auto circle = Make<ORVPrtCircleElt>();
    group->AddChild(circle.get());
    EXPECT_EQ(circle->GetReferenceCount(), 2U);
    group->RemoveChild(circle.get());
    EXPECT_EQ(circle->GetReferenceCount(), 1U);
    EXPECT_TRUE(group->GetChildren().empty());
}

TEST(PrimitiveTreeTest, ContainerTakesNeitherNullNorItself) {
    const auto group = Make<ORVPrtGroupElt>();
    group->AddChild(nullptr);
    group->AddChild(group.get());
    EXPECT_TRUE(group->GetChildren().empty());
}

TEST(PrimitiveTreeTest, RemovingTakesTheLastOfEqualChildren) {
    const auto group = Make<ORVPrtGroupElt>();
    const auto twice = Make<ORVPrtCircleElt>();
    const auto other = Make<ORVPrtCircleElt>();
    for (ORVPrtCircleElt* child : {twice.get(), other.get(), twice.get()}) group->AddChild(child);
    group->RemoveChild(twice.get());
    EXPECT_EQ(group->GetChildren(), (ORVPrtChildList{twice.get(), other.get()}));
}

TEST(PrimitiveTreeTest, DuplicateIsDeepAndKeepsEverything) {
    const auto group = Make<ORVPrtGroupElt>();
    group->SetID("g");
    group->SetDescription("what it is");
    const auto circle = Make<ORVPrtCircleElt>();
    circle->SetID("c");
    circle->SetCenter({1.0, 2.0});
    circle->SetRadius(3.0);
    circle->SetDrawStyle(kDrawFillAndStroke);
    group->AddChild(circle.get());

    const ORVRef<ORVPrtGraphicPrimitiveElt> copy(group->Duplicate());
    ASSERT_STREQ(copy->IsA(), "ORVPrtGroupElt");
    EXPECT_EQ(copy->GetID(), group->GetID());
    EXPECT_EQ(copy->GetDescription(), group->GetDescription());
    ASSERT_EQ(copy->GetChildList()->size(), 1U);
    const auto& child = static_cast<const ORVPrtCircleElt&>(*copy->GetChildList()->front());
    EXPECT_NE(&child, circle.get());
    EXPECT_EQ(child.GetReferenceCount(), 1U);
    EXPECT_EQ(child.GetID(), circle->GetID());
    EXPECT_EQ(child.GetCenter(), circle->GetCenter());
    EXPECT_EQ(child.GetRadius(), 3.0);
    EXPECT_EQ(child.GetDrawStyle(), kDrawFillAndStroke);
}

TEST(PrimitiveTreeTest, DuplicateSeparatesSharedChildren) {
    const auto group = Make<ORVPrtGroupElt>();
    const auto shared = Make<ORVPrtLineElt>();
    group->AddChild(shared.get());
    group->AddChild(shared.get());
    const ORVRef<ORVPrtGraphicPrimitiveElt> copy(group->Duplicate());
    const ORVPrtChildList& children = *copy->GetChildList();
    ASSERT_EQ(children.size(), 2U);
    EXPECT_NE(children[0], children[1]);
}

TEST(PrimitiveTreeTest, DepthCostsNoStack) {
    constexpr int kDepth = 200'000;
    auto tree = Make<ORVPrtGroupElt>();
    for (int i = 0; i < kDepth; ++i) {
        auto outer = Make<ORVPrtGroupElt>();
        outer->AddChild(tree.get());
        tree = outer;
    }
    ORVRef<ORVPrtGraphicPrimitiveElt> copy(tree->Duplicate());
    ASSERT_TRUE(copy);
    int depth = 0;
    for (const ORVPrtGraphicPrimitiveElt* at = copy.get(); !at->GetChildList()->empty();
         at = at->GetChildList()->front())
        ++depth;
    EXPECT_EQ(depth, kDepth);
    copy = nullptr;
    tree = nullptr;  // both die here
}

/// Restores the limit that other tests count on.
class BudgetTest : public testing::Test {
protected:
    ~BudgetTest() override { ORVPrtModel::SetPrimitiveLimit(ORVPrtModel::kDefaultPrimitiveLimit); }
};

TEST_F(BudgetTest, RefusesWhatExceedsIt) {
    ORVPrtModel::SetPrimitiveLimit(2);
    const auto model = Make<ORVPrtModel>();
    const ORVRef<ORVPrtCircleElt> first(model->Create<ORVPrtCircleElt>());
    const ORVRef<ORVPrtCircleElt> second(model->Create<ORVPrtCircleElt>());
    EXPECT_TRUE(first);
    EXPECT_TRUE(second);
    EXPECT_TRUE(model->GetBudget().IsSpent());
    EXPECT_EQ(model->Create<ORVPrtCircleElt>(), nullptr);
}

TEST_F(BudgetTest, CountsDuplicates) {
    ORVPrtModel::SetPrimitiveLimit(3);
    const auto model = Make<ORVPrtModel>();
    const ORVRef<ORVPrtGroupElt> group(model->Create<ORVPrtGroupElt>());
    const ORVRef<ORVPrtCircleElt> circle(model->Create<ORVPrtCircleElt>());
    group->AddChild(circle.get());
    EXPECT_EQ(group->Duplicate(), nullptr);  // two more would be four
}

TEST_F(BudgetTest, OutlivesItsModel) {
    auto model = Make<ORVPrtModel>();
    const ORVRef<ORVPrtCircleElt> circle(model->Create<ORVPrtCircleElt>());
    model = nullptr;
    const ORVRef<ORVPrtGraphicPrimitiveElt> copy(circle->Duplicate());
    EXPECT_TRUE(copy);
}

TEST(ORVPrtModelTest, KeepsPagesInOrder) {
    const auto model = Make<ORVPrtModel>();
    EXPECT_TRUE(model->GetImages()->empty());
    const auto first = Make<ORVPrtImageElt>();
    const auto second = Make<ORVPrtImageElt>();
    model->AddImage(first.get());
    model->AddImage(nullptr);
    model->AddImage(second.get());
    EXPECT_EQ(*model->GetImages(), (ORVListPtr<ORVPrtImageElt>{first.get(), second.get()}));
    EXPECT_EQ(first->GetReferenceCount(), 2U);
}

TEST(VisitPrimitiveTest, GivesEveryClassAsItself) {
    const auto check = [](const ORVRef<ORVPrtGraphicPrimitiveElt>& primitive) {
        const char* seen = "nothing";
        VisitPrimitive(*primitive, [&seen]<class Primitive>(const Primitive& one) {
            seen = Primitive::MetaClass().GetName();
            EXPECT_TRUE(one.IsAKindOf("ORVPrtGraphicPrimitiveElt"));
        });
        EXPECT_STREQ(seen, primitive->IsA());
    };
    check(Make<ORVPrtBitmapImageElt>());
    check(Make<ORVPrtCircleElt>());
    check(Make<ORVPrtClosedFigureElt>());
    check(Make<ORVPrtClosedFigureRegionElt>());
    check(Make<ORVPrtEllipseElt>());
    check(Make<ORVPrtEllipticalArcElt>());
    check(Make<ORVPrtGroupElt>());
    check(Make<ORVPrtImageElt>());
    check(Make<ORVPrtLineElt>());
    check(Make<ORVPrtPatternElt>());
    check(Make<ORVPrtPolyCubicBezierElt>());
    check(Make<ORVPrtPolyQuadraticBezierElt>());
    check(Make<ORVPrtPolygonElt>());
    check(Make<ORVPrtPolylineElt>());
    check(Make<ORVPrtRectangleElt>());
    check(Make<ORVPrtSymbolElt>());
    check(Make<ORVPrtTextElt>());
}

}  // namespace
