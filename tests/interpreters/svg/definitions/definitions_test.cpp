// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/definitions/definitions.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "interpreters/svg/definitions/ORVPrtDefsElt.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "platform/model/ORVPrtBitmapImageElt.h"
#include "platform/model/ORVPrtCircleElt.h"
#include "platform/model/ORVPrtClosedFigureElt.h"
#include "platform/model/ORVPrtClosedFigureRegionElt.h"
#include "platform/model/ORVPrtEllipseElt.h"
#include "platform/model/ORVPrtEllipticalArcElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtLineElt.h"
#include "platform/model/ORVPrtPatternElt.h"
#include "platform/model/ORVPrtPolyCubicBezierElt.h"
#include "platform/model/ORVPrtPolyQuadraticBezierElt.h"
#include "platform/model/ORVPrtPolygonElt.h"
#include "platform/model/ORVPrtPolylineElt.h"
#include "platform/model/ORVPrtPrimitiveBudget.h"
#include "platform/model/ORVPrtRectangleElt.h"
#include "platform/model/ORVPrtSymbolElt.h"
#include "platform/model/ORVPrtTextElt.h"
#include "tests/support/named_rows.h"

namespace {

ORVRef<ORVPrtRectangleElt> Named(const char* identifier) {
    const ORVRef<ORVPrtRectangleElt> primitive(new ORVPrtRectangleElt);
    primitive->SetID(identifier);
    return primitive;
}

// A holder with the default draw state.
ORVRef<ORVPrtDefsElt> FreshHolder() {
    const ORVRef<ORVPrtDefsElt> holder(new ORVPrtDefsElt);
    holder->SetType(SvgDrawState().drawStyle);
    return holder;
}

class DefinitionsTest : public testing::Test {
protected:
    DefinitionsTest() { state.definitions = &definitions; }

    // Registers a holder whose children have these identifiers.
    ORVRef<ORVPrtDefsElt> Register(std::initializer_list<const char*> identifiers) {
        const ORVRef<ORVPrtDefsElt> holder = FreshHolder();
        const std::size_t place = definitions.Register(*holder);
        for (const char* identifier : identifiers) holder->AddChild(Named(identifier).get());
        definitions.IndexNewChildren(place);
        return holder;
    }
    ORVPrtGraphicPrimitiveElt* Find(const char* identifier) {
        const SvgDefinitions::Definition* found = definitions.Find(identifier);
        return found ? found->primitive : nullptr;
    }

