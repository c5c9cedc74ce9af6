// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/input/results.h"

/// Exit codes of the command. They are documented in README.md and docs/man/orvprint.1, and scripts rely on
/// the numbers.
enum ExitCode : int {
    kExitDone = kResultDone,
    kExitFound = 1,  ///< check reported a finding
    kExitUsage = kResultUsage,
    kExitUnreadable = kResultUnreadable,
    kExitNotWellFormed = kResultNotWellFormed,
    kExitNoPage = kResultNoPage,
    kExitPageOutOfRange = kResultPageOutOfRange,
    kExitUnknownFormat = kResultUnknownFormat,
    kExitUnwritable = kResultUnwritable,
    kExitFailed = kResultFailed,  ///< printing failed, or a limit was reached
    kExitNoModule = kResultNoModule,
    kExitSomeFailed = 11,  ///< some inputs of a batch failed
};
