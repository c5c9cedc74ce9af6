// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/entity_nesting.h"

#include <algorithm>
#include <utility>

void EntityNesting::Declare(std::string_view name, std::string_view value) {
    // Of several declarations the first one counts; it is also the one that the parser reports first.
    numbers_.try_emplace(std::string(name), entities_.size());
    Entity& entity = entities_.emplace_back();
    for (std::size_t start = value.find('&'); start != value.npos; start = value.find('&', start)) {
        const std::size_t end = value.find(';', ++start);
        if (end == value.npos) break;
        if (value[start] != '#') entity.references.emplace_back(value.substr(start, end - start));
        start = end;
    }
}

bool EntityNesting::IsDeeperThan(std::size_t limit) const {
    enum : std::size_t { kUnseen = 0 };
    std::vector<std::size_t> heights(entities_.size(), kUnseen);  // nesting depth of each entity, itself
                                                                  // included
    struct Step {
        std::size_t entity;
        std::size_t next;    // index of the next reference to visit
        std::size_t height;  // depth so far
    };
    std::vector<Step> path;
    std::vector<bool> onPath(entities_.size(), false);

    for (std::size_t first = 0; first < entities_.size(); ++first) {
        if (heights[first] != kUnseen) continue;
        path.push_back({first, 0, 1});
        onPath[first] = true;
        while (!path.empty()) {
            Step& step = path.back();
            const auto& references = entities_[step.entity].references;
            if (step.next < references.size()) {
                const auto found = numbers_.find(references[step.next++]);
                if (found == numbers_.end() || onPath[found->second]) continue;
                const std::size_t child = found->second;
                if (heights[child] != kUnseen) {
                    step.height = std::max(step.height, heights[child] + 1);
                } else {
                    onPath[child] = true;
                    path.push_back({child, 0, 1});
                }
                continue;
            }
            const std::size_t height = step.height;
            if (height > limit) return true;
            heights[step.entity] = height;
            onPath[step.entity] = false;
            path.pop_back();
            if (!path.empty()) path.back().height = std::max(path.back().height, height + 1);
        }
    }
    return false;
}
