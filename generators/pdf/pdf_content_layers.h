// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/print/ORVPrintGenerator.h"

class PdfFile;

/// The layers of a document that viewers can show and hide: optional-content groups. Layers with the same
/// label and the same parent on several pages are one group.
class PdfContentLayers {
public:
    /// Restarts the count of layers with equal labels.
    void BeginPage();
    /// Begins a layer inside the open ones. @return the object of its group
    unsigned int Begin(const ORVPrintContentLayer& layer, PdfFile& file);
    /// Ends the innermost layer.
    void End() { open_.pop_back(); }

    /// Entry for the catalogue; empty if there are no layers.
    std::string MakeProperties() const;

private:
    struct Group {
        unsigned int object = 0;
        bool isShown = true, isLocked = false;
        std::vector<std::size_t> children = {};
    };
    static constexpr std::size_t kNone = ~std::size_t{0};
    using Siblings =
        std::pair<std::size_t, std::string>;  // layers with the same label: the parent group and the label

    void AppendOrder(std::string& text, const std::vector<std::size_t>& groups) const;
    std::string List(const char* key, bool (*isListed)(const Group&)) const;

    std::vector<Group> groups_;
    std::vector<std::size_t> outermost_, open_;
    std::map<std::tuple<std::size_t, std::string, std::size_t>, std::size_t> known_;
    std::map<Siblings, std::size_t> onPage_;  // how many occurred so far on the page
};
