// SPDX-License-Identifier: Apache-2.0
#include "library/check/attribute_places.h"

#include <algorithm>

namespace {

constexpr std::string_view kWhiteSpace = " \t\r\n";

// The position of byte `to`, counted from `from`.
ORVXmlPlace Advance(std::string_view document, ORVXmlPlace from, std::size_t to) {
    for (std::size_t i = from.offset; i < to; ++i) {
        const char c = document[i];
        if (c == '\n') {
            ++from.line;
            from.column = 1;
        } else if ((static_cast<unsigned char>(c) & 0xC0U) != 0x80U) {
            ++from.column;
        }
    }
    from.offset = to;
    return from;
}

}  // namespace

ORVXmlPlace FindAttributePlace(std::string_view document, const ORVXmlPlace& element,
                               std::string_view attribute) {
    std::size_t at = element.offset;
    // The search is limited to this many bytes of a start tag, or many findings in a long one would take too
    // long.
    constexpr std::size_t kLongestTag = std::size_t{64} << 10U;
    document = document.substr(0, std::min(document.size(), at + kLongestTag));
    if (at >= document.size() || document[at] != '<' || attribute.empty()) return element;
    at = document.find_first_of(" \t\r\n>/", at);
    while (at < document.size()) {
        at = document.find_first_not_of(kWhiteSpace, at);
        if (at == document.npos || document[at] == '>' || document[at] == '/') return element;
        const std::size_t equals = document.find('=', at);
        if (equals == document.npos) return element;
        std::string_view name = document.substr(at, equals - at);
        name = name.substr(0, name.find_last_not_of(kWhiteSpace) + 1);
        if (name == attribute) return Advance(document, element, at);
        const std::size_t quote = document.find_first_of("\"'", equals);
        if (quote == document.npos) return element;
        const std::size_t end = document.find(document[quote], quote + 1);
        if (end == document.npos) return element;
        at = end + 1;
    }
    return element;
}
