// SPDX-License-Identifier: Apache-2.0

// Trees of primitives: references, copies, depth, budget.

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

#include "platform/model/ORVPrtColourTable.h"
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
    tree = nullptr;  // destruction must not recurse either
}

/// Restores the default limit, on which other tests rely.
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
    EXPECT_EQ(group->Duplicate(), nullptr);  // two copies would make four
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

/// One primitive of every class.
std::vector<ORVRef<ORVPrtGraphicPrimitiveElt>> OneOfEach() {
    return {Make<ORVPrtBitmapImageElt>(),
            Make<ORVPrtCircleElt>(),
            Make<ORVPrtClosedFigureElt>(),
            Make<ORVPrtClosedFigureRegionElt>(),
            Make<ORVPrtEllipseElt>(),
            Make<ORVPrtEllipticalArcElt>(),
            Make<ORVPrtGroupElt>(),
            Make<ORVPrtImageElt>(),
            Make<ORVPrtLineElt>(),
            Make<ORVPrtPatternElt>(),
            Make<ORVPrtPolyCubicBezierElt>(),
            Make<ORVPrtPolyQuadraticBezierElt>(),
            Make<ORVPrtPolygonElt>(),
            Make<ORVPrtPolylineElt>(),
            Make<ORVPrtRectangleElt>(),
            Make<ORVPrtSymbolElt>(),
            Make<ORVPrtTextElt>()};
}

TEST(VisitPrimitiveTest, GivesEveryClassAsItself) {
    for (const auto& primitive : OneOfEach()) {
        const char* seen = "nothing";
        VisitPrimitive(*primitive, [&seen]<class Primitive>(const Primitive& one) {
            seen = Primitive::MetaClass().GetName();
            EXPECT_TRUE(one.IsAKindOf("ORVPrtGraphicPrimitiveElt"));
        });
        EXPECT_STREQ(seen, primitive->IsA());
    }
}

TEST(PrimitiveClassesTest, ContainersAreThoseThatHaveChildren) {
    std::string containers;
    for (const auto& primitive : OneOfEach()) {
        const bool isContainer = primitive->IsAKindOf("ORVPrtContainerElt");
        EXPECT_EQ(isContainer, primitive->GetChildList() != nullptr) << primitive->IsA();
        if (isContainer) containers.append(primitive->IsA()).append(1, ' ');
        for (const char* base : {"ORVPrtGraphicPrimitiveElt", "ORVBaseObject"})
            EXPECT_TRUE(primitive->IsAKindOf(base)) << primitive->IsA();
    }
    EXPECT_EQ(
        containers,
        "ORVPrtClosedFigureElt ORVPrtClosedFigureRegionElt ORVPrtGroupElt ORVPrtImageElt ORVPrtPatternElt "
        "ORVPrtSymbolElt ");
}

// In drawings with millions of shapes, these sizes determine how much memory the model takes.
TEST(PrimitiveClassesTest, HoldNoBytesBetweenTheirMembers) {
    constexpr std::size_t kWord = 8, kPrimitive = 4 * kWord, kPoint = 2 * kWord, kSets = 3 * kWord;
    EXPECT_EQ(sizeof(ORVPrtRectangleElt), kPrimitive + kSets + 2 * kPoint);
    EXPECT_EQ(sizeof(ORVPrtCircleElt), kPrimitive + kSets + kPoint + kWord);
    EXPECT_EQ(sizeof(ORVPrtPolygonElt), kPrimitive + kSets + 3 * kWord);
    EXPECT_EQ(sizeof(ORVPrtLineElt), kPrimitive + 2 * kWord + 2 * kPoint);
}

