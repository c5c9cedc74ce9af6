// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVFailure.h"

/// What came of something. The numbers are the exit codes of the command and the results of the C interface;
/// programs rely on them.
enum PrintResult : int {
    kResultDone = 0,
    kResultUsage = 2,  ///< an option that is not known, or a value that it does not take
    kResultUnreadable = 3,
    kResultNotWellFormed = 4,
    kResultNoPage = 5,
    kResultPageOutOfRange = 6,
    kResultUnknownFormat = 7,
    kResultUnwritable = 8,
    kResultFailed = 9,  ///< printing failed, or a limit was reached
    kResultNoModule = 10,
    kResultCancelled = 12,
};

/// The result that a failure ends in.
PrintResult ResultOf(ORVFailureReason reason);
