// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/check/checked_document.h"
#include "library/check/findings.h"

/// Looks through a document for what does not print as its author may expect. Walks it as the interpreter
/// does and asks the interpreter's own tables and readers, so that it knows what they know and nothing else.
/// Files are read as far as the current access policy allows. Takes time in proportion to the document.
void CheckDocument(const CheckedDocument& document, Findings& findings);
