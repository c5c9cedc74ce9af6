// SPDX-License-Identifier: Apache-2.0
#include "library/check/value_checks.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "interpreters/svg/style/property_table.h"

namespace {

enum class Reader { kLength, kPosition, kViewBox, kPoints, kOpacity, kDashes, kPath, kColour, kTransform };

struct ValueCase {
    Reader reader;
    const char* value;
    const char* message;  // empty for a valid value

    friend std::ostream& operator<<(std::ostream& out, const ValueCase& row) { return out << row.value; }
};

MaybeProblem Check(Reader reader, const std::string& value) {
    PathFacts facts;
    ValueChecks checks;
    switch (reader) {
        case Reader::kLength: return CheckLength(value);
        case Reader::kPosition: return CheckTextPosition(value);
        case Reader::kViewBox: return CheckViewBox(value);
        case Reader::kPoints: return CheckPoints(value);
        case Reader::kOpacity: return CheckOpacity(value);
        case Reader::kDashes: return CheckDashArray(value);
        case Reader::kPath: return CheckPathData(value, facts);
        case Reader::kColour: return checks.CheckColour(value);
        case Reader::kTransform: return checks.CheckTransform(value);
    }
    return std::nullopt;
}

class ValueCheckTest : public testing::TestWithParam<ValueCase> {};
TEST_P(ValueCheckTest, TellsWhatIsWrong) {
    const MaybeProblem problem = Check(GetParam().reader, GetParam().value);
    EXPECT_EQ(problem ? problem->message : "", GetParam().message) << GetParam().value;
}

INSTANTIATE_TEST_SUITE_P(
    Lengths, ValueCheckTest,
    testing::Values(
        ValueCase{Reader::kLength, "", ""}, ValueCase{Reader::kLength, " 12 ", ""},
        ValueCase{Reader::kLength, "-1.5e1mm", ""},
        ValueCase{Reader::kLength, "1 cm", "has a space before its unit: other programs do not read it"},
        ValueCase{Reader::kLength, "1%", ""}, ValueCase{Reader::kLength, "3px", ""},
        ValueCase{Reader::kLength, "3PT", "'PT' is not a unit: read as 3"},
        ValueCase{Reader::kLength, "3mmx", "'mmx' is not a unit: read as 3"},
        ValueCase{Reader::kLength, "3,5", "',5' is not read: this counts as 3"},
        ValueCase{Reader::kLength, " 3.mm", "is not a number in SVG: other programs may not read it"},
        ValueCase{Reader::kLength, "3.", "is not a number in SVG: other programs may not read it"},
        ValueCase{Reader::kLength, "auto", "is not a length: treated as absent"},
        ValueCase{Reader::kLength, "pt3", "a unit must follow its number"},
        ValueCase{Reader::kPosition, "3 4", "of this list 3 is read, for the whole text"},
        ValueCase{Reader::kPosition, "3,4", "of this list 3 is read, for the whole text"},
        ValueCase{Reader::kPosition, "3 mm", "has a space before its unit: other programs do not read it"},
        ValueCase{Reader::kPosition, "3", ""}));

INSTANTIATE_TEST_SUITE_P(
    Lists, ValueCheckTest,
    testing::Values(
        ValueCase{Reader::kViewBox, "0 0 10 20", ""}, ValueCase{Reader::kViewBox, "  0  0 10 20 ", ""},
        ValueCase{Reader::kViewBox, "0, 0, 10, 20", ""},
        ValueCase{Reader::kViewBox, "0,0 10 20", "commas do not separate its numbers: use spaces"},
        ValueCase{Reader::kViewBox, "0 0 10", "a view box is four numbers"},
        ValueCase{Reader::kViewBox, "0 0 10 x",
                  "'x' is not a number: skipped, and the following ones move up"},
        ValueCase{Reader::kPoints, "1,2 3mm,4%",
                  "number 3: '3mm' is not a number in SVG: other programs stop here"},
        ValueCase{Reader::kPoints, "1. 2", "number 1: '1.' is not a number in SVG: other programs stop here"},
        ValueCase{Reader::kPoints, "1-2 3",
                  "number 1: '1-2' is read as 1: separate numbers by spaces or commas"},
        ValueCase{Reader::kPoints, "1 2 3", "has an odd number of numbers: the last one is dropped"},
        ValueCase{Reader::kOpacity, "1", ""}, ValueCase{Reader::kOpacity, "inherit", ""},
        ValueCase{Reader::kOpacity, " 0.", "is not a number in SVG: other programs may not read it"},
        ValueCase{Reader::kOpacity, "half", "is not a number: no effect"},
        ValueCase{Reader::kOpacity, "1.5", "is not from 0 to 1: it wraps around"},
        ValueCase{Reader::kOpacity, "50%", "'%' is not read: this counts as 50"},
        ValueCase{Reader::kDashes, "3, 4px 5", ""}, ValueCase{Reader::kDashes, "none", ""},
        ValueCase{Reader::kDashes, "3mm",
                  "'3mm' is read as 3: separate numbers by spaces or commas; units are not read here"}));

INSTANTIATE_TEST_SUITE_P(
    Paths, ValueCheckTest,
    testing::Values(
        ValueCase{Reader::kPath, "", ""}, ValueCase{Reader::kPath, "M1,2l3-4 5 6h1v2c1 2 3 4 5 6z", ""},
        ValueCase{Reader::kPath, "M0 0A5 5 0 0 1 9 9", ""}, ValueCase{Reader::kPath, "M1e-3 0", ""},
        ValueCase{Reader::kPath, "M1. 2L.5 3.e1", ""},
        ValueCase{Reader::kPath, "L1 2", "does not begin with M: it starts at the page's upper left corner"},
        ValueCase{Reader::kPath, "M0 0L1.5.5 2",
                  "at character 6: '1.5.5' is read as 1.5: separate numbers by spaces or commas"},
        ValueCase{Reader::kPath, "M0 0L1E-3 2",
                  "at character 6: '1E' is read as 1: separate numbers by spaces or commas"},
        ValueCase{Reader::kPath, "M0 0L1 2 3", "at character 5: L takes numbers by 2, there are 3"},
        ValueCase{
            Reader::kPath, "M0 0a5 5 0 019 9",
            "at character 5: a takes numbers by 7, there are 5; put spaces between the flags of an arc"},
        ValueCase{Reader::kPath, "M0 0Z1", "at character 5: numbers after Z are not read"},
        ValueCase{Reader::kPath, "M0 0L", "at character 5: L takes numbers by 2, there are 0"},
        ValueCase{Reader::kPath, "B1 M0 0", "at character 1: 'B1 ' is not read"},
        ValueCase{Reader::kPath, "M0 0;x", "at character 5: ';x' is not read"},
        ValueCase{Reader::kPath, "none", "at character 1: 'none' is not read"}));

INSTANTIATE_TEST_SUITE_P(
    Paints, ValueCheckTest,
    testing::Values(ValueCase{Reader::kColour, "#F0a", ""}, ValueCase{Reader::kColour, "rgb(1, 2,3)", ""},
                    ValueCase{Reader::kColour, "Red", ""}, ValueCase{Reader::kColour, "rgb(10%,0%,100%)", ""},
                    ValueCase{Reader::kColour, "#12345", "is not a colour here: the colour does not change"},
                    ValueCase{Reader::kColour, "transparent",
                              "is not a colour here: the colour does not change"},
                    ValueCase{Reader::kColour, "rgb(1,2,256)", "256 is out of range and wraps around"},
                    ValueCase{Reader::kColour, "rgb(0%,120%,0%)", "120 is out of range and wraps around"},
                    ValueCase{Reader::kColour, "rgb(12.5%,0%,0%)", "of 12.5 the fraction is not read"}));

INSTANTIATE_TEST_SUITE_P(
    Transforms, ValueCheckTest,
    testing::Values(
        ValueCase{Reader::kTransform, "translate(1,2) rotate(3 4 5),scale(2)", ""},
        ValueCase{Reader::kTransform, "matrix(1 0 0 1 0 0)skewX(3)", ""},
        ValueCase{Reader::kTransform, "rotate(3 4)", "a rotation with two numbers ignores its centre"},
        ValueCase{Reader::kTransform, "matrix(1 0 0)", "a matrix takes six numbers"},
        ValueCase{Reader::kTransform, "scale (2)",
                  "no space is allowed between a name and its parenthesis: 'scale (2)' is not read"},
        ValueCase{Reader::kTransform, "move(2)", "'move(2)' is not read"},
        ValueCase{Reader::kTransform, "scale(2", "'scale(2' is not read"},
        ValueCase{Reader::kTransform, "scale(2) Scale(3)",
                  "is not read completely: write its names as in SVG, with nothing between them"},
        ValueCase{Reader::kTransform, "rotate(3deg)",
                  "'3deg' is read as 3: separate numbers by spaces or commas; units are not read here"}));

TEST(ValueChecksTest, ALineHas255DashesAtMost) {
    for (const auto& [count, message] : {std::pair{255, ""}, {256, "has more than 255 dashes"}}) {
        std::string list;
        for (int i = 0; i < count; ++i) list += "1 ";
        const MaybeProblem problem = CheckDashArray(list);
        EXPECT_EQ(problem ? problem->message : "", message) << count;
    }
}

// Every property with an effect accepts "inherit" and rejects nonsense. This shows that none lacks a check.
TEST(ValueChecksTest, PropertiesTakeNoNonsense) {
    ValueChecks checks;
    for (const PropertyRow& row : GetProperties()) {
        if (!row.apply || row.name == "fill" || row.name == "stroke" || row.name == "font-family") continue;
        EXPECT_TRUE(checks.CheckProperty(row, "no value", false)) << row.name;
        EXPECT_FALSE(checks.CheckProperty(row, "inherit", false)) << row.name;
    }
}

struct PropertyCase {
    const char* property;
    const char* value;
    bool isWrong;

