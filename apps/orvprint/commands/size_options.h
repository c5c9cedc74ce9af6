// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "apps/orvprint/commands/print_command.h"
#include "library/print/size_words.h"

namespace CLI {
class Option;
}
class CommandOptions;

/// The options for sizes in pixels, as given.
struct SizeArguments : SizeWords {
    std::vector<const CLI::Option*> otherSizes;  ///< options with the same meaning
};

/// Adds the options to a command, after those of paper.
void AddSizeOptions(CommandOptions& command, SizeArguments& arguments, PrintOptions& options);

/// Evaluates the options. For formats without pixels, a pixel is a px of the drawing.
/// @param options  paper and resolution as already read; sizes and background are added
/// @return an exit code; a failure has been reported
int ReadSizeArguments(const SizeArguments& arguments, PrintOptions& options);
