// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/definitions/ORVPrtDefsElt.h"

#include <gtest/gtest.h>

#include <string_view>

#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtRectangleElt.h"
#include "platform/system/ORVRef.h"

namespace {

TEST(ORVPrtDefsEltTest, IsRegisteredUnderItsName) {
    const ORVRef<ORVPrtDefsElt> holder(new ORVPrtDefsElt);
    EXPECT_EQ(std::string_view(holder->IsA()), "ORVPrtDefsElt");
    EXPECT_EQ(holder->IsAKindOf("ORVPrtGraphicPrimitiveElt"), 1);
    EXPECT_EQ(holder->IsAKindOf("ORVPrtGroupElt"), 0);
    EXPECT_EQ(std::string_view(holder->GetMetaClass().GetProvider()), "ORVnull");
    EXPECT_EQ(std::string_view(holder->GetMetaClass().GetLibrary()), "PrintKernel");
}

TEST(ORVPrtDefsEltTest, StartsWithDefaults) {
    const ORVRef<ORVPrtDefsElt> holder(new ORVPrtDefsElt);
    EXPECT_EQ(holder->GetType(), 1);
    EXPECT_EQ(holder->GetStroke(), ORVPrtStrokeAttributes());
    EXPECT_EQ(holder->GetFill(), ORVPrtFillAttributes());
    EXPECT_EQ(holder->GetText(), ORVPrtTextAttributes());
    EXPECT_TRUE(holder->GetTransform().IsEmpty());
    EXPECT_TRUE(holder->GetChildren().empty());
}

TEST(ORVPrtDefsEltTest, ReferencesItsChildren) {
    const ORVRef<ORVPrtRectangleElt> child(new ORVPrtRectangleElt);
    ORVRef<ORVPrtDefsElt> holder(new ORVPrtDefsElt);
    holder->AddChild(child.get());
    EXPECT_EQ(child->GetReferenceCount(), 2U);
    holder->AddChild(nullptr);
    holder->AddChild(holder.get());
    EXPECT_EQ(holder->GetChildren().size(), 1U);
    EXPECT_EQ(holder->GetReferenceCount(), 1U);
    holder->RemoveChild(child.get());
    EXPECT_TRUE(holder->GetChildren().empty());
    EXPECT_EQ(child->GetReferenceCount(), 1U);
    holder->RemoveChild(child.get());
    EXPECT_EQ(child->GetReferenceCount(), 1U);

    holder->AddChild(child.get());
    holder = nullptr;
    EXPECT_EQ(child->GetReferenceCount(), 1U);
}

TEST(ORVPrtDefsEltTest, DuplicatesDeeply) {
    const ORVRef<ORVPrtDefsElt> holder(new ORVPrtDefsElt);
    ORVPrtStrokeAttributes stroke;
    stroke.SetStrokeWidth(3.0);
    ORVPrtFillAttributes fill;
    fill.SetFillColourIndex(7);
    ORVPrtTextAttributes text;
    text.SetHeight(20.0);
    ORVPrtTransformAttributes transform;
    transform.AddScaleX(2.0);
    holder->SetType(3);
    holder->SetStroke(stroke);
    holder->SetFill(fill);
    holder->SetText(text);
    holder->SetTransform(transform);
    holder->SetID("d");
    const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
    const ORVRef<ORVPrtRectangleElt> rectangle(new ORVPrtRectangleElt);
    rectangle->SetID("r");
    group->AddChild(rectangle.get());
    holder->AddChild(group.get());

    const ORVRef<ORVPrtGraphicPrimitiveElt> copy(holder->Duplicate());
    ASSERT_TRUE(copy);
    ASSERT_EQ(std::string_view(copy->IsA()), "ORVPrtDefsElt");
    const auto& twin = static_cast<const ORVPrtDefsElt&>(*copy);
    EXPECT_EQ(twin.GetType(), 3);
    EXPECT_EQ(twin.GetStroke(), stroke);
    EXPECT_EQ(twin.GetFill(), fill);
    EXPECT_EQ(twin.GetText(), text);
    EXPECT_EQ(twin.GetTransform(), transform);
    EXPECT_EQ(twin.GetID(), "d");
    ASSERT_EQ(twin.GetChildren().size(), 1U);
    EXPECT_NE(twin.GetChildren()[0], group.get());
    ASSERT_EQ(twin.GetChildren()[0]->GetChildList()->size(), 1U);
    EXPECT_NE(twin.GetChildren()[0]->GetChildList()->front(), rectangle.get());
    EXPECT_EQ(twin.GetChildren()[0]->GetChildList()->front()->GetID(), "r");
    EXPECT_EQ(rectangle->GetReferenceCount(), 2U);
}

}  // namespace
