// SPDX-License-Identifier: Apache-2.0
#include "library/check/document_order.h"

const ORVXmlNode* DocumentOrder::Next() {
    if (!next_) return nullptr;
    const ORVXmlNode* const current = next_;
    if (current->firstChild) {
        ancestors_.push_back(current);
        next_ = current->firstChild;
        return current;
    }
    // If no ancestor is left, the top element has been reached; its siblings are not part of its content.
    while (!ancestors_.empty() && !next_->nextSibling) {
        next_ = ancestors_.back();
        ancestors_.pop_back();
    }
    next_ = ancestors_.empty() ? nullptr : next_->nextSibling;
    return current;
}
