// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// A list of pages such as "1,3-5", or "7-" for page 7 onwards.
class PageSelection {
public:
    /// @return false if `text` is not such a list; `error` then holds the reason
    bool Parse(const std::string& text, std::string& error);

    /// Whether all pages are selected.
    bool IsAll() const { return ranges_.empty(); }
    /// Whether at most one page can be selected.
    bool IsSingle() const { return ranges_.size() == 1 && ranges_.front().first == ranges_.front().last; }
    /// The greatest page number in the list; 0 if all pages are selected.
    unsigned int GetGreatest() const;
    /// The selected pages among the `count` pages that follow the first `before` ones, in the order listed,
    /// numbered from 1.
    std::vector<unsigned int> Select(unsigned int before, unsigned int count) const;

private:
    struct Range {
        unsigned int first, last;
        bool isOpen;  // up to the last page
    };
    std::vector<Range> ranges_;
};
