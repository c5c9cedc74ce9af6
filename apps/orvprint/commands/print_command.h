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

/// The result of printing.
struct PrintFacts {
    unsigned int pages = 0;  ///< of the drawings
};

struct PrintOptions : PageOptions {
    ReadOptions read;
    std::vector<std::string> inputs;           ///< "-" for standard input
    std::string output;                        ///< "-" for standard output
    std::string outputName;                    ///< its name in messages; empty: its path
    bool keepsFiles = false;                   ///< do not replace an existing file
    std::string format;                        ///< empty: from the extension of the output
    bool tellsLoss = false;                    ///< say on standard error what was not read in a drawing
    bool strict = false;                       ///< print only if the check reports no finding
    std::set<FindingCode> ignored;             ///< kinds of findings that `isStrict` ignores
    bool isInSandbox = false;                  ///< by the caller: the process has other jobs, too
    PrintFacts* facts = nullptr;               ///< filled in if not null
    bool asksForDate = true;                   ///< take the date of the output from the inputs
    std::optional<std::int64_t> creationTime;  ///< date of the output, if it is not taken from the inputs
};

/// The requested format, or that of the output's extension.
/// @return null after reporting an error
const ORVOutputFormat* FindFormatFor(const PrintOptions& options);

/// Prints all inputs, one after the other, to one output. It gets its final name only if everything
/// succeeded, and never replaces an input.
/// @return an exit code; a failure has been reported
int RunPrint(const PrintOptions& options);
