// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "apps/orvprint/commands/print_command.h"
#include "library/print/size_words.h"

namespace CLI {
class Option;
}
class CommandOptions;

/// The words of the command line about sizes in pixels.
struct SizeArguments : SizeWords {
    std::vector<const CLI::Option*> otherSizes;  ///< what says the same in other words
};

/// Adds the options to a command. Those of paper must have been added.
void AddSizeOptions(CommandOptions& command, SizeArguments& arguments, PrintOptions& options);

/// Makes options of the words. A pixel is a px of the drawings where the format has no pixels.
/// @param options  what was read of paper and resolution; sizes and the background are added
/// @return an exit code; a failure was reported
int ReadSizeArguments(const SizeArguments& arguments, PrintOptions& options);
