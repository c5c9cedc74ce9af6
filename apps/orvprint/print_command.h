#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "apps/orvprint/drawings.h"
#include "apps/orvprint/page_selection.h"
#include "generators/sheet/ORVSheetGenerator.h"

struct PrintOptions {
    ReadOptions read;
    std::vector<std::string> inputs;  ///< "-" for standard input
    std::string output;               ///< "-" for standard output
    std::string format;               ///< empty: the output's ending tells
    PageSelection pages;              ///< counted through all inputs
    double dotsPerInch = 90.0;
    std::optional<ORVSheetOptions> sheet;  ///< nothing: pages come out as they are
};

/// Prints all inputs, one after the other, into one output. Nothing shows under its name unless all went
/// well.
/// @return an exit code; a failure was reported
int RunPrint(const PrintOptions& options);
