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

/// Results of printing.
struct PrintFacts {
    unsigned int pages = 0;  ///< of the drawings
};

struct PrintOptions : PageOptions {
    ReadOptions read;
    std::vector<std::string> inputs;           ///< "-" for standard input
    std::string output;                        ///< "-" for standard output
    std::string outputName;                    ///< name in messages; empty: the path
    bool keepsFiles = false;                   ///< never overwrite existing files
    std::string format;                        ///< empty: derived from the output's extension
    bool tellsLoss = false;                    ///< report on standard error what was not read from a drawing
    bool strict = false;                       ///< print only if the check has no findings
    std::set<FindingCode> ignored;             ///< kinds of findings ignored by `strict`
    bool isInSandbox = false;                  ///< already in the sandbox: the process does other jobs too
    PrintFacts* facts = nullptr;               ///< receives the results, unless null
    bool asksForDate = true;                   ///< take the output's creation time from the inputs
    std::optional<std::int64_t> creationTime;  ///< of the output, if not taken from the inputs
};

/// The requested format, or that of the output's extension. @return null after reporting an error
const ORVOutputFormat* FindFormatFor(const PrintOptions& options);

/// Prints all inputs, in order, into one output. Nothing appears under its name unless all succeed. An output
/// never replaces an input.
/// @return an exit code; a failure was reported
int RunPrint(const PrintOptions& options);
