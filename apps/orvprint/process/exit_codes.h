// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "library/input/results.h"

/// What the command tells its caller. Documented in README.md and docs/man/orvprint.1; scripts rely on the
/// numbers.
enum ExitCode : int {
    kExitDone = kResultDone,
    kExitFound = 1,  ///< the check found something
    kExitUsage = kResultUsage,
    kExitUnreadable = kResultUnreadable,
    kExitNotWellFormed = kResultNotWellFormed,
    kExitNoPage = kResultNoPage,
    kExitPageOutOfRange = kResultPageOutOfRange,
    kExitUnknownFormat = kResultUnknownFormat,
    kExitUnwritable = kResultUnwritable,
    kExitFailed = kResultFailed,  ///< printing failed, or a limit was reached
    kExitNoModule = kResultNoModule,
    kExitSomeFailed = 11,  ///< a batch went on after failures
};
