// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

/// Pages as the user lists them: "1,3-5", "7-" for all from 7 on.
class PageSelection {
public:
    /// @return false when `text` is no such list; `error` then says why
    bool Parse(const std::string& text, std::string& error);

    /// True when all pages are wanted.
    bool IsAll() const { return ranges_.empty(); }
    /// True when at most one page can come out.
    bool IsSingle() const { return ranges_.size() == 1 && ranges_.front().first == ranges_.front().last; }
    /// The greatest page that was named, 0 when all pages are wanted.
    unsigned int GetGreatest() const;
    /// The pages wanted among the `count` that follow the first `before` ones, in the order listed, numbered
    /// from 1.
    std::vector<unsigned int> Select(unsigned int before, unsigned int count) const;

private:
    struct Range {
        unsigned int first, last;
        bool isOpen;  // to the last page there is
    };
    std::vector<Range> ranges_;
};
