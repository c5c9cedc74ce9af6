// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "apps/orvprint/input/inputs.h"
#include "library/check/findings.h"
#include "library/print/PrintJob.h"

/// What came of printing.
struct PrintFacts {
    unsigned int pages = 0;  ///< of the drawings
};

struct PrintOptions : PageOptions {
    ReadOptions read;
    std::vector<std::string> inputs;           ///< "-" for standard input
    std::string output;                        ///< "-" for standard output
    std::string outputName;                    ///< what messages call it; empty: by its path
    bool keepsFiles = false;                   ///< never write over a file that exists
    std::string format;                        ///< empty: the output's ending tells
    bool tellsLoss = false;                    ///< say on standard error what of a drawing was not read
    bool strict = false;                       ///< print only what the check finds nothing in
    std::set<FindingCode> ignored;             ///< kinds of findings that strictness leaves out
    bool isInSandbox = false;                  ///< already: the process does other jobs, too
    PrintFacts* facts = nullptr;               ///< written when there
    bool asksForDate = true;                   ///< the inputs say when the output was made
    std::optional<std::int64_t> creationTime;  ///< of the output, where they are not asked
};

/// The format asked for, or that of the output's ending. @return null after a report
const ORVOutputFormat* FindFormatFor(const PrintOptions& options);

/// Prints all inputs, one after the other, into one output. Nothing shows under its name unless all went
/// well. An output never takes the place of an input.
/// @return an exit code; a failure was reported
int RunPrint(const PrintOptions& options);
