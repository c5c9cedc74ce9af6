// SPDX-License-Identifier: Apache-2.0
#include "library/check/definition_facts.h"

#include <gtest/gtest.h>

#include "interpreters/svg/state/SvgDrawState.h"

namespace {

DrawnSets StrokedIn(unsigned int colour) {
    DrawnSets sets;
    sets.stroke.SetStrokeColourIndex(colour);
    sets.strokes = true;
    sets.said = static_cast<std::uint32_t>(SaidOf::kStroke);
    return sets;
}

SvgDrawState StateOf(const DrawnSets& sets) {
    SvgDrawState state;
    state.stroke = sets.stroke;
    state.fill = sets.fill;
    state.text = sets.text;
    return state;
}

TEST(DefinitionFactsTest, WhatSaysNothingOfItselfIsNotReplaced) {
    DefinitionFacts facts;
    EXPECT_FALSE(facts.IsReplacedBy(StateOf(StrokedIn(3))));
    facts.Add({});
    EXPECT_FALSE(facts.IsReplacedBy(StateOf(StrokedIn(3))));
}

TEST(DefinitionFactsTest, OwnPaintIsReplacedByAnyOther) {
    DefinitionFacts facts;
    facts.Add(StrokedIn(3));
    EXPECT_FALSE(facts.IsReplacedBy(StateOf(StrokedIn(3))));
    EXPECT_TRUE(facts.IsReplacedBy(StateOf(StrokedIn(4))));
    EXPECT_TRUE(facts.IsReplacedBy(SvgDrawState()));
}

TEST(DefinitionFactsTest, WhatIsNotSaidIsChangedAndNotReplaced) {
    DefinitionFacts facts;
    DrawnSets sets = StrokedIn(3);
    sets.said = 0;
    facts.Add(sets);
    EXPECT_FALSE(facts.IsReplacedBy(StateOf(StrokedIn(4))));
    EXPECT_TRUE(facts.IsChangedBy(StateOf(StrokedIn(4))));
    EXPECT_FALSE(facts.IsChangedBy(StateOf(StrokedIn(3))));
}

TEST(DefinitionFactsTest, PaintThatIsNotSaidIsMissedWhereItIsAskedFor) {
    DefinitionFacts facts;
    DrawnSets sets;
    sets.fills = true;
    facts.Add(sets);
    SvgDrawState state;
    state.drawStyle = kDrawFill;
    EXPECT_FALSE(facts.MissesPaintOf(state));
    state.drawStyle = kDrawFillAndStroke;
    EXPECT_TRUE(facts.MissesPaintOf(state));
}

TEST(DefinitionFactsTest, EqualSetsAreKeptOnceAndTooManyAreReplacedByAnything) {
    DefinitionFacts facts;
    for (unsigned int i = 0; i < DefinitionFacts::kMostSets; ++i)
        for (int repeat = 0; repeat < 2; ++repeat) facts.Add(StrokedIn(i + 1));
    EXPECT_EQ(facts.sets.size(), DefinitionFacts::kMostSets);
    EXPECT_FALSE(facts.isManifold);

    facts.Add(StrokedIn(DefinitionFacts::kMostSets + 1));
    EXPECT_TRUE(facts.isManifold);
    EXPECT_EQ(facts.sets.size(), DefinitionFacts::kMostSets);
    EXPECT_TRUE(facts.IsReplacedBy(StateOf(StrokedIn(1))));
}

}  // namespace
