// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "apps/orvprint/commands/drawing_list.h"
#include "apps/orvprint/commands/print_command.h"

/// What concerns a batch: many inputs, each converted to a file of its own.
struct BatchOptions {
    std::string folder;         ///< where the outputs go; made when missing
    unsigned int jobs = 0;      ///< worker processes; 0 for one a core
    bool keepGoing = false;     ///< go on with the other inputs after a failure
    bool isQuiet = false;       ///< no progress, no summary
    BatchShard shard;           ///< only this part of the inputs is converted
    bool keepsFolders = false;  ///< outputs lie in folders as the inputs do
    unsigned int retries = 0;   ///< more attempts at a drawing that fails for a reason that may pass
    std::string report;         ///< file that gets a line for each drawing; empty for none
    std::string resume;         ///< report of an earlier run: what it has done is left alone; empty for none
    std::string optionsHash;    ///< of the options that decide about the outputs
};

/// Prints each input into a file of its own, in several processes. An output appears under its name when it
/// is whole; none ever takes an input's place. Messages, progress and a summary go to standard error.
/// @param options  inputs and format must be given; the output's name is not used
/// @return an exit code; failures were reported. Does not return when a signal asked the process to end
int RunBatch(const PrintOptions& options, const BatchOptions& batch);
