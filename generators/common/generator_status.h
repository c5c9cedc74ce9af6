// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVFailure.h"

/// What generators return besides 1. What was wrong is GetFailure() of the generator or of its output.
enum ORVGeneratorStatus : int {
    kGeneratorDone = 1,
    kOutputFailed = -10,    ///< the output could not be opened or written
    kPageTooLarge = -11,    ///< the page is larger than the format, or its limits, allow
    kDrawingFailed = -12,   ///< the library behind the format gave up
    kOutputTooLarge = -13,  ///< the pages would have more pixels than the limit of all pages allows
    kTooMuchToPaint = -14,  ///< the pages take more painting than the limit of painted pixels allows
};

/// The reason behind what drawing a model returned: one of the above or of ORVPrintModelRender. kNotDrawn,
/// without words, where only the generator knows more.
ORVFailure ORVFailureOfStatus(int status);
