// SPDX-License-Identifier: Apache-2.0
#include "generators/raster/coverage_buffer.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <random>
#include <utility>
#include <vector>

#include "tests/support/named_rows.h"

namespace {

struct Corner {
    double x, y;
};
using Polygon = std::vector<Corner>;

/// Alpha values by pixel.
struct Alphas {
    std::map<std::pair<int, int>, unsigned int> values;
    int row = 0, width = 0;
    Alphas& BeginRow(int y) {
        row = y;
        return *this;
    }
    void EndRow() {}
    void Block(int x, const Lanes& alphas) {
        for (int i = 0; i < 4; ++i)
            if (alphas[i] != 0 && x + i < width) values[{x + i, row}] = alphas[i];
    }
    void Span(int begin, int end, unsigned int alpha) {
        EXPECT_LE(end, width);
        for (int x = begin; x < end; ++x) values[{x, row}] = alpha;
    }
    unsigned int At(int x, int y) const {
        const auto found = values.find({x, y});
        return found == values.end() ? 0 : found->second;
    }
};

void Add(CoverageBuffer& buffer, const Polygon& polygon) {
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const Corner &a = polygon[i], &b = polygon[(i + 1) % polygon.size()];
        buffer.AddLine(CoverageBuffer::ToFixed(a.x, a.y), CoverageBuffer::ToFixed(b.x, b.y));
    }
}

template <CoverageRule kRule = CoverageRule::kNonZero>
Alphas Draw(const std::vector<Polygon>& polygons, int width = 16, int height = 16, int bandRows = 16) {
    CoverageBuffer buffer;
    buffer.Resize(width, bandRows);
    Alphas alphas;
    alphas.width = width;
    for (int row = 0; row < height; row += bandRows) {
        buffer.SetBand(row, std::min(bandRows, height - row));
        for (const Polygon& polygon : polygons) Add(buffer, polygon);
        buffer.Sweep<kRule>(alphas);
    }
    return alphas;
}

struct CoverageCase {
    const char* name;
    Polygon polygon;
    int x, y;
    unsigned int alpha;
};
class CoverageTest : public testing::TestWithParam<CoverageCase> {};
TEST_P(CoverageTest, IsTheAreaInsideThePixel) {
    const CoverageCase& row = GetParam();
    EXPECT_EQ(Draw({row.polygon}).At(row.x, row.y), row.alpha);
    // The direction of the outline does not matter.
    EXPECT_EQ(Draw({Polygon(row.polygon.rbegin(), row.polygon.rend())}).At(row.x, row.y), row.alpha);
}
const Polygon kBox{{2.25, 3.5}, {7.5, 3.5}, {7.5, 8.75}, {2.25, 8.75}};
INSTANTIATE_TEST_SUITE_P(
    Coverage, CoverageTest,
    testing::Values(
        CoverageCase{"Inside", kBox, 4, 5, 255}, CoverageCase{"Outside", kBox, 9, 5, 0},
        CoverageCase{"Above", kBox, 4, 2, 0}, CoverageCase{"LeftBorder", kBox, 2, 5, 191},
        CoverageCase{"RightBorder", kBox, 7, 5, 128}, CoverageCase{"TopBorder", kBox, 4, 3, 128},
        CoverageCase{"BottomBorder", kBox, 4, 8, 191}, CoverageCase{"Corner", kBox, 2, 3, 96},
        CoverageCase{"HalfByADiagonal", {{4, 4}, {5, 5}, {4, 5}}, 4, 4, 128},
        CoverageCase{"LowTriangle", {{4, 5}, {8, 4}, {8, 5}}, 4, 4, 32},
        CoverageCase{"LowTriangleFurther", {{4, 5}, {8, 4}, {8, 5}}, 7, 4, 223},
        CoverageCase{"SteepTriangle", {{4, 4}, {5, 4}, {4, 8}}, 4, 7, 32},
        CoverageCase{"InsideOnePixel", {{4.25, 4.25}, {4.75, 4.25}, {4.75, 4.75}, {4.25, 4.75}}, 4, 4, 64},
        CoverageCase{"LeftOfThePage", {{-50, 2}, {3, 2}, {3, 6}, {-50, 6}}, 0, 3, 255},
        CoverageCase{"SlantedAcrossTheLeftBorder", {{-4, 4}, {4, 4}, {4, 12}, {-4, 4}}, 0, 4, 255},
        CoverageCase{"RightOfThePage", {{12, 2}, {500, 2}, {500, 6}, {12, 6}}, 15, 3, 255},
        CoverageCase{"AllAround", {{-9e9, -9e9}, {9e9, -9e9}, {9e9, 9e9}, {-9e9, 9e9}}, 7, 7, 255}),
    kNameOfRow);

