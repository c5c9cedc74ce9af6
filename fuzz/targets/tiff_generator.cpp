// SPDX-License-Identifier: Apache-2.0

// Prints a document to TIFF.

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/documents.h"

namespace {

const FuzzTarget kTarget("tiff_generator", [](std::string_view bytes) {
    const FormatRun run = PrintInFormat("tiff", bytes);
    if (run.succeeded) Require(run.parts == 1 && run.output.starts_with("II"));
});

}  // namespace
