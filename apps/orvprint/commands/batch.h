// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/commands/drawing_list.h"
#include "apps/orvprint/commands/print_command.h"

/// Options of a batch: many inputs, each converted to a separate file.
struct BatchOptions {
    std::string folder;         ///< output folder; created if missing
    unsigned int jobs = 0;      ///< worker processes; 0 for one per core
    bool keepGoing = false;     ///< continue with the other inputs after a failure
    bool isQuiet = false;       ///< no progress and no summary
    BatchShard shard;           ///< the part of the inputs to convert
    bool keepsFolders = false;  ///< outputs are in subfolders like the inputs
    unsigned int retries = 0;   ///< further attempts for a drawing after a failure that may be temporary
    std::string report;         ///< file to append a line per drawing to; empty for none
    /// Report of an earlier run, whose completed drawings are skipped; empty for none.
    std::string resume;
    std::string optionsHash;  ///< of the options that affect the outputs
};

/// Converts each input to a separate file, in several processes. An output appears under its name when it is
/// complete, and never replaces an input. Messages, progress and a summary go to standard error.
/// @param options  inputs and format must be set; the output's name is not used
/// @return an exit code; failures were reported. Does not return after a signal that ends the process
int RunBatch(const PrintOptions& options, const BatchOptions& batch);