TEST(CoverageBufferTest, RulesDifferWhereWindingsMeet) {
    const Polygon outer{{1, 1}, {11, 1}, {11, 11}, {1, 11}}, same{{3, 3}, {9, 3}, {9, 9}, {3, 9}};
    const Polygon opposite(same.rbegin(), same.rend());
    EXPECT_EQ(Draw({outer, same}).At(5, 5), 255U);
    EXPECT_EQ(Draw({outer, opposite}).At(5, 5), 0U);
    EXPECT_EQ(Draw<CoverageRule::kEvenOdd>({outer, same}).At(5, 5), 0U);
    EXPECT_EQ(Draw<CoverageRule::kEvenOdd>({outer, same, same}).At(5, 5), 255U);
    EXPECT_EQ(Draw<CoverageRule::kEvenOdd>({outer, same}).At(2, 5), 255U);
}

TEST(CoverageBufferTest, HardRulesKnowNoLevels) {
    const auto alphas = Draw<CoverageRule::kHardNonZero>({{{2.3, 2}, {6.3, 2}, {6.3, 5}, {2.3, 5}}});
    EXPECT_EQ(alphas.At(2, 3), 255U);  // 0.7 of the pixel is covered
    EXPECT_EQ(alphas.At(6, 3), 0U);    // 0.3 of the pixel is covered
}

Alphas DrawAtCentres(const std::vector<Polygon>& polygons, int bandRows = 16, int left = 0) {
    constexpr int kSide = 16;
    CoverageBuffer buffer;
    buffer.Resize(kSide, bandRows);
    Alphas alphas;
    alphas.width = kSide;
    for (int row = 0; row < kSide; row += bandRows) {
        buffer.SetBand(row, std::min(bandRows, kSide - row));
        buffer.SetWindow(left, row, kSide, row + bandRows);
        buffer.SampleCentres(true);
        for (const Polygon& polygon : polygons) Add(buffer, polygon);
        buffer.Sweep<CoverageRule::kHardNonZero>(alphas);
    }
    return alphas;
}

struct CentreCase {
    const char* name;
    Polygon polygon;
    int x, y;
    bool isCovered;
};
class CentreTest : public testing::TestWithParam<CentreCase> {};
TEST_P(CentreTest, DecidesForThePixel) {
    const CentreCase& row = GetParam();
    EXPECT_EQ(DrawAtCentres({row.polygon}).At(row.x, row.y), row.isCovered ? 255U : 0U);
    EXPECT_EQ(DrawAtCentres({Polygon(row.polygon.rbegin(), row.polygon.rend())}).At(row.x, row.y),
              row.isCovered ? 255U : 0U);
}
// Lines one pixel wide whose edges pass through the centres of pixels: one horizontal, one vertical.
const Polygon kAcross{{2, 4.5}, {12, 4.5}, {12, 5.5}, {2, 5.5}},
    kDown{{4.5, 2}, {5.5, 2}, {5.5, 12}, {4.5, 12}};
INSTANTIATE_TEST_SUITE_P(
    Centre, CentreTest,
    testing::Values(
        CentreCase{"OnTheUpperEdge", kAcross, 6, 4, false}, CentreCase{"OnTheLowerEdge", kAcross, 6, 5, true},
        CentreCase{"OnTheLeftEdge", kDown, 4, 6, false}, CentreCase{"OnTheRightEdge", kDown, 5, 6, true},
        CentreCase{"MostOfThePixelButNotTheCentre",
                   {{4, 4}, {8, 4}, {8, 8}, {4.75, 8}, {4.75, 4.6}, {4.25, 4.6}, {4.25, 4.4}, {4, 4.4}},
                   4,
                   5,
                   false},
        CentreCase{"LittleButTheCentre", {{4.4, 4.4}, {4.6, 4.4}, {4.6, 4.6}, {4.4, 4.6}}, 4, 4, true},
        CentreCase{"LeftOfThePage", {{-50, 2}, {3, 2}, {3, 6}, {-50, 6}}, 0, 3, true},
        CentreCase{"RightOfThePage", {{12, 2}, {500, 2}, {500, 6}, {12, 6}}, 15, 3, true},
        CentreCase{"AllAround", {{-9e9, -9e9}, {9e9, -9e9}, {9e9, 9e9}, {-9e9, 9e9}}, 7, 7, true}),
    kNameOfRow);

