// SPDX-License-Identifier: Apache-2.0
#include "generators/pdf/cff_table.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/support/named_rows.h"

namespace {

/// Makes an index of one object, with offsets of one byte.
std::string IndexOf(const std::string& object) {
    std::string index{'\0', '\1', '\1', '\1'};
    index += static_cast<char>(object.size() + 1);
    return index + object;
}

/// Makes a table that ends after its first dictionary.
std::string Table(const std::string& dictionary, const std::string& header = {'\1', '\0', '\4', '\1'}) {
    return header + IndexOf("Name") + IndexOf(dictionary);
}

const std::string kPlain = {'\x8B', '\1', '\x1C', '\0', '\x0C', '\x0F'};  // operators Notice, charset
const std::string kNumbered = {'\x8B', '\x8B', '\x8B', '\x0C', '\x1E'};   // operator ROS and its operands

struct TableCase {
    const char* name;
    std::string table;
    bool isPlain;
};
class CffTableTest : public testing::TestWithParam<TableCase> {};
TEST_P(CffTableTest, TellsWhetherGlyphsGoByPlainNumbers) {
    EXPECT_EQ(IsPlainCffTable(GetParam().table), GetParam().isPlain);
}
INSTANTIATE_TEST_SUITE_P(
    Tables, CffTableTest,
    testing::Values(TableCase{"Plain", Table(kPlain), true}, TableCase{"Empty", "", false},
                    TableCase{"NumberedCharacters", Table(kNumbered), false},
                    TableCase{"NumberedCharactersBehindOtherEntries", Table(kPlain + kNumbered), false},
                    TableCase{"NumbersThatLookLikeOperators",
                              Table({'\x1D', '\x0C', '\x1E', '\x0C', '\x1E', '\x05'}), true},
                    TableCase{"RealNumber", Table({'\x1E', '\x0C', '\x1E', '\xAF', '\x05'}), true},
                    TableCase{"RealNumberWithoutEnd", Table({'\x1E', '\x12', '\x34'}), false},
                    TableCase{"NumberCutShort", Table({'\x1C', '\x01'}), false},
                    TableCase{"LongerHeader", Table(kPlain, {'\1', '\0', '\5', '\1', '\7'}), true},
                    TableCase{"ShortestHeader", Table(kPlain, {'\1', '\0', '\3'}), true},
                    TableCase{"OtherVersion", Table(kPlain, {'\2', '\0', '\4', '\1'}), false},
                    TableCase{"NoRoomForTheHeader", Table(kPlain, {'\1', '\0', '\2', '\1'}), false},
                    TableCase{"CutInTheNames", Table(kPlain).substr(0, 10), false},
                    TableCase{"CutInTheDictionary", Table(kPlain).substr(0, 20), false},
                    TableCase{"OffsetsOfNoSize", std::string{'\1', '\0', '\4', '\1', '\0', '\1', '\0', '\1'},
                              false},
                    TableCase{"OffsetsThatFall",
                              std::string{'\1', '\0', '\4', '\1', '\0', '\1', '\1', '\1', '\0'}, false}),
    kNameOfRow);

}  // namespace
