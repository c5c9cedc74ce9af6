// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <string>

#include "tests/platform/xml/event_text.h"

namespace {

bool AreTaken(const std::string& text) { return PlainEvents("<a>" + text + "</a>").has_value(); }

// Bytes are examined in blocks of 256. A forbidden one must be found anywhere in a block, and after the last.
TEST(XmlCharacters, AreLookedForInEveryPlace) {
    const std::string plain = [] {
        std::string text;
        for (int i = 0; i < 600; ++i) text += "a ;\t\n\r\x7F\x20"[i % 8];
        return text;
    }();
    EXPECT_TRUE(AreTaken(plain));
    EXPECT_TRUE(AreTaken(""));
    for (std::size_t i = 0; i < plain.size(); ++i)
        for (const char c : {'\x00', '\x08', '\x0B', '\x0C', '\x0E', '\x1F', '\x80', '\xFF'}) {
            std::string text = plain;
            text[i] = c;
            EXPECT_FALSE(AreTaken(text)) << i;
        }
}

TEST(XmlCharacters, BeyondAsciiAreUtf8OfCharacters) {
    const std::string space(300, ' ');
    for (const char* text : {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80"})
        EXPECT_TRUE(AreTaken(space + text + space)) << text;
    for (const char* text : {"\xC3", "\xED\xA0\x80", "\xEF\xBF\xBE", "\xEF\xBF\xBF"})
        EXPECT_FALSE(AreTaken(space + text + space)) << text;
}

}  // namespace