TEST(CoverageBufferTest, LinesOfMoreThanAPixelHaveNoGapsAtCentres) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(0.0, 16.0);
    for (int i = 0; i < 2000; ++i) {
        const double x = -2.0, toX = 18.0, y = place(random), toY = place(random);
        const double length = std::hypot(toX - x, toY - y);
        // Half a pixel, and a margin for the rounding of the corners.
        constexpr double kHalf = 0.5 + 1.0 / 128.0;
        const double across = (y - toY) / length * kHalf, down = (toX - x) / length * kHalf;
        const Polygon line{{x + across, y + down},
                           {toX + across, toY + down},
                           {toX - across, toY - down},
                           {x - across, y - down}};
        const Alphas alphas = DrawAtCentres({line});
        for (int column = 0; column < 16; ++column) {
            const double middle = y + (column + 0.5 - x) / (toX - x) * (toY - y);
            if (middle < 1.0 || middle > 15.0) continue;
            int count = 0;
            for (int row = 0; row < 16; ++row) count += alphas.At(column, row) != 0 ? 1 : 0;
            EXPECT_GE(count, 1) << "from " << y << " to " << toY << " in " << column;
        }
    }
}

TEST(CoverageBufferTest, BandsAndWindowsDoNotShowAtCentres) {
    const Polygon star{{8.3, -3}, {12.7, 15.1}, {0.2, 5.9}, {19, 6.1}, {3.1, 15.2}};
    const Alphas whole = DrawAtCentres({star}), banded = DrawAtCentres({star}, 4),
                 windowed = DrawAtCentres({star}, 16, 8);
    EXPECT_EQ(whole.values, banded.values);
    EXPECT_GT(whole.values.size(), 30U);
    for (int y = 0; y < 16; ++y)
        for (int x = 8; x < 16; ++x) EXPECT_EQ(windowed.At(x, y), whole.At(x, y)) << x << ' ' << y;
}

TEST(CoverageBufferTest, PiecesOfAnAreaAddUp) {
    // Slanted strips side by side. Their shares of a pixel must add up to the whole pixel.
    std::vector<Polygon> strips;
    for (double x = 0.0; x < 16.0; x += 0.7) {
        const double next = std::min(x + 0.7, 16.0);
        strips.push_back(
            {{x, 0}, {next, 0}, {16.0 - (16.0 - next) * 0.5, 16}, {16.0 - (16.0 - x) * 0.5, 16}});
    }
    const Alphas alphas = Draw(strips);
    for (int y = 0; y < 16; ++y) EXPECT_EQ(alphas.At(15, y), 255U) << y;
    for (int x = 0; x < 16; ++x) EXPECT_EQ(alphas.At(x, 0), x < 1 ? alphas.At(0, 0) : 255U) << x;
}

TEST(CoverageBufferTest, BandsDoNotShow) {
    std::mt19937 random(3);
    std::uniform_real_distribution<double> place(-20.0, 60.0);
    for (int round = 0; round < 200; ++round) {
        Polygon polygon;
        for (int i = 0; i < 7; ++i) polygon.push_back({place(random), place(random)});
        const Alphas whole = Draw({polygon}, 40, 40, 40);
        for (const int rows : {1, 3, 16})
            EXPECT_EQ(Draw({polygon}, 40, 40, rows).values, whole.values) << rows;
    }
}

TEST(CoverageBufferTest, TotalAreaIsThatOfThePolygon) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> place(1.0, 199.0);
    for (int round = 0; round < 50; ++round) {
        const Polygon triangle{
            {place(random), place(random)}, {place(random), place(random)}, {place(random), place(random)}};
        const double area = std::fabs((triangle[1].x - triangle[0].x) * (triangle[2].y - triangle[0].y) -
                                      (triangle[2].x - triangle[0].x) * (triangle[1].y - triangle[0].y)) /
                            2.0;
        double sum = 0.0;
        for (const auto& [pixel, alpha] : Draw({triangle}, 200, 200, 64).values) sum += alpha / 255.0;
        EXPECT_NEAR(sum, area, 1.0 + area * 0.002);
    }
}

