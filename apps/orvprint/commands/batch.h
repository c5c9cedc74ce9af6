// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/commands/drawing_list.h"
#include "apps/orvprint/commands/print_command.h"

/// Options of a batch: many inputs, each converted to its own file.
struct BatchOptions {
    std::string folder;         ///< folder of the outputs; created if missing
    unsigned int jobs = 0;      ///< worker processes; 0: one per core
    bool keepGoing = false;     ///< continue after a failed input
    bool isQuiet = false;       ///< no progress line, no summary
    BatchShard shard;           ///< convert only this part of the inputs
    bool keepsFolders = false;  ///< keep the folders of the inputs below the output folder
    unsigned int retries = 0;   ///< further attempts at a drawing that fails for a possibly temporary reason
    std::string report;         ///< file to which a line is appended for each drawing; empty: none
    std::string resume;         ///< report of an earlier run whose finished drawings are skipped; empty: none
    std::string optionsHash;    ///< hash of the options that affect the outputs
};

/// Converts each input to its own file, in several processes. An output gets its final name when it is
/// complete, and never replaces an input. Messages, progress and a summary go to standard error.
/// @param options  inputs and format must be set; the output name is ignored
/// @return an exit code; failures have been reported. Does not return if a signal ended the run.
int RunBatch(const PrintOptions& options, const BatchOptions& batch);
