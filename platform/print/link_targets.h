// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>
#include <unordered_set>

class ORVPrtImageElt;

/// The identifiers that links within a drawing lead to.
class ORVPrintLinkTargets {
public:
    /// Collects the links on `pages` and, if there are any, the elements they refer to: pages, groups,
    /// shapes, texts, images. Stores views of the model's strings.
    /// @param reported  an identifier to treat as the target of a link; empty for none. Must outlive this
    /// object
    explicit ORVPrintLinkTargets(std::span<const ORVPrtImageElt* const> pages,
                                 std::string_view reported = {});

    bool IsEmpty() const { return targets_.empty(); }
    /// True when an element on the pages has that identifier and a link leads to it.
    bool Contains(std::string_view id) const { return targets_.contains(id); }
    /// True on the first call for an identifier that is a link target.
    bool Arrive(std::string_view id) { return targets_.contains(id) && arrived_.insert(id).second; }

private:
    std::unordered_set<std::string_view> targets_, arrived_;
};
