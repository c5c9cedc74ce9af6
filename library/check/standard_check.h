// SPDX-License-Identifier: Apache-2.0
#pragma once

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
