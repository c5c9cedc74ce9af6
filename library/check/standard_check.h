// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>
#include "library/check/checked_document.h"
#include "library/check/findings.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVXmlTree.h"

/// Checks a document for content that the standard SVG interpreter does not draw as other programs do:
/// unsupported features, unresolved references, missing images and fonts. Files are read as far as the
/// current access policy allows. Takes time proportional to the size of the document.
/// @param tree  the tree that contains the document's root
void CheckStandardDocument(const CheckedDocument& document, const ORVRef<const ORVXmlTree>& tree,
                           Findings& findings);

/// Numbers of the elements that the standard SVG interpreter sees below a root, in its order. Elements are
/// counted from 1 in document order.
/// @param top  the document's first element, from which elements are counted
std::vector<std::uint32_t> CountStandardElements(const ORVRef<const ORVXmlTree>& tree, const ORVXmlNode& root,
                                                 const ORVXmlNode& top);
