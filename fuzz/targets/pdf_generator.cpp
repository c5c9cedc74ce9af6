// SPDX-License-Identifier: Apache-2.0

// Prints a document to PDF.

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/documents.h"

namespace {

const FuzzTarget kTarget("pdf_generator", [](std::string_view bytes) {
    const FormatRun run = PrintInFormat("pdf", bytes);
    if (run.succeeded)
        Require(run.parts == 1 && run.output.starts_with("%PDF-") && run.output.ends_with("%%EOF\n"));
});

}  // namespace
