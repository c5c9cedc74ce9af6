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

/// Lists of inputs, in addition to those of the command line.
struct DrawingLists {
    std::vector<std::string> paths;
    bool endsWithZero = false;  ///< names are separated by zero bytes instead of line breaks
};

/// Adds the options of batches to the command.
/// @param keepGoing  this option has another meaning in batches
void AddBatchOptions(CommandOptions& command, CLI::Option* keepGoing, BatchOptions& options);
void AddListOptions(CommandOptions& command, DrawingLists& lists);

/// Hash of the version and of the options that affect the outputs of a batch.
std::string HashOfOptions(const CLI::App& app);