    friend std::ostream& operator<<(std::ostream& out, const PropertyCase& row) {
        return out << row.property << " " << row.value;
    }
};
class PropertyCheckTest : public testing::TestWithParam<PropertyCase> {};
TEST_P(PropertyCheckTest, KnowsWhatIsTaken) {
    ValueChecks checks;
    const PropertyRow* row = FindProperty(GetParam().property);
    ASSERT_NE(row, nullptr);
    for (int time = 0; time < 2; ++time)  // the second result is cached
        EXPECT_EQ(checks.CheckProperty(*row, GetParam().value, false).has_value(), GetParam().isWrong);
}
INSTANTIATE_TEST_SUITE_P(
    Properties, PropertyCheckTest,
    testing::Values(
        PropertyCase{"stroke-linecap", "butt", false}, PropertyCase{"stroke-linecap", "round", false},
        PropertyCase{"stroke-linecap", "Round", true}, PropertyCase{"fill-rule", "nonzero", false},
        PropertyCase{"font-weight", "normal", false}, PropertyCase{"font-weight", "450", true},
        PropertyCase{"font-size", "12pt", false}, PropertyCase{"font-size", "large", true},
        PropertyCase{"font-size", "2em", true}, PropertyCase{"text-anchor", "start", false},
        PropertyCase{"text-anchor", "left", true}, PropertyCase{"writing-mode", "lr-tb", false},
        PropertyCase{"writing-mode", "vertical-rl", true}, PropertyCase{"letter-spacing", "normal", false}));

}  // namespace
