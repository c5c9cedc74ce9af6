// SPDX-License-Identifier: Apache-2.0
#include "library/check/findings.h"

#include <gtest/gtest.h>

#include <ostream>
#include <set>

namespace {

TEST(FindingsTest, KindsHaveNamesOfTheirOwn) {
    std::set<std::string_view> names;
    for (const FindingKind& kind : GetFindingKinds()) {
        EXPECT_TRUE(names.insert(kind.name).second) << kind.name;
        EXPECT_EQ(kind.name.find_first_not_of("abcdefghijklmnopqrstuvwxyz-"), std::string_view::npos)
            << kind.name;
        EXPECT_FALSE(kind.title.empty());
        EXPECT_EQ(FindFindingKind(kind.name), &kind);
    }
    EXPECT_EQ(FindFindingKind("no-such-kind"), nullptr);
}

TEST(FindingsTest, CountAllAndKeepTheFirst) {
    Findings findings;
    std::size_t wanted = 0;
    for (std::size_t i = 0; i < Findings::kKept + 5; ++i)
        wanted += findings.Count(FindingCode::kMask) ? 1 : 0;
    EXPECT_EQ(wanted, Findings::kKept);
    EXPECT_EQ(findings.GetCount(FindingCode::kMask), Findings::kKept + 5);
    EXPECT_TRUE(findings.Count(FindingCode::kFilter));
    EXPECT_EQ(findings.GetTotal(), Findings::kKept + 6);
}

TEST(FindingsTest, IgnoredKindsDoNotCount) {
    Findings findings({FindingCode::kMask});
    EXPECT_FALSE(findings.Count(FindingCode::kMask));
    EXPECT_EQ(findings.GetTotal(), 0U);
}

struct ExcerptCase {
    std::string text, excerpt;

    friend std::ostream& operator<<(std::ostream& out, const ExcerptCase& row) { return out << row.excerpt; }
};
class ExcerptTest : public testing::TestWithParam<ExcerptCase> {};
TEST_P(ExcerptTest, IsShort) { EXPECT_EQ(Excerpt(GetParam().text), GetParam().excerpt); }

INSTANTIATE_TEST_SUITE_P(
    Excerpts, ExcerptTest,
    testing::Values(ExcerptCase{"", ""}, ExcerptCase{"a\n\tb\x7F", "a\n\tb\x7F"},
                    ExcerptCase{std::string(60, 'x'), std::string(60, 'x')},
                    ExcerptCase{std::string(61, 'x'), std::string(60, 'x') + "..."},
                    // Characters are never split.
                    ExcerptCase{std::string(59, 'x') + "\xC3\xA4y", std::string(59, 'x') + "..."},
                    ExcerptCase{std::string(58, 'x') + "\xC3\xA4y", std::string(58, 'x') + "\xC3\xA4..."}));

}  // namespace
