// SPDX-License-Identifier: Apache-2.0

// Prints a document to PWG Raster and Apple Raster.

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/documents.h"

namespace {

const FuzzTarget kTarget("pwg_generator", [](std::string_view bytes) {
    const FormatRun run = PrintInFormat("pwg", bytes);
    if (run.succeeded) Require(run.parts == 1 && run.output.starts_with("RaS2"));
    const FormatRun other = PrintInFormat("urf", bytes);
    if (other.succeeded) Require(other.parts == 1 && other.output.starts_with("UNIRAST"));
});

}  // namespace
