// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <vector>

#include "platform/xml/ORVXmlNode.h"

/// An element and its depth; the root has depth 1.
struct TreePlace {
    const ORVXmlNode* node;
    std::size_t depth;
};

/// The elements of a tree in document order, without recursion. Every byte that its nodes lead to is touched,
/// and what is known of their attributes is required to fit together.
std::vector<TreePlace> WalkTree(const ORVXmlNode* root);

/// Requires that two trees have the same elements, comments and text nodes apart.
void RequireSameTree(const ORVXmlNode* a, const ORVXmlNode* b);
