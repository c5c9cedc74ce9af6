// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "generators/sheet/ORVSheetGenerator.h"

namespace CLI {
class App;
}

/// The words of the command line about paper; what was not said is empty.
struct SheetArguments {
    std::optional<std::string> paper, orientation, scale, margin, align, overlap, leastLineWidth;
    std::optional<unsigned int> pagesPerSheet;
    std::optional<double> strokeScale;
    bool isPoster = false, isGrey = false, isMono = false;
};

/// Adds the options of paper to a command, as a group of their own.
void AddSheetOptions(CLI::App& command, SheetArguments& arguments);

/// Makes options of the words.
/// @param options  written when something was asked for; untouched when pages are to come out as they are
/// @return an exit code; a failure was reported
int ReadSheetArguments(const SheetArguments& arguments, std::optional<ORVSheetOptions>& options);
