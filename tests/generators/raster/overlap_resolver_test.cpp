// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/overlap_resolver.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <random>
#include <utility>
#include <vector>

namespace {

using Inside = OverlapResolver::Inside;
using Rows = std::map<int, std::vector<Inside>>;  // by top, without empty rows
constexpr int kHeight = OverlapResolver::kHeight;

using Polygon = std::vector<FixedPoint>;

std::vector<CoverageEdge> EdgesOf(const std::vector<Polygon>& polygons) {
    std::vector<CoverageEdge> edges;
    for (const Polygon& polygon : polygons)
        for (std::size_t i = 0; i < polygon.size(); ++i)
            edges.push_back({polygon[i], polygon[(i + 1) % polygon.size()]});
    return edges;
}

Rows Resolve(OverlapResolver& resolver, const std::vector<CoverageEdge>& edges, int top, int bottom,
             bool evenOdd = false) {
    Rows rows;
    resolver.Add(edges);
    resolver.Begin(top, bottom);
    while (resolver.GetTop() < bottom) {
        const int y = resolver.GetTop();
        const auto inside = resolver.TakeRow(evenOdd);
        if (!inside.empty()) rows[y].assign(inside.begin(), inside.end());
    }
    return rows;
}

/// What is inside a row, from all edges that cross its middle.
std::vector<Inside> PlainRow(const std::vector<CoverageEdge>& edges, int top, bool evenOdd) {
    const int middle = top + kHeight / 2;
    std::vector<std::pair<int, int>> crossings;  // x, winding
    for (const CoverageEdge& edge : edges) {
        FixedPoint a = edge.from, b = edge.to;
        const int sign = a.y < b.y ? 1 : -1;
        if (sign < 0) std::swap(a, b);
        if (a.y > middle || b.y <= middle) continue;
        const double slope = static_cast<double>(b.x - a.x) / static_cast<double>(b.y - a.y);
        crossings.emplace_back(a.x + static_cast<int>(std::floor((middle - a.y) * slope + 0.5)), sign);
    }
    std::sort(crossings.begin(), crossings.end());
    std::vector<Inside> inside;
    for (std::size_t i = 0, winding = 0; i + 1 < crossings.size(); ++i) {
        winding += static_cast<std::size_t>(crossings[i].second);
        if (crossings[i].first == crossings[i + 1].first) continue;
        if ((evenOdd ? winding & 1U : winding) == 0) continue;
        if (!inside.empty() && inside.back().right == crossings[i].first)
            inside.back().right = crossings[i + 1].first;
        else
            inside.push_back({crossings[i].first, crossings[i + 1].first});
    }
    return inside;
}

TEST(OverlapResolverTest, PartsOfOppositeWindingsThatTouchAreOne) {
    const std::vector<CoverageEdge> edges =
        EdgesOf({{{0, 0}, {100, 0}, {100, 32}, {0, 32}}, {{100, 0}, {100, 32}, {300, 32}, {300, 0}}});
    OverlapResolver resolver;
    const Rows both{{0, {{0, 300}}}, {16, {{0, 300}}}};
    EXPECT_EQ(Resolve(resolver, edges, 0, 256), both);
    EXPECT_EQ(Resolve(resolver, edges, 0, 256, true), both);
}

TEST(OverlapResolverTest, PartsOnTopOfEachOtherCountOnce) {
    const Polygon box{{0, 0}, {100, 0}, {100, 16}, {0, 16}}, inner{{10, 0}, {60, 0}, {60, 16}, {10, 16}};
    OverlapResolver resolver;
    EXPECT_EQ(Resolve(resolver, EdgesOf({box, box, inner}), 0, 256), (Rows{{0, {{0, 100}}}}));
    EXPECT_EQ(Resolve(resolver, EdgesOf({box, inner}), 0, 256, true), (Rows{{0, {{0, 10}, {60, 100}}}}));
    EXPECT_EQ(Resolve(resolver, EdgesOf({box, box}), 0, 256, true), Rows());
}

TEST(OverlapResolverTest, RowsWithoutEdgesArePassedOver) {
    OverlapResolver resolver;
    resolver.Add(EdgesOf({{{0, 40}, {9, 40}, {9, 50}, {0, 50}}, {{0, 200}, {9, 200}, {9, 220}, {0, 220}}}));
    resolver.Begin(0, 512);
    EXPECT_EQ(resolver.GetTop(), 32);
    EXPECT_EQ(resolver.TakeRow(false).size(), 1U);
    EXPECT_EQ(resolver.GetTop(), 192);
    EXPECT_EQ(resolver.TakeRow(false).size(), 1U);
    EXPECT_EQ(resolver.GetTop(), 208);
    EXPECT_EQ(resolver.TakeRow(false).size(), 1U);
    EXPECT_EQ(resolver.GetTop(), 512);
}

TEST(OverlapResolverTest, StepsGrowWithTheNumberOfEdgesInARow) {
    for (const int count : {100, 10000}) {
        // Edges that all begin in one row, in the wrong order, and all cross one another in the next.
        std::vector<CoverageEdge> edges;
        for (int i = 0; i < count; ++i) edges.push_back({{(count - i) * 8, 0}, {i * 8, 32}});
        OverlapResolver resolver;
        resolver.Add(edges);
        resolver.Begin(0, 256);
        while (resolver.GetTop() < 256) resolver.TakeRow(false);
        EXPECT_GT(resolver.GetSteps(), static_cast<std::uint64_t>(2 * count));
        // The last edge that is moved may move past all others.
        EXPECT_LT(resolver.GetSteps(), static_cast<std::uint64_t>(25 * count));
    }
}

TEST(OverlapResolverTest, NothingRemainsOfTheEdgesBefore) {
    OverlapResolver resolver;
    Resolve(resolver, EdgesOf({{{0, 0}, {100, 0}, {100, 512}, {0, 512}}}), 0, 256);
    EXPECT_EQ(Resolve(resolver, {}, 0, 512), Rows());
}

TEST(OverlapResolverTest, RowsAreThoseOfAPlainWalkWhereverBandsBegin) {
    std::mt19937 random(1);
    const auto number = [&](int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(random);
    };
    OverlapResolver resolver;
    int parts = 0;
    for (int round = 0; round < 300; ++round) {
        std::vector<Polygon> polygons(static_cast<std::size_t>(number(1, 4)));
        for (Polygon& polygon : polygons)
            for (int i = number(2, 6); i > 0; --i) polygon.push_back({number(-300, 900), number(-300, 1300)});
        // Shared edges.
        if (number(0, 1) == 0) polygons.push_back({polygons[0][0], polygons[0][1], {5, 5}});
        const std::vector<CoverageEdge> edges = EdgesOf(polygons);
        const bool evenOdd = number(0, 1) == 0;
        Rows plain;
        for (int y = 0; y < 1024; y += kHeight)
            if (auto row = PlainRow(edges, y, evenOdd); !row.empty()) plain[y] = row;
        EXPECT_EQ(Resolve(resolver, edges, 0, 1024, evenOdd), plain) << round;
        Rows bands = Resolve(resolver, edges, 0, 256, evenOdd);
        bands.merge(Resolve(resolver, edges, 256, 1024, evenOdd));
        EXPECT_EQ(bands, plain) << round;
        parts += static_cast<int>(plain.size());
    }
    EXPECT_GT(parts, 10000);
}

}  // namespace
