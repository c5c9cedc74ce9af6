// SPDX-License-Identifier: Apache-2.0
#include "library/dump/json_writer.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

#include "tests/support/named_rows.h"

namespace {

/// Returns a text as written to JSON.
std::string Written(const std::string& text, bool isInMarkup = false) {
    std::FILE* file = std::tmpfile();
    if (!file) return "no file";
    JsonWriter json(file, isInMarkup);
    json.Text(text);
    EXPECT_TRUE(json.Flush());
    std::string bytes(static_cast<std::size_t>(std::ftell(file)), '\0');
    std::rewind(file);
    EXPECT_EQ(std::fread(bytes.data(), 1, bytes.size(), file), bytes.size());
    std::fclose(file);
    return bytes;
}

struct TextCase {
    const char* name;
    std::string text;
    const char* expected;
};
class JsonTextTest : public testing::TestWithParam<TextCase> {};

TEST_P(JsonTextTest, IsEscaped) { EXPECT_EQ(Written(GetParam().text), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(Texts, JsonTextTest,
                         testing::Values(TextCase{"Plain", "a b~", "\"a b~\""}, TextCase{"Empty", "", "\"\""},
                                         TextCase{"Quotes", "a\"b\\c", "\"a\\\"b\\\\c\""},
                                         TextCase{"Controls", std::string("\0\n\x1B\x1F", 4),
                                                  "\"\\u0000\\u000a\\u001b\\u001f\""},
                                         TextCase{"Delete",
                                                  "a\x7F"
                                                  "b",
                                                  "\"a\\u007fb\""},
                                         TextCase{"BeyondAscii", "\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80",
                                                  "\"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\""},
                                         TextCase{"NoUtf8",
                                                  "a\xFF"
                                                  "b\xC3",
                                                  "\"a\xEF\xBF\xBD"
                                                  "b\xEF\xBF\xBD\""}),
                         kNameOfRow);

TEST(JsonWriterTest, NothingOfATextIsMarkupWhereItStandsInMarkup) {
    EXPECT_EQ(Written("</script><!--&amp;", true), "\"\\u003c/script\\u003e\\u003c!--\\u0026amp;\"");
    EXPECT_EQ(Written("</script>"), "\"</script>\"");
}

}  // namespace
