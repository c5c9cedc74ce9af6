// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/values/length.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

#include "interpreters/svg/state/statuses.h"
#include "tests/support/named_rows.h"
#include "tests/support/page_state.h"
#include "tests/support/parsed_element.h"

namespace {

constexpr double kDefault = -7.0;  // unchanged if nothing is read
constexpr double kInch = 25.4 * 3.543307;

struct LengthCase {
    const char* name;
    const char* text;
    int status;
    double expected;  // in user units
};
void PrintTo(const LengthCase& row, std::ostream* out) { *out << row.text; }
constexpr auto kName = kNameOfRow;

class ParseLengthTest : public testing::TestWithParam<LengthCase> {};
TEST_P(ParseLengthTest, GivesStatusAndUserUnits) {
    double out = kDefault;
    EXPECT_EQ(ParseLength(PageState(300.0, 400.0), GetParam().text, out), GetParam().status);
    EXPECT_EQ(out, GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(
    Length, ParseLengthTest,
    testing::Values(
        LengthCase{"Plain", "5", kRead, 5.0}, LengthCase{"Exponent", "  7.5e1", kRead, 75.0},
        LengthCase{"Negative", "-3.5", kRead, -3.5},
        LengthCase{"Millimetres", "10mm", kRead, 10.0 * 3.543307}, LengthCase{"Inches", "1in", kRead, kInch},
        LengthCase{"Points", "72pt", kRead, 72.0 / 72.0 * kInch},
        LengthCase{"Picas", "6pc", kRead, (6.0 * 12.0) / 72.0 * 25.4 * 3.543307},
        LengthCase{"Centimetres", "1cm", kRead, 1.0 * 10.0 * 3.543307},
        LengthCase{"PercentOfMeanDiagonal", "50%", kRead,
                   std::sqrt((90000.0 + 160000.0) * 0.5) * 50.0 / 100.0},
        LengthCase{"UnknownUnitIsIgnored", "5px", kRead, 5.0},
        LengthCase{"FontUnitIsIgnored", "2em", kRead, 2.0},
        LengthCase{"UpperCaseIsNoUnit", "5PT", kRead, 5.0},
        LengthCase{"UnitInFront", "pt5", kRead, 5.0 / 72.0 * 25.4 * 3.543307},
        LengthCase{"UnitInside", "1mm2", kRead, 12.0 * 3.543307},
        LengthCase{"UnitTwice", "1mm2mm", kRead, 12.0 * 3.543307},
        LengthCase{"PicasNotCentimetres", "2pc", kRead, (2.0 * 12.0) / 72.0 * 25.4 * 3.543307},
        LengthCase{"FirstUnitOfTheTable", "1cm2mm", kRead, 12.0 * 10.0 * 3.543307},
        LengthCase{"PointsBeforeAll", "1in2pt", kRead, 1.0 / 72.0 * 25.4 * 3.543307},
        LengthCase{"UnitBehindABlank", "4 mm", kRead, 4.0 * 3.543307},
        LengthCase{"UnitGoesFromTheExponent", "1e2mm", kRead, 100.0 * 3.543307},
        LengthCase{"UnitCutsAnExponentTogether", "1emm2", kRead, 100.0 * 3.543307},
        LengthCase{"RemovedOncePassOnly", "ppt5t", 0, kDefault},
        LengthCase{"InheritHoldsInches", "inherit", 0, kDefault}, LengthCase{"Word", "auto", 0, kDefault},
        LengthCase{"Empty", "", kEmpty, kDefault}, LengthCase{"Blank", " ", kEmpty, kDefault},
        LengthCase{"UnitAlone", "mm", kEmpty, kDefault}, LengthCase{"Hexadecimal", "0x10", kRead, 0.0},
        LengthCase{"InfinityIsNoNumber", "inf", 0, kDefault},
        LengthCase{"Overflow", "1e999", kRead, std::numeric_limits<double>::infinity()},
        LengthCase{"Underflow", "1e-999", kRead, 0.0}, LengthCase{"PointInFront", ".5", kRead, 0.5},
        LengthCase{"PointAtTheEnd", "5.", kRead, 5.0}, LengthCase{"ExponentWithoutDigits", "1E", kRead, 1.0},
        LengthCase{"Plus", "+3", kRead, 3.0},
        LengthCase{"CommaEndsTheNumber", "1,5mm", kRead, 1.0 * 3.543307},
        LengthCase{"OnlyTheFirstOfAList", "1 2 3", kRead, 1.0}, LengthCase{"TabInFront", "\t4", kRead, 4.0},
        LengthCase{"PicasBeforeCentimetres", "1cm2pc", kRead, (1.0 * 12.0) / 72.0 * 25.4 * 3.543307},
        LengthCase{"MillimetresBeforeInches", "1in2mm", kRead, 1.0 * 3.543307},
        LengthCase{"InchesBeforePercent", "1%2in", kRead, kInch},
        LengthCase{"EveryUnitOfOneKindGoes", "mm1mm0mm", kRead, 10.0 * 3.543307},
        LengthCase{"EveryPercentGoes", "%1%0%", kRead, std::sqrt((90000.0 + 160000.0) * 0.5) * 10.0 / 100.0},
        LengthCase{"NegativeUnit", "-1in", kRead, -kInch}, LengthCase{"NotANumber", "nan", 0, kDefault},
        LengthCase{"PointsHoldInches", "2 points", kRead, 2.0 * kInch},
        LengthCase{"UnitHiddenInAWord", "12 option", kRead, 12.0 / 72.0 * 25.4 * 3.543307}),
    kName);

// The last bit of these values distinguishes the formulas from mathematically equal ones, such as folded
// factors or a different order.
TEST(ParseLengthTest, EveryFormulaIsRoundedAsItIsWritten) {
    const PageState state(301.0, 400.0);
    const auto read = [&](const char* text) {
        double out = kDefault;
        EXPECT_EQ(ParseLength(state, text, out), kRead) << text;
        return out;
    };
    EXPECT_EQ(read("0.7pt"), 0.8749999786111111);
    EXPECT_EQ(read("0.1pc"), 1.4999999633333336);
    EXPECT_EQ(read("0.1cm"), 3.543307);
    EXPECT_EQ(read("0.3in"), 26.99999934);
    EXPECT_EQ(read("0.1%"), 0.35397810666763);

    double out = kDefault;
    EXPECT_EQ(ParseHorizontalLength(PageState(123.0, 401.0), "0.1%", out), kRead);
    EXPECT_EQ(out, 0.12300000000000001);
    EXPECT_EQ(ParseVerticalLength(PageState(123.0, 401.0), "0.7%", out), kRead);
    EXPECT_EQ(out, 2.807);
}

class ParseHorizontalLengthTest : public testing::TestWithParam<LengthCase> {};
TEST_P(ParseHorizontalLengthTest, TakesPercentOfTheWidth) {
    double out = kDefault;
    EXPECT_EQ(ParseHorizontalLength(PageState(300.0, 400.0), GetParam().text, out), GetParam().status);
    EXPECT_EQ(out, GetParam().expected);
}
INSTANTIATE_TEST_SUITE_P(
    Length, ParseHorizontalLengthTest,
    testing::Values(LengthCase{"Percent", "50%", kRead, 150.0}, LengthCase{"Plain", "50", kRead, 50.0},
                    LengthCase{"Unit", "1mm", kRead, 3.543307},
                    LengthCase{"PercentWinsOverUnit", "50%mm", kRead, 150.0},
                    LengthCase{"EveryPercentGoes", "5%0%", kRead, 150.0},
                    LengthCase{"FailedPercentIsReadAsALength", "p%t5", kRead, 5.0 / 72.0 * 25.4 * 3.543307},
                    LengthCase{"FailedPercent", "x%", 0, kDefault},
                    LengthCase{"PercentAlone", "%", kEmpty, kDefault},
                    LengthCase{"Empty", "", kEmpty, kDefault}),
    kName);

TEST(ParseVerticalLengthTest, TakesPercentOfTheHeightAndMirrorsNothing) {
    double out = kDefault;
    EXPECT_EQ(ParseVerticalLength(PageState(300.0, 400.0), "50%", out), kRead);
    EXPECT_EQ(out, 200.0);
    EXPECT_EQ(ParseVerticalLength(PageState(300.0, 400.0), "5", out), kRead);
    EXPECT_EQ(out, 5.0);
    EXPECT_EQ(ParseVerticalLength(PageState(300.0, 400.0), "", out), kEmpty);
    EXPECT_EQ(out, 5.0);
}

TEST(ParseVerticalCoordinateTest, MirrorsOnEveryPath) {
    const PageState state(300.0, 500.0);
    const auto read = [&](const char* text, int status) {
        double out = 0.0;
        EXPECT_EQ(ParseVerticalCoordinate(state, text, out), status) << text;
        return out;
    };
    EXPECT_EQ(read("10", kRead), 490.0);
    EXPECT_EQ(read("10%", kRead), 450.0);
    EXPECT_EQ(read("", kEmpty), 500.0);
    EXPECT_EQ(read("auto", 0), 500.0);
}

TEST(ParseVerticalCoordinateTest, MirrorsTheDefault) {
    double out = 120.0;
    EXPECT_EQ(ParseVerticalCoordinate(PageState(300.0, 500.0), "", out), kEmpty);
    EXPECT_EQ(out, 380.0);
}

// The page may have no size yet.
TEST(ParseLengthTest, PercentOfAnEmptyPageIsNothing) {
    const PageState state(0.0, 0.0);
    for (auto* parse : {ParseLength, ParseHorizontalLength, ParseVerticalLength, ParseVerticalCoordinate}) {
        double out = kDefault;
        EXPECT_EQ(parse(state, "50%", out), kRead);
        EXPECT_EQ(out, 0.0);
    }
}

TEST(ParseVerticalCoordinateTest, OnlyOneMeansFlipped) {
    for (const int flip : {0, 2, 255}) {
        double out = 0.0;
        EXPECT_EQ(ParseVerticalCoordinate(PageState(300.0, 500.0, flip), "10", out), kRead);
        EXPECT_EQ(out, 10.0);
    }
}

template <class Element>
class ReadAttributeTest : public testing::Test {
protected:
    Element Get() const { return element_.Get(); }

private:
    ParsedElement<Element> element_{"<r r='50%' x='50%' y='50%' rx='' ry='auto'/>"};
};
TYPED_TEST_SUITE(ReadAttributeTest, ElementAccesses);

TYPED_TEST(ReadAttributeTest, ReadsLikeTheParserOfItsKind) {
    const PageState state(300.0, 400.0);
    double out = kDefault;
    EXPECT_EQ(ReadLengthAttribute(state, this->Get(), AttributeName::kR, out), kRead);
    EXPECT_EQ(out, std::sqrt(250000.0 * 0.5) * 50.0 / 100.0);
    EXPECT_EQ(ReadHorizontalAttribute(state, this->Get(), AttributeName::kX, out), kRead);
    EXPECT_EQ(out, 150.0);
    EXPECT_EQ(ReadVerticalCoordinateAttribute(state, this->Get(), AttributeName::kY, out), kRead);
    EXPECT_EQ(out, 200.0);
}

TYPED_TEST(ReadAttributeTest, KeepsTheDefaultOfWhatIsAbsentEmptyOrUnreadable) {
    const PageState state(300.0, 400.0);
    for (const auto& [name, status] :
         {std::pair{AttributeName::kCx, kEmpty}, std::pair{AttributeName::kRx, kEmpty},
          std::pair{AttributeName::kRy, 0}}) {
        double out = kDefault;
        EXPECT_EQ(ReadLengthAttribute(state, this->Get(), name, out), status);
        EXPECT_EQ(ReadHorizontalAttribute(state, this->Get(), name, out), status);
        EXPECT_EQ(out, kDefault);
        EXPECT_EQ(ReadVerticalCoordinateAttribute(state, this->Get(), name, out), status);
        EXPECT_EQ(out, 400.0 - kDefault);
    }
}

}  // namespace
