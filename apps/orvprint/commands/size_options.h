// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "apps/orvprint/commands/print_command.h"
#include "library/print/size_words.h"

namespace CLI {
class Option;
}
class CommandOptions;

/// Command-line arguments for sizes in pixels.
struct SizeArguments : SizeWords {
    std::vector<const CLI::Option*> otherSizes;  ///< alternative options for the same sizes
};

/// Adds the options to a command. Paper options must have been added before.
void AddSizeOptions(CommandOptions& command, SizeArguments& arguments, PrintOptions& options);

/// Converts the arguments to options. For formats without pixels, a pixel is a px of the drawing.
/// @param options  with paper and resolution set; sizes and background are added
/// @return an exit code; a failure was reported
int ReadSizeArguments(const SizeArguments& arguments, PrintOptions& options);
