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

/// Returns the elements of a tree in document order, without recursion. Reads every byte that its nodes refer
/// to, and requires that the lookups of their attributes agree.
std::vector<TreePlace> WalkTree(const ORVXmlNode* root);

/// Requires that two trees have the same elements; comments and text nodes may differ.
void RequireSameTree(const ORVXmlNode* a, const ORVXmlNode* b);