TEST(PrimitiveTreeTest, DuplicatesOfEveryClassKeepClassNamesAndSets) {
    ORVPrtStrokeAttributes stroke;
    stroke.SetStrokeWidth(7.0);
    ORVPrtFillAttributes fill;
    fill.SetFillRule(kFillEvenOdd);
    ORVPrtTransformAttributes transform;
    transform.AddTranslation({1.0, 2.0});
    for (const auto& primitive : OneOfEach()) {
        SCOPED_TRACE(primitive->IsA());
        primitive->SetID("id");
        primitive->SetDescription("description");
        primitive->SetTitle("title");
        VisitPrimitive(*primitive, [&]<class Primitive>(Primitive& one) {
            if constexpr (std::is_base_of_v<ORVPrtStroked, Primitive>) one.SetStrokeAttributes(stroke);
            if constexpr (std::is_base_of_v<ORVPrtFilled, Primitive>) one.SetFillAttributes(fill);
            if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>)
                one.SetTransformAttributes(transform);
        });

        const ORVRef<ORVPrtGraphicPrimitiveElt> copy(primitive->Duplicate());
        ASSERT_TRUE(copy);
        EXPECT_NE(copy.get(), primitive.get());
        EXPECT_EQ(copy->GetReferenceCount(), 1U);
        EXPECT_STREQ(copy->IsA(), primitive->IsA());
        EXPECT_EQ(copy->GetKind(), primitive->GetKind());
        EXPECT_EQ(copy->GetID(), "id");
        EXPECT_EQ(copy->GetDescription(), "description");
        EXPECT_EQ(copy->GetTitle(), "title");
        VisitPrimitive(*copy, [&]<class Primitive>(const Primitive& one) {
            if constexpr (std::is_base_of_v<ORVPrtStroked, Primitive>) {
                EXPECT_TRUE(one.GetStrokeAttributes() == stroke);
            }
            if constexpr (std::is_base_of_v<ORVPrtFilled, Primitive>) {
                EXPECT_TRUE(one.GetFillAttributes() == fill);
            }
            if constexpr (std::is_base_of_v<ORVPrtTransformed, Primitive>) {
                EXPECT_TRUE(one.GetTransformAttributes().GetAffine()({0.0, 0.0}) ==
                            (ORVMathPoint2D{1.0, 2.0}));
            }
        });
    }
}

TEST(PrimitiveTreeTest, DuplicatesKeepTheGeometryOfCurves) {
    const auto arc = Make<ORVPrtEllipticalArcElt>();
    arc->SetCenter({1.0, 2.0});
    arc->SetHorzRadius(3.0);
    arc->SetVertRadius(4.0);
    arc->SetStartAngle(0.5F);
    arc->SetEndAngle(1.5F);
    arc->SetSlope(0.25F);
    const ORVRef<ORVPrtGraphicPrimitiveElt> arcCopy(arc->Duplicate());
    const auto& sameArc = static_cast<const ORVPrtEllipticalArcElt&>(*arcCopy);
    EXPECT_EQ(sameArc.GetCenter(), arc->GetCenter());
    EXPECT_EQ(sameArc.GetHorzRadius(), 3.0);
    EXPECT_EQ(sameArc.GetVertRadius(), 4.0);
    EXPECT_EQ(sameArc.GetStartAngle(), 0.5F);
    EXPECT_EQ(sameArc.GetEndAngle(), 1.5F);
    EXPECT_EQ(sameArc.GetSlope(), 0.25F);

    const auto curve = Make<ORVPrtPolyQuadraticBezierElt>();
    curve->SetPoints({{0.0, 0.0}, {5.0, 9.0}, {10.0, 0.0}});
    const ORVRef<ORVPrtGraphicPrimitiveElt> curveCopy(curve->Duplicate());
    EXPECT_EQ(static_cast<const ORVPrtPolyQuadraticBezierElt&>(*curveCopy).GetPoints(), curve->GetPoints());
}

TEST(ORVPrtModelTest, ModelsAndTablesTellTheirClass) {
    const auto model = Make<ORVPrtModel>();
    EXPECT_STREQ(model->IsA(), "ORVPrtModel");
    EXPECT_TRUE(model->IsAKindOf("ORVPrtModel"));
    EXPECT_FALSE(model->IsAKindOf("ORVPrtGraphicPrimitiveElt"));
    const auto table = Make<ORVPrtColourTable>();
    EXPECT_STREQ(table->IsA(), "ORVPrtColourTable");
    EXPECT_FALSE(table->IsAKindOf("ORVPrtModel"));
}

}  // namespace
