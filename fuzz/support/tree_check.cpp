// SPDX-License-Identifier: Apache-2.0
#include "fuzz/support/tree_check.h"

#include <cstdint>
#include <string_view>

#include "fuzz/support/FuzzTarget.h"

namespace {

volatile unsigned int touched = 0;

void Touch(std::string_view text) {
    unsigned int sum = 0;
    for (const char c : text) sum += static_cast<unsigned char>(c);
    touched = sum;
}

void CheckNode(const ORVXmlNode& node) {
    Require(!node.GetName().empty());
    Touch(node.GetName());
    Touch(node.GetText());
    std::uint32_t known = 0;
    for (unsigned i = 0; i < static_cast<unsigned>(AttributeName::kCount); ++i) {
        const auto name = static_cast<AttributeName>(i);
        const auto found = node.Find(GetNameText(name));
        Require(found.has_value() == node.Has(name));
        if (!found) continue;
        Require(found->data() == node.Value(name).data() && found->size() == node.Value(name).size());
        ++known;
    }
    Require(known <= node.attributeCount);
    for (std::uint32_t i = 0; i < node.attributeCount; ++i) {
        const ORVXmlAttribute attribute = node.GetAttribute(i);
        Touch(attribute.name);
        Touch(attribute.value);
    }
}

}  // namespace

std::vector<TreePlace> WalkTree(const ORVXmlNode* root) {
    std::vector<TreePlace> elements, pending;
    if (root) pending.push_back({root, 1});
    while (!pending.empty()) {
        const TreePlace place = pending.back();
        pending.pop_back();
        CheckNode(*place.node);
        if (place.node->nextSibling && place.depth > 1)
            pending.push_back({place.node->nextSibling, place.depth});
        if (place.node->firstChild) pending.push_back({place.node->firstChild, place.depth + 1});
        if (place.node->IsElement()) {
            Require(place.depth <= 1024);
            elements.push_back(place);
        }
    }
    return elements;
}

void RequireSameTree(const ORVXmlNode* a, const ORVXmlNode* b) {
    const std::vector<TreePlace> left = WalkTree(a), right = WalkTree(b);
    Require(left.size() == right.size());
    for (std::size_t i = 0; i < left.size(); ++i) {
        const ORVXmlNode& one = *left[i].node;
        const ORVXmlNode& other = *right[i].node;
        Require(left[i].depth == right[i].depth && one.GetName() == other.GetName() &&
                one.GetText() == other.GetText());
        Require(one.attributeCount == other.attributeCount && one.known == other.known);
        for (std::uint32_t k = 0; k < one.attributeCount; ++k) {
            const ORVXmlAttribute mine = one.GetAttribute(k), theirs = other.GetAttribute(k);
            Require(mine.name == theirs.name && mine.value == theirs.value);
        }
    }
}
