// SPDX-License-Identifier: Apache-2.0

// Prints a document to PNG, which must be readable.

#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/documents.h"
#include "platform/system/ORVRef.h"
#include "platform/visualization/images/ORVPixelImage.h"

namespace {

const FuzzTarget kTarget("png_generator", [](std::string_view bytes) {
    const FormatRun run = PrintInFormat("png", bytes);
    if (!run.succeeded) return;
    const ORVRef<ORVPixelImage> image(ReadMemoryPNGPixelImage(run.output.data(), run.output.size(), 0));
    Require(static_cast<bool>(image));
});

}  // namespace
