// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "apps/orvprint/input/drawings.h"
#include "generators/sheet/ORVSheetGenerator.h"
#include "library/check/findings.h"
#include "library/print/page_selection.h"

/// What came of printing.
struct PrintFacts {
    unsigned int pages = 0;  ///< of the drawings
};

struct PrintOptions {
    ReadOptions read;
    std::vector<std::string> inputs;  ///< "-" for standard input
    std::string output;               ///< "-" for standard output
    std::string outputName;           ///< what messages call it; empty: by its path
    bool keepsFiles = false;          ///< never write over a file that exists
    std::string format;               ///< empty: the output's ending tells
    PageSelection pages;              ///< counted through all inputs
    bool tellsLoss = false;           ///< say on standard error what of a drawing was not read
    bool strict = false;              ///< print only what the check finds nothing in
    std::set<FindingCode> ignored;    ///< kinds of findings that strictness leaves out
    double dotsPerInch = 90.0;
    double flattenDotsPerInch = 300.0;  ///< of transparent parts, where the format has no transparency
    unsigned int threads = 0;           ///< that draw a picture; 0 for as many as the machine has processors
    bool isInSandbox = false;           ///< already: the process does other jobs, too
    std::optional<ORVSheetOptions> sheet;  ///< nothing: pages come out as they are
    PrintFacts* facts = nullptr;           ///< written when there
    std::string elementId;                 ///< of the one element to print; empty for all of the drawing
};

/// Prints all inputs, one after the other, into one output. Nothing shows under its name unless all went
/// well. An output never takes the place of an input.
/// @return an exit code; a failure was reported
int RunPrint(const PrintOptions& options);
