// SPDX-License-Identifier: Apache-2.0

// Prints a document to PostScript and EPS.

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/documents.h"

namespace {

const FuzzTarget kTarget("postscript_generator", [](std::string_view bytes) {
    for (const char* format : {"ps", "eps"}) {
        const FormatRun run = PrintInFormat(format, bytes);
        if (run.succeeded) Require(run.output.starts_with("%!PS-Adobe-3.0"));
    }
});

}  // namespace
