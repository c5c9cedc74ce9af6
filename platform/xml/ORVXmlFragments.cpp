// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/ORVXmlFragments.h"

namespace {

std::vector<const ORVXmlNode*> Collect(const ORVXmlNode* root, bool nestedToo) {
    std::vector<const ORVXmlNode*> found;
    std::vector<const ORVXmlNode*> pending;  // where to continue, one sibling per level
    for (const ORVXmlNode* node = root; node;) {
        const bool isSvg = node->id == ElementName::kSvg;
        if (isSvg) found.push_back(node);
        if (node != root && node->nextSibling) pending.push_back(node->nextSibling);
        if (node->firstChild && (nestedToo || !isSvg)) {
            node = node->firstChild;
        } else if (pending.empty()) {
            node = nullptr;
        } else {
            node = pending.back();
            pending.pop_back();
        }
    }
    return found;
}

}  // namespace

std::vector<const ORVXmlNode*> orvprint::FindSvgElements(const ORVXmlNode* root) {
    return Collect(root, true);
}

std::vector<const ORVXmlNode*> orvprint::FindOutermostSvgElements(const ORVXmlNode* root) {
    return Collect(root, false);
}
