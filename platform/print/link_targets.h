// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>
#include <string_view>
#include <unordered_set>

class ORVPrtImageElt;

/// The identifiers within a drawing that its links lead to.
class ORVPrintLinkTargets {
public:
    /// Looks for links on `pages`, and, when there are any, for what they name: pages, groups, shapes,
    /// texts, images. Views refer to the model.
    /// @param reported  an identifier that counts as one that a link names; empty for none. Must outlive this
    explicit ORVPrintLinkTargets(std::span<const ORVPrtImageElt* const> pages,
                                 std::string_view reported = {});

    bool IsEmpty() const { return targets_.empty(); }
    /// True when something on the pages has that identifier and a link leads to it.
    bool Contains(std::string_view id) const { return targets_.contains(id); }
    /// True for the first thing that is drawn under an identifier that links lead to.
    bool Arrive(std::string_view id) { return targets_.contains(id) && arrived_.insert(id).second; }

private:
    std::unordered_set<std::string_view> targets_, arrived_;
};
