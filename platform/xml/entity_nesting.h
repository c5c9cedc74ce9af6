// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The general entities of a document type and the references between them. Functions throw std::bad_alloc.
class EntityNesting {
public:
    /// Adds an entity. @param value  its replacement text, with references to other entities
    void Declare(std::string_view name, std::string_view value);

    /// True when entities are nested more than `limit` deep. Recursive references are ignored, because the
    /// parser rejects them.
    bool IsDeeperThan(std::size_t limit) const;

private:
    struct Entity {
        std::vector<std::string> references;
    };
    std::unordered_map<std::string, std::size_t> numbers_;
    std::vector<Entity> entities_;
};
