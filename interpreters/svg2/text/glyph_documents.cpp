// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/text/glyph_documents.h"

#include <algorithm>
#include <cstddef>

namespace svg2 {
namespace {

/// A big-endian number; bytes beyond the end are 0.
std::uint32_t NumberAt(std::string_view bytes, std::size_t at, std::size_t width) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + width; ++i)
        number = number << 8U | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    return number;
}

}  // namespace

// The list has a record for each range of glyphs, in ascending order: first and last glyph, and the position
// of the document from the start of the list.
std::string_view FindGlyphDocument(std::string_view table, std::uint32_t glyph) {
    constexpr std::size_t kHeader = 2, kRecord = 12;
    const std::size_t listAt = NumberAt(table, 2, 4);
    if (listAt == 0 || listAt + kHeader > table.size()) return {};
    const std::string_view list = table.substr(listAt);
    std::size_t first = 0;
    std::size_t end = std::min<std::size_t>(NumberAt(list, 0, 2), (list.size() - kHeader) / kRecord);
    while (first < end) {
        const std::size_t middle = (first + end) / 2, record = kHeader + middle * kRecord;
        if (glyph < NumberAt(list, record, 2)) {
            end = middle;
        } else if (glyph > NumberAt(list, record + 2, 2)) {
            first = middle + 1;
        } else {
            const std::size_t at = NumberAt(list, record + 4, 4), size = NumberAt(list, record + 8, 4);
            const bool isWhole = at <= list.size() && size <= list.size() - at;
            return isWhole ? list.substr(at, size) : std::string_view();
        }
    }
    return {};
}

}  // namespace svg2
