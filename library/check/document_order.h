// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/xml/ORVXmlNode.h"

/// Iterates over an element and its descendants in document order, without recursion.
class DocumentOrder {
public:
    explicit DocumentOrder(const ORVXmlNode& top) : next_(&top) {}

    /// The next element, starting with the top element; null at the end.
    const ORVXmlNode* Next();

private:
    const ORVXmlNode* next_;
    std::vector<const ORVXmlNode*> ancestors_;  // of the next element, up to the top element
};
