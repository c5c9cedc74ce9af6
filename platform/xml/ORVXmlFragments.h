// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/system/namespace.h"
#include "platform/xml/ORVXmlNode.h"

namespace orvprint {

/// The `svg` elements at or below `root`, in document order, nested ones included. A null root has none.
/// The names count as written: an element with a prefix is not among them.
ORV_PLATFORM_EXPORT std::vector<const ORVXmlNode*> FindSvgElements(const ORVXmlNode* root);

/// As FindSvgElements, without those that stand inside another one.
ORV_PLATFORM_EXPORT std::vector<const ORVXmlNode*> FindOutermostSvgElements(const ORVXmlNode* root);

}  // namespace orvprint
