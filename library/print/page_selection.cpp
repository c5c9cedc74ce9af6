// SPDX-License-Identifier: Apache-2.0
#include "library/print/page_selection.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <string_view>

namespace {

bool ReadPage(std::string_view text, unsigned int& page) {
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), page);
    return status == std::errc{} && end == text.data() + text.size() && page > 0;
}

}  // namespace

bool PageSelection::Parse(const std::string& text, std::string& error) {
    ranges_.clear();
    std::string_view rest = text;
    for (bool more = true; more;) {
        const std::size_t comma = rest.find(',');
        const std::string_view item = rest.substr(0, comma);
        more = comma != rest.npos;
        if (more) rest.remove_prefix(comma + 1);

        Range range{0, 0, false};
        const std::size_t dash = item.find('-');
        bool isRead = ReadPage(item.substr(0, dash), range.first);
        if (dash == item.npos) {
            range.last = range.first;
        } else if (dash + 1 == item.size()) {
            range.last = std::numeric_limits<unsigned int>::max();
            range.isOpen = true;
        } else {
            isRead = isRead && ReadPage(item.substr(dash + 1), range.last) && range.first <= range.last;
        }
        if (!isRead) {
            error = "'" + std::string(item) + "' is not a page or a range of pages, such as 1,3-5";
            ranges_.clear();
            return false;
        }
        ranges_.push_back(range);
    }
    return true;
}

unsigned int PageSelection::GetGreatest() const {
    unsigned int greatest = 0;
    for (const Range& range : ranges_) greatest = std::max(greatest, range.isOpen ? range.first : range.last);
    return greatest;
}

std::vector<unsigned int> PageSelection::Select(unsigned int before, unsigned int count) const {
    std::vector<unsigned int> pages;
    const auto add = [&](unsigned int first, unsigned int last) {
        for (unsigned int page = std::max(first, before + 1); page <= last && page - before <= count; ++page)
            pages.push_back(page - before);
    };
    if (IsAll()) add(before + 1, before + count);
    for (const Range& range : ranges_) add(range.first, range.last);
    return pages;
}
