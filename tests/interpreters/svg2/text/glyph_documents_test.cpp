// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/glyph_documents.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace {

using svg2::FindGlyphDocument;

struct Range {
    std::uint32_t first, last;
    std::string document;
};

std::string Number(std::uint32_t value, int width) {
    std::string bytes;
    for (int i = width - 1; i >= 0; --i) bytes += static_cast<char>(value >> (8 * i) & 0xFFU);
    return bytes;
}

std::string TableOf(const std::vector<Range>& ranges) {
    std::string records, documents;
    for (const Range& range : ranges) {
        const auto at = static_cast<std::uint32_t>(2 + 12 * ranges.size() + documents.size());
        records += Number(range.first, 2) + Number(range.last, 2) + Number(at, 4) +
                   Number(static_cast<std::uint32_t>(range.document.size()), 4);
        documents += range.document;
    }
    const auto count = static_cast<std::uint32_t>(ranges.size());
    return Number(0, 2) + Number(10, 4) + Number(0, 4) + Number(count, 2) + records + documents;
}

TEST(GlyphDocumentsTest, EachGlyphHasTheDocumentOfItsRange) {
    std::vector<Range> ranges;
    for (std::uint32_t i = 0, glyph = 3; i < 50; ++i) {
        const std::uint32_t first = glyph + i % 3, last = first + i % 4;
        ranges.push_back({first, last, "document " + std::to_string(i)});
        glyph = last + 1;
    }
    const std::string table = TableOf(ranges);
    for (std::uint32_t glyph = 0; glyph <= ranges.back().last + 3; ++glyph) {
        std::string expected;
        for (const Range& range : ranges)
            if (glyph >= range.first && glyph <= range.last) expected = range.document;
        EXPECT_EQ(FindGlyphDocument(table, glyph), expected) << glyph;
    }
    EXPECT_EQ(FindGlyphDocument(TableOf({{65535, 65535, "last"}}), 65535), "last");
}

TEST(GlyphDocumentsTest, WhatATableDoesNotHoldIsMissing) {
    const std::string table = TableOf({{1, 2, "one"}, {5, 5, "two"}});
    for (std::size_t size = 0; size < table.size(); ++size) {
        EXPECT_EQ(FindGlyphDocument(table.substr(0, size), 5), "") << size;
        const std::string_view first = FindGlyphDocument(table.substr(0, size), 1);
        EXPECT_TRUE(first.empty() || size >= table.size() - 3) << size;
    }
    EXPECT_EQ(FindGlyphDocument(TableOf({}), 1), "");
    std::string far = table;
    far.replace(16, 4, "\xFF\xFF\xFF\xFF");  // the place of the first document
    EXPECT_EQ(FindGlyphDocument(far, 1), "");
    far = table;
    far.replace(20, 4, "\xFF\xFF\xFF\xFF");  // its size
    EXPECT_EQ(FindGlyphDocument(far, 1), "");
    far = table;
    far.replace(2, 4, std::string(4, '\0'));  // the place of the list
    EXPECT_EQ(FindGlyphDocument(far, 1), "");
}

}  // namespace
