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

/// Where inputs come from besides the command line.
struct DrawingLists {
    std::vector<std::string> paths;
    bool endsWithZero = false;  ///< names end with zero bytes instead of line breaks
};

/// Adds the options of batches to the command.
/// @param keepGoing  an option that has another meaning in batches
void AddBatchOptions(CommandOptions& command, CLI::Option* keepGoing, BatchOptions& options);
void AddListOptions(CommandOptions& command, DrawingLists& lists);

/// A hash of the options that affect the outputs of a batch, and of the version.
std::string HashOfOptions(const CLI::App& app);
