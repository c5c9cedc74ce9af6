// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <vector>
#include "library/check/checked_document.h"
#include "library/check/findings.h"
#include "platform/system/ORVRef.h"
#include "platform/xml/ORVXmlTree.h"

/// Looks through a document for what the interpreter of standard SVG does not draw as other programs do:
/// what it does not read, references to nothing, images and fonts that are not there. Files are read as far
/// as the current access policy allows. Takes time in proportion to the document.
/// @param tree  of the document's root
void CheckStandardDocument(const CheckedDocument& document, const ORVRef<const ORVXmlTree>& tree,
                           Findings& findings);

/// The elements that the interpreter of standard SVG sees below a root, in its order: for each its number
/// among all elements, counted from 1 in document order.
/// @param top  the document's first element, from which elements are counted
std::vector<std::uint32_t> CountStandardElements(const ORVRef<const ORVXmlTree>& tree, const ORVXmlNode& root,
                                                 const ORVXmlNode& top);
