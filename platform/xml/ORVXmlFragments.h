// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/system/namespace.h"
#include "platform/xml/ORVXmlNode.h"

namespace orvprint {

/// All `svg` elements in the tree below and including `root`, in document order, nested ones included. Names
/// are compared as written, so prefixed elements do not match. Empty for a null root.
ORV_PLATFORM_EXPORT std::vector<const ORVXmlNode*> FindSvgElements(const ORVXmlNode* root);

/// Like FindSvgElements, without those nested inside another `svg` element.
ORV_PLATFORM_EXPORT std::vector<const ORVXmlNode*> FindOutermostSvgElements(const ORVXmlNode* root);

}  // namespace orvprint
