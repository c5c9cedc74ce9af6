// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg2/css/layers.h"

#include <cstddef>

#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

constexpr std::size_t kMostLayers = 10'000;

}  // namespace

SheetLayers::Layer SheetLayers::Add(Layer outer) {
    if (outer_.size() >= kMostLayers) return outer;
    outer_.push_back(outer);
    return static_cast<Layer>(outer_.size() - 1);
}

SheetLayers::Layer SheetLayers::FindWithin(std::string_view name, Layer outer) {
    const auto [entry, isNew] = byName_.try_emplace({outer, name}, outer);
    if (isNew) entry->second = Add(outer);
    return entry->second;
}

SheetLayers::Layer SheetLayers::Find(std::string_view name, Layer outer) {
    name = Trim(name);
    if (name.empty()) return Add(outer);
    for (;;) {
        const std::size_t dot = name.find('.');
        outer = FindWithin(name.substr(0, dot), outer);
        if (dot == std::string_view::npos) return outer;
        name.remove_prefix(dot + 1);
    }
}

// Ranks layers from last to first; a layer ranks above the layers nested in it. An enclosing layer always has
// a smaller index than those nested in it.
std::vector<std::uint32_t> SheetLayers::Rank() const {
    const std::size_t count = outer_.size();
    std::vector<std::vector<Layer>> inner(count + 1);  // the last entry holds the layers that are not nested
    for (std::size_t i = 0; i < count; ++i)
        inner[outer_[i] == kNone ? count : outer_[i]].push_back(static_cast<Layer>(i));
    std::vector<std::uint32_t> ranks(count);
    std::vector<Layer> open = inner[count];
    for (std::uint32_t rank = static_cast<std::uint32_t>(count); !open.empty();) {
        const Layer layer = open.back();
        open.pop_back();
        ranks[layer] = --rank;
        open.insert(open.end(), inner[layer].begin(), inner[layer].end());
    }
    return ranks;
}

}  // namespace svg2
