// SPDX-License-Identifier: Apache-2.0

// Draws a whole standard SVG document onto a checking generator.

#include <string>

#include "fuzz/support/FuzzBytes.h"
#include "fuzz/support/FuzzTarget.h"
#include "fuzz/support/standard_documents.h"

namespace {

const FuzzTarget kTarget("standard_document", [](std::string_view bytes) {
    FuzzBytes choices(bytes);
    const bool takesSymbols = choices.Flag();
    DrawStandard(std::string(choices.GetRest()), takesSymbols);
});

}  // namespace
