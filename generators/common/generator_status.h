// SPDX-License-Identifier: Apache-2.0
#pragma once

/// What generators return besides 1. The text of a failure is GetError() of the generator or its output.
enum ORVGeneratorStatus : int {
    kGeneratorDone = 1,
    kOutputFailed = -10,    ///< the output could not be opened or written
    kPageTooLarge = -11,    ///< the page is larger than the format, or its limits, allow
    kDrawingFailed = -12,   ///< the library behind the format gave up
    kOutputTooLarge = -13,  ///< the pages would have more pixels than the limit of all pages allows
    kTooMuchToPaint = -14,  ///< the pages take more painting than the limit of painted pixels allows
};
