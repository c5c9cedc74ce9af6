// SPDX-License-Identifier: Apache-2.0
#include "library/check/attribute_places.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/named_rows.h"

namespace {

struct PlaceCase {
    const char* name;
    std::string document;
    std::uint64_t offset;
    const char* attribute;
    std::uint32_t line, column;  // expected for an element at 3:4
};
class AttributePlaceTest : public testing::TestWithParam<PlaceCase> {};

TEST_P(AttributePlaceTest, IsThatOfTheName) {
    const ORVXmlPlace place =
        FindAttributePlace(GetParam().document, {3, 4, GetParam().offset}, GetParam().attribute);
    EXPECT_EQ(place.line, GetParam().line);
    EXPECT_EQ(place.column, GetParam().column);
}

INSTANTIATE_TEST_SUITE_P(
    Places, AttributePlaceTest,
    testing::Values(PlaceCase{"SameLine", "<g a='1' b='2'/>", 0, "b", 3, 13},
                    PlaceCase{"OtherLine", "<g a='1'\n   b='2'/>", 0, "b", 4, 4},
                    PlaceCase{"LineBreaksInValues", "<g a='1\n2' b='2'/>", 0, "b", 4, 4},
                    PlaceCase{"NamesInValues", "<g a=' b=\"1\" ' b='2'/>", 0, "b", 3, 19},
                    PlaceCase{"BracketsInValues", "<g a='>' b='2'/>", 0, "b", 3, 13},
                    PlaceCase{"BlanksAroundEquals", "<g a = '1' b\n='2'/>", 0, "b", 3, 15},
                    PlaceCase{"CharactersNotBytes", "<g a='\xC3\xA4' b='2'/>", 0, "b", 3, 13},
                    PlaceCase{"BehindOtherText", "xx<g b='2'/>", 2, "b", 3, 7},
                    PlaceCase{"AbsentIsTheElement", "<g a='1'/><h b='2'/>", 0, "b", 3, 4},
                    PlaceCase{"OtherBytesAreTheElement", "&entity;", 0, "b", 3, 4},
                    PlaceCase{"BeyondTheEndIsTheElement", "<g", 9, "b", 3, 4},
                    PlaceCase{"BrokenOffIsTheElement", "<g a='1", 0, "b", 3, 4}),
    kNameOfRow);

}  // namespace
