// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "apps/orvprint/commands/batch.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI
class CommandOptions;

/// Inputs beside those of the command line.
struct DrawingLists {
    std::vector<std::string> paths;
    bool endsWithZero = false;  ///< names are separated by zero bytes, not by line breaks
};

/// Adds the options of batches to the command.
/// @param keepGoing  which means something else with them
void AddBatchOptions(CommandOptions& command, CLI::Option* keepGoing, BatchOptions& options);
void AddListOptions(CommandOptions& command, DrawingLists& lists);

/// A hash of the options that decide about the outputs of a batch, and of the version.
std::string HashOfOptions(const CLI::App& app);