TEST(CoverageBufferTest, WideRowsAreSparse) {
    // A rectangle one row high: its interior is one span, however wide it is.
    struct Counting : Alphas {
        int blocks = 0, spans = 0;
        Counting& BeginRow(int) { return *this; }
        void Block(int, const Lanes&) { ++blocks; }
        void Span(int, int, unsigned int) { ++spans; }
    };
    CoverageBuffer buffer;
    buffer.Resize(100'000, 4);
    buffer.SetBand(0, 4);
    Add(buffer, {{10, 1}, {99'990, 1}, {99'990, 2}, {10, 2}});
    Counting counting;
    buffer.Sweep<CoverageRule::kNonZero>(counting);
    EXPECT_EQ(counting.spans, 1);
    EXPECT_LT(counting.blocks, 5);
}

TEST(CoverageBufferTest, WindowsDoNotShow) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(0.0, 30.0), offset(0.0, 300.0);
    CoverageBuffer buffer;
    buffer.Resize(330, 40);
    for (int round = 0; round < 200; ++round) {
        const double x = offset(random);
        Polygon polygon;
        for (int i = 0; i < 5; ++i) polygon.push_back({x + place(random), place(random) + 5.0});
        Alphas whole, windowed;
        whole.width = windowed.width = 330;
        buffer.SetBand(0, 40);
        Add(buffer, polygon);
        buffer.Sweep<CoverageRule::kNonZero>(whole);
        const int left = static_cast<int>(x);
        buffer.SetWindow(left, 5, left + 32, 36);
        Add(buffer, polygon);
        buffer.Sweep<CoverageRule::kNonZero>(windowed);
        ASSERT_FALSE(whole.values.empty());
        EXPECT_EQ(whole.values.size(), windowed.values.size());
        for (const auto& [pixel, alpha] : whole.values)
            EXPECT_NEAR(alpha, windowed.At(pixel.first, pixel.second), 1)
                << pixel.first << " " << pixel.second;
    }
}

TEST(CoverageBufferTest, WindowsCutOff) {
    // What lies to the left of the window still fills its rows; what lies to the right is ignored.
    CoverageBuffer buffer;
    buffer.Resize(64, 16);
    buffer.SetBand(0, 16);
    buffer.SetWindow(16, 4, 32, 8);
    Add(buffer, {{2.5, 1}, {50.5, 1}, {50.5, 14}, {2.5, 14}});
    Alphas alphas;
    alphas.width = 64;
    buffer.Sweep<CoverageRule::kNonZero>(alphas);
    EXPECT_EQ(alphas.values.size(), 16U * 4U);
    EXPECT_EQ(alphas.At(16, 4), 255U);
    EXPECT_EQ(alphas.At(31, 7), 255U);
    // Nothing may be left over for the next window.
    buffer.SetWindow(0, 0, 64, 16);
    Add(buffer, {{40, 2}, {42, 2}, {42, 3}, {40, 3}});
    alphas.values.clear();
    buffer.Sweep<CoverageRule::kNonZero>(alphas);
    EXPECT_EQ(alphas.values.size(), 2U);
}

