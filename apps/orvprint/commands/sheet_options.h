// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/print/sheet_words.h"

class CommandOptions;

/// Adds the paper options to a command, as a group.
void AddSheetOptions(CommandOptions& command, SheetWords& arguments);
