// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/xml/ORVXmlNode.h"

/// Goes through an element and all that it holds, in document order. Does not recurse.
class DocumentOrder {
public:
    explicit DocumentOrder(const ORVXmlNode& top) : next_(&top) {}

    /// The next element, the first time the one at the top; null behind the last one.
    const ORVXmlNode* Next();

private:
    const ORVXmlNode* next_;
    std::vector<const ORVXmlNode*> ancestors_;  // of the next one, up to the top
};