TEST(CoverageBufferTest, NumbersBeyondAllRangeDoNoHarm) {
    const double inf = std::numeric_limits<double>::infinity(), none = std::nan("");
    std::vector<Polygon> polygons;
    for (const double bad : {inf, -inf, none, 1e308, -1e308})
        for (int i = 0; i < 3; ++i) {
            Polygon polygon{{2, 2}, {9, 3}, {5, 9}};
            polygon[static_cast<std::size_t>(i)].x = bad;
            polygons.push_back(polygon);
            polygon[static_cast<std::size_t>(i)].y = bad;
            polygons.push_back(polygon);
        }
    Draw(polygons);
    Draw<CoverageRule::kEvenOdd>(polygons);
    // Tens of thousands of overlapping outlines overflow the winding number, which is not an error.
    CoverageBuffer buffer;
    buffer.Resize(8, 2);
    buffer.SetBand(0, 2);
    for (int i = 0; i < 40'000; ++i) Add(buffer, {{1, 0}, {5, 0}, {5, 2}, {1, 2}});
    Alphas alphas;
    alphas.width = 8;
    buffer.Sweep<CoverageRule::kNonZero>(alphas);
    EXPECT_EQ(alphas.At(6, 0), 0U);
}

// ---- All sets of vector instructions ----------------------------------------------------------------------

/// Returns the instruction sets that this processor supports.
std::vector<VectorPower> KnownPowers() {
    std::vector<VectorPower> powers{VectorPower::kPlain};
    for (const VectorPower power : {VectorPower::kSse41, VectorPower::kAvx2})
        if (power <= DetectVectorPower()) powers.push_back(power);
    return powers;
}

/// Collects alpha values as rows of bytes.
struct PlainRows {
    int stride = 0;
    std::vector<std::uint8_t> alphas;
    std::uint8_t* row = nullptr;
    PlainRows& BeginRow(int y) {
        row = alphas.data() + static_cast<std::ptrdiff_t>(y) * stride;
        return *this;
    }
    void EndRow() {}
    void Block(int x, const Lanes& lanes) {
        for (int i = 0; i < 4; ++i) row[x + i] = static_cast<std::uint8_t>(lanes[i]);
    }
    void Span(int begin, int end, unsigned int alpha) {
        std::memset(row + begin, static_cast<int>(alpha), static_cast<std::size_t>(end - begin));
    }
};

struct Gathered {
    std::vector<std::uint8_t> alphas;
    std::uint64_t work = 0;
    friend bool operator==(const Gathered&, const Gathered&) = default;
};

struct Window {
    int left, top, right, bottom;
};

template <CoverageRule kRule>
Gathered Gather(VectorPower power, const std::vector<CoverageEdge>& edges, int width, int firstRow, int rows,
                const Window& window) {
    CoverageBuffer buffer(power);
    buffer.Resize(width, rows);
    buffer.SetBand(firstRow, rows);
    Gathered gathered;
    // Twice, because the first sweep must leave nothing behind.
    for (int i = 0; i < 2; ++i) {
        buffer.SetWindow(window.left, window.top, window.right, window.bottom);
        for (const CoverageEdge& edge : edges) buffer.AddLine(edge.from, edge.to);
        PlainRows alphas{width + 8, {}};
        alphas.alphas.resize(static_cast<std::size_t>(width + 8) * static_cast<std::size_t>(firstRow + rows));
        buffer.Sweep<kRule>(alphas);
        gathered.alphas = alphas.alphas;
    }
    gathered.work = buffer.GetWork();
    return gathered;
}

/// The largest distance between the ends of an edge, in 1/256 pixel.
struct EdgeKind {
    const char* name;
    int acrossMost, downMost;
};

class VectorPowerTest : public testing::TestWithParam<EdgeKind> {};
TEST_P(VectorPowerTest, DoesNotShowInCoverageNorWork) {
    constexpr int kWidth = 300, kRows = 300, kFirstRow = 20;
    std::mt19937 random(20);
    const auto between = [&](int least, int most) {
        return std::uniform_int_distribution<int>(least, most)(random);
    };
    for (int round = 0; round < 12; ++round) {
        std::vector<CoverageEdge> edges;
        const int centerX = between(-20, kWidth + 20) * 256, centerY = between(0, 340) * 256;
        FixedPoint at{centerX, centerY};
        const int count = between(1, 200);
        for (int i = 0; i < count; ++i) {
            FixedPoint to{at.x + between(-GetParam().acrossMost, GetParam().acrossMost),
                          at.y + between(-GetParam().downMost, GetParam().downMost)};
            // Coordinates on the borders of pixels are special cases.
            if (between(0, 3) == 0) to.x &= ~255;
            if (between(0, 3) == 0) to.y &= ~255;
            if (between(0, 7) == 0) to.x = at.x;
            if (std::abs(to.x) > 500 * 256 || std::abs(to.y) > 500 * 256) to = {centerX, centerY};
            edges.push_back({at, to});
            at = to;
        }
        edges.push_back({at, {centerX, centerY}});
        const Window all{0, kFirstRow, kWidth, kFirstRow + kRows};
        const Window some{between(0, 100), between(20, 150), between(110, 300), between(160, 320)};
        for (const Window& window : {all, some}) {
            const Gathered plain =
                Gather<CoverageRule::kNonZero>(VectorPower::kPlain, edges, kWidth, kFirstRow, kRows, window);
            const Gathered plainEvenOdd =
                Gather<CoverageRule::kEvenOdd>(VectorPower::kPlain, edges, kWidth, kFirstRow, kRows, window);
            for (const VectorPower power : KnownPowers()) {
                ASSERT_TRUE(plain ==
                            Gather<CoverageRule::kNonZero>(power, edges, kWidth, kFirstRow, kRows, window))
                    << "round " << round << ", power " << static_cast<int>(power);
                ASSERT_TRUE(plainEvenOdd ==
                            Gather<CoverageRule::kEvenOdd>(power, edges, kWidth, kFirstRow, kRows, window))
                    << "round " << round << ", power " << static_cast<int>(power);
            }
        }
    }
}
INSTANTIATE_TEST_SUITE_P(Edges, VectorPowerTest,
                         testing::Values(EdgeKind{"WithinPixels", 200, 200},
                                         EdgeKind{"OfAFewPixels", 900, 900}, EdgeKind{"Flat", 5000, 300},
                                         EdgeKind{"NearlyLevel", 100000, 20}, EdgeKind{"Steep", 300, 5000},
                                         EdgeKind{"NearlyUpright", 3, 150000},
                                         EdgeKind{"AcrossThePage", 200000, 200000}),
                         kNameOfRow);

}  // namespace
