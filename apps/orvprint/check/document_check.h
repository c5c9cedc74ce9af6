#pragma once

#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "apps/orvprint/check/findings.h"
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

/// Looks through a document for what does not print as its author may expect. Walks it as the interpreter
/// does and asks the interpreter's own tables and readers, so that it knows what they know and nothing else.
/// Files are read as far as the current access policy allows. Takes time in proportion to the document.
void CheckDocument(const CheckedDocument& document, Findings& findings);
