// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/print/sheet_words.h"

class CommandOptions;

/// Adds the options of paper to a command, as a group of their own.
void AddSheetOptions(CommandOptions& command, SheetWords& arguments);
