// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/xml/ORVXmlNode.h"
#include "platform/xml/ORVXmlPlace.h"

/// A parsed document, as the check looks at it.
struct CheckedDocument {
    const ORVXmlNode* root = nullptr;
    std::string_view text;                             ///< the bytes it was parsed from
    const std::vector<ORVXmlPlace>* places = nullptr;  ///< of every element, in document order
    std::string path;                                  ///< file of the document, empty when unknown
    /// The elements that are drawings inside the document; empty when the document itself is one.
    std::set<const ORVXmlNode*> fragments;
};
