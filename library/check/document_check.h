// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/checked_document.h"
#include "library/check/findings.h"

/// Checks a document for content that may not print as its author expects. It walks the document like the
/// interpreter and uses the interpreter's own tables and parsers, so both always agree. Files are read as far
/// as the current access policy allows. Takes time proportional to the size of the document.
void CheckDocument(const CheckedDocument& document, Findings& findings);