    SvgDefinitions definitions;
    SvgDrawState state;
};

TEST_F(DefinitionsTest, FindsByIdentifierWithoutRegardToCase) {
    const ORVRef<ORVPrtDefsElt> holder = Register({"a", "Star", "b"});
    EXPECT_EQ(Find("Star"), holder->GetChildren()[1]);
    EXPECT_EQ(Find("star"), holder->GetChildren()[1]);
    EXPECT_EQ(Find("STAR"), holder->GetChildren()[1]);
    EXPECT_EQ(Find("stars"), nullptr);
    EXPECT_EQ(Find("sta"), nullptr);
}

TEST_F(DefinitionsTest, AllLettersMatchInEitherCaseAndWhatStandsBesideThemDoesNot) {
    const ORVRef<ORVPrtDefsElt> holder = Register({"AMZ", "@["});
    EXPECT_EQ(Find("amz"), holder->GetChildren()[0]);
    EXPECT_EQ(Find("@["), holder->GetChildren()[1]);
    EXPECT_EQ(Find("`{"), nullptr);
}

TEST_F(DefinitionsTest, CaseIsThatOfAsciiLettersOnly) {
    const ORVRef<ORVPrtDefsElt> holder = Register({"\xC3\x84"});
    EXPECT_EQ(Find("\xC3\x84"), holder->GetChildren()[0]);
    EXPECT_EQ(Find("\xC3\xA4"), nullptr);
}

TEST_F(DefinitionsTest, EmptyIdentifierMatchesNothing) {
    Register({"", "a"});
    EXPECT_EQ(Find(""), nullptr);
}

TEST_F(DefinitionsTest, FirstChildOfAHolderWins) {
    const ORVRef<ORVPrtDefsElt> holder = Register({"x", "a", "A", "a"});
    EXPECT_EQ(Find("A"), holder->GetChildren()[1]);
}

TEST_F(DefinitionsTest, FirstHolderWins) {
    const ORVRef<ORVPrtDefsElt> first = Register({"b", "a"});
    const ORVRef<ORVPrtDefsElt> second = Register({"a", "c"});
    EXPECT_EQ(Find("a"), first->GetChildren()[1]);
    EXPECT_EQ(Find("c"), second->GetChildren()[1]);
}

TEST_F(DefinitionsTest, EarlierHolderWinsThoughItsChildCameLater) {
    const ORVRef<ORVPrtDefsElt> first = FreshHolder();
    const std::size_t place = definitions.Register(*first);
    const ORVRef<ORVPrtDefsElt> second = Register({"a"});
    const ORVRef<ORVPrtDefsElt> third = Register({"a"});
    EXPECT_EQ(Find("a"), second->GetChildren()[0]);
    first->AddChild(Named("a").get());
    EXPECT_EQ(Find("a"), second->GetChildren()[0]) << "the handler of the new child still runs";
    definitions.IndexNewChildren(place);
    EXPECT_EQ(Find("a"), first->GetChildren()[0]);
    definitions.Truncate(1);
    EXPECT_EQ(Find("a"), first->GetChildren()[0]);
}

TEST_F(DefinitionsTest, TruncateRemovesTheLastOnes) {
    const ORVRef<ORVPrtDefsElt> first = Register({"a"});
    const ORVRef<ORVPrtDefsElt> second = Register({"A", "b", "b"});
    EXPECT_EQ(second->GetReferenceCount(), 2U);
    definitions.Truncate(1);
    EXPECT_EQ(definitions.GetHolderCount(), 1U);
    EXPECT_EQ(second->GetReferenceCount(), 1U);
    EXPECT_EQ(Find("a"), first->GetChildren()[0]);
    EXPECT_EQ(Find("b"), nullptr);
    definitions.Truncate(0);
    EXPECT_EQ(first->GetReferenceCount(), 1U);
    EXPECT_EQ(Find("a"), nullptr);
}

TEST_F(DefinitionsTest, ScopeRemovesWhatWasRegisteredInside) {
    const ORVRef<ORVPrtDefsElt> outside = Register({"a"});
    {
        const SvgDefinitionScope scope(definitions);
        Register({"b"});
        Register({"c"});
        EXPECT_EQ(definitions.GetHolderCount(), 3U);
    }
    EXPECT_EQ(definitions.GetHolderCount(), 1U);
    EXPECT_EQ(Find("b"), nullptr);
    EXPECT_NE(Find("a"), nullptr);
}

// Adds and removes holders and children at random, and regularly looks up every child.
TEST_F(DefinitionsTest, FindsWhatALookThroughAllHoldersFinds) {
    constexpr unsigned int kIdentifiers = 300;
    std::mt19937 random(5);
    std::vector<ORVRef<ORVPrtDefsElt>> holders;
    for (int step = 0; step < 4000; ++step) {
        const std::size_t choice = random() % 16;
        if (choice == 0 && !holders.empty()) {
            holders.resize(holders.size() - 1 - random() % std::min<std::size_t>(holders.size(), 4));
            definitions.Truncate(holders.size());
        } else if (choice < 4) {
            holders.push_back(FreshHolder());
            definitions.Register(*holders.back());
        } else if (!holders.empty()) {
            const std::size_t place = random() % holders.size();
            holders[place]->AddChild(Named(("id-" + std::to_string(random() % kIdentifiers)).c_str()).get());
            definitions.IndexNewChildren(place);
        }
        if (step % 100 != 0) continue;
        for (unsigned int number = 0; number < kIdentifiers; ++number) {
            const std::string identifier = "id-" + std::to_string(number);
            ORVPrtGraphicPrimitiveElt* expected = nullptr;
            for (const ORVRef<ORVPrtDefsElt>& holder : holders)
                for (ORVPrtGraphicPrimitiveElt* child : holder->GetChildren())
                    if (!expected && identifier == child->GetID().ConvertToChar()) expected = child;
            ASSERT_EQ(Find(identifier.c_str()), expected) << identifier << " in step " << step;
        }
    }
}

TEST_F(DefinitionsTest, FetchingAheadFindsTheSame) {
    constexpr int kCount = 5000;
    const ORVRef<ORVPrtDefsElt> holder = FreshHolder();
    const std::size_t place = definitions.Register(*holder);
    EXPECT_FALSE(definitions.AreMany());
    const auto name = [](int i) { return "part-" + std::to_string(i); };
    for (int i = 0; i < kCount; ++i) {
        holder->AddChild(Named(name(i).c_str()).get());
        definitions.IndexNewChildren(place);
        if (definitions.AreMany()) definitions.Prefetch(name(i * 7 % kCount));  // the table grows in between
    }
    EXPECT_TRUE(definitions.AreMany());
    for (int i = 0; i < kCount; ++i) {
        definitions.Prefetch(name((i + 3) * 7));  // some of these do not exist
        definitions.Prefetch("");
        ASSERT_EQ(Find(name(i).c_str()), holder->GetChildren()[static_cast<std::size_t>(i)]);
    }
    definitions.Truncate(0);
    EXPECT_FALSE(definitions.AreMany());
}

TEST(DefinitionsLifetimeTest, EndReleasesTheHolders) {
    const ORVRef<ORVPrtDefsElt> holder = FreshHolder();
    {
        SvgDefinitions definitions;
        definitions.Register(*holder);
        EXPECT_EQ(holder->GetReferenceCount(), 2U);
    }
    EXPECT_EQ(holder->GetReferenceCount(), 1U);
}

TEST_F(DefinitionsTest, LookUpClearsTheOutput) {
    ORVRef<ORVPrtGraphicPrimitiveElt> definition(new ORVPrtRectangleElt);
    EXPECT_EQ(FindDefinition(state, "a", definition), 0);
    EXPECT_FALSE(definition);
    definition = ORVRef<ORVPrtGraphicPrimitiveElt>(new ORVPrtRectangleElt);
    state.definitions = nullptr;
    EXPECT_EQ(FindDefinition(state, "a", definition), 0);
    EXPECT_FALSE(definition);
}

TEST_F(DefinitionsTest, EqualStateHandsOutTheDefinitionItself) {
    const ORVRef<ORVPrtDefsElt> holder = Register({"a"});
    ORVRef<ORVPrtGraphicPrimitiveElt> definition;
    EXPECT_EQ(FindDefinition(state, "a", definition), 1);
    EXPECT_EQ(definition.get(), holder->GetChildren()[0]);
    EXPECT_EQ(definition->GetReferenceCount(), 2U);
}

// A difference in any part of the state causes a duplicate.
struct DifferenceCase {
    const char* name;
    void (*change)(SvgDrawState&);
    bool duplicates;
};

class StateDifferenceTest : public testing::TestWithParam<DifferenceCase> {};

TEST_P(StateDifferenceTest, DecidesOnADuplicate) {
    SvgDefinitions definitions;
    const ORVRef<ORVPrtDefsElt> holder = FreshHolder();
    definitions.Register(*holder);
    holder->AddChild(Named("a").get());
    definitions.IndexNewChildren(0);
    SvgDrawState state;
    state.definitions = &definitions;
    GetParam().change(state);

    ORVRef<ORVPrtGraphicPrimitiveElt> definition;
    ASSERT_EQ(FindDefinition(state, "a", definition), 1);
    ASSERT_TRUE(definition);
    EXPECT_EQ(definition.get() != holder->GetChildren()[0], GetParam().duplicates);
    const auto& rectangle = static_cast<const ORVPrtRectangleElt&>(*definition);
    EXPECT_EQ(rectangle.GetStrokeAttributes(), state.stroke);
    EXPECT_EQ(rectangle.GetFillAttributes(), state.fill);
    EXPECT_EQ(rectangle.GetDrawStyle(), ORVRef(new ORVPrtRectangleElt)->GetDrawStyle())
        << "the draw style stays";
}

INSTANTIATE_TEST_SUITE_P(
    State, StateDifferenceTest,
    testing::Values(
        DifferenceCase{"Nothing", [](SvgDrawState&) {}, false},
        DifferenceCase{"DrawStyle", [](SvgDrawState& s) { s.drawStyle = 3; }, true},
        DifferenceCase{"StrokeColour", [](SvgDrawState& s) { s.stroke.SetStrokeColourIndex(1); }, true},
        DifferenceCase{"StrokeTransparency", [](SvgDrawState& s) { s.stroke.SetStrokeColourTransparency(1); },
                       true},
        DifferenceCase{"StrokeType", [](SvgDrawState& s) { s.stroke.SetStrokeType(7); }, true},
        DifferenceCase{"StrokeWidth", [](SvgDrawState& s) { s.stroke.SetStrokeWidth(2.0); }, true},
        DifferenceCase{"StrokeStyle", [](SvgDrawState& s) { s.stroke.SetStrokeStyle(2); }, true},
        DifferenceCase{"StrokeCap", [](SvgDrawState& s) { s.stroke.SetStrokeCap(11); }, true},
        DifferenceCase{"StrokeJoin", [](SvgDrawState& s) { s.stroke.SetStrokeJoin(14); }, true},
        DifferenceCase{"StrokeDash",
                       [](SvgDrawState& s) {
                           const float dash[] = {1.0F};
                           s.stroke.SetStrokeDashPattern(dash, 1);
                       },
                       true},
        DifferenceCase{"FillStyle", [](SvgDrawState& s) { s.fill.SetFillStyle(2); }, true},
        DifferenceCase{"FillRule", [](SvgDrawState& s) { s.fill.SetFillRule(1); }, true},
        DifferenceCase{"FillColour", [](SvgDrawState& s) { s.fill.SetFillColourIndex(1); }, true},
        DifferenceCase{"FillTransparency", [](SvgDrawState& s) { s.fill.SetFillColourTransparency(1); },
                       true},
        DifferenceCase{"TextHeight", [](SvgDrawState& s) { s.text.SetHeight(1.0); }, true},
        DifferenceCase{"TextVersion", [](SvgDrawState& s) { s.text.SetTextVersion(1); }, true},
        DifferenceCase{"TextWeight", [](SvgDrawState& s) { s.text.SetWeight(26); }, true},
        // Not part of the comparison.
        DifferenceCase{"CurrentColour",
                       [](SvgDrawState& s) { s.fillCurrentColour = s.strokeCurrentColour = 5; }, false},
        DifferenceCase{"Markers", [](SvgDrawState& s) { s.markers.Edit().start = "m"; }, false},
        DifferenceCase{"PageSize", [](SvgDrawState& s) { s.pageWidth = s.pageHeight = 5.0; }, false}),
    kNameOfRow);

TEST(DefinitionBudgetTest, RefusedDuplicateCountsAsFound) {
    SvgDefinitions definitions;
    const ORVRef<ORVPrtDefsElt> holder = FreshHolder();
    definitions.Register(*holder);
    const ORVRef<ORVPrtRectangleElt> rectangle = Named("a");
    auto* budget = new ORVPrtPrimitiveBudget(0);
    ORVSharedValue<ORVPrtIdentity> identity;
    identity.Edit().SetBudget(budget);
    rectangle->SetIdentity(identity);
    rectangle->SetID("a");
    budget->Release();
    holder->AddChild(rectangle.get());
    definitions.IndexNewChildren(0);
    SvgDrawState state;
    state.definitions = &definitions;
    state.drawStyle = 3;
    ORVRef<ORVPrtGraphicPrimitiveElt> definition;
    EXPECT_EQ(FindDefinition(state, "a", definition), 1);
    EXPECT_FALSE(definition);
}

// Restyling sets all attribute sets that a class has.
template <class Primitive>
class RestyleTest : public testing::Test {};
using Stroked = testing::Types<ORVPrtRectangleElt, ORVPrtCircleElt, ORVPrtEllipseElt, ORVPrtEllipticalArcElt,
                               ORVPrtPolygonElt, ORVPrtClosedFigureElt, ORVPrtTextElt, ORVPrtLineElt,
                               ORVPrtPolylineElt, ORVPrtPolyCubicBezierElt, ORVPrtPolyQuadraticBezierElt>;
TYPED_TEST_SUITE(RestyleTest, Stroked);

TYPED_TEST(RestyleTest, GivesTheSetsOfTheState) {
    SvgDrawState state;
    state.drawStyle = 1;
    state.stroke.SetStrokeWidth(3.0);
    state.fill.SetFillColourIndex(4);
    state.text.SetHeight(5.0);
    const ORVRef<TypeParam> primitive(new TypeParam);
    ORVPrtTransformAttributes transform;
    transform.AddScaleX(2.0);
    primitive->SetTransformAttributes(transform);
    primitive->SetID("i");

    EXPECT_TRUE(RestyleDefinition(state, *primitive));
    EXPECT_EQ(primitive->GetStrokeAttributes(), state.stroke);
    if constexpr (std::is_base_of_v<ORVPrtFilled, TypeParam>) {
        EXPECT_EQ(primitive->GetFillAttributes(), state.fill);
        EXPECT_EQ(primitive->GetDrawStyle(), 2) << "the draw style stays";
    }
    if constexpr (std::is_same_v<ORVPrtTextElt, TypeParam>) {
        EXPECT_EQ(primitive->GetTextAttributes(), state.text);
    }
    EXPECT_EQ(primitive->GetTransformAttributes(), transform);
    EXPECT_EQ(primitive->GetID(), "i");
}

TEST(RestyleTreeTest, WalksContainers) {
    SvgDrawState state;
    state.stroke.SetStrokeWidth(3.0);
    const auto check = [&state](ORVPrtContainerElt* container) {
        const ORVRef<ORVPrtContainerElt> owner(container);
        const ORVRef<ORVPrtLineElt> line(new ORVPrtLineElt);
        const ORVRef<ORVPrtGroupElt> inner(new ORVPrtGroupElt);
        inner->AddChild(line.get());
        container->AddChild(inner.get());
        EXPECT_TRUE(RestyleDefinition(state, *container));
        EXPECT_EQ(line->GetStrokeAttributes(), state.stroke) << container->IsA();
    };
    check(new ORVPrtGroupElt);
    check(new ORVPrtSymbolElt);
    check(new ORVPrtClosedFigureElt);
    check(new ORVPrtClosedFigureRegionElt);
    check(new ORVPrtPatternElt);
}

// Two definitions with a shared part, and holders with different states: each restyles the shared part.
TEST(RestyleTreeTest, SharedPartsAreRestyledAgain) {
    SvgDefinitions definitions;
    SvgDrawState thin, thick;
    thin.definitions = thick.definitions = &definitions;
    thick.stroke.SetStrokeWidth(3.0);

    const ORVRef<ORVPrtLineElt> line(new ORVPrtLineElt);
    const ORVRef<ORVPrtGroupElt> first(new ORVPrtGroupElt), second(new ORVPrtGroupElt);
    first->SetID("a");
    second->SetID("b");
    first->AddChild(line.get());
    second->AddChild(line.get());
    const ORVRef<ORVPrtDefsElt> thinHolder = FreshHolder(), thickHolder = FreshHolder();
    thickHolder->SetStroke(thick.stroke);
    definitions.Register(*thinHolder);
    definitions.Register(*thickHolder);
    thinHolder->AddChild(first.get());
    thickHolder->AddChild(second.get());
    definitions.IndexNewChildren(0);
    definitions.IndexNewChildren(1);

    ORVRef<ORVPrtGraphicPrimitiveElt> definition;
    for (int round = 0; round < 3; ++round) {
        FindDefinition(thin, "a", definition);
        EXPECT_EQ(definition.get(), first.get());
        EXPECT_EQ(line->GetStrokeAttributes(), thin.stroke) << round;
        FindDefinition(thick, "b", definition);
        EXPECT_EQ(definition.get(), second.get());
        EXPECT_EQ(line->GetStrokeAttributes(), thick.stroke) << round;
    }
}

}  // namespace
