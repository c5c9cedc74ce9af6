// SPDX-License-Identifier: Apache-2.0
#include "library/input/results.h"

PrintResult ResultOf(ORVFailureReason reason) {
    switch (reason) {
        case ORVFailureReason::kNone: return kResultDone;
        case ORVFailureReason::kUnreadable: return kResultUnreadable;
        case ORVFailureReason::kNotWellFormed: return kResultNotWellFormed;
        case ORVFailureReason::kNoPage: return kResultNoPage;
        case ORVFailureReason::kNoModule: return kResultNoModule;
        case ORVFailureReason::kUnwritable: return kResultUnwritable;
        case ORVFailureReason::kOutOfMemory:
        case ORVFailureReason::kLimit:
        case ORVFailureReason::kPageWithoutArea:
        case ORVFailureReason::kTextNotSet:
        case ORVFailureReason::kNotDrawn: break;
    }
    return kResultFailed;
}
