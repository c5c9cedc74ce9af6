// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVFailure.h"

/// Return values of generators. GetFailure() of the generator or of its output describes the error.
enum ORVGeneratorStatus : int {
    kGeneratorDone = 1,
    kOutputFailed = -10,    ///< the output could not be opened or written
    kPageTooLarge = -11,    ///< the page is larger than the format or the pixel limit allows
    kDrawingFailed = -12,   ///< the generator, or a library it uses, failed
    kOutputTooLarge = -13,  ///< the limit of pixels of all pages is exceeded
    kTooMuchToPaint = -14,  ///< the limit of painted pixels is exceeded
};

/// Converts the result of drawing a model, one of the above or of ORVPrintModelRender, to an error. The
/// result is kNotDrawn without text where only the generator can describe the error.
ORVFailure ORVFailureOfStatus(int status);
