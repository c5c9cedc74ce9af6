// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVFailure.h"

/// Result of an operation. The values are the exit codes of the command and the results of the C interface,
/// so they must not change.
enum PrintResult : int {
    kResultDone = 0,
    kResultUsage = 2,  ///< unknown option or invalid value
    kResultUnreadable = 3,
    kResultNotWellFormed = 4,
    kResultNoPage = 5,
    kResultPageOutOfRange = 6,
    kResultUnknownFormat = 7,
    kResultUnwritable = 8,
    kResultFailed = 9,  ///< printing failed, or a limit was exceeded
    kResultNoModule = 10,
    kResultCancelled = 12,
};

/// The result for a failure's reason.
PrintResult ResultOf(ORVFailureReason reason);
