// SPDX-License-Identifier: Apache-2.0
#pragma once

/// What the command tells its caller. Documented in README.md and docs/man/orvprint.1; scripts rely on the
/// numbers.
enum ExitCode : int {
    kExitDone = 0,
    kExitFound = 1,  ///< the check found something
    kExitUsage = 2,
    kExitUnreadable = 3,
    kExitNotWellFormed = 4,
    kExitNoPage = 5,
    kExitPageOutOfRange = 6,
    kExitUnknownFormat = 7,
    kExitUnwritable = 8,
    kExitFailed = 9,  ///< printing failed, or a limit was reached
    kExitNoModule = 10,
    kExitSomeFailed = 11,  ///< a batch went on after failures
};
