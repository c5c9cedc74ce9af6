// SPDX-License-Identifier: Apache-2.0
#include "platform/print/primitive_count.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/platform/print/make_primitives.h"

namespace {

constexpr std::uint64_t kNoLimit = 1'000'000;

std::uint64_t CountOf(const ORVRef<ORVPrtGraphicPrimitiveElt>& root, std::uint64_t limit = kNoLimit) {
    std::uint64_t distinct = 0;
    return ORVCountPrimitives(*root, limit, distinct);
}

std::uint64_t DistinctIn(const ORVRef<ORVPrtGraphicPrimitiveElt>& root) {
    std::uint64_t distinct = 0;
    ORVCountPrimitives(*root, kNoLimit, distinct);
    return distinct;
}

ORVRef<ORVPrtLineElt> Line() { return MakeLine(0.0, 0.0, 1.0, 1.0); }

TEST(PrimitiveCountTest, CountsWhatIsBelow) {
    EXPECT_EQ(CountOf(Line()), 0U);
    EXPECT_EQ(CountOf(MakeContainer<ORVPrtGroupElt>({})), 0U);
    EXPECT_EQ(CountOf(MakeContainer<ORVPrtGroupElt>({Line(), MakeContainer<ORVPrtGroupElt>({Line()})})), 3U);
}

TEST(PrimitiveCountTest, SharedOnesCountAtEveryPlaceAndAreDistinctOnce) {
    const auto shared = MakeContainer<ORVPrtGroupElt>({Line(), Line()});
    const auto root = MakeContainer<ORVPrtGroupElt>({shared, shared, shared});
    EXPECT_EQ(CountOf(root), 9U);
    EXPECT_EQ(DistinctIn(root), 5U);  // its three places and its two lines
}

TEST(PrimitiveCountTest, PatternIsOnePrimitiveWhateverItHolds) {
    const auto pattern =
        MakeContainer<ORVPrtPatternElt>({Line(), MakeContainer<ORVPrtGroupElt>({Line(), Line()})});
    const auto root = MakeContainer<ORVPrtGroupElt>({pattern, Line()});
    EXPECT_EQ(CountOf(root), 2U);
    EXPECT_EQ(DistinctIn(root), 2U);
}

TEST(PrimitiveCountTest, LimitIsTheMostThatIsCounted) {
    const auto root = MakeContainer<ORVPrtGroupElt>({Line(), Line(), Line()});
    EXPECT_EQ(CountOf(root, 4), 3U);
    EXPECT_EQ(CountOf(root, 3), 3U);
    EXPECT_EQ(CountOf(root, 2), 2U);
}

TEST(PrimitiveCountTest, SharingDoesNotOverflow) {
    ORVRef<ORVPrtGraphicPrimitiveElt> tree = Line();
    for (int i = 0; i < 100; ++i) tree = MakeContainer<ORVPrtGroupElt>({tree, tree});
    EXPECT_EQ(CountOf(tree, ~std::uint64_t{0}), ~std::uint64_t{0});
}

TEST(PrimitiveCountTest, PointsAndLettersAreWork) {
    EXPECT_EQ(ORVDrawingWork(*Line()), 1U);
    const auto text = Make<ORVPrtTextElt>();
    text->SetText(ORVUnicodeString(std::string(100, 'a')));
    EXPECT_EQ(ORVDrawingWork(*text), 51U);
    const auto outline = MakePoints<ORVPrtPolylineElt>(std::vector<ORVMathPoint2D>(100));
    EXPECT_EQ(ORVDrawingWork(*outline), 51U);  // 1, plus 1 for every 32 bytes; a point has 16
}

}  // namespace
