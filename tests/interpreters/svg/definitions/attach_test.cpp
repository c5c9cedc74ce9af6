// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/definitions/attach.h"

#include <gtest/gtest.h>

#include "interpreters/svg/definitions/ORVPrtDefsElt.h"
#include "platform/model/ORVPrtClosedFigureElt.h"
#include "platform/model/ORVPrtClosedFigureRegionElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtPatternElt.h"
#include "platform/model/ORVPrtRectangleElt.h"
#include "platform/model/ORVPrtSymbolElt.h"
#include "platform/system/ORVRef.h"

namespace {

template <class Container>
class AttachingContainerTest : public testing::Test {};
using Attaching = testing::Types<ORVPrtGroupElt, ORVPrtImageElt, ORVPrtDefsElt, ORVPrtSymbolElt,
                                 ORVPrtPatternElt, ORVPrtClosedFigureRegionElt>;
TYPED_TEST_SUITE(AttachingContainerTest, Attaching);

TYPED_TEST(AttachingContainerTest, OwnsWhatIsAttached) {
    const ORVRef<TypeParam> container(new TypeParam);
    const ORVRef<ORVPrtRectangleElt> primitive(new ORVPrtRectangleElt);
    AttachToContainer(*container, *primitive);
    ASSERT_EQ(container->GetChildren().size(), 1U);
    EXPECT_EQ(container->GetChildren()[0], primitive.get());
    EXPECT_EQ(primitive->GetReferenceCount(), 2U);
}

template <class Container>
class OtherPrimitiveTest : public testing::Test {};
using Others = testing::Types<ORVPrtClosedFigureElt, ORVPrtRectangleElt>;
TYPED_TEST_SUITE(OtherPrimitiveTest, Others);

TYPED_TEST(OtherPrimitiveTest, TakesNothing) {
    const ORVRef<TypeParam> container(new TypeParam);
    const ORVRef<ORVPrtRectangleElt> primitive(new ORVPrtRectangleElt);
    AttachToContainer(*container, *primitive);
    EXPECT_EQ(primitive->GetReferenceCount(), 1U);
}

TEST(DefinitionHolderTest, IsOnlyADefsElement) {
    const ORVRef<ORVPrtDefsElt> holder(new ORVPrtDefsElt);
    const ORVRef<ORVPrtGroupElt> group(new ORVPrtGroupElt);
    EXPECT_EQ(AsDefinitionHolder(*holder), holder.get());
    EXPECT_EQ(AsDefinitionHolder(*group), nullptr);
}

}  // namespace
