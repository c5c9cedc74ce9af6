// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/xml/ORVXmlNode.h"
#include "platform/xml/ORVXmlPlace.h"

/// A parsed document and the source information that the check needs.
struct CheckedDocument {
    const ORVXmlNode* root = nullptr;
    std::string_view text;                             ///< the bytes it was parsed from
    const std::vector<ORVXmlPlace>* places = nullptr;  ///< position of every element, in document order
    std::string path;                                  ///< path of the document's file; empty when unknown
    /// Elements that are drawings embedded in the document; empty when the document itself is a drawing.
    std::set<const ORVXmlNode*> fragments;
};
