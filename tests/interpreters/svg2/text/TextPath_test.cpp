// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/TextPath.h"

#include <gtest/gtest.h>

#include "interpreters/svg2/values/path_data.h"

namespace {

svg2::TextPath PathOf(std::string_view data) {
    ORVPrintPath outline;
    svg2::ReadPathData(data, outline);
    svg2::TextPath path;
    path.Add(outline, {});
    return path;
}

TEST(TextPathTest, LengthsAreThoseOfTheLines) {
    const struct {
        const char* data;
        double length;
        bool isClosed;
    } kRows[] = {
        {"", 0.0, false},
        {"M5 5", 0.0, false},
        {"M5 5z", 0.0, true},
        {"M0 0H30V40", 70.0, false},
        {"M0 0H30V40z", 120.0, true},
        {"M0 0h10M50 50v20", 30.0, false},
        {"M0 0h10zM50 50v20z", 60.0, false},
        {"M10 0A10 10 0 0 1 -10 0", 31.416, false},
        {"M0 0C0 0 9 0 9 0", 9.0, false},
    };
    for (const auto& row : kRows) {
        const svg2::TextPath path = PathOf(row.data);
        EXPECT_NEAR(path.GetLength(), row.length, 0.01) << row.data;
        EXPECT_EQ(path.IsClosed(), row.isClosed) << row.data;
    }
}

TEST(TextPathTest, PlacesLieOnTheLinesInTheirDirection) {
    const struct {
        const char* data;
        double distance, x, y, degrees;
    } kRows[] = {
        {"M0 0H30V40", 10.0, 10.0, 0.0, 0.0},
        {"M0 0H30V40", 50.0, 30.0, 20.0, 90.0},
        {"M0 0H30V40", 70.0, 30.0, 40.0, 90.0},
        {"M0 0h10M50 50v20", 20.0, 50.0, 60.0, 90.0},
        {"M0 0h10h0h10", 10.0, 10.0, 0.0, 0.0},
        {"M10 0A10 10 0 0 1 0 10", 7.854, 7.071, 7.071, 135.0},
        // Control points that coincide with the end points do not determine the direction there.
        {"M0 0C0 0 9 9 9 9", 0.0, 0.0, 0.0, 45.0},
    };
    for (const auto& row : kRows) {
        const svg2::TextPath::Place place = PathOf(row.data).At(row.distance);
        EXPECT_NEAR(place.point.x, row.x, 0.01) << row.data;
        EXPECT_NEAR(place.point.y, row.y, 0.01) << row.data;
        EXPECT_NEAR(place.degrees, row.degrees, 0.1) << row.data;
    }
}

TEST(TextPathTest, RunsTheOtherWayWhenItIsReversed) {
    svg2::TextPath path = PathOf("M0 0H30V40");
    path.Reverse();
    const svg2::TextPath::Place place = path.At(10.0);
    EXPECT_DOUBLE_EQ(place.point.x, 30.0);
    EXPECT_DOUBLE_EQ(place.point.y, 30.0);
    EXPECT_DOUBLE_EQ(place.degrees, -90.0);
}

}  // namespace
