// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// The general entities of a document type and which of them refer to which. Throws std::bad_alloc.
class EntityNesting {
public:
    /// Adds an entity; `value` is its replacement text, with the references to other entities in it.
    void Declare(std::string_view name, std::string_view value);

    /// True when an entity contains one that contains one, and so on, more than `limit` entities deep.
    /// References to an entity that is being looked at already are left to the parser, which forbids them.
    bool IsDeeperThan(std::size_t limit) const;

private:
    struct Entity {
        std::vector<std::string> references;
    };
    std::unordered_map<std::string, std::size_t> numbers_;
    std::vector<Entity> entities_;
};
